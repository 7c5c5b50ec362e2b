#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "FileRecord.h"
#include "Message.h"
#include "UserInterface.h"

namespace velmora {

/// What a piece of work came to, from the best to the worst.
enum class Outcome {
    Ok,
    Cancelled, ///< a chooser, a dialog or a question was answered so
    Partial,   ///< done, but a file holds geometry that is not in the model
    Refused,   ///< it cannot be done; the model is as before
    Failed,    ///< a file could not be opened, read or written, or gave no model
};

/// "ok", "cancelled", "partial", "refused", "failed".
const char* nameOf(Outcome outcome);

/// What happened while a command ran, or any other piece of work: all that was said, asked and answered, and the files
/// that were read and written, each kind in its order.
struct CommandReport {
    struct Question {
        std::string text;
        Answer answer = Answer::No; ///< none: it was closed without one
    };
    struct Field {
        using Value = std::variant<std::int32_t, double, bool>;
        std::string key;
        Value shown; ///< as the dialog came up
        Value taken; ///< as it closed
    };
    struct Setting {
        std::string name;
        std::string value;
    };
    struct Dialog {
        std::string name; ///< class name of its values: "CRebreak"
        bool ok = false;
        std::vector<Field> fields; ///< none of the point table, which is no form
        /// What was set, in order, as a script gives it; of the point table its actions, each as "do".
        std::vector<Setting> settings{};
        /// Fields that a script cannot bring to what was taken, with what they stand at in it.
        std::vector<Setting> unreached{};
        std::map<std::string, std::string> shownTexts{}; ///< by field, as scripts give them: as the dialog came up
        std::map<std::string, std::string> takenTexts{}; ///< as it closed
    };
    struct Chooser {
        std::string command; ///< the id of the command that asked
        ChooserMode mode = ChooserMode::Open;
        std::vector<std::filesystem::path> paths; ///< none: cancelled
    };

    std::vector<Message> messages;
    std::vector<Question> questions;
    std::vector<Dialog> dialogs;
    std::vector<Chooser> choosers;
    std::vector<std::string> statuses;
    std::vector<std::string> titles;
    std::vector<FileRead> filesRead;
    std::vector<FileWritten> filesWritten;
    bool off = false;     ///< the command is off in this state: nothing was done
    bool stopped = false; ///< the user ended the work before its end
    bool stayed = false;  ///< the program was to end, and stays because its model could not be saved

    /// The worst that is in the report.
    Outcome outcome() const;
    /// True when what failed was to write a file.
    bool writeFailed() const;
};

/// True when nothing of a file came into the program, as of an empty one.
bool keptNothing(const FileRead& read);

} // namespace velmora

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Message.h"
#include "progress.h"

namespace velmora {

class CRegularInput;
struct Act;
struct DialogForm;
struct FileRead;
struct FileWritten;

/// The captions of file choosers; Save As, New and Export choose a file to write.
enum class ChooserMode { SaveAs, New, Open, Append, Import, Export };

/// "Save As", "New", "Open", "Append", "Import", "Export".
const char* captionOf(ChooserMode mode);

/// True for the modes that choose a single file to write.
bool choosesFileToWrite(ChooserMode mode);

/// One type that a chooser offers.
struct FileType {
    std::string extension; ///< bare, lower case: "apt"
    std::string typeName;  ///< shown before the pattern: "Geometry"
};

/// What a command wants of a file chooser.
struct FileRequest {
    ChooserMode mode = ChooserMode::Open;
    bool multiple = false;
    std::vector<FileType> types;
    /// Proposed file and folder; empty for none.
    std::filesystem::path proposed;
    /// The id of the command that asks: a chooser remembers the filter used last for each.
    std::string command;
};

/// The answer to a question that can be closed without one.
enum class Answer { Yes, No, None };

/// Whatever a person sees or answers outside the view. The window, the batch front end and the tests implement it.
/// Every call that asks returns when the answer is there; nothing here changes the document.
class UserInterface {
public:
    UserInterface() = default;
    UserInterface(const UserInterface&) = delete;
    UserInterface& operator=(const UserInterface&) = delete;
    virtual ~UserInterface() = default;

    /// A box with OK.
    virtual void showMessage(const Message& message) = 0;
    /// The same about what is going to be done, where a person can call it off: false then. A script goes on.
    virtual bool warn(const Message& message) {
        showMessage(message);
        return true;
    }
    /// A box with Yes and No; true for Yes.
    virtual bool ask(const std::string& text) = 0;
    /// The same box, to be closed without an answer too: where both Yes and No would go too far.
    virtual Answer askOrNone(const std::string& text) { return ask(text) ? Answer::Yes : Answer::No; }
    /// The message pane of the status line.
    virtual void showStatus(const std::string& text) = 0;
    /// The document's title.
    virtual void showTitle(const std::string& title) = 0;
    /// Shows the form modally until OK is accepted or Cancel pressed; true for OK.
    virtual bool showDialog(DialogForm& form) = 0;
    /// Shows the point table modally; true for OK.
    virtual bool showRegularInput(CRegularInput& table) = 0;
    /// The paths chosen, in the chooser's order; empty when it was cancelled.
    virtual std::vector<std::filesystem::path> chooseFiles(const FileRequest& request) = 0;
    /// Whether a chooser of a file to write asks by itself before it gives the path of a file that is there.
    virtual bool chooserAsksToOverwrite() const { return false; }
    /// A question of the document was not asked, as the chooser had the answer yes to it already.
    virtual void tellAgreed(const std::string&) {}
    /// The wait cursor; calls nest.
    virtual void setBusy(bool busy) = 0;
    /// How far a long piece of work is, 0 to 1. The bar comes when the wait cursor has been on for half a second, and
    /// goes away with it.
    virtual void showProgress(double fraction) = 0;
    /// Whether the user wants the work at hand to stop. Asked with each word of progress, see progressTo.
    virtual bool wantsToStop() { return false; }
    /// Puts a path on top of the list of recent files.
    virtual void addRecentFile(const std::filesystem::path& path) = 0;
    /// A file was opened and read, whole or in part. Said once for each file, before the message about it.
    virtual void tellFileRead(const FileRead&) {}
    /// A file was written.
    virtual void tellFileWritten(const FileWritten&) {}
    /// The mouse took something in a regime, or moved it.
    virtual void tellAct(const Act&) {}
};

/// The wait cursor for the life of the object.
class BusyScope {
public:
    explicit BusyScope(UserInterface& ui) : ui_(ui) { ui_.setBusy(true); }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;
    ~BusyScope() { ui_.setBusy(false); }

private:
    UserInterface& ui_;
};

/// What hands the progress of a piece of work to `ui`, which must outlive it, and throws WorkCancelled when the user
/// wants it to stop: the guard around the command puts the document back.
ReportProgress progressTo(UserInterface& ui);

} // namespace velmora

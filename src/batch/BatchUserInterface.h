#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "EventPrinter.h"
#include "UserInterface.h"
#include "command_input.h"

namespace velmora {

/// A program that is asked and told while a line runs; each may be empty.
struct Listener {
    std::function<bool(const std::string&)> answer; ///< to a question that the line gives no answer to: true for Yes
    ReportProgress progress;
};

/// The person of a script: says what happens as events, and answers from the line that is running. What the line
/// does not answer is answered with No or Cancel and kept as the failure that ends the script; from then on nothing
/// more is said.
class BatchUserInterface : public UserInterface {
public:
    /// `printer` must outlive the object. Nothing is said until the first line begins.
    explicit BatchUserInterface(EventPrinter& printer) : printer_(printer) {}

    void listenTo(Listener listener) { listener_ = std::move(listener); }
    /// Files are written over without an answer; one that is given may stay unasked.
    void agreeToOverwrite() { overwrites_ = true; }
    /// A line begins, with what it gives.
    void beginLine(CommandInput input = {});
    /// The line is at its end: nothing more is said of it.
    void beQuiet() { talking_ = false; }
    /// What the running line failed to answer.
    const MaybeFailure& failure() const { return failure_; }
    /// The failure, or that some of what the line gave was not asked for.
    MaybeFailure endLine() const;

    void showMessage(const Message& message) override;
    bool ask(const std::string& text) override;
    void showStatus(const std::string& text) override;
    void showTitle(const std::string& title) override;
    bool showDialog(DialogForm& form) override;
    bool showRegularInput(CRegularInput& table) override;
    std::vector<std::filesystem::path> chooseFiles(const FileRequest& request) override;
    void setBusy(bool) override {}
    void showProgress(double fraction) override;
    void addRecentFile(const std::filesystem::path& path) override;
    void tellFileRead(const FileRead& read) override;
    void tellFileWritten(const FileWritten& written) override;

private:
    void say(const Json& event);
    void sayText(const char* kind, const std::string& text);
    void sayDialog(const DialogForm& form, const char* result);
    void fail(std::string cause, std::string remedy);
    bool setFields(DialogForm& form);
    bool performActions(CRegularInput& table);
    std::optional<bool> takeAnswer(const std::string& question);
    bool cancelsDialog(const DialogForm& form);
    std::vector<std::filesystem::path> takeFiles(bool multiple);

    EventPrinter& printer_;
    Listener listener_;
    bool talking_ = false;
    bool refused_ = false; ///< the line's command said that it cannot do it
    bool overwrites_ = false;
    CommandInput input_;
    MaybeFailure failure_;
};

} // namespace velmora

#pragma once

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "CRegularInput.h"
#include "DialogForm.h"
#include "FileRecord.h"
#include "UserInterface.h"

namespace velmora::test {

/// A person who answers as the test says and keeps a transcript of all that was shown: "message: ...",
/// "question: ... -> yes", "status: ...", "title: ...", "dialog: CRebreak -> ok", "chooser: Open -> 1 file",
/// "recent: ...". What the test prepared no answer for is answered No, Cancel or no file, and noted as such.
class RecordingUi : public UserInterface {
public:
    std::vector<std::string> transcript;
    std::deque<bool> answers;
    bool stops = false; ///< wants work to stop wherever it is asked
    /// Fields to set in the next dialogs, in order; then OK is pressed. An absent entry cancels.
    std::deque<std::vector<std::pair<std::string, std::string>>> dialogs;
    std::deque<std::vector<std::filesystem::path>> files;
    std::vector<FileRequest> requests;
    bool chooserAsks = false; ///< as a window's does, about a file that is there
    int busyDepth = 0;
    int busyCalls = 0;
    std::vector<double> progress; ///< all that was told of it
    /// Called as a dialog is open, before its fields are set.
    std::function<void(DialogForm&)> onDialog;
    /// Works in the point table and answers true for OK; absent: Cancel.
    std::function<bool(CRegularInput&)> onRegularInput;

    /// A file failed, or something was called off, since the test set it to false.
    bool gaveUp = false;
    /// A message said that something cannot be done.
    bool refused = false;
    std::vector<Severity> severities; ///< of the messages, in their order

    void showMessage(const Message& message) override {
        gaveUp = gaveUp || message.severity > Severity::Refused;
        refused = refused || message.severity == Severity::Refused;
        severities.push_back(message.severity);
        transcript.push_back("message: " + message.text);
    }

    /// Calls off what a warning is about.
    bool callsOff = false;

    bool warn(const Message& message) override {
        showMessage(message);
        gaveUp = gaveUp || callsOff;
        return !callsOff;
    }

    bool ask(const std::string& text) override {
        const bool answer = !answers.empty() && answers.front();
        if (!answers.empty()) {
            answers.pop_front();
        }
        gaveUp = gaveUp || !answer;
        transcript.push_back("question: " + text + (answer ? " -> yes" : " -> no"));
        return answer;
    }

    void showStatus(const std::string& text) override { transcript.push_back("status: " + text); }
    void showTitle(const std::string& title) override { transcript.push_back("title: " + title); }

    bool showDialog(DialogForm& form) override {
        if (onDialog) {
            onDialog(form);
        }
        bool taken = false;
        if (!dialogs.empty()) {
            const auto fields = dialogs.front();
            dialogs.pop_front();
            taken = true;
            for (const auto& [key, text] : fields) {
                if (const auto refusal = setField(form, key, text)) {
                    noteRefusal(key, text, refusal->message);
                }
            }
            if (const auto refusal = acceptDialog(form)) {
                transcript.push_back("refused: OK: " + refusal->message);
                taken = false;
            }
        }
        gaveUp = gaveUp || !taken;
        transcript.push_back("dialog: " + form.name + (taken ? " -> ok" : " -> cancel"));
        return taken;
    }

    bool showRegularInput(CRegularInput& table) override {
        const bool taken = onRegularInput && onRegularInput(table);
        gaveUp = gaveUp || !taken;
        transcript.push_back(std::string("dialog: CRegularInput -> ") + (taken ? "ok" : "cancel"));
        return taken;
    }

    std::vector<std::filesystem::path> chooseFiles(const FileRequest& request) override {
        requests.push_back(request);
        std::vector<std::filesystem::path> chosen;
        if (!files.empty()) {
            chosen = files.front();
            files.pop_front();
        }
        gaveUp = gaveUp || chosen.empty();
        transcript.push_back(std::string("chooser: ") + captionOf(request.mode) + " -> " +
                             std::to_string(chosen.size()));
        return chosen;
    }

    bool chooserAsksToOverwrite() const override { return chooserAsks; }

    void setBusy(bool busy) override {
        busyDepth += busy ? 1 : -1;
        busyCalls += busy ? 1 : 0;
    }
    void showProgress(double fraction) override { progress.push_back(fraction); }
    bool wantsToStop() override { return stops; }
    void tellFileRead(const FileRead& read) override { gaveUp = gaveUp || !read.keptAnything(); }
    void addRecentFile(const std::filesystem::path& path) override { transcript.push_back("recent: " + path.string()); }

    /// How often a line stands in the transcript.
    std::size_t count(const std::string& line) const {
        std::size_t found = 0;
        for (const std::string& entry : transcript) {
            found += entry == line ? 1 : 0;
        }
        return found;
    }

private:
    void noteRefusal(const std::string& key, const std::string& text, const std::string& reason) {
        transcript.push_back("refused: " + key + "=" + text + ": " + reason);
    }
};

} // namespace velmora::test

#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Act.h"
#include "CommandReport.h"
#include "UserInterface.h"

namespace velmora {

/// Stands between the document and the person: hands everything on, and notes it in the reports that are open.
class Recorder : public UserInterface {
public:
    /// `person` must outlive the object.
    explicit Recorder(UserInterface& person) : person_(&person) {}

    /// Notes all that happens in its life in `report`; of what runs within other work both reports are told.
    class Scope {
    public:
        Scope(Recorder& recorder, CommandReport& report) : recorder_(recorder) { recorder_.open_.push_back(&report); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { recorder_.open_.pop_back(); }

    private:
        Recorder& recorder_;
    };

    /// Another person in the place of the one who was there, for the life of the object.
    class Substitute {
    public:
        Substitute(Recorder& recorder, UserInterface& person)
            : recorder_(recorder), before_(std::exchange(recorder.person_, &person)) {}
        Substitute(const Substitute&) = delete;
        Substitute& operator=(const Substitute&) = delete;
        ~Substitute() { recorder_.person_ = before_; }

    private:
        Recorder& recorder_;
        UserInterface* before_;
    };

    /// `onAct` hears of each act of the mouse, in a report or not.
    void hearActs(std::function<void(const Act&)> onAct) { onAct_ = std::move(onAct); }

    /// `otherStart` tells of a dialog that comes up the fields that stand at other values where a script shows it: what
    /// was set is noted as the steps from there.
    void startDialogsAt(std::function<std::map<std::string, std::string>(const DialogForm&)> otherStart) {
        otherStart_ = std::move(otherStart);
    }

    /// Sets a flag of the reports that are open.
    void note(bool CommandReport::*flag);

    /// What the innermost report holds so far means that its work was called off or failed.
    bool gaveUp() const;

    void showMessage(const Message& message) override;
    bool warn(const Message& message) override;
    bool ask(const std::string& text) override;
    Answer askOrNone(const std::string& text) override;
    void showStatus(const std::string& text) override;
    void showTitle(const std::string& title) override;
    bool showDialog(DialogForm& form) override;
    bool showRegularInput(CRegularInput& table) override;
    std::vector<std::filesystem::path> chooseFiles(const FileRequest& request) override;
    bool chooserAsksToOverwrite() const override { return person_->chooserAsksToOverwrite(); }
    void tellAgreed(const std::string& text) override;
    void setBusy(bool busy) override { person_->setBusy(busy); }
    void showProgress(double fraction) override { person_->showProgress(fraction); }
    bool wantsToStop() override;
    void addRecentFile(const std::filesystem::path& path) override { person_->addRecentFile(path); }
    void tellFileRead(const FileRead& read) override;
    void tellFileWritten(const FileWritten& written) override;
    void tellAct(const Act& act) override;

private:
    template <class Entry>
    void note(std::vector<Entry> CommandReport::*list, const Entry& entry);

    UserInterface* person_;
    std::vector<CommandReport*> open_; ///< the innermost is the last
    std::function<void(const Act&)> onAct_;
    std::function<std::map<std::string, std::string>(const DialogForm&)> otherStart_;
};

} // namespace velmora

#include "Session.h"

#include "CommandGuard.h"
#include "VelmoraDoc.h"
#include "WorkCancelled.h"
#include "messages.h"

namespace velmora {

Session::Session(UserInterface& person, ViewSurface& surface, ShellCommands& shell,
                 const std::filesystem::path& documentsFolder)
    : recorder_(person), shell_(shell), document_(std::make_unique<VelmoraDoc>(recorder_, documentsFolder)),
      view_(*document_, surface) {
    recorder_.hearActs([this](const Act& act) { journal_.addAct(act); });
}

Session::~Session() = default;

DocumentState& Session::state() {
    return *document_;
}

const DocumentState& Session::state() const {
    return *document_;
}

UserInterface& Session::ui() {
    return document_->ui();
}

void Session::start() {
    document_->onNewDocument();
}

bool isCommandOn(const Command& command, const DocumentState& document, const VelmoraView& view) {
    return command.owner == CommandOwner::View ? !view.isViewCommandOff(command.id)
                                               : !isCommandOff(document, command.id);
}

bool Session::isOn(const Command& command) const {
    return isCommandOn(command, *document_, view_);
}

CommandReport Session::perform(const std::function<void()>& work) {
    CommandReport report;
    const Recorder::Scope scope(recorder_, report);
    try {
        const CommandGuard guard(*document_);
        work();
    } catch (const WorkCancelled&) {
        document_->ShowStatus(message::workCancelled);
    }
    if (!report.filesRead.empty()) {
        filesRead_ = report.filesRead;
    }
    modelFiles_.note(report);
    return report;
}

Journal::Effect Session::effectSince(const StateMark& before, const CommandReport& report) {
    const StateMark now = marker_.markOf(*document_);
    if (now.kept != before.kept || !report.filesWritten.empty()) {
        return Journal::Effect::Kept;
    }
    if (now.undo != before.undo) {
        return Journal::Effect::Undo;
    }
    return now.beside != before.beside ? Journal::Effect::Beside : Journal::Effect::None;
}

CommandReport Session::performAs(UserInterface& person, const std::function<void()>& work) {
    const Recorder::Substitute substitute(recorder_, person);
    return perform(work);
}

CommandReport Session::run(const Command& command) {
    const StateMark before = marker_.markOf(*document_);
    const int plane = document_->principalPlane();
    CommandReport report = perform([&] {
        if (isOn(command)) {
            carryOut(command);
        } else {
            recorder_.note(&CommandReport::off);
        }
    });
    journal_.addCommand(command, report, effectSince(before, report), plane);
    return report;
}

void Session::carryOut(const Command& command) {
    switch (command.owner) {
    case CommandOwner::Document:
        document_->runCommand(command.run);
        break;
    case CommandOwner::View:
        view_.runViewCommand(command.id);
        break;
    case CommandOwner::Shell:
        runShellCommand(shell_, command.id);
        break;
    }
}

CommandReport Session::openAndNote(const std::vector<std::filesystem::path>& paths) {
    const StateMark before = marker_.markOf(*document_);
    const bool hadModel = !document_->holdsNothing();
    CommandReport report = perform([&] { document_->onOpenDocuments(paths); });
    journal_.addOpening(paths, hadModel, report, effectSince(before, report));
    return report;
}

CommandReport Session::open(const std::vector<std::filesystem::path>& paths) {
    return openAndNote(paths);
}

CommandReport Session::openInstead(const std::vector<std::filesystem::path>& paths) {
    return perform([&] {
        bool left = false;
        const CommandReport leaving = perform([&] { left = leave(); });
        if (!leaving.filesWritten.empty()) {
            journal_.addSave(leaving);
        }
        if (left) {
            openAndNote(paths);
        }
    });
}

CommandReport Session::openIn(const std::filesystem::path& folder) {
    const StateMark before = marker_.markOf(*document_);
    CommandReport report = perform([&] { document_->openFilesIn(folder); });
    journal_.addCommand(*findCommand("file.open"), report, effectSince(before, report), 0);
    return report;
}

VelmoraView::ActResult Session::act(const Act& act) {
    return view_.perform(act);
}

bool Session::leave() {
    bool left = false;
    try {
        left = document_->saveModified();
    } catch (const WorkCancelled&) {
        document_->ShowStatus(message::workCancelled); // the program stays: nothing is saved yet
    }
    if (!left) {
        recorder_.note(&CommandReport::stayed);
    }
    return left;
}

} // namespace velmora

#include "Session.h"

#include "CommandGuard.h"
#include "VelmoraDoc.h"

namespace velmora {

Session::Session(UserInterface& person, ViewSurface& surface, ShellCommands& shell,
                 const std::filesystem::path& documentsFolder)
    : recorder_(person), shell_(shell), document_(std::make_unique<VelmoraDoc>(recorder_, documentsFolder)),
      view_(*document_, surface) {}

Session::~Session() = default;

DocumentState& Session::state() {
    return *document_;
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
    const CommandGuard guard(*document_);
    work();
    if (!report.filesRead.empty()) {
        filesRead_ = report.filesRead;
    }
    return report;
}

CommandReport Session::run(const Command& command) {
    return perform([&] {
        if (isOn(command)) {
            carryOut(command);
        } else {
            recorder_.note(&CommandReport::off);
        }
    });
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

CommandReport Session::open(const std::vector<std::filesystem::path>& paths) {
    return perform([&] { document_->onOpenDocuments(paths); });
}

CommandReport Session::openInstead(const std::vector<std::filesystem::path>& paths) {
    return perform([&] {
        if (leave()) {
            document_->onOpenDocuments(paths);
        }
    });
}

bool Session::leave() {
    const bool left = document_->saveModified();
    if (!left) {
        recorder_.note(&CommandReport::stayed);
    }
    return left;
}

} // namespace velmora

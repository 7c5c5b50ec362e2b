#include "Session.h"

#include <algorithm>
#include <array>
#include <utility>

#include "CommandGuard.h"
#include "DialogValues.h"
#include "VelmoraDoc.h"
#include "WorkCancelled.h"
#include "foreign_files.h"
#include "messages.h"

namespace velmora {

Session::Session(UserInterface& person, ViewSurface& surface, ShellCommands& shell,
                 const std::filesystem::path& documentsFolder)
    : recorder_(person), shell_(shell), document_(std::make_unique<VelmoraDoc>(recorder_, documentsFolder)),
      view_(*document_, surface) {
    recorder_.hearActs([this](const Act& act) {
        journal_.addAct(act, tracesOf(*document_->capture));
        if (act.kind == Act::Kind::Release) {
            tellOfLostDistances();
        }
    });
    recorder_.startDialogsAt(
        [this](const DialogForm& form) { return journal_.otherStart(form, dialogsBefore_, *document_->capture); });
}

Session::~Session() = default;

DocumentState& Session::state() {
    return *document_;
}

const DocumentState& Session::state() const {
    return *document_;
}

std::vector<std::string> Session::script() const {
    return journal_.script(tracesOf(*document_->capture));
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

void Session::noteWritten(const CommandReport& report) {
    for (const FileWritten& file : report.filesWritten) {
        if (history_) {
            history_->noteWritten(file.path, *document_);
        }
    }
}

Journal::Effect Session::effectSince(const StateMark& before, const CommandReport& report) {
    const StateMark now = marker_.markOf(*document_);
    noteWritten(report);
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

Journal::Surroundings Session::surroundings() {
    return {textsOf(*document_->dialogs), tracesOf(*document_->capture), document_->principalPlane()};
}

namespace {

/// What a button that is down was pressed for: a regime or the view, the regimes that wait for it, and what it found.
std::array<std::int32_t, 15> pressedFor(const CaptureState& capture, int mouseMode) {
    const auto flag = [](bool value) { return value ? 1 : 0; };
    return {flag(mouseMode >= ModePoint),   flag(capture.pointCaptureArmed),
            flag(capture.freePointArmed),   flag(capture.sectionCaptureArmed),
            flag(capture.lineCaptureArmed), flag(capture.patchCaptureArmed),
            flag(capture.patchRemoving),    flag(capture.pointDragging),
            flag(capture.dragCorrectsLine), capture.capturedPatch,
            capture.capturedPointSection,   capture.capturedPoint,
            capture.capturedSection,        capture.capturedLine,
            capture.patchToRemove};
}

} // namespace

CommandReport Session::noted(const Command& command, const std::function<void()>& work) {
    keepUp();
    const StateMark before = marker_.markOf(*document_);
    const Journal::Surroundings around = surroundings();
    dialogsBefore_ = around.dialogs;
    const auto pressed = pressedFor(*document_->capture, view_.mouseMode);
    CommandReport report = perform(work);
    if (pressedFor(*document_->capture, view_.mouseMode) != pressed) {
        view_.leftButtonDown = false; // what went down for something else takes nothing now
    }
    journal_.addCommand(command, report, effectSince(before, report), around, surroundings());
    keepUp();
    return report;
}

CommandReport Session::run(const Command& command) {
    return noted(command, [&] {
        if (isOn(command)) {
            carryOut(command);
            tellOfLostDistances();
        } else {
            recorder_.note(&CommandReport::off);
        }
    });
}

/// The model whose distances the surface shows now; none when it shows none.
std::optional<std::filesystem::path> Session::modelOfShownDistances() const {
    const CColours& colours = document_->dialogs->colours;
    const bool shown = colours.ofCompare() && document_->surfaceMode && document_->comparison() != nullptr;
    return shown ? std::optional(document_->modelFile.chosenPath) : std::nullopt;
}

/// An edit takes colours and legend of a comparison away: who looks at another part of the model hears of it.
void Session::tellOfLostDistances() {
    const auto before = std::exchange(distancesShown_, modelOfShownDistances());
    const bool stillWanted = document_->dialogs->colours.ofCompare() && document_->surfaceMode;
    if (before && !distancesShown_ && stillWanted && *before == document_->modelFile.chosenPath) {
        document_->ShowStatus("The distances shown were of the model before: Compare finds new ones");
    }
}

void Session::carryOut(const Command& command) {
    switch (command.owner) {
    case CommandOwner::Document:
        document_->runCommand(command.run, [this] { return recorder_.gaveUp(); });
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
    keepUp();
    const StateMark before = marker_.markOf(*document_);
    const bool hadModel = !document_->holdsNothing();
    CommandReport report = perform([&] { document_->onOpenDocuments(paths); });
    journal_.addOpening(paths, hadModel, report, effectSince(before, report), surroundings());
    keepUp();
    return report;
}

CommandReport Session::open(const std::vector<std::filesystem::path>& paths) {
    return openAndNote(paths);
}

/// The work takes the place of the model, unless the user stays with it.
CommandReport Session::instead(const std::function<void()>& work) {
    keepUp();
    return perform([&] {
        bool left = false;
        const CommandReport leaving = perform([&] { left = leave(); });
        if (!leaving.filesWritten.empty()) {
            noteWritten(leaving);
            journal_.addSave(leaving);
            keepUp();
        }
        if (left) {
            work();
        }
    });
}

CommandReport Session::openInstead(const std::vector<std::filesystem::path>& paths) {
    return instead([&] { openAndNote(paths); });
}

/// The command asks for the file, and whether the model may go: both are settled here.
CommandReport Session::importInstead(const std::filesystem::path& path) {
    return instead([&] {
        keepUp();
        const StateMark before = marker_.markOf(*document_);
        const Journal::Surroundings around = surroundings();
        dialogsBefore_ = around.dialogs;
        const bool hadModel = !document_->holdsNothing();
        CommandReport report = perform([&] { importForeignFile(*document_, path); });
        if (hadModel) {
            report.questions.insert(report.questions.begin(), {{}, Answer::Yes});
        }
        report.choosers.push_back({"file.import", ChooserMode::Import, {path}});
        journal_.addCommand(*findCommand("file.import"), report, effectSince(before, report), around, surroundings());
        keepUp();
    });
}

CommandReport Session::openIn(const std::filesystem::path& folder) {
    return noted(*findCommand("file.open"), [&] { document_->openFilesIn(folder); });
}

// ---- Back and forth -------------------------------------------------------------------------------------------------

void Session::keepHistory() {
    history_.emplace();
    journal_.takeFirstNew();
    history_->keep(*document_, view_, journal_);
}

void Session::keepUp() {
    if (!history_) {
        return;
    }
    if (const auto firstNew = journal_.takeFirstNew()) {
        history_->dropFrom(*firstNew + 1);
        history_->keep(*document_, view_, journal_);
    }
}

bool Session::leadsTo(std::size_t line) const {
    return history_ && history_->leadsTo(line);
}

std::optional<std::size_t> Session::endOfWork(std::size_t line) const {
    return history_ ? history_->nextFrom(line) : std::nullopt;
}

bool Session::goTo(std::size_t line) {
    keepUp();
    const bool gone = history_ && history_->goTo(line, *document_, view_, journal_);
    distancesShown_ = modelOfShownDistances();
    return gone;
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

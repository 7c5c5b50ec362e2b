#include "Journal.h"

#include <algorithm>
#include <utility>

#include "Capture.h"
#include "DialogForm.h"
#include "DialogValues.h"
#include "script_words.h"

namespace velmora {

namespace {

constexpr std::string_view bendCommand = "point.dragAndCorrect";

/// Commands whose work depends on the plane that is looked at.
bool seesThePlane(std::string_view id) {
    return id == bendCommand || id == "model.reflectToSft";
}

/// Where the model is looked at from, and what parts of the window are shown, is no work.
bool isOfTheView(const Command& command) {
    const std::string_view id = command.id;
    if (command.owner == CommandOwner::Shell) {
        return true;
    }
    return id.starts_with("view.") && id != "view.surface" && id != "view.colourByValue" && id != "view.features";
}

/// Numbers as a script has them: from 1.
std::string numbered(const char* word, std::initializer_list<std::int32_t> numbers) {
    std::string line = word;
    for (const std::int32_t number : numbers) {
        line += ' ' + std::to_string(number + 1);
    }
    return line;
}

std::string lineOf(const Act& act) {
    switch (act.kind) {
    case Act::Kind::Point:
        return numbered("capture point", {act.patch, act.section, act.point});
    case Act::Kind::Node:
        return numbered("capture node", {act.patch, act.point});
    case Act::Kind::Section:
        return numbered("capture section", {act.patch, act.section});
    case Act::Kind::Line:
        return numbered("capture line", {act.patch, act.point});
    case Act::Kind::WholePatch:
        return numbered("capture patch", {act.patch});
    case Act::Kind::Beside:
        return numbered("capture beside", {act.patch, act.section, act.point});
    case Act::Kind::Under:
        return numbered("capture under", {act.patch, act.section, act.point});
    case Act::Kind::UnderSection:
        return numbered("capture under section", {act.patch, act.section});
    case Act::Kind::UnderLine:
        return numbered("capture under line", {act.patch, act.point});
    case Act::Kind::Drag:
        return "drag " + numberText(act.place.x) + ' ' + numberText(act.place.y) + ' ' + numberText(act.place.z);
    case Act::Kind::Release:
        break;
    }
    return "release";
}

std::string filesOf(const CommandReport::Chooser& chooser) {
    std::string text;
    for (const std::filesystem::path& path : chooser.paths) {
        text += ' ' + scriptSetting("file", path.string());
    }
    return chooser.paths.empty() ? " cancel=file" : text;
}

} // namespace

bool Journal::isLeftOut(const CommandReport& report, Effect effect) const {
    // What went wrong counts only where it left traces in what a script is to bring about.
    const bool wentWell = report.outcome() == Outcome::Ok || report.outcome() == Outcome::Partial;
    return report.off || effect == Effect::None || (!wentWell && effect == Effect::Beside);
}

void Journal::append(std::string line) {
    later_.clear();
    firstNew_ = std::min(firstNew_.value_or(lines_.size()), lines_.size());
    lines_.push_back(std::move(line));
}

void Journal::goTo(std::size_t line, const Tracking& tracking) {
    lines_.insert(lines_.end(), later_.begin(), later_.end());
    const auto end = lines_.begin() + static_cast<std::ptrdiff_t>(std::min(line, lines_.size()));
    later_.assign(end, lines_.end());
    lines_.erase(end, lines_.end());
    tracking_ = tracking;
}

std::optional<std::size_t> Journal::takeFirstNew() {
    return std::exchange(firstNew_, std::nullopt);
}

// ---- Where a replay stands otherwise --------------------------------------------------------------------------------

DialogTexts textsOf(DialogValues& dialogs) {
    DialogTexts texts;
    for (const std::string& name : DialogValues::names()) {
        const auto form = dialogs.form(name);
        for (const DialogField& field : form->fields) {
            if (!field.readOnly) {
                texts[name][field.key] = fieldText(field);
            }
        }
    }
    return texts;
}

CaptureTraces tracesOf(const CaptureState& capture) {
    return {capture.capturedPatch,
            capture.capturedPointSection,
            capture.capturedPoint,
            capture.pointPicked,
            capture.sectionCaptureArmed ? capture.capturedSection : -1,
            capture.lineCaptureArmed ? capture.capturedLine : -1};
}

namespace {

/// These two come up with the numbers of what is captured, if something is; all other commands that put values into
/// their dialog do so each time.
bool startsAtCapture(const std::string& dialog) {
    return dialog == "CInputSection" || dialog == "CInputLine";
}

bool isOfCapture(const std::string& dialog, const std::string& key, const CaptureState& capture) {
    return startsAtCapture(dialog) &&
           ((key == "patch" && capture.capturedPatch >= 0) || (key == "section" && capture.capturedSection >= 0) ||
            (key == "line" && capture.capturedLine >= 0));
}

/// The value was put there by the command before it showed the dialog, and nobody changed it.
bool isPutByCommand(const CommandReport& report, const std::string& name, const std::string& key,
                    const std::string& text) {
    return std::any_of(report.dialogs.begin(), report.dialogs.end(), [&](const CommandReport::Dialog& dialog) {
        const auto shown = dialog.shownTexts.find(key);
        return dialog.name == name && shown != dialog.shownTexts.end() && shown->second == text &&
               (!dialog.ok || dialog.takenTexts.at(key) == text);
    });
}

} // namespace

/// A value that the command itself put into its dialog stands there in a replay too.
std::map<std::string, std::string> Journal::otherStart(const DialogForm& shown, const DialogTexts& kept,
                                                       const CaptureState& capture) const {
    std::map<std::string, std::string> start;
    const auto others = tracking_.otherDialogs.find(shown.name);
    const auto before = kept.find(shown.name);
    if (others == tracking_.otherDialogs.end() || before == kept.end()) {
        return start;
    }
    for (const auto& [key, text] : others->second) {
        const DialogField* field = shown.find(key);
        const auto value = before->second.find(key);
        if (field != nullptr && value != before->second.end() && fieldText(*field) == value->second &&
            !isOfCapture(shown.name, key, capture)) {
            start[key] = text;
        }
    }
    return start;
}

/// What a dialog keeps of the line is not kept where the line is not run. What the command put there it puts there the
/// next time, too.
void Journal::noteLeftOut(const CommandReport& report, const Surroundings& before, const Surroundings& after) {
    for (const auto& [name, values] : after.dialogs) {
        const auto& old = before.dialogs.at(name);
        for (const auto& [key, text] : values) {
            if (old.at(key) == text || (!startsAtCapture(name) && isPutByCommand(report, name, key, text))) {
                continue;
            }
            auto& others = tracking_.otherDialogs[name];
            if (others.try_emplace(key, old.at(key)).first->second == text) {
                others.erase(key);
            }
        }
    }
}

/// The line is run in a replay too, and leaves what it leaves here, but for fields that could not be set.
void Journal::noteDone(const CommandReport& report, const Surroundings& before, const Surroundings& after) {
    for (auto& [name, others] : tracking_.otherDialogs) {
        for (const auto& [key, text] : after.dialogs.at(name)) {
            if (before.dialogs.at(name).at(key) != text) {
                others.erase(key);
            }
        }
    }
    for (const CommandReport::Dialog& dialog : report.dialogs) {
        if (dialog.ok && after.dialogs.count(dialog.name) > 0) {
            auto& others = tracking_.otherDialogs[dialog.name];
            others.clear();
            for (const CommandReport::Setting& setting : dialog.unreached) {
                others[setting.name] = setting.value;
            }
        }
    }
    tracking_.traces = after.traces;
}

std::string Journal::answersOf(const CommandReport& report) const {
    std::string text;
    for (const CommandReport::Dialog& dialog : report.dialogs) {
        for (const CommandReport::Setting& setting : dialog.settings) {
            text += dialog.ok ? ' ' + scriptSetting(setting.name, setting.value) : std::string();
        }
        text += dialog.ok ? "" : " cancel=dialog";
    }
    for (const CommandReport::Question& question : report.questions) {
        text += question.answer == Answer::Yes ? " answer=yes" : " answer=no";
    }
    for (const CommandReport::Chooser& chooser : report.choosers) {
        text += filesOf(chooser);
    }
    return text;
}

void Journal::needView(int plane) {
    // Those of the tool bar, which paint: a view knows its plane from its last paint.
    constexpr const char* views[] = {"run view.threeD", "run view.frontView", "run view.upView", "run view.sideView"};
    append(views[static_cast<std::size_t>(plane)]);
}

/// What brings a replay to the traces: the numbers of a point, then the curve on which the button is down.
std::vector<std::string> Journal::linesTo(const CaptureTraces& traces) const {
    CaptureTraces known = tracking_.traces;
    const bool movesSection = known.pressedSection != traces.pressedSection;
    const bool movesLine = known.pressedLine != traces.pressedLine && traces.pressedLine >= 0;
    // Where the button goes down on a curve its patch is taken, and a line forgets the section of the point.
    known.patch = movesSection || movesLine ? traces.patch : known.patch;
    known.section = movesLine ? -1 : known.section;
    known.pressedSection = traces.pressedSection;
    known.pressedLine = traces.pressedLine;
    std::vector<std::string> lines;
    if (!(known == traces)) {
        lines.push_back(lineOf({.kind = traces.picked ? Act::Kind::Under : Act::Kind::Beside,
                                .patch = traces.patch,
                                .section = traces.section,
                                .point = traces.point}));
    }
    if (movesSection) {
        lines.push_back(
            lineOf({.kind = Act::Kind::UnderSection, .patch = traces.patch, .section = traces.pressedSection}));
    }
    if (movesLine) {
        lines.push_back(lineOf({.kind = Act::Kind::UnderLine, .patch = traces.patch, .point = traces.pressedLine}));
    }
    return lines;
}

void Journal::needTraces(const CaptureTraces& traces) {
    for (std::string& line : linesTo(traces)) {
        append(std::move(line));
    }
    tracking_.traces = traces;
}

std::vector<std::string> Journal::script(const CaptureTraces& now) const {
    std::vector<std::string> lines = lines_;
    for (std::string& line : linesTo(now)) {
        lines.push_back(std::move(line));
    }
    return lines;
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

void Journal::addCommand(const Command& command, const CommandReport& report, Effect effect, const Surroundings& before,
                         const Surroundings& after) {
    if (isOfTheView(command)) {
        noteLeftOut(report, before, after);
        return;
    }
    if (isLeftOut(report, effect)) {
        noteLeftOut(report, before, after);
        return;
    }
    needTraces(before.traces);
    if (seesThePlane(command.id)) {
        needView(before.plane);
    }
    append(std::string("run ") + command.id + answersOf(report));
    tracking_.bentPlane = command.id == bendCommand ? before.plane : -1;
    noteDone(report, before, after);
}

void Journal::addOpening(const std::vector<std::filesystem::path>& paths, bool hadModel, const CommandReport& report,
                         Effect effect, const Surroundings& after) {
    if (paths.empty() || isLeftOut(report, effect)) {
        return;
    }
    if (paths.size() == 1) {
        append("open " + scriptWord(paths.front().string()));
    } else {
        std::string line = hadModel ? "run file.open answer=yes" : "run file.open";
        for (const std::filesystem::path& path : paths) {
            line += ' ' + scriptSetting("file", path.string());
        }
        append(std::move(line));
    }
    tracking_.bentPlane = -1;
    tracking_.traces = after.traces;
}

void Journal::addSave(const CommandReport& report) {
    // The first question was whether to save.
    std::string line = "run file.save";
    for (std::size_t i = 1; i < report.questions.size(); ++i) {
        line += report.questions[i].answer == Answer::Yes ? " answer=yes" : " answer=no";
    }
    for (const CommandReport::Chooser& chooser : report.choosers) {
        line += filesOf(chooser);
    }
    append(std::move(line));
}

/// The numbers that the act took are those of a replay from here on.
void Journal::addAct(const Act& act, const CaptureTraces& traces) {
    if (act.kind == Act::Kind::WholePatch && act.patch < 0) {
        return; // the button came up that had not gone down in this regime
    }
    if (act.kind == Act::Kind::Drag && act.plane != 0 && act.plane != tracking_.bentPlane) {
        needView(act.plane);
        tracking_.bentPlane = act.plane;
    }
    append(lineOf(act));
    CaptureTraces& known = tracking_.traces;
    switch (act.kind) {
    case Act::Kind::Point:
        known = traces;
        break;
    case Act::Kind::Node:
        known.patch = traces.patch;
        known.point = traces.point;
        known.picked = traces.picked;
        break;
    case Act::Kind::Line:
        known.section = traces.section;
        known.patch = traces.patch;
        known.pressedLine = -1;
        break;
    case Act::Kind::Section:
        known.patch = traces.patch;
        known.pressedSection = -1;
        break;
    case Act::Kind::WholePatch:
        known.patch = traces.patch == act.patch ? act.patch : known.patch;
        break;
    case Act::Kind::Beside:
    case Act::Kind::Under:
    case Act::Kind::UnderSection:
    case Act::Kind::UnderLine:
    case Act::Kind::Drag:
    case Act::Kind::Release:
        break;
    }
}

} // namespace velmora

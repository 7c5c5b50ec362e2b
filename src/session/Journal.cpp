#include "Journal.h"

#include <algorithm>

#include "DialogForm.h"
#include "script_words.h"

namespace velmora {

namespace {

constexpr std::string_view bendCommand = "point.dragAndCorrect";

/// Commands whose work depends on the plane that is looked at.
bool seesThePlane(std::string_view id) {
    return id == bendCommand || id == "model.reflectToSft";
}

bool isUndo(std::string_view id) {
    return id == "patch.undo" || id == "point.undo";
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
    case Act::Kind::Drag:
        return "drag " + numberText(act.place.x) + ' ' + numberText(act.place.y) + ' ' + numberText(act.place.z);
    case Act::Kind::Release:
        break;
    }
    return "release";
}

/// Later settings of the same fields take the place of earlier ones; a point table has no fields.
void addSetting(std::vector<CommandReport::Setting>& settings, const CommandReport::Setting& setting) {
    if (setting.name != "do") {
        settings.erase(std::remove_if(settings.begin(), settings.end(),
                                      [&](const auto& each) { return each.name == setting.name; }),
                       settings.end());
    }
    settings.push_back(setting);
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

void Journal::putWithheldIn() {
    for (auto each = withheld_.rbegin(); each != withheld_.rend(); ++each) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(each->place), each->line);
    }
    withheld_.clear();
}

void Journal::keepSettings(const CommandReport& report) {
    for (const CommandReport::Dialog& dialog : report.dialogs) {
        if (dialog.ok && dialog.name != "CRegularInput") {
            for (const CommandReport::Setting& setting : dialog.settings) {
                addSetting(unwritten_[dialog.name], setting);
            }
        }
    }
}

std::string Journal::settingsOf(const CommandReport::Dialog& dialog) {
    std::vector<CommandReport::Setting> settings = std::move(unwritten_[dialog.name]);
    unwritten_.erase(dialog.name);
    if (settings.empty()) {
        settings = dialog.settings; // as it was done, step by step
    } else {
        for (const CommandReport::Setting& setting : dialog.settings) {
            addSetting(settings, setting);
        }
    }
    std::string text;
    for (const CommandReport::Setting& setting : settings) {
        text += ' ' + scriptSetting(setting.name, setting.value);
    }
    return text;
}

std::string Journal::answersOf(const CommandReport& report) {
    std::string text;
    for (const CommandReport::Dialog& dialog : report.dialogs) {
        text += dialog.ok ? settingsOf(dialog) : " cancel=dialog";
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
    lines_.emplace_back(views[static_cast<std::size_t>(plane)]);
}

void Journal::addCommand(const Command& command, const CommandReport& report, Effect effect, int plane) {
    if (isOfTheView(command)) {
        return;
    }
    if (effect == Effect::Undo && report.outcome() == Outcome::Failed) {
        withheld_.push_back({lines_.size(), std::string("run ") + command.id + answersOf(report)});
        return;
    }
    if (isLeftOut(report, effect)) {
        keepSettings(report);
        return;
    }
    if (isUndo(command.id)) {
        putWithheldIn();
    }
    if (seesThePlane(command.id)) {
        needView(plane);
    }
    lines_.push_back(std::string("run ") + command.id + answersOf(report));
    bentPlane_ = command.id == bendCommand ? plane : -1;
}

void Journal::addOpening(const std::vector<std::filesystem::path>& paths, bool hadModel, const CommandReport& report,
                         Effect effect) {
    if (paths.empty() || isLeftOut(report, effect)) {
        return;
    }
    if (paths.size() == 1) {
        lines_.push_back("open " + scriptWord(paths.front().string()));
    } else {
        std::string line = hadModel ? "run file.open answer=yes" : "run file.open";
        for (const std::filesystem::path& path : paths) {
            line += ' ' + scriptSetting("file", path.string());
        }
        lines_.push_back(line);
    }
    bentPlane_ = -1;
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
    lines_.push_back(line);
}

void Journal::addAct(const Act& act) {
    if (act.kind == Act::Kind::WholePatch && act.patch < 0) {
        return; // the button came up that had not gone down in this regime
    }
    if (act.kind == Act::Kind::Drag && act.plane != 0 && act.plane != bentPlane_) {
        needView(act.plane);
        bentPlane_ = act.plane;
    }
    lines_.push_back(lineOf(act));
}

} // namespace velmora

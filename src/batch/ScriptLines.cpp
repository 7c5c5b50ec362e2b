#include "ScriptLines.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "CPicture.h"
#include "DocumentState.h"
#include "UserInterface.h"
#include "act_lines.h"
#include "command_help.h"
#include "file_events.h"
#include "messages.h"
#include "parse_number.h"
#include "script_words.h"

namespace velmora {

namespace {

/// The longest stretch of time of one line, in milliseconds.
constexpr std::int32_t longestWait = 3'600'000;
/// What the line "quit" stands for, too.
constexpr std::string_view leavingCommand = "file.exit";

std::optional<PixelPoint> parsePixel(const std::string& x, const std::string& y) {
    const auto pixel = [](const std::string& text) -> std::optional<int> {
        const auto number = parseReal(text);
        if (!number || std::abs(*number) > largestPixel) {
            return std::nullopt;
        }
        return static_cast<int>(std::lround(*number));
    };
    const auto column = pixel(x);
    const auto row = pixel(y);
    return column && row ? std::optional(PixelPoint{*column, *row}) : std::nullopt;
}

Json itemsValue(const std::vector<MenuEntry>& entries, const Session& session) {
    Json items = Json::array();
    for (const MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::Submenu) {
            items.push_back({{"text", entry.text}, {"items", itemsValue(entry.entries, session)}});
        } else if (entry.kind == MenuEntry::Kind::Item) {
            const Command* command = findCommand(entry.command);
            const bool on = command != nullptr && session.isOn(*command);
            items.push_back({{"text", entry.text}, {"command", entry.command}, {"on", on}});
        }
    }
    return items;
}

ScriptFailure unknownCommand(const std::string& id) {
    return {"there is no command " + inQuotes(id), "velmora-batch --help-commands tells all commands"};
}

std::string joined(std::span<const std::string> words) {
    std::string text = words.front();
    for (const std::string& word : words.subspan(1)) {
        text += ' ' + word;
    }
    return text;
}

} // namespace

const std::array<ScriptLines::LineKind, 15> ScriptLines::lineKinds = {{
    {"open", &ScriptLines::openPath, "open PATH"},
    {"run", &ScriptLines::runCommand, "run COMMAND [NAME=VALUE ...]"},
    {"size", &ScriptLines::resize, "size WIDTH HEIGHT, in whole pixels up to 1000000"},
    {"mouse", &ScriptLines::moveMouse, "mouse down|move|up|right X Y, in pixels from -1000000 to 1000000"},
    {"key", &ScriptLines::pressKey, "key escape"},
    {"capture", &ScriptLines::capture,
     "capture point K N M, capture node ZONE NODE, capture section K N, capture line K M or capture patch K, from 1"},
    {"drag", &ScriptLines::drag, "drag X Y Z"},
    {"release", &ScriptLines::release, "release"},
    {"wait", &ScriptLines::passTime, "wait MILLISECONDS, a whole number from 0 to 3600000"},
    {"print", &ScriptLines::print, "print WHAT"},
    {"measure", &ScriptLines::measure, "measure A B [C], each K/N/M, ZONE/NODE or X,Y,Z"},
    {"journal", &ScriptLines::writeJournal, "journal FILE"},
    {"picture", &ScriptLines::drawPicture,
     "picture FILE [width=W height=H ground=black|white|clear triad=0|1], sides from 1 to 16384"},
    {"help", &ScriptLines::help, "help COMMAND"},
    {"quit", &ScriptLines::quit, "quit [answer=yes or no]"},
}};

ScriptLines::Next ScriptLines::run(std::int64_t number, std::string_view line) {
    const ScriptLine words = splitLine(line);
    if (words.words.empty() && !words.failure) {
        return Next::GoOn;
    }
    return run(number, [&] { return words.failure ? words.failure : runWords(words.words); });
}

ScriptLines::Next ScriptLines::run(std::int64_t number, std::span<const std::string> words) {
    return run(number, [&] { return runWords(words); });
}

ScriptLines::Next ScriptLines::run(std::int64_t number, const std::function<MaybeFailure()>& work) {
    ui_.beginLine();
    MaybeFailure failure;
    report_ = session_.perform([&] {
        failure = work();
        if (failure) {
            ui_.beQuiet(); // the error tells all
        }
        stage_.paintIfAsked();
    });
    if (!failure) {
        failure = ui_.endLine();
    }
    if (failure) {
        const std::string text = failure->cause + "; " + failure->remedy;
        printer_.print({{"event", "error"}, {"line", number}, {"text", text}});
        return Next::Fail;
    }
    printer_.print({{"event", "done"}, {"line", number}, {"outcome", nameOf(report_.outcome())}});
    return leaving_ ? Next::Leave : Next::GoOn;
}

MaybeFailure ScriptLines::badUsage(const char* word) {
    const auto* kind = std::find_if(lineKinds.begin(), lineKinds.end(),
                                    [word](const LineKind& k) { return std::string_view(word) == k.word; });
    return ScriptFailure{"the line " + inQuotes(word) + " cannot be read so", std::string("write ") + kind->usage};
}

MaybeFailure ScriptLines::runWords(Words words) {
    const std::string& word = words.front();
    const auto* kind =
        std::find_if(lineKinds.begin(), lineKinds.end(), [&word](const LineKind& k) { return word == k.word; });
    if (kind == lineKinds.end()) {
        std::string known;
        for (const LineKind& each : lineKinds) {
            known += std::string(" ") + each.word;
        }
        return ScriptFailure{"there is no line " + inQuotes(word), "begin the line with one of:" + known};
    }
    return (this->*kind->run)(words.subspan(1));
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

MaybeFailure ScriptLines::openPath(Words words) {
    if (words.size() != 1 || !isPath(words[0])) {
        return badUsage("open");
    }
    session_.open({words[0]});
    return std::nullopt;
}

MaybeFailure ScriptLines::resize(Words words) {
    if (words.size() != 2) {
        return badUsage("size");
    }
    const auto width = parseInteger(words[0], -largestPixel, largestPixel);
    const auto height = parseInteger(words[1], -largestPixel, largestPixel);
    if (!width || !height) {
        return badUsage("size");
    }
    stage_.resizeView(*width, *height);
    return std::nullopt;
}

MaybeFailure ScriptLines::moveMouse(Words words) {
    const auto position = words.size() == 3 ? parsePixel(words[1], words[2]) : std::nullopt;
    if (!position) {
        return badUsage("mouse");
    }
    if (words[0] == "down") {
        session_.view().OnLeftButtonDown(*position);
    } else if (words[0] == "move") {
        session_.view().OnMouseMove(*position);
    } else if (words[0] == "up") {
        session_.view().OnLeftButtonUp(*position);
    } else if (words[0] == "right") {
        showContextMenu();
    } else {
        return badUsage("mouse");
    }
    return std::nullopt;
}

void ScriptLines::showContextMenu() {
    if (const Menu* menu = activeContextMenu(session_.state())) {
        printer_.print({{"event", "menu"}, {"name", menu->name}, {"items", itemsValue(menu->entries, session_)}});
    }
}

MaybeFailure ScriptLines::pressKey(Words words) {
    if (words.size() != 1 || words[0] != "escape") {
        return badUsage("key");
    }
    session_.view().OnKeyDown(ViewKey::Escape);
    return stage_.takeCloseRequest() ? stage_.leaveProgram() : std::nullopt;
}

MaybeFailure ScriptLines::capture(Words words) {
    const auto wanted = parseCapture(words);
    return wanted ? act(*wanted, "capture " + joined(words)) : badUsage("capture");
}

MaybeFailure ScriptLines::drag(Words words) {
    const auto wanted = parseDrag(words);
    return wanted ? act(*wanted, "drag " + joined(words)) : badUsage("drag");
}

MaybeFailure ScriptLines::release(Words words) {
    Act end;
    end.kind = Act::Kind::Release;
    return words.empty() ? act(end, "release") : badUsage("release");
}

MaybeFailure ScriptLines::act(const Act& act, const std::string& line) {
    return actFailure(session_.act(act), act, line);
}

MaybeFailure ScriptLines::writeJournal(Words words) {
    if (words.size() != 1 || !isPath(words[0])) {
        return badUsage("journal");
    }
    const std::filesystem::path path = words[0];
    if (session_.holdsModel(path)) {
        session_.ui().showMessage(message::holdsModel(path.filename().string()));
    } else if (writeScript(path, session_.script())) {
        tellWritten(session_.ui(), path, "script");
    } else {
        session_.ui().showMessage(message::cannotSave);
    }
    return std::nullopt;
}

namespace {

constexpr std::pair<const char*, PictureGround> grounds[] = {
    {"black", PictureGround::Black}, {"white", PictureGround::White}, {"clear", PictureGround::Clear}};

/// Takes NAME=VALUE; false when there is no such one.
bool takeSetting(const Assignment& setting, PictureSettings& settings) {
    if (setting.name == "width" || setting.name == "height") {
        const auto side = parseInteger(setting.value, 1, largestPictureSide);
        (setting.name == "width" ? settings.width : settings.height) = side.value_or(0);
        return side.has_value();
    }
    if (setting.name == "triad") {
        settings.triad = setting.value == "1";
        return setting.value == "0" || setting.value == "1";
    }
    const auto* const ground = std::find_if(std::begin(grounds), std::end(grounds),
                                            [&](const auto& each) { return setting.value == each.first; });
    if (setting.name != "ground" || ground == std::end(grounds)) {
        return false;
    }
    settings.ground = ground->second;
    return true;
}

} // namespace

MaybeFailure ScriptLines::drawPicture(Words words) {
    if (words.empty() || !isPath(words[0])) {
        return badUsage("picture");
    }
    PictureSettings settings;
    settings.width = session_.view().viewport.width;
    settings.height = session_.view().viewport.height;
    for (const std::string& word : words.subspan(1)) {
        const auto setting = asAssignment(word);
        if (!setting || !takeSetting(*setting, settings)) {
            return badUsage("picture");
        }
    }
    if (std::max(settings.width, settings.height) > largestPictureSide) {
        return badUsage("picture");
    }
    switch (writePicture(session_, words[0], settings, stage_.pixelDrawer())) {
    case PictureResult::Written:
        break;
    case PictureResult::UnknownType:
        return ScriptFailure{"no picture of the type of " + inQuotes(words[0]) + " can be drawn here",
                             stage_.pixelDrawer() ? "give a file of type .svg or .png"
                                                  : "give a file of type .svg; .png needs the package velmora and its "
                                                    "OpenGL"};
    case PictureResult::HoldsModel:
        session_.ui().showMessage(message::holdsModel(std::filesystem::path(words[0]).filename().string()));
        break;
    case PictureResult::Failed:
        session_.ui().showMessage(message::cannotSave);
        break;
    }
    return std::nullopt;
}

MaybeFailure ScriptLines::passTime(Words words) {
    const auto duration = words.size() == 1 ? parseInteger(words[0], 0, longestWait) : std::nullopt;
    if (!duration) {
        return badUsage("wait");
    }
    stage_.passTime(*duration);
    return std::nullopt;
}

MaybeFailure ScriptLines::print(Words words) {
    if (words.empty()) {
        return badUsage("print");
    }
    if (words.size() == 1 && words[0] == "read") {
        Json events = Json::array();
        const std::vector<FileRead>& reads = session_.filesRead();
        std::transform(reads.begin(), reads.end(), std::back_inserter(events), readEvent);
        sayValue("read", std::move(events));
        return std::nullopt;
    }
    if (words.size() == 1 && words[0] == "version") {
        sayValue("version", versionValue(static_cast<bool>(stage_.pixelDrawer())));
        return std::nullopt;
    }
    if (words.size() == 1 && words[0] == "journal") {
        sayValue("journal", session_.script());
        return std::nullopt;
    }
    try {
        return sayIfFound(joined(words), printedValue(words, session_.state(), session_.view()));
    } catch (const std::bad_alloc&) {
        return tooLargeToPrint(joined(words)); // the line fails, and the model is still there
    }
}

MaybeFailure ScriptLines::measure(Words words) {
    if (words.size() != 2 && words.size() != 3) {
        return badUsage("measure");
    }
    return sayIfFound("measure", measuredValue(words, session_.state()));
}

MaybeFailure ScriptLines::sayIfFound(const std::string& what, PrintedValue value) {
    if (const auto* failure = std::get_if<ScriptFailure>(&value)) {
        return *failure;
    }
    sayValue(what, std::move(*std::get_if<Json>(&value)));
    return std::nullopt;
}

MaybeFailure ScriptLines::help(Words words) {
    if (words.size() != 1) {
        return badUsage("help");
    }
    const Command* command = findCommand(words[0]);
    if (command == nullptr) {
        return unknownCommand(words[0]);
    }
    sayValue("help " + words[0], commandHelp(*command));
    return std::nullopt;
}

void ScriptLines::sayValue(const std::string& what, Json value) {
    printer_.print({{"event", "print"}, {"what", what}, {"value", std::move(value)}});
}

MaybeFailure ScriptLines::quit(Words words) {
    if (auto failure = beginCommand(words)) {
        return failure;
    }
    return stage_.leaveProgram();
}

// ---- Commands -------------------------------------------------------------------------------------------------------

MaybeFailure ScriptLines::beginCommand(Words input) {
    auto parsed = parseCommandInput(input);
    if (const auto* failure = std::get_if<ScriptFailure>(&parsed)) {
        return *failure;
    }
    ui_.beginLine(std::move(*std::get_if<CommandInput>(&parsed)));
    return std::nullopt;
}

MaybeFailure ScriptLines::runCommand(Words words) {
    if (words.empty()) {
        return badUsage("run");
    }
    const Command* command = findCommand(words[0]);
    if (command == nullptr) {
        return unknownCommand(words[0]);
    }
    if (!session_.isOn(*command)) {
        return ScriptFailure{"the command " + inQuotes(command->id) + " is off",
                             "bring the model into a state in which it is on: print commands tells which are"};
    }
    if (auto failure = beginCommand(words.subspan(1))) {
        return failure;
    }
    if (words[0] == leavingCommand) {
        return stage_.leaveProgram();
    }
    session_.run(*command);
    return std::nullopt;
}

} // namespace velmora

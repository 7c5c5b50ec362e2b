#include "BatchSession.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "about.h"
#include "command_help.h"
#include "file_events.h"
#include "messages.h"
#include "parse_number.h"

namespace velmora {

namespace {

/// The longest stretch of time of one line, in milliseconds.
constexpr std::int32_t longestWait = 3'600'000;

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

const std::array<BatchSession::LineKind, 10> BatchSession::lineKinds = {{
    {"open", &BatchSession::openPath, "open PATH"},
    {"run", &BatchSession::runCommand, "run COMMAND [NAME=VALUE ...]"},
    {"size", &BatchSession::resize, "size WIDTH HEIGHT, in whole pixels up to 1000000"},
    {"mouse", &BatchSession::moveMouse, "mouse down|move|up|right X Y, in pixels from -1000000 to 1000000"},
    {"key", &BatchSession::pressKey, "key escape"},
    {"wait", &BatchSession::passTime, "wait MILLISECONDS, a whole number from 0 to 3600000"},
    {"print", &BatchSession::print, "print WHAT"},
    {"measure", &BatchSession::measure, "measure A B [C], each K/N/M, ZONE/NODE or X,Y,Z"},
    {"help", &BatchSession::help, "help COMMAND"},
    {"quit", &BatchSession::quit, "quit [answer=yes or no]"},
}};

BatchSession::BatchSession(EventPrinter& printer, const Setup& setup)
    : printer_(printer), ui_(printer), session_(ui_, surface_, *this, setup.documentsFolder), echo_(setup.echo) {
    session_.view().OnCreate();
    session_.view().OnSize(setup.viewSize.width, setup.viewSize.height);
    session_.start();
    paint();
}

BatchSession::Next BatchSession::run(std::int64_t number, std::string_view line) {
    const ScriptLine words = splitLine(line);
    if (words.words.empty() && !words.failure) {
        return Next::GoOn;
    }
    if (echo_) {
        printer_.print({{"event", "echo"}, {"line", number}, {"text", std::string(line)}});
    }
    return carryOut(number, [&] { return words.failure ? words.failure : runWords(words.words); });
}

BatchSession::Next BatchSession::run(std::int64_t number, std::span<const std::string> words) {
    return carryOut(number, [&] { return runWords(words); });
}

BatchSession::Next BatchSession::run(std::int64_t number, const std::function<MaybeFailure(Session&)>& work) {
    return carryOut(number, [&] { return work(session_); });
}

BatchSession::Next BatchSession::carryOut(std::int64_t number, const std::function<MaybeFailure()>& work) {
    ui_.beginLine();
    MaybeFailure failure;
    report_ = session_.perform([&] {
        failure = work();
        if (failure) {
            ui_.beQuiet(); // the error tells all
        }
        paintIfAsked();
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

MaybeFailure BatchSession::badUsage(const char* word) {
    const auto* kind = std::find_if(lineKinds.begin(), lineKinds.end(),
                                    [word](const LineKind& k) { return std::string_view(word) == k.word; });
    return ScriptFailure{"the line " + inQuotes(word) + " cannot be read so", std::string("write ") + kind->usage};
}

MaybeFailure BatchSession::runWords(Words words) {
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

MaybeFailure BatchSession::openPath(Words words) {
    if (words.size() != 1 || !isPath(words[0])) {
        return badUsage("open");
    }
    session_.open({words[0]});
    return std::nullopt;
}

MaybeFailure BatchSession::resize(Words words) {
    if (words.size() != 2) {
        return badUsage("size");
    }
    const auto width = parseInteger(words[0], -largestPixel, largestPixel);
    const auto height = parseInteger(words[1], -largestPixel, largestPixel);
    if (!width || !height) {
        return badUsage("size");
    }
    session_.view().OnSize(*width, *height);
    if (*width >= 1 && *height >= 1) {
        // A window that changed its size is painted anew.
        surface_.requestRepaint();
    }
    return std::nullopt;
}

MaybeFailure BatchSession::moveMouse(Words words) {
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

void BatchSession::showContextMenu() {
    if (const Menu* menu = activeContextMenu(session_.document())) {
        printer_.print({{"event", "menu"}, {"name", menu->name}, {"items", itemsValue(menu->entries, session_)}});
    }
}

MaybeFailure BatchSession::pressKey(Words words) {
    if (words.size() != 1 || words[0] != "escape") {
        return badUsage("key");
    }
    session_.view().OnKeyDown(ViewKey::Escape);
    if (surface_.takeCloseRequest()) {
        exit();
    }
    return std::nullopt;
}

MaybeFailure BatchSession::passTime(Words words) {
    const auto duration = words.size() == 1 ? parseInteger(words[0], 0, longestWait) : std::nullopt;
    if (!duration) {
        return badUsage("wait");
    }
    const std::int64_t end = surface_.clock() + *duration;
    while (surface_.advanceToTick(end)) {
        session_.view().OnTimer();
        paint();
    }
    surface_.advanceTo(end);
    return std::nullopt;
}

MaybeFailure BatchSession::print(Words words) {
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
    try {
        return sayIfFound(joined(words), printedValue(words, session_.document(), session_.view()));
    } catch (const std::bad_alloc&) {
        return tooLargeToPrint(joined(words)); // the line fails, and the model is still there
    }
}

MaybeFailure BatchSession::measure(Words words) {
    if (words.size() != 2 && words.size() != 3) {
        return badUsage("measure");
    }
    return sayIfFound("measure", measuredValue(words, session_.document()));
}

MaybeFailure BatchSession::sayIfFound(const std::string& what, PrintedValue value) {
    if (const auto* failure = std::get_if<ScriptFailure>(&value)) {
        return *failure;
    }
    sayValue(what, std::move(*std::get_if<Json>(&value)));
    return std::nullopt;
}

MaybeFailure BatchSession::help(Words words) {
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

void BatchSession::sayValue(const std::string& what, Json value) {
    printer_.print({{"event", "print"}, {"what", what}, {"value", std::move(value)}});
}

MaybeFailure BatchSession::quit(Words words) {
    if (auto failure = beginCommand(words)) {
        return failure;
    }
    exit();
    return std::nullopt;
}

// ---- Commands -------------------------------------------------------------------------------------------------------

MaybeFailure BatchSession::beginCommand(Words input) {
    auto parsed = parseCommandInput(input);
    if (const auto* failure = std::get_if<ScriptFailure>(&parsed)) {
        return *failure;
    }
    ui_.beginLine(std::move(*std::get_if<CommandInput>(&parsed)));
    return std::nullopt;
}

MaybeFailure BatchSession::runCommand(Words words) {
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
    session_.run(*command);
    return std::nullopt;
}

void BatchSession::exit() {
    // Whoever did not answer the question does not leave by it.
    leaving_ = session_.leave() && !ui_.failure();
}

void BatchSession::showGuide() {
    session_.document().ShowStatus("The user guide is shown by the window; --help-commands lists the commands");
}

void BatchSession::showKeys() {
    session_.document().ShowStatus("Keys and mouse are the window's; the user guide lists them");
}

void BatchSession::showAbout() {
    session_.document().ui().showMessage({Severity::Info, aboutText()});
}

void BatchSession::toggleFileReport() {
    session_.document().ui().showMessage(message::panelOfTheWindow("print read"));
}

// ---- Painting -------------------------------------------------------------------------------------------------------

void BatchSession::paint() {
    session_.view().OnDraw();
    surface_.clearRepaintRequest();
}

void BatchSession::paintIfAsked() {
    if (surface_.repaintRequested()) {
        paint();
    }
}

} // namespace velmora

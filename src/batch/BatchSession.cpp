#include "BatchSession.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "about.h"
#include "parse_number.h"
#include "print_values.h"

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

Json itemsValue(const std::vector<MenuEntry>& entries, const VelmoraDoc& doc, const VelmoraView& view) {
    Json items = Json::array();
    for (const MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::Submenu) {
            items.push_back({{"text", entry.text}, {"items", itemsValue(entry.entries, doc, view)}});
        } else if (entry.kind == MenuEntry::Kind::Item) {
            const Command* command = findCommand(entry.command);
            const bool on = command != nullptr && commandIsOn(*command, doc, view);
            items.push_back({{"text", entry.text}, {"command", entry.command}, {"on", on}});
        }
    }
    return items;
}

} // namespace

const std::array<BatchSession::LineKind, 8> BatchSession::lineKinds = {{
    {"open", &BatchSession::openPath, "open PATH"},
    {"run", &BatchSession::runCommand, "run COMMAND [NAME=VALUE ...]"},
    {"size", &BatchSession::resize, "size WIDTH HEIGHT, in whole pixels up to 1000000"},
    {"mouse", &BatchSession::moveMouse, "mouse down|move|up|right X Y, in pixels from -1000000 to 1000000"},
    {"key", &BatchSession::pressKey, "key escape"},
    {"wait", &BatchSession::passTime, "wait MILLISECONDS, a whole number from 0 to 3600000"},
    {"print", &BatchSession::print, "print WHAT"},
    {"quit", &BatchSession::quit, "quit [answer=yes or no]"},
}};

BatchSession::BatchSession(EventPrinter& printer, const Setup& setup)
    : printer_(printer), ui_(printer), doc_(ui_, setup.documentsFolder), view_(doc_, surface_), echo_(setup.echo) {
    view_.OnCreate();
    view_.OnSize(setup.viewSize.width, setup.viewSize.height);
    doc_.onNewDocument();
    paint();
}

BatchSession::Outcome BatchSession::run(std::int64_t number, std::string_view line) {
    const ScriptLine words = splitLine(line);
    if (words.words.empty() && !words.failure) {
        return Outcome::GoOn;
    }
    if (echo_) {
        printer_.print({{"event", "echo"}, {"line", number}, {"text", std::string(line)}});
    }
    lineNumber_ = number;
    ui_.beginLine();
    MaybeFailure failure = runWords(words);
    if (!failure) {
        paintIfAsked();
        failure = ui_.endLine();
    }
    if (failure) {
        const std::string text = failure->cause + "; " + failure->remedy;
        printer_.print({{"event", "error"}, {"line", number}, {"text", text}});
        return Outcome::Fail;
    }
    printer_.print({{"event", "done"}, {"line", number}});
    return leaving_ ? Outcome::Leave : Outcome::GoOn;
}

MaybeFailure BatchSession::badUsage(const char* word) {
    const auto* kind = std::find_if(lineKinds.begin(), lineKinds.end(),
                                    [word](const LineKind& k) { return std::string_view(word) == k.word; });
    return ScriptFailure{"the line " + inQuotes(word) + " cannot be read so", std::string("write ") + kind->usage};
}

MaybeFailure BatchSession::runWords(const ScriptLine& line) {
    if (line.failure) {
        return line.failure;
    }
    const std::string& word = line.words.front();
    const auto* kind =
        std::find_if(lineKinds.begin(), lineKinds.end(), [&word](const LineKind& k) { return word == k.word; });
    if (kind == lineKinds.end()) {
        std::string known;
        for (const LineKind& each : lineKinds) {
            known += std::string(" ") + each.word;
        }
        return ScriptFailure{"there is no line " + inQuotes(word), "begin the line with one of:" + known};
    }
    return (this->*kind->run)(Words(line.words).subspan(1));
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

MaybeFailure BatchSession::openPath(Words words) {
    if (words.size() != 1 || !isPath(words[0])) {
        return badUsage("open");
    }
    doc_.onOpenDocument(words[0]);
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
    view_.OnSize(*width, *height);
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
        view_.OnLeftButtonDown(*position);
    } else if (words[0] == "move") {
        view_.OnMouseMove(*position);
    } else if (words[0] == "up") {
        view_.OnLeftButtonUp(*position);
    } else if (words[0] == "right") {
        showContextMenu();
    } else {
        return badUsage("mouse");
    }
    return std::nullopt;
}

void BatchSession::showContextMenu() {
    if (const Menu* menu = activeContextMenu(doc_)) {
        printer_.print({{"event", "menu"}, {"name", menu->name}, {"items", itemsValue(menu->entries, doc_, view_)}});
    }
}

MaybeFailure BatchSession::pressKey(Words words) {
    if (words.size() != 1 || words[0] != "escape") {
        return badUsage("key");
    }
    view_.OnKeyDown(ViewKey::Escape);
    return surface_.takeCloseRequest() ? leave() : std::nullopt;
}

MaybeFailure BatchSession::passTime(Words words) {
    const auto duration = words.size() == 1 ? parseInteger(words[0], 0, longestWait) : std::nullopt;
    if (!duration) {
        return badUsage("wait");
    }
    const std::int64_t end = surface_.clock() + *duration;
    while (surface_.advanceToTick(end)) {
        view_.OnTimer();
        paint();
    }
    surface_.advanceTo(end);
    return std::nullopt;
}

MaybeFailure BatchSession::print(Words words) {
    if (words.empty()) {
        return badUsage("print");
    }
    std::string what = words.front();
    for (const std::string& word : words.subspan(1)) {
        what += ' ' + word;
    }
    try {
        auto value = printedValue(words, doc_, view_);
        if (const auto* failure = std::get_if<ScriptFailure>(&value)) {
            return *failure;
        }
        printer_.print({{"event", "print"}, {"what", what}, {"value", std::move(*std::get_if<Json>(&value))}});
    } catch (const std::bad_alloc&) {
        return tooLargeToPrint(what); // the line fails, and the model is still there
    }
    return std::nullopt;
}

MaybeFailure BatchSession::quit(Words words) {
    if (auto failure = beginCommand(words)) {
        return failure;
    }
    return leave();
}

MaybeFailure BatchSession::leave() {
    if (!doc_.saveModified() && !ui_.failure()) {
        return ScriptFailure{"the model could not be saved, so the program stays",
                             "make its file writable, save it elsewhere, or leave with answer=no"};
    }
    leaving_ = !ui_.failure();
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
        return ScriptFailure{"there is no command " + inQuotes(words[0]),
                             "velmora-batch --help-commands tells all commands"};
    }
    if (!commandIsOn(*command, doc_, view_)) {
        return ScriptFailure{"the command " + inQuotes(command->id) + " is off",
                             "bring the model into a state in which it is on: print commands tells which are"};
    }
    if (auto failure = beginCommand(words.subspan(1))) {
        return failure;
    }
    if (command->id == std::string_view("file.exit")) {
        return leave();
    }
    carryOut(*command);
    return std::nullopt;
}

void BatchSession::carryOut(const Command& command) {
    switch (command.owner) {
    case CommandOwner::Document:
        doc_.runCommand(command.run);
        break;
    case CommandOwner::View:
        view_.runViewCommand(command.id);
        break;
    case CommandOwner::Shell:
        runShellCommand(command);
        break;
    }
}

void BatchSession::runShellCommand(const Command& command) {
    const std::string_view id = command.id;
    if (id == "help.about") {
        ui_.showMessage(aboutText());
    } else if (id == "help.topics") {
        doc_.ShowStatus("The user guide is shown by the window; --help-commands lists the commands");
    }
    // The others show and hide parts of a frame: there is none here.
}

// ---- Painting -------------------------------------------------------------------------------------------------------

void BatchSession::paint() {
    view_.OnDraw();
    surface_.clearRepaintRequest();
}

void BatchSession::paintIfAsked() {
    if (surface_.repaintRequested()) {
        paint();
    }
}

} // namespace velmora

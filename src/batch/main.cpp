#include <CLI/CLI.hpp>

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>

#include "BatchSession.h"
#include "about.h"
#include "documents_folder.h"
#include "parse_number.h"

namespace {

using velmora::BatchSession;
using velmora::ViewSize;
using Outcome = BatchSession::Outcome;

enum ExitStatus { Success = 0, ScriptEnded = 1, BadUsage = 2 };

struct Options {
    bool json = false;
    bool echo = false;
    bool helpCommands = false;
    std::string size = "800x600";
    std::vector<std::string> lines;
    std::string script;
    bool hasScript = false;
};

std::optional<ViewSize> parseSize(const std::string& text) {
    const std::size_t cross = text.find('x');
    if (cross == std::string::npos) {
        return std::nullopt;
    }
    const std::string_view words = text;
    const auto width = velmora::parseInteger(words.substr(0, cross), 1, velmora::largestPixel);
    const auto height = velmora::parseInteger(words.substr(cross + 1), 1, velmora::largestPixel);
    return width && height ? std::optional(ViewSize{*width, *height}) : std::nullopt;
}

void declareOptions(CLI::App& app, Options& options) {
    app.set_version_flag("--version", std::string("velmora-batch ") + velmora::programVersion());
    app.add_flag("--json", options.json, "Write events as one JSON object a line");
    app.add_flag("--echo", options.echo, "Write each line before it runs");
    app.add_option("--size", options.size, "The view's size in pixels")
        ->type_name("WIDTHxHEIGHT")
        ->capture_default_str();
    app.add_option("-c", options.lines, "Run a line, before SCRIPT; may be repeated")
        ->type_name("LINE")
        ->allow_extra_args(false);
    app.add_flag("--help-commands", options.helpCommands, "Print the commands that the line \"run\" takes");
    app.add_option("SCRIPT", options.script, "The script, \"-\" for standard input; its lines count from 1")
        ->type_name("");
}

void printCommands() {
    constexpr int idWidth = 28;
    constexpr int textWidth = 32;
    for (const velmora::Command& command : velmora::commandTable()) {
        std::cout << std::left << std::setw(idWidth) << command.id << std::setw(textWidth)
                  << velmora::plainText(command.menuText) << command.statusText << '\n';
    }
}

/// Runs one line. What no line should bring about, such as a lack of memory, ends the script like any other failure.
Outcome runLine(BatchSession& session, velmora::EventPrinter& printer, std::int64_t number, const std::string& line) {
    try {
        return session.run(number, line);
    } catch (const std::exception& error) {
        const std::string text = std::string("the line failed: ") + error.what() + "; give it less to do";
        printer.print({{"event", "error"}, {"line", number}, {"text", text}});
        return Outcome::Fail;
    }
}

/// Runs the lines in their order; the script's own lines come from `script`, if there is one.
Outcome runLines(BatchSession& session, velmora::EventPrinter& printer, const Options& options, std::istream* script) {
    Outcome outcome = Outcome::GoOn;
    std::int64_t number = 0;
    for (const std::string& line : options.lines) {
        outcome = runLine(session, printer, ++number, line);
        if (outcome != Outcome::GoOn) {
            return outcome;
        }
    }
    number = 0;
    std::string line;
    while (outcome == Outcome::GoOn && script != nullptr && std::getline(*script, line)) {
        outcome = runLine(session, printer, ++number, line);
    }
    return outcome;
}

int runScript(const Options& options, ViewSize size) {
    std::ifstream file;
    std::istream* script = nullptr;
    if (options.hasScript && options.script == "-") {
        script = &std::cin;
    } else if (options.hasScript) {
        std::error_code error;
        file.open(options.script);
        if (!file || std::filesystem::is_directory(options.script, error)) {
            std::cerr << "velmora-batch: the script \"" << options.script << "\" cannot be read\n";
            return BadUsage;
        }
        script = &file;
    }
    std::unique_ptr<velmora::EventPrinter> printer;
    if (options.json) {
        printer = std::make_unique<velmora::JsonEventPrinter>(std::cout);
    } else {
        printer = std::make_unique<velmora::TextEventPrinter>(std::cout);
    }
    BatchSession session(*printer, {velmora::documentsFolder(velmora::processEnvironment), size, options.echo});
    const Outcome outcome = runLines(session, *printer, options, script);
    return outcome == Outcome::Fail || !std::cout ? ScriptEnded : Success;
}

int runProgram(int argc, char** argv) {
    Options options;
    CLI::App app("Runs scripts on surface geometry: the commands of Velmora without its window", "velmora-batch");
    declareOptions(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? Success : BadUsage;
    }
    options.hasScript = app.count("SCRIPT") > 0;
    if (options.helpCommands) {
        printCommands();
        return Success;
    }
    const auto size = parseSize(options.size);
    if (!size) {
        std::cerr << "velmora-batch: the size \"" << options.size << "\" is no WIDTHxHEIGHT in pixels\n";
        return BadUsage;
    }
    return runScript(options, *size);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return runProgram(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "velmora-batch: " << error.what() << '\n';
        return ScriptEnded;
    }
}

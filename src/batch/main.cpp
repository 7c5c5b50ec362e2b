#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>

#include "BatchSession.h"
#include "about.h"
#include "command_help.h"
#include "documents_folder.h"
#include "parse_number.h"
#include "script_file.h"
#include "visible_text.h"

namespace {

using velmora::BatchSession;
using velmora::ViewSize;
using Next = BatchSession::Next;

enum ExitStatus {
    Success = 0,
    ScriptEnded = 1,
    BadUsage = 2,
    // Of strict scripts:
    FileNotRead = 3,
    FileNotWritten = 4,
    LineRefused = 5,
};

struct Options {
    bool json = false;
    bool echo = false;
    bool strict = false;
    bool keepGoing = false;
    bool overwrite = false;
    std::optional<std::string> helpCommands; ///< empty: of all
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
    auto* strict = app.add_flag("--strict", options.strict,
                                "End at the first line that did not do all that it says: status 3 when a file could "
                                "not be read whole, 4 when one could not be written, 5 when a command was refused");
    app.add_flag("--keep-going", options.keepGoing, "Go on behind a line that is an error; the status is 1 at the end")
        ->excludes(strict);
    app.add_flag("--overwrite", options.overwrite,
                 "Write over files without an answer, so that a journal that saves can be run again where it was made");
    app.add_option("--help-commands", options.helpCommands,
                   "Print the commands that the line \"run\" takes, or the fields of one as JSON")
        ->type_name("[COMMAND]")
        ->expected(0, 1);
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

/// Prints all commands, or what there is to know of one.
ExitStatus printHelp(const std::string& id) {
    if (id.empty()) {
        printCommands();
        return Success;
    }
    const velmora::Command* command = velmora::findCommand(id);
    if (command == nullptr) {
        std::cerr << "velmora-batch: there is no command \"" << velmora::visibleText(id) << "\"\n";
        return BadUsage;
    }
    std::cout << velmora::commandHelp(*command) << '\n';
    return Success;
}

/// A script on its way: runs lines until one ends it.
class ScriptRun {
public:
    ScriptRun(BatchSession& session, velmora::EventPrinter& printer, const Options& options)
        : session_(session), printer_(printer), options_(options) {}

    /// Runs a line; false when it ends the script.
    bool take(std::int64_t number, const std::string& line) {
        const Next next = run(number, line);
        if (next == Next::Fail) {
            status_ = ScriptEnded;
            return options_.keepGoing;
        }
        if (options_.strict) {
            status_ = strictStatus();
            if (status_ != Success) {
                std::cerr << "velmora-batch: line " << number << ": " << nameOf(session_.report().outcome())
                          << ", and the script ends by --strict\n";
            }
        }
        return next == Next::GoOn && (status_ == Success || options_.keepGoing);
    }
    /// The system could not read the script on.
    void breakOff(std::int64_t number) {
        printer_.print({{"event", "error"},
                        {"line", number},
                        {"text", "the script cannot be read on; nothing behind it was run"}});
        status_ = ScriptEnded;
    }
    ExitStatus status() const { return status_; }

private:
    /// What no line should bring about, such as a lack of memory, is an error like any other.
    Next run(std::int64_t number, const std::string& line) {
        try {
            return session_.run(number, line);
        } catch (const std::exception& error) {
            const std::string text = std::string("the line failed: ") + error.what() + "; give it less to do";
            printer_.print({{"event", "error"}, {"line", number}, {"text", text}});
            return Next::Fail;
        }
    }

    /// The status with which the last line ends a strict script; Success when it does not.
    ExitStatus strictStatus() const {
        const velmora::CommandReport& report = session_.report();
        switch (report.outcome()) {
        case velmora::Outcome::Ok:
        case velmora::Outcome::Cancelled:
            return Success;
        case velmora::Outcome::Refused:
            return LineRefused;
        case velmora::Outcome::Partial:
            return FileNotRead;
        case velmora::Outcome::Failed:
            break;
        }
        return report.writeFailed() ? FileNotWritten : FileNotRead;
    }

    BatchSession& session_;
    velmora::EventPrinter& printer_;
    const Options& options_;
    ExitStatus status_ = Success;
};

/// Runs the lines in their order; the script's own lines come from `script`, if there is one.
ExitStatus runLines(BatchSession& session, velmora::EventPrinter& printer, const Options& options,
                    std::istream* script) {
    ScriptRun run(session, printer, options);
    std::int64_t number = 0;
    bool goesOn = true;
    for (auto line = options.lines.begin(); goesOn && line != options.lines.end(); ++line) {
        goesOn = run.take(++number, *line);
    }
    number = 0;
    std::string line;
    while (goesOn && script != nullptr && velmora::readScriptLine(*script, ++number, line)) {
        goesOn = run.take(number, line);
    }
    if (goesOn && script != nullptr && velmora::readingFailed(*script)) {
        run.breakOff(number);
    }
    return run.status();
}

/// The stream of the script's lines; null when it cannot be read.
std::istream* openScript(const std::string& name, std::ifstream& file) {
    if (name == "-") {
        return velmora::canHoldScript(STDIN_FILENO) ? &std::cin : nullptr;
    }
    if (!velmora::canHoldScript(name)) {
        return nullptr;
    }
    file.open(name);
    return file ? &file : nullptr;
}

int runScript(const Options& options, ViewSize size) {
    std::ifstream file;
    std::istream* const script = options.hasScript ? openScript(options.script, file) : nullptr;
    if (options.hasScript && script == nullptr) {
        std::cerr << "velmora-batch: the script \"" << velmora::visibleText(options.script) << "\" cannot be read\n";
        return BadUsage;
    }
    std::unique_ptr<velmora::EventPrinter> printer;
    if (options.json) {
        printer = std::make_unique<velmora::JsonEventPrinter>(std::cout);
    } else {
        printer = std::make_unique<velmora::TextEventPrinter>(std::cout);
    }
    BatchSession session(
        *printer, {velmora::documentsFolder(velmora::processEnvironment), size, options.echo, options.overwrite});
    const ExitStatus status = runLines(session, *printer, options, script);
    return status == Success && !std::cout ? ScriptEnded : status;
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
        return printHelp(*options.helpCommands);
    }
    if (!options.hasScript && options.lines.empty()) {
        std::cerr << app.help();
        return BadUsage;
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
    // A file that may not grow on is a write that fails, and no end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return runProgram(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "velmora-batch: " << error.what() << '\n';
        return ScriptEnded;
    }
}

// journal_runner PROGRAM NAME.script MODELS...
//
// Runs the script by `PROGRAM --json` in a fresh folder with the files of the MODELS folders whose names it contains,
// and then its journal in another one with the same files. Both must end with the same model, buffers, zBlock, captures
// and files, to the last bit, and with the same journal. Lines that are errors end themselves alone in the script; the
// journal must have none. NAME.differs names, one a line, what of the printed values the journal does not bring about;
// the reason stands in a line that begins with "#".

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "Process.h"
#include "ScriptFolder.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using velmora::test::copyNamedFiles;
using velmora::test::replaced;
using velmora::test::ScriptFolder;
using velmora::test::textOf;

constexpr const char* journalName = "journal-of-the-run.script";

// What a journal promises; what is looked at, and what was said last, is no part of it.
const char* const lists[] = {"patches",        "region",     "fieldPatches", "referencePatches", "referenceRegion",
                             "blockClipboard", "lineBuffer", "markers",      "sftPoints",        "sftTargets",
                             "undoPatches",    "undoRegion", "interLine",    "journal",          "curve"};
const std::set<std::string> notPromised = {"status", "leftButtonDown", "spinTimerOn"};

bool leaves(const std::string& line) {
    return line.starts_with("quit") || line.starts_with("run file.exit") || line.starts_with("key escape");
}

std::string linesUpToTheEnd(const std::string& script) {
    std::istringstream lines(script);
    std::string kept;
    for (std::string line; std::getline(lines, line) && !leaves(line);) {
        kept += line + '\n';
    }
    return kept;
}

struct Run {
    json state;
    std::map<std::string, json> values;
    std::map<std::string, std::string> files;
    std::vector<json> errors;
    int exit = -1;
};

Run runIn(const fs::path& folder, const std::string& program, const std::string& script) {
    std::ofstream(folder / "run.script") << script << "\nprint state\njournal " << journalName << '\n';
    {
        std::ofstream file(folder / "run.script", std::ios::app);
        for (const char* list : lists) {
            file << "print " << list << '\n';
        }
    }
    const velmora::test::ProcessResult result =
        velmora::test::runProcess({program, "--json", "--keep-going", "run.script"}, folder);
    Run run;
    run.exit = result.status;
    std::string lower = folder.string();
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (const std::string& line : result.lines) {
        const json event = json::parse(replaced(replaced(line, folder.string(), "${FOLDER}"), lower, "${FOLDER}"));
        if (event.at("event") == "error") {
            run.errors.push_back(event);
        } else if (event.at("event") == "print" && event.at("what") == "state") {
            run.state = event.at("value");
        } else if (event.at("event") == "print") {
            run.values[event.at("what")] = event.at("value");
        }
    }
    fs::remove(folder / "run.script");
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            run.files[entry.path().lexically_relative(folder).string()] = textOf(entry.path());
        }
    }
    return run;
}

std::set<std::string> knownToDiffer(fs::path script) {
    std::istringstream lines(textOf(script.replace_extension("differs")));
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string name;
        if (words >> name && name != "#") {
            names.insert(name);
        }
    }
    return names;
}

bool sameStates(const Run& once, const Run& again, const std::set<std::string>& different) {
    bool same = true;
    for (const auto& [name, value] : once.state.items()) {
        const bool equal = again.state.value(name, json()) == value;
        if (notPromised.count(name) == 0 && equal == (different.count(name) > 0)) {
            std::cerr << name << (equal ? " is the same, and was not to be: " : ": ") << value << " became "
                      << again.state.value(name, json()) << '\n';
            same = false;
        }
    }
    return same;
}

bool sameValues(const Run& once, const Run& again, const std::set<std::string>& different) {
    bool same = true;
    for (const char* list : lists) {
        const bool equal = once.values.count(list) > 0 && once.values.at(list) == again.values.at(list);
        if (equal == (different.count(list) > 0)) {
            std::cerr << list << (equal ? " is the same, and was not to be\n" : " is not the same\n");
            same = false;
        }
    }
    return same;
}

bool sameFiles(const Run& once, const Run& again) {
    bool same = true;
    for (const auto& [name, text] : once.files) {
        if (again.files.count(name) == 0 || again.files.at(name) != text) {
            std::cerr << name << " is not the same\n";
            same = false;
        }
    }
    return same && once.files.size() == again.files.size();
}

bool journalHolds(const std::string& program, const fs::path& script, const std::vector<std::string>& models) {
    const ScriptFolder first;
    const ScriptFolder second;
    for (const std::string& folder : models) {
        copyNamedFiles(folder, textOf(script), first.path());
        copyNamedFiles(folder, textOf(script), second.path());
    }
    const Run once = runIn(first.path(), program, linesUpToTheEnd(textOf(script)));
    const auto journal = once.files.find(journalName);
    if (journal == once.files.end()) {
        std::cerr << "no journal was written\n";
        return false;
    }
    const Run again =
        runIn(second.path(), program, replaced(journal->second, first.path().string(), second.path().string()));
    for (const json& error : again.errors) {
        std::cerr << error << '\n';
    }
    const std::set<std::string> different = knownToDiffer(script);
    const bool states = sameStates(once, again, different);
    const bool values = sameValues(once, again, different);
    const bool files = sameFiles(once, again);
    if (!states || !values || !files || !again.errors.empty()) {
        std::cerr << "the journal:\n" << journal->second;
        return false;
    }
    return again.exit == 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (arguments.size() < 3) {
        std::cerr << "journal_runner PROGRAM NAME.script MODELS...\n";
        return 2;
    }
    try {
        return journalHolds(arguments[1], arguments[2], {arguments.begin() + 3, arguments.end()}) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}

// scenario_runner PROGRAM NAME.script MODELS...
//
// Runs the script by `PROGRAM --json` in a fresh folder, into which every file of the MODELS folders is copied whose
// name the script contains. What it says must match NAME.expected: a JSON object for each event, in order, one a
// line; empty lines and lines that begin with "#" are comments. An event matches when it has all members of the
// expected object, at every depth; lists match entry by entry, numbers to within 1e-9 of the larger of 1 and their
// size. ${FOLDER} stands for the folder of the run, ${folder} for the same in lower case, ${NUMBER} in a text for any
// digits (the line of the source that raised an error). What goes well may be left out: a "done" that is "ok", a "read"
// that is complete, a "written". The last line, {"exit": STATUS}, is the exit status. Files in NAME.files must have
// been written, byte for byte.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
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

std::vector<json> expectedEvents(const fs::path& path, const fs::path& folder) {
    std::string lower = folder.string();
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    std::istringstream lines(replaced(replaced(textOf(path), "${FOLDER}", folder.string()), "${folder}", lower));
    std::vector<json> events;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.front() != '#') {
            events.push_back(json::parse(line));
        }
    }
    return events;
}

/// Whether a text is as expected, with ${NUMBER} for one digit or more.
bool textMatches(const std::string& expected, const std::string& actual) {
    const std::string placeholder = "${NUMBER}";
    const std::size_t at = expected.find(placeholder);
    if (at == std::string::npos) {
        return expected == actual;
    }
    const std::size_t end = std::min(actual.find_first_not_of("0123456789", at), actual.size());
    return end > at && actual.compare(0, at, expected, 0, at) == 0 &&
           textMatches(expected.substr(at + placeholder.size()), actual.substr(end));
}

/// Where `actual` is not as expected, as a path into the value; empty when it matches.
std::string mismatch(const json& expected, const json& actual) {
    if (expected.is_object() && actual.is_object()) {
        for (const auto& [name, value] : expected.items()) {
            const std::string inner = actual.contains(name) ? mismatch(value, actual.at(name)) : " is absent";
            if (!inner.empty()) {
                return std::string(".").append(name).append(inner);
            }
        }
        return "";
    }
    if (expected.is_array() && actual.is_array() && expected.size() == actual.size()) {
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const std::string inner = mismatch(expected[i], actual[i]);
            if (!inner.empty()) {
                return std::string("[").append(std::to_string(i)).append("]").append(inner);
            }
        }
        return "";
    }
    if (expected.is_number() && actual.is_number()) {
        const double wanted = expected.get<double>();
        const double found = actual.get<double>();
        if (std::abs(wanted - found) <= 1e-9 * std::max(1.0, std::abs(wanted))) {
            return "";
        }
    } else if (expected.is_string() && actual.is_string()) {
        if (textMatches(expected.get<std::string>(), actual.get<std::string>())) {
            return "";
        }
    } else if (expected == actual) {
        return "";
    }
    return ": expected " + expected.dump() + ", got " + actual.dump();
}

/// True for the news that all went well.
bool mayBeLeftOut(const json& event) {
    const std::string kind = event.value("event", "");
    return (kind == "done" && event.at("outcome") == "ok") || (kind == "read" && event.at("complete") == true) ||
           kind == "written";
}

/// The events without those that may be left out where `expected` leaves them out.
std::vector<json> expectedKinds(const std::vector<json>& actual, const std::vector<json>& expected) {
    std::vector<json> kept;
    for (const json& event : actual) {
        const bool isExpected =
            kept.size() < expected.size() && expected[kept.size()].value("event", "") == event.value("event", "");
        if (isExpected || !mayBeLeftOut(event)) {
            kept.push_back(event);
        }
    }
    return kept;
}

bool eventsMatch(const std::vector<json>& expected, const std::vector<json>& actual) {
    const std::size_t common = std::min(expected.size(), actual.size());
    for (std::size_t i = 0; i < common; ++i) {
        const std::string where = mismatch(expected[i], actual[i]);
        if (!where.empty()) {
            std::cerr << "event " << i + 1 << where << "\n  expected " << expected[i] << "\n  got      " << actual[i]
                      << '\n';
            return false;
        }
    }
    for (std::size_t i = common; i < expected.size(); ++i) {
        std::cerr << "absent: " << expected[i] << '\n';
    }
    for (std::size_t i = common; i < actual.size(); ++i) {
        std::cerr << "not expected: " << actual[i] << '\n';
    }
    return expected.size() == actual.size();
}

bool filesMatch(const fs::path& expected, const fs::path& folder) {
    bool same = true;
    if (fs::is_directory(expected)) {
        for (const fs::directory_entry& entry : fs::directory_iterator(expected)) {
            const fs::path written = folder / entry.path().filename();
            if (!fs::exists(written) || textOf(entry.path()) != textOf(written)) {
                std::cerr << entry.path().filename() << " is not as expected:\n" << textOf(written) << '\n';
                same = false;
            }
        }
    }
    return same;
}

bool scenarioHolds(const std::string& program, const fs::path& script, const fs::path& folder) {
    const velmora::test::ProcessResult result =
        velmora::test::runProcess({program, "--json", script.filename().string()}, folder);
    std::vector<json> actual;
    for (const std::string& line : result.lines) {
        actual.push_back(json::parse(line));
    }
    actual.push_back({{"exit", result.status}});
    std::cerr << result.errors;
    fs::path beside = script;
    const std::vector<json> expected = expectedEvents(beside.replace_extension("expected"), folder);
    const bool said = eventsMatch(expected, expectedKinds(actual, expected));
    const bool wrote = filesMatch(beside.replace_extension("files"), folder);
    return said && wrote;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (arguments.size() < 3) {
        std::cerr << "scenario_runner PROGRAM NAME.script MODELS...\n";
        return 2;
    }
    const ScriptFolder folder;
    const fs::path script = arguments[2];
    fs::copy_file(script, folder.path() / script.filename());
    std::for_each(arguments.begin() + 3, arguments.end(),
                  [&](const std::string& models) { copyNamedFiles(models, textOf(script), folder.path()); });
    bool holds = false;
    try {
        holds = scenarioHolds(arguments[1], script, folder.path());
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return holds ? 0 : 1;
}

// Scripts against a session. The first byte chooses: the rest is the text of a script, or each byte picks the next
// piece of one, so that lines make sense often enough to reach the commands. A line that ends the script is followed
// by a new session. Scripts cannot leave their folder.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "BatchSession.h"
#include "fuzz_files.h"

using namespace velmora;

namespace {

constexpr std::size_t mostLines = 40;
constexpr std::size_t mostDigits = 3; // larger numbers take long and reach nothing new

/// Takes pieces by the bytes of the input.
class Picker {
public:
    Picker(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool empty() const { return at_ == size_; }
    std::size_t below(std::size_t count) { return empty() ? 0 : data_[at_++] % count; }
    template <std::size_t count>
    std::string oneOf(const std::array<const char*, count>& pieces) {
        return pieces[below(count)];
    }
    std::string number() { return std::to_string(static_cast<int>(below(256)) - 20); }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

constexpr std::array files = {"grid.apt", "two.apt", "lines.skl", "broken.apt", "new.apt", "new.skl", "no.dat"};
constexpr std::array fields = {"regime",
                               "function",
                               "style",
                               "exactness",
                               "newCount",
                               "compression",
                               "firstPoint",
                               "lastPoint",
                               "capturedNumber",
                               "firstCurve",
                               "lastCurve",
                               "useBlock",
                               "number",
                               "patch",
                               "section",
                               "line",
                               "x",
                               "y",
                               "z",
                               "angleX",
                               "angleY",
                               "scale",
                               "distanceZ",
                               "choice",
                               "showBuffer",
                               "showBlockOnly",
                               "showFirstPoints",
                               "showDoublePoints",
                               "showZBlockMarkers"};
constexpr std::array values = {"state",       "patches",         "view",        "scene", "scene overlay", "commands",
                               "undoPatches", "dialog CRebreak", "window 1 1 0"};
constexpr std::array buttons = {"down", "move", "up", "right"};

std::string commandLine(Picker& pick) {
    const auto table = commandTable();
    std::string line = std::string("run ") + table[pick.below(table.size())].id;
    switch (pick.below(6)) {
    case 0:
        return line + " answer=yes file=" + pick.oneOf(files);
    case 1:
        return line + " file=" + pick.oneOf(files);
    case 2:
        return line + ' ' + pick.oneOf(fields) + '=' + pick.number();
    case 3:
        return line + ' ' + pick.oneOf(fields) + "=1 " + pick.oneOf(fields) + "=2 " + pick.oneOf(fields) + '=' +
               pick.number();
    case 4:
        return line + " cancel=dialog";
    default:
        return line;
    }
}

std::string pickedLine(Picker& pick) {
    switch (pick.below(8)) {
    case 0:
        return "open " + pick.oneOf(files);
    case 1:
    case 2: {
        const std::string x = std::to_string(200 + 2 * pick.below(256));
        return "mouse " + pick.oneOf(buttons) + ' ' + x + ' ' + std::to_string(100 + 2 * pick.below(256));
    }
    case 3:
        return "print " + pick.oneOf(values);
    case 4:
        return "size " + pick.number() + ' ' + pick.number();
    case 5:
        return "wait " + std::to_string(pick.below(100));
    default:
        return commandLine(pick);
    }
}

/// True for a line that stays in the folder and has no large number.
bool isHarmless(const std::string& line) {
    std::size_t digits = 0;
    for (const char c : line) {
        digits = c >= '0' && c <= '9' ? digits + 1 : 0;
        if (c == '/' || digits > mostDigits) {
            return false;
        }
    }
    return true;
}

void writeModel(const char* name, const char* text) {
    std::ofstream(name) << text;
}

void writeModels() {
    writeModel("grid.apt", "3 4\n0 0 0\n1 0 0\n2 0 1\n3 0 0\n0 1 0\n1 1 2\n2 1 0\n3 1 0\n0 2 0\n1 2 0\n2 2 0\n3 2 0\n");
    writeModel("two.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n2 3\n0 0 1\n1 0 1\n1 0 1\n0 1 1\n1 1 1\n1 1 1\n");
    writeModel("lines.skl", "3\n2\n0 0 0\n1 0 0\n0\n3\n0 1 0\n1 1 0\n2 1 0\n0\n");
    writeModel("broken.apt", "0 5\n2 2\n0 0 0\n1 0 0\n1e300 1e300 -1e300\n0 0 x\n");
}

/// The folder of all scripts, the current one from the first call on, as it is before each of them.
void enterFolder() {
    static const fuzz::OutputFolder folder;
    std::filesystem::current_path(folder / "");
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
        std::filesystem::remove_all(entry.path());
    }
    writeModels();
}

std::vector<std::string> scriptOf(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> lines;
    if (size > 0 && data[0] % 2 == 1) {
        std::istringstream text(std::string(data + 1, data + size));
        for (std::string line; lines.size() < mostLines && std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }
    Picker pick(data, size);
    pick.below(2);
    while (!pick.empty() && lines.size() < mostLines) {
        lines.push_back(pickedLine(pick));
    }
    return lines;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    enterFolder();
    std::ostringstream out;
    JsonEventPrinter printer(out);
    std::unique_ptr<BatchSession> session;
    std::int64_t number = 0;
    for (const std::string& line : scriptOf(data, size)) {
        if (!isHarmless(line)) {
            continue;
        }
        if (session == nullptr) {
            session = std::make_unique<BatchSession>(
                printer, BatchSession::Setup{std::filesystem::current_path(), {800, 600}, false});
            session->run(0, "open grid.apt");
        }
        if (session->run(++number, line) != BatchSession::Next::GoOn) {
            session.reset();
        }
    }
    return 0;
}

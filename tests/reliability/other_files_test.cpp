#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fstream>
#include <functional>
#include <random>
#include <thread>

#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Process.h"
#include "VelmoraDoc.h"
#include "file_texts.h"
#include "reliability.h"
#include "rescue_format.h"
#include "sanitized.h"
#include "small_zones.h"
#include "sound_model.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

namespace fs = std::filesystem;

/// `whole`, cut at each byte, with single bits flipped and with bytes put in: each damaged text with words that tell of
/// the damage.
void forEachDamage(const std::string& whole, int flips,
                   const std::function<void(const std::string& damaged, const std::string& damage)>& take) {
    const std::size_t step = std::max<std::size_t>(1, whole.size() / static_cast<std::size_t>(times(60, 5000)));
    for (std::size_t end = 0; end <= whole.size(); end += step) {
        take(whole.substr(0, end), "cut at byte " + std::to_string(end));
    }
    std::mt19937 random(17);
    for (int flip = 0; flip < flips; ++flip) {
        std::string damaged = whole;
        const std::size_t at = std::uniform_int_distribution<std::size_t>(0, whole.size() - 1)(random);
        const int bit = std::uniform_int_distribution<int>(0, 7)(random);
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << bit));
        take(damaged, "bit " + std::to_string(bit) + " of byte " + std::to_string(at));
    }
    for (const char* const word :
         {"nan", "inf", "1e999", "-1e999", "1.5-104", "\xEF\xBB\xBF", "99999999999999999999"}) {
        for (const std::size_t at : {std::size_t{0}, whole.size() / 2, whole.size()}) {
            std::string damaged = whole;
            damaged.insert(at, word);
            take(damaged, std::string(word) + " at byte " + std::to_string(at));
        }
    }
    take(std::string(2, '\0'), "two NUL bytes");
    take(std::string(100000, '7'), "one long word");
    take(std::string(100000, '\n'), "nothing but line feeds");
}

/// Damaged files that do not give the model, and what is no file of this kind at all.
class OtherFiles : public StateTest {
protected:
    OtherFiles() {
        open(file("grid.apt", aptText({flatPatch(3, 4)})));
        forget();
    }

    bool saidSomething() const {
        return std::any_of(ui.transcript.begin(), ui.transcript.end(), [](const std::string& line) {
            return line.starts_with("message: ") || line.starts_with("status: ");
        });
    }

    static bool allFinite(const PointList& points) {
        return std::all_of(points.begin(), points.end(), [](const zVec<double>& p) {
            return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
        });
    }

    /// The command reads the damaged file: the model stays, no point is one that cannot be, the file is not touched.
    void expectPointsOrAWord(const std::string& command, const fs::path& path, const PointList& points,
                             const std::string& text, const std::string& damage) {
        writeFileText(path, text);
        const PatchList model = doc.patches;
        ui.files = {{path}};
        forget();
        call(command);
        EXPECT_EQ(doc.patches, model) << command << ", " << damage;
        EXPECT_EQ(unsoundness(doc), "") << command << ", " << damage;
        EXPECT_TRUE(allFinite(points)) << command << ", " << damage;
        EXPECT_EQ(fileText(path), text) << command << ", " << damage;
        EXPECT_TRUE(!points.empty() || text.empty() || saidSomething())
            << command << ", " << damage << ": no point and not a word";
    }

    struct Reading {
        const char* command;
        const char* name;
    };
    /// Every command that reads a file, with a name for it.
    static constexpr Reading readings[] = {
        {"file.open", "a.apt"},      {"file.open", "a.skl"},      {"file.open", "a.dat"},
        {"file.open", "a.stl"},      {"file.open", "a.wrl"},      {"file.append", "a.apt"},
        {"file.append", "a.skl"},    {"file.append", "a.dat"},    {"file.openField", "a.dat"},
        {"file.appendWrl", "a.wrl"}, {"file.appendDat", "a.dat"}, {"file.appendSft", "a.sft"},
        {"file.openApm", "a.apm"},   {"buffer.open", "a.ext"},    {"file.import", "a.stl"},
        {"file.import", "a.obj"},    {"file.import", "a.ply"},    {"file.import", "a.off"},
        {"file.import", "a.dat"},    {"file.import", "a.p3d"},
    };

    /// None of them takes anything of what stands at the path, waits for it, or touches the model.
    void expectNothingIsRead(const fs::path& place, const std::string& what) {
        for (const Reading& reading : readings) {
            const fs::path path = folder / reading.name;
            fs::remove(path);
            fs::create_symlink(place, path);
            const PatchList model = doc.patches;
            ui.answers = {true, true};
            ui.dialogs = {{}};
            ui.files = {{path}};
            forget();
            ::alarm(60); // a reader that waits for ever ends the test
            call(reading.command);
            ::alarm(0);
            EXPECT_EQ(doc.patches, model) << reading.command << " of " << what;
            EXPECT_EQ(unsoundness(doc), "") << reading.command << " of " << what;
            EXPECT_TRUE(saidSomething()) << reading.command << " of " << what << ": not a word";
            fs::remove(path);
        }
    }
};

} // namespace

// ---- Points and fields ----------------------------------------------------------------------------------------------

TEST_F(OtherFiles, DamagedPointFilesGivePointsThatCanBeOrAWord) {
    const std::string points = "0 0 0\n1 0.5 0\n2e3 -1 7\n3 3 3\n";
    forEachDamage(points, times(200, 20000), [&](const std::string& text, const std::string& damage) {
        expectPointsOrAWord("buffer.open", folder / "a.ext", doc.lineBuffer, text, damage);
        expectPointsOrAWord("file.openApm", folder / "a.apm", doc.markers, text, damage);
    });
    const std::string pairs = "1\n2\n3\n4\n5\n6\n7\n0 0 0 1 1 1 0\n2 2 2 3 3 3 0\n-1 0.5 0 4 4 4 0\n";
    forEachDamage(pairs, times(200, 20000), [&](const std::string& text, const std::string& damage) {
        expectPointsOrAWord("file.appendSft", folder / "a.sft", doc.sftPoints, text, damage);
        EXPECT_EQ(doc.sftTargets.size(), doc.sftPoints.size()) << damage;
        EXPECT_TRUE(allFinite(doc.sftTargets)) << damage;
    });
}

TEST_F(OtherFiles, DamagedFieldFilesGiveAModelWithAValueForEachPointOrLeaveTheOneThatWas) {
    const std::string whole = "TITLE = \"t\"\nVARIABLES = \"x\", \"y\", \"z\", \"p\", \"q\"\n"
                              "ZONE I=3,J=2\n0 0 0 1 2\n1 0 0 3 4\n2 0 0 5 6\n0 1 0 7 8\n1 1 0 9 10\n2 1 0 11 12\n"
                              "ZONE I=2,J=2\n0 0 5 1 2\n1 0 5 3 4\n0 1 5 7 8\n1 1 5 9 10\n";
    forEachDamage(whole, times(200, 20000), [&](const std::string& text, const std::string& damage) {
        const fs::path path = file("a.dat", text);
        ui.answers = {true, true};
        ui.files = {{path}};
        forget();
        call("file.openField");
        EXPECT_EQ(unsoundness(doc), "") << damage;
        EXPECT_EQ(fileText(path), text) << damage;
        EXPECT_FALSE(doc.holdsNothing()) << damage;
        if (doc.fieldMode) {
            EXPECT_NE(doc.wholeField(), nullptr) << damage;
            EXPECT_TRUE(isFinite(doc.fieldPatches)) << damage;
        } else {
            EXPECT_TRUE(saidSomething()) << damage;
        }
    });
}

// ---- What is no regular file ----------------------------------------------------------------------------------------

TEST_F(OtherFiles, PipesDevicesAndFoldersAreNotReadAndNobodyWaitsForThem) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_directory(folder / "folder");
    expectNothingIsRead(folder / "pipe", "a pipe that nobody writes to");
    expectNothingIsRead(folder / "folder", "a folder");
    expectNothingIsRead(folder / "nowhere", "a link to nowhere");
    for (const char* const device : {"/dev/zero", "/dev/urandom", "/dev/null", "/dev/full", "/dev/tty"}) {
        expectNothingIsRead(device, device);
    }
}

TEST_F(OtherFiles, PipesAndDevicesAreNotWrittenAndNobodyWaitsForThem) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    doc.lineBuffer = flatPatch(1, 3)[0];
    doc.lineBufferFull = true;
    for (const fs::path& place : {folder / "pipe", fs::path("/dev/null"), fs::path("/dev/full")}) {
        for (const auto& [command, name] :
             {std::pair{"file.saveAs", "o.apt"}, std::pair{"file.saveAs", "o.dat"}, std::pair{"file.saveAs", "o.stl"},
              std::pair{"file.saveAs", "o.wrl"}, std::pair{"file.export", "o.obj"}, std::pair{"file.export", "o.ply"},
              std::pair{"buffer.saveAs", "o.ext"}}) {
            const fs::path path = folder / name;
            fs::remove(path);
            fs::create_symlink(place, path);
            doc.documentModified = true;
            ui.files = {{path}};
            ui.answers = {true};
            ui.dialogs = {{}};
            forget();
            ::alarm(60);
            call(command);
            ::alarm(0);
            EXPECT_THAT(heard(), testing::Contains(testing::StartsWith("message: "))) << command << ' ' << name;
            EXPECT_TRUE(fs::is_symlink(path)) << command << ' ' << name;
            EXPECT_TRUE(doc.documentModified) << command << ' ' << name;
            EXPECT_EQ(doc.patches.size(), 1U) << command << ' ' << name;
        }
    }
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
}

// ---- Lines without an end -------------------------------------------------------------------------------------------

namespace {

/// The most memory that a program takes to read the file, in bytes.
std::int64_t memoryToOpen(const std::string& name, const std::string& command, const fs::path& folder) {
    Process program({VELMORA_BATCH, "--json", "--keep-going", "-"}, folder);
    const bool asks = command == "file.open" || command == "file.import" || command == "file.openField";
    program.write("open grid.apt\nrun " + command + " file=" + name + (asks ? " answer=yes\n" : "\n"));
    nlohmann::json last = nlohmann::json::object();
    while (last.value("line", 0) != 2 || (last.value("event", "") != "done" && last.value("event", "") != "error")) {
        const auto line = program.readLine();
        if (!line) {
            ADD_FAILURE() << command << " gives no answer";
            return -1;
        }
        last = nlohmann::json::parse(*line);
    }
    EXPECT_EQ(last.value("event", ""), "done") << last;
    const std::int64_t memory = program.mostMemory();
    program.closeInput();
    EXPECT_LT(program.wait(), 128) << command << " ends by a signal: " << program.errors();
    return memory;
}

/// How files begin that then go on without an end, and what reads them.
struct LongLine {
    const char* head;
    std::vector<std::pair<const char*, const char*>> readings; ///< command, extension
};

const std::vector<LongLine>& linesOfText() {
    static const std::vector<LongLine> all = {
        {"1 ",
         {{"file.open", "apt"},
          {"file.open", "skl"},
          {"file.open", "dat"},
          {"file.append", "apt"},
          {"file.openField", "dat"},
          {"file.appendDat", "dat"},
          {"file.appendSft", "sft"},
          {"file.openApm", "apm"},
          {"buffer.open", "ext"}}},
        {"1 1\n0 0 ", {{"file.open", "apt"}, {"file.open", "skl"}, {"buffer.open", "ext"}}},
        {"VARIABLES = \"x\", \"y\", \"z\", \"p\"\nZONE I=2, J=2, K=1, F=POINT\n0 0 0 ", {{"file.open", "dat"}}},
        {"TITLE = \"t\"\nVARIABLES = \"x\", \"y\", \"z\", \"p\"\nZONE I=2,J=2\n0 0 0 ", {{"file.openField", "dat"}}},
        {"TITLE = \"", {{"file.open", "dat"}, {"file.openField", "dat"}}},
        {"solid ", {{"file.open", "stl"}}},
        {"solid a\nfacet normal 0 0 ", {{"file.open", "stl"}}},
        {"#VRML V2.0 utf8\n#", {{"file.open", "wrl"}, {"file.appendWrl", "wrl"}}},
        {"#VRML V2.0 ", {{"file.open", "wrl"}}},
        {"#VRML V2.0 utf8\nTransform { translation 0 ", {{"file.open", "wrl"}}},
        {"#VRML V2.0 utf8\nI", {{"file.open", "wrl"}}},
        {"#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 ", {{"file.open", "wrl"}}},
        {"#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { solid ", {{"file.open", "wrl"}}},
    };
    return all;
}

// Files of others are held whole.
const std::vector<LongLine>& linesOfImports() {
    static const std::vector<LongLine> all = {
        {"1 ",
         {{"file.import", "obj"},
          {"file.import", "ply"},
          {"file.import", "off"},
          {"file.import", "dat"},
          {"file.import", "p3d"}}},
        {"solid ", {{"file.import", "stl"}}},
    };
    return all;
}

void writeLongLine(const fs::path& path, const char* head, char fill, std::int64_t length) {
    std::ofstream out(path, std::ios::binary);
    out << head;
    const std::string block(1 << 20, fill);
    for (std::int64_t written = 0; written < length; written += std::int64_t{1} << 20) {
        out << block;
    }
}

/// `check` gets the memory that each reading takes of a file of `length` bytes, and that of one of a megabyte.
void readLongLines(const fs::path& folder, const std::vector<LongLine>& lines, std::int64_t length,
                   const std::function<void(std::int64_t memory, std::int64_t ofShortOne)>& check) {
    for (const LongLine& line : lines) {
        for (const char fill : {'7', '0', ' ', 'a'}) {
            writeLongLine(folder / "long", line.head, fill, length);
            writeLongLine(folder / "short", line.head, fill, 1 << 20);
            for (const auto& [command, extension] : line.readings) {
                const std::string name = std::string("line.") + extension;
                SCOPED_TRACE(std::string(command) + ' ' + name + " of '" + fill + "' behind " + line.head);
                std::array<std::int64_t, 2> memory{};
                for (const auto& [file, taken] :
                     {std::pair{"short", memory.data()}, std::pair{"long", memory.data() + 1}}) {
                    fs::create_hard_link(folder / file, folder / name);
                    *taken = memoryToOpen(name, command, folder);
                    fs::remove(folder / name);
                }
                check(memory[1], memory[0]);
            }
            fs::remove(folder / "long");
            fs::remove(folder / "short");
        }
    }
}

constexpr std::int64_t keptByTheSanitizer = sanitized ? 300'000'000 : 0;

} // namespace

TEST_F(OtherFiles, LinesOfAGigabyteAreReadWithoutBeingHeld) {
    // Of a word, and of a header, up to four megabytes are held, more than once: less than the file for all that.
    constexpr std::int64_t most = keptByTheSanitizer + 48'000'000;
    readLongLines(folder.path(), linesOfText(), times(1 << 26, 1 << 30),
                  [](std::int64_t memory, std::int64_t ofShortOne) {
                      EXPECT_GT(ofShortOne, 0);
                      EXPECT_LT(memory, ofShortOne + most);
                  });
}

TEST_F(OtherFiles, LinesOfAGigabyteInFilesOfOthersTakeAFewTimesTheirLength) {
    const std::int64_t length = times(1 << 24, 1 << 30);
    readLongLines(folder.path(), linesOfImports(), length, [length](std::int64_t memory, std::int64_t ofShortOne) {
        EXPECT_LT(memory, ofShortOne + keptByTheSanitizer + 5 * length);
    });
}

// ---- Rescue copies --------------------------------------------------------------------------------------------------

TEST_F(OtherFiles, DamagedRescueCopiesGiveASoundModelOrNone) {
    zRegion_fe zones;
    zones.blocks.push_back(triangleZone("z", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 1}}, {0, 1, 2, 1, 3, 2}));
    const PatchList grid = {flatPatch(3, 4), flatPatch(2, 2, 5)};
    const RescuedField field{true, true, 2, "t", "v"};
    for (const std::string& whole :
         {encodeRescue("/d/wing.apt", "wing.apt", false, grid, {}, {flatPatch(3, 4, 7), flatPatch(2, 2, 8)}, field),
          encodeRescue("/d/body.dat", "body.dat", true, {}, zones, {}, {})}) {
        forEachDamage(whole, times(300, 100000), [&](const std::string& bytes, const std::string& damage) {
            auto copy = decodeRescue(bytes);
            if (!copy) {
                return;
            }
            RecordingUi person;
            VelmoraDoc other(person, folder.path());
            other.onNewDocument();
            const bool finite =
                isFinite(copy->patches) && isFinite(copy->zones); // a flipped bit makes such numbers too
            other.takeRescued(std::move(*copy));
            const std::string wrong = unsoundness(other);
            EXPECT_TRUE(wrong.empty() || !finite) << damage << ": " << wrong;
        });
    }
}

// ---- The window's settings ------------------------------------------------------------------------------------------

namespace {

/// Whether the program is up so far that it takes the signal that asks it to end.
bool listensForTheEnd(pid_t program) {
    std::ifstream status("/proc/" + std::to_string(program) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("SigCgt:")) {
            return (std::stoull(line.substr(7), nullptr, 16) >> (SIGTERM - 1) & 1U) != 0;
        }
    }
    return true; // it has ended
}

/// Starts the window over these settings, lets it come up, asks it to end; gives its status.
int statusOfWindow(const fs::path& home, const std::string& settings) {
    fs::create_directories(home / "config/Dovra");
    writeFileText(home / "config/Dovra/Velmora.conf", settings);
    const pid_t program = ::fork();
    if (program == 0) {
        ::setenv("HOME", home.c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
        ::setenv("XDG_STATE_HOME", (home / "state").c_str(), 1);
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        ::execl(VELMORA_WINDOW, VELMORA_WINDOW, (home / "grid.apt").c_str(), nullptr);
        ::_exit(127);
    }
    for (int waited = 0; waited < 600 && !listensForTheEnd(program); ++waited) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200)); // the window comes up
    ::kill(program, SIGTERM);
    int status = 0;
    for (int waited = 0; waited < 300; ++waited) {
        if (::waitpid(program, &status, WNOHANG) == program) {
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ::kill(program, SIGKILL);
    ::waitpid(program, &status, 0);
    return 128 + SIGKILL;
}

} // namespace

TEST_F(OtherFiles, DamagedSettingsDoNotKeepTheWindowFromComingUp) {
    const fs::path home = folder / "home";
    fs::create_directories(home);
    writeFileText(home / "grid.apt", aptText({flatPatch(3, 4)}));
    ASSERT_EQ(statusOfWindow(home, ""), 0);
    const std::string whole = fileText(home / "config/Dovra/Velmora.conf");
    ASSERT_NE(whole.find("Geometry"), std::string::npos) << whole;
    const std::vector<std::pair<std::string, std::string>> settings = {
        {"bytes of no meaning", std::string("\0\xff\x1b[x]\n=\n[\n]==", 14)},
        {"a geometry of another kind", "[Window]\nGeometry=7\nBars=@Size(-1 -1)\n"},
        {"a geometry that ends early",
         "[Window]\nGeometry=@ByteArray(\\x1\\xd9\\xd0\\xcb)\nBars=@ByteArray(\\0\\0\\0\\xff)\n"},
        {"a million recent files", "[Recent File List]\nFile1=" + std::string(1 << 20, 'x') + "\n"},
        {"nothing but brackets", std::string(100000, '[')},
    };
    for (const auto& [what, text] : settings) {
        EXPECT_EQ(statusOfWindow(home, text), 0) << what;
    }
    std::mt19937 random(3);
    for (int flip = 0; flip < times(3, 200); ++flip) {
        std::string damaged = whole;
        const std::size_t at = std::uniform_int_distribution<std::size_t>(0, whole.size() - 1)(random);
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << (flip % 8)));
        EXPECT_EQ(statusOfWindow(home, damaged), 0) << "bit " << flip % 8 << " of byte " << at;
    }
}

} // namespace velmora::test

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fstream>
#include <functional>
#include <random>
#include <thread>

#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Process.h"
#include "VelmoraDoc.h"
#include "file_texts.h"
#include "reliability.h"
#include "rescue_format.h"
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
std::int64_t memoryToOpen(const fs::path& path, const std::string& command, const fs::path& folder) {
    const std::string script = "open grid.apt\nrun " + command + " file=" + path.filename().string() +
                               (command == "file.open" || command == "file.import" ? " answer=yes\n" : "\n");
    const ProcessResult result = runProcess({VELMORA_BATCH, "--json", "--keep-going", "-"}, folder, script);
    EXPECT_LT(result.status, 128) << command << " ends by a signal: " << result.errors;
    EXPECT_FALSE(result.lines.empty());
    if (!result.lines.empty()) {
        const auto last = nlohmann::json::parse(result.lines.back());
        EXPECT_EQ(last.value("line", 0), 2) << result.lines.back();
        EXPECT_EQ(last.value("text", "").find("the line failed"), std::string::npos) << result.lines.back();
    }
    rusage used{};
    ::getrusage(RUSAGE_CHILDREN, &used); // of the largest so far
    return std::int64_t{used.ru_maxrss} * 1024;
}

} // namespace

namespace {

// Memory that was given back stays with the address sanitizer for a while.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::int64_t keptByTheSanitizer = 300'000'000;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr std::int64_t keptByTheSanitizer = 300'000'000;
#else
constexpr std::int64_t keptByTheSanitizer = 0;
#endif
#else
constexpr std::int64_t keptByTheSanitizer = 0;
#endif

} // namespace

TEST_F(OtherFiles, LinesOfAGigabyteAreReadWithoutBeingHeld) {
    const std::int64_t length = times(1 << 24, 1 << 30);
    constexpr std::int64_t usual = keptByTheSanitizer + 200'000'000;
    // Files of others are read whole; the text readers hold a block, whatever the line. Those come first, as what is
    // asked is the most that any program took so far.
    for (const bool held : {false, true}) {
        for (const char fill : {'7', ' ', 'a'}) {
            for (const char* const head : {"1 ", "solid ", "#VRML V2.0 utf8\n#"}) {
                const fs::path line = folder / "line";
                {
                    std::ofstream out(line, std::ios::binary);
                    out << head;
                    const std::string block(1 << 20, fill);
                    for (std::int64_t written = 0; written < length; written += std::int64_t{1} << 20) {
                        out << block;
                    }
                }
                for (const Reading& reading : readings) {
                    const std::string name = reading.name;
                    const bool itsHead = name.ends_with("stl")   ? *head == 's'
                                         : name.ends_with("wrl") ? *head == '#'
                                                                 : *head == '1';
                    if (itsHead && (std::string(reading.command) == "file.import") == held) {
                        const fs::path path = folder / ("long" + name.substr(1));
                        fs::remove(path);
                        fs::create_hard_link(line, path);
                        EXPECT_LT(memoryToOpen(path, reading.command, folder.path()),
                                  usual + (held ? 5 * length : length / 2))
                            << reading.command << ' ' << name << " of '" << fill << '\'';
                        fs::remove(path);
                    }
                }
                fs::remove(line);
            }
        }
    }
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

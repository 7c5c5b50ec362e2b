#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <random>
#include <thread>

#include <sys/stat.h>

#include "Process.h"
#include "reliability.h"
#include "small_models.h"

namespace velmora::test {

namespace {

namespace fs = std::filesystem;

/// Variables of the environment for the programs that a test starts, as long as it stands.
class Environment {
public:
    explicit Environment(const std::vector<std::pair<std::string, std::string>>& values) {
        for (const auto& [name, value] : values) {
            names_.push_back(name);
            ::setenv(name.c_str(), value.c_str(), 1);
        }
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        for (const std::string& name : names_) {
            ::unsetenv(name.c_str());
        }
    }

private:
    std::vector<std::string> names_;
};

std::string gridText(int sections, int points, int height) {
    std::string text = std::to_string(sections) + ' ' + std::to_string(points) + '\n';
    for (int n = 0; n < sections; ++n) {
        for (int m = 0; m < points; ++m) {
            text += std::to_string(m) + ' ' + std::to_string(n) + ' ' + std::to_string(height) + '\n';
        }
    }
    return text;
}

/// A model in new.apt that is saved over another one, out.apt.
class Saves : public testing::Test {
protected:
    Saves() { makeFiles(4, 5); }

    void makeFiles(int sections, int points) {
        writeFileText(folder / "new.apt", gridText(sections, points, 7));
        restoreTarget();
        run();
        whole_ = fileText(folder / "out.apt");
        EXPECT_NE(whole_, old_);
        restoreTarget();
    }

    void restoreTarget() { writeFileText(folder / "out.apt", old_); }

    std::vector<std::string> program() const { return {VELMORA_BATCH, "--json", "-"}; }

    ProcessResult run() {
        return runProcess(program(), folder.path(), "open new.apt\nrun file.saveAs file=out.apt answer=yes\n");
    }

    /// "ok" when the program says that all was done as it should be.
    static std::string outcomeOf(const ProcessResult& result) {
        const auto last = nlohmann::json::parse(result.lines.back());
        return result.status == 0 && last.value("event", "") == "done" ? last.value("outcome", "none") : "error";
    }

    TemporaryFolder folder;
    std::string old_ = gridText(3, 3, 1);
    std::string whole_;
};

class SaveWithAFailing : public Saves, public testing::WithParamInterface<const char*> {};

} // namespace

// ---- Each call in turn ----------------------------------------------------------------------------------------------

TEST_P(SaveWithAFailing, CallLeavesTheOldFileOrTheNewOneAndSaysWhich) {
    const fs::path mark = folder.path().string() + ".failed";
    int number = 0;
    for (bool reached = true; reached;) {
        restoreTarget();
        fs::remove(mark);
        const Environment environment({{"LD_PRELOAD", VELMORA_FAILING_CALLS},
                                       {"ASAN_OPTIONS", "verify_asan_link_order=0"},
                                       {"VELMORA_FAILING_CALL", GetParam()},
                                       {"VELMORA_FAILING_NUMBER", std::to_string(++number)},
                                       {"VELMORA_FAILING_FOLDER", folder.path().string()},
                                       {"VELMORA_FAILING_MARK", mark.string()}});
        const ProcessResult result = run();
        ASSERT_FALSE(result.lines.empty());
        reached = fs::exists(mark);
        const std::string outcome = outcomeOf(result);
        const std::string text = fileText(folder / "out.apt");
        EXPECT_EQ(text, outcome == "ok" ? whole_ : old_) << "call " << number << ", " << outcome;
        EXPECT_THAT(folder.names(), testing::ElementsAre("new.apt", "out.apt")) << "call " << number;
        ASSERT_LT(number, 1000);
    }
    fs::remove(mark);
    EXPECT_GT(number, 1) << "no call of that kind was made";
}

INSTANTIATE_TEST_SUITE_P(Of, SaveWithAFailing, testing::Values("write", "fsync", "close", "rename", "fchmod"),
                         [](const auto& entry) { return std::string(entry.param); });

TEST_F(Saves, AScriptThatCannotBeReadOnEndsWithAnErrorBehindWhatWasRead) {
    std::string script;
    for (int line = 0; line < 5000; ++line) {
        script += "print version\n";
    }
    writeFileText(folder / "script.txt", script);
    const fs::path mark = folder.path().string() + ".failed";
    const Environment environment({{"LD_PRELOAD", VELMORA_FAILING_CALLS},
                                   {"ASAN_OPTIONS", "verify_asan_link_order=0"},
                                   {"VELMORA_FAILING_CALL", "read"},
                                   {"VELMORA_FAILING_NUMBER", "2"},
                                   {"VELMORA_FAILING_FOLDER", folder.path().string()},
                                   {"VELMORA_FAILING_MARK", mark.string()}});
    const ProcessResult result = runProcess({VELMORA_BATCH, "--json", "script.txt"}, folder.path());
    EXPECT_TRUE(fs::remove(mark));
    EXPECT_EQ(result.status, 1);
    ASSERT_GT(result.lines.size(), 1U);
    const auto last = nlohmann::json::parse(result.lines.back());
    EXPECT_EQ(last.value("event", ""), "error");
    EXPECT_EQ(last.value("text", ""), "the script cannot be read on; nothing behind it was run");
}

namespace {

/// What a program that imports the file is told, when the system fails at that read of it.
nlohmann::json importWithFailingRead(const std::string& name, int number, const fs::path& folder) {
    const Environment environment({{"LD_PRELOAD", VELMORA_FAILING_CALLS},
                                   {"ASAN_OPTIONS", "verify_asan_link_order=0"},
                                   {"VELMORA_FAILING_CALL", "read"},
                                   {"VELMORA_FAILING_NUMBER", std::to_string(number)},
                                   {"VELMORA_FAILING_FOLDER", (folder / name).string()}});
    const ProcessResult result = runProcess({VELMORA_BATCH, "--json", "-c", "run file.import file=" + name}, folder);
    nlohmann::json told = nlohmann::json::object();
    for (const std::string& line : result.lines) {
        const auto event = nlohmann::json::parse(line);
        if (event.value("event", "") == "read" || event.value("event", "") == "done") {
            told[event.value("event", "")] = event;
        }
    }
    return told;
}

} // namespace

TEST_F(Saves, ImportByAProgramOfItsOwnTellsAnErrorOfTheDiskAsOne) {
    const std::string scene = "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, "
                              "1 0 0, 0 1 0 ] } coordIndex [ 0, 1, 2, -1 ] } }\n#" +
                              std::string(3 << 20, '-') + '\n';
    std::vector<std::string> names;
#ifdef VELMORA_READS_VRML
    names.emplace_back("a.wrl");
#endif
#ifdef VELMORA_READS_CGNS
    names.emplace_back("a.cgns");
#endif
#ifdef VELMORA_READS_CAD
    names.emplace_back("a.stp");
#endif
    if (names.empty()) {
        GTEST_SKIP() << "built without the libraries of others";
    }
    for (const std::string& name : names) {
        writeFileText(folder / name, scene); // no library comes so far as to look into it
        for (const int number : {1, 3}) {
            const nlohmann::json told = importWithFailingRead(name, number, folder.path());
            EXPECT_EQ(told["done"].value("outcome", ""), "failed") << name;
            EXPECT_EQ(told["read"].value("complete", true), false) << name;
            EXPECT_EQ(told["read"].value("reasons", nlohmann::json()).dump(),
                      R"(["The system could not read the file to its end"])")
                << name;
        }
    }
#ifdef VELMORA_READS_VRML
    EXPECT_EQ(importWithFailingRead("a.wrl", 99, folder.path())["done"].value("outcome", ""), "ok");
#endif
}

// ---- Killed in the middle -------------------------------------------------------------------------------------------

TEST_F(Saves, KilledAtAnyMomentLeaveTheOldFileOrTheNewOne) {
    makeFiles(60, 700);
    std::mt19937 random(11);
    int old = 0;
    int whole = 0;
    for (int run = 0; run < times(8, 100); ++run) {
        restoreTarget();
        {
            Process process(program(), folder.path());
            process.write("open new.apt\n");
            for (auto line = process.readLine(); line && line->find("\"done\"") == std::string::npos;) {
                line = process.readLine();
            }
            process.write("run file.saveAs file=out.apt answer=yes\n");
            std::this_thread::sleep_for(
                std::chrono::microseconds(std::uniform_int_distribution<int>(0, 60000)(random)));
        } // it is killed here
        const std::string text = fileText(folder / "out.apt");
        EXPECT_TRUE(text == old_ || text == whole_) << "a file of " << text.size() << " bytes";
        old += text == old_ ? 1 : 0;
        whole += text == whole_ ? 1 : 0;
        EXPECT_EQ(fileText(folder / "new.apt"), gridText(60, 700, 7));
    }
    EXPECT_EQ(old + whole, times(8, 100));
}

// ---- What the target is ---------------------------------------------------------------------------------------------

TEST_F(Saves, GoThroughALinkAndKeepThePermissions) {
    fs::create_directory(folder / "real");
    writeFileText(folder / "real/target.apt", old_);
    fs::remove(folder / "out.apt");
    fs::create_symlink("real/target.apt", folder / "out.apt");
    ASSERT_EQ(::chmod((folder / "real/target.apt").c_str(), 0640), 0);
    EXPECT_EQ(outcomeOf(run()), "ok");
    EXPECT_TRUE(fs::is_symlink(folder / "out.apt"));
    EXPECT_EQ(fileText(folder / "real/target.apt"), whole_);
    EXPECT_EQ(fs::status(folder / "real/target.apt").permissions(), fs::perms{0640});
}

TEST_F(Saves, OntoAFullDiskOrAFolderFailAndSaySo) {
    fs::remove(folder / "out.apt");
    fs::create_symlink("/dev/full", folder / "out.apt");
    EXPECT_NE(outcomeOf(runProcess(program(), folder.path(), "open new.apt\nrun file.saveAs file=out.apt\n")), "ok");
    fs::remove(folder / "out.apt");
    fs::create_directory(folder / "out.apt");
    EXPECT_NE(outcomeOf(runProcess(program(), folder.path(), "open new.apt\nrun file.saveAs file=out.apt\n")), "ok");
    EXPECT_TRUE(fs::is_directory(folder / "out.apt"));
}

} // namespace velmora::test

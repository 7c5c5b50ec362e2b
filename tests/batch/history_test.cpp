#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "BatchSession.h"
#include "SessionFixture.h"
#include "sanitized.h"
#include "temporary_folder.h"

// The way back along the journal of each scenario: wherever it leads, the document is the one to which a replay of the
// lines up to there comes, to the bit.

namespace velmora::test {
namespace {

namespace fs = std::filesystem;

/// What is promised of a replay, see tests/scenarios/journal_runner.cpp.
constexpr const char* lists[] = {"patches",        "region",     "fieldPatches", "referencePatches", "referenceRegion",
                                 "blockClipboard", "lineBuffer", "markers",      "sftPoints",        "sftTargets",
                                 "undoPatches",    "undoRegion", "interLine",    "dragPatches",      "comparison"};
/// What was looked at, what was said, whose file holds the model, and what a click beside it leaves.
constexpr const char* notPromised[] = {
    "status", "leftButtonDown", "spinTimerOn",   "documentModified",     "modelCenter", "modelRadius",     "boxMin",
    "boxMax", "capturedPoint",  "capturedPatch", "capturedPointSection", "pickedPoint", "capturedPointPos"};

class KeptRun {
public:
    explicit KeptRun(const fs::path& folder) : session_(recorder_, {folder, {800, 600}, false}) {
        session_.run(1, [](Session& session) -> MaybeFailure {
            session.keepHistory();
            return std::nullopt;
        });
    }

    bool line(const std::string& text) { return session_.run(++number_, text) == BatchSession::Next::GoOn; }
    const Session& session() const { return session_.session(); }
    bool goTo(std::size_t lines) {
        bool gone = false;
        session_.run(++number_, [&](Session& session) -> MaybeFailure {
            gone = session.goTo(lines);
            return std::nullopt;
        });
        return gone;
    }
    void keepUp() {
        session_.run(++number_, [](Session& session) -> MaybeFailure {
            session.keepUp();
            return std::nullopt;
        });
    }
    Json document() {
        Json all;
        for (const char* list : lists) {
            all[list] = printed(list);
        }
        all["state"] = printed("state");
        for (const char* name : notPromised) {
            all["state"].erase(name);
        }
        return all;
    }

private:
    Json printed(const std::string& what) {
        recorder_.events.clear();
        session_.run(++number_, "print " + what);
        return recorder_.events.empty() ? Json() : recorder_.events.front().value("value", Json());
    }

    EventRecorder recorder_;
    BatchSession session_;
    std::int64_t number_ = 0;
};

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class HistoryOfScenarios : public testing::Test {
protected:
    HistoryOfScenarios() : before_(fs::current_path()) {}
    ~HistoryOfScenarios() override { fs::current_path(before_); }

    /// The folder with nothing but the files that the script names.
    void fill(const std::string& script) {
        fs::current_path(before_);
        fs::remove_all(folder / "run");
        fs::create_directory(folder / "run");
        for (const fs::path& from :
             {fs::path(VELMORA_SCENARIOS) / "models", fs::path(VELMORA_TEST_DATA), fs::path(VELMORA_EXAMPLES)}) {
            for (const auto& entry : fs::directory_iterator(from)) {
                if (entry.is_regular_file() && script.find(entry.path().filename().string()) != std::string::npos) {
                    fs::copy_file(entry.path(), folder / "run" / entry.path().filename(),
                                  fs::copy_options::overwrite_existing);
                }
            }
        }
        fs::current_path(folder / "run");
    }

    /// Runs the script up to where it would end the program.
    static void runLines(KeptRun& run, const std::string& script) {
        std::istringstream lines(script);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("quit") || line.starts_with("run file.exit") || line.starts_with("key escape")) {
                return;
            }
            run.line(line);
        }
        run.keepUp();
    }

    /// The document behind the first lines of a journal that is run anew.
    Json replayed(const std::string& script, const std::vector<std::string>& journal, std::size_t count) {
        fill(script);
        KeptRun run(folder / "run");
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_TRUE(run.line(journal[i])) << journal[i];
        }
        return run.document();
    }

    TemporaryFolder folder;

private:
    fs::path before_;
};

TEST_F(HistoryOfScenarios, LeadsToWhatAReplayComesTo) {
    std::size_t compared = 0;
    for (const auto& entry : fs::directory_iterator(VELMORA_SCENARIOS)) {
        if (entry.path().extension() != ".script") {
            continue;
        }
        SCOPED_TRACE(entry.path().filename().string());
        const std::string script = textOf(entry.path());
        fill(script);
        KeptRun run(folder / "run");
        runLines(run, script);
        const std::vector<std::string> journal = run.session().journal().lines();
        const Json end = run.document();
        std::vector<std::size_t> places;
        for (std::size_t count = 0; count <= journal.size(); ++count) {
            if (run.session().leadsTo(count)) {
                places.push_back(count);
            }
        }
        std::reverse(places.begin(), places.end());
        std::map<std::size_t, Json> found;
        for (const std::size_t count : places) {
            ASSERT_TRUE(run.goTo(count));
            found[count] = run.document();
        }
        if (!places.empty() && places.front() == journal.size()) {
            run.goTo(journal.size());
            EXPECT_EQ(run.document(), end) << "and forth again";
        }
        // Every third place, the ones next to the ends among them, is worth a replay; fewer where each takes long.
        for (std::size_t i = 0; i < places.size(); i += i < 2 ? 1 : (sanitized ? 12 : 3)) {
            const Json again = replayed(script, journal, places[i]);
            EXPECT_EQ(found[places[i]], again) << "behind line " << places[i] << '\n'
                                               << Json::diff(found[places[i]], again).dump().substr(0, 600);
            ++compared;
        }
    }
    EXPECT_GT(compared, sanitized ? 150U : 400U);
}

} // namespace
} // namespace velmora::test

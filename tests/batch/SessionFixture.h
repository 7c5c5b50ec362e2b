#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "BatchSession.h"
#include "small_models.h"

namespace velmora::test {

/// Keeps events.
class EventRecorder : public EventPrinter {
public:
    std::vector<Json> events;

    void print(const Json& event) override { events.push_back(event); }
};

/// A session in a folder of its own, which holds plate.apt: four sections of five points, point (n, m) at (m, n, 0).
/// At 800 by 600 pixels its centre (2, 1.5, 0) is the middle of the view, and a model unit in the plane through it
/// is 300 / 2.625 pixels long.
class SessionFixture : public testing::Test {
protected:
    using Next = BatchSession::Next;

    SessionFixture() { writeFileText(folder / "plate.apt", aptText({flatPatch(4, 5)})); }

    /// The file of a structured model with whole coordinates.
    static std::string aptText(const PatchList& patches) {
        std::string text;
        for (const Patch& patch : patches) {
            text += std::to_string(patch.size()) + ' ' + std::to_string(patch.at(0).size()) + '\n';
            for (const PointList& section : patch) {
                for (const zVec<double>& p : section) {
                    text += std::to_string(static_cast<int>(p.x)) + ' ' + std::to_string(static_cast<int>(p.y)) + ' ' +
                            std::to_string(static_cast<int>(p.z)) + '\n';
                }
            }
        }
        return text;
    }

    /// The path of a file of the folder, as a word of a script.
    std::string file(const std::string& name) const { return '"' + (folder / name).string() + '"'; }

    /// Runs one line; its events are then in `events`.
    Next run(const std::string& line) {
        recorder.events.clear();
        const Next next = session.run(++number, line);
        events = recorder.events;
        return next;
    }

    /// Runs a line that must succeed.
    void must(const std::string& line) { ASSERT_EQ(run(line), Next::GoOn) << line << '\n' << Json(events).dump(2); }

    /// Runs a line that must end the script with one error, which is its last event; gives the error's text.
    std::string errorOf(const std::string& line) {
        EXPECT_EQ(run(line), Next::Fail) << line;
        EXPECT_EQ(kinds("error"), 1) << line;
        if (events.empty() || events.back().at("event") != "error") {
            ADD_FAILURE() << line << ": no error at the end";
            return "";
        }
        EXPECT_EQ(events.back().at("line"), number);
        return events.back().at("text").get<std::string>();
    }

    /// How many of the events are of that kind.
    int kinds(const std::string& kind) const {
        return static_cast<int>(
            std::count_if(events.begin(), events.end(), [&](const Json& event) { return event.at("event") == kind; }));
    }

    /// The first event of that kind; an empty object when there is none.
    Json event(const std::string& kind) const {
        const auto found =
            std::find_if(events.begin(), events.end(), [&](const Json& each) { return each.at("event") == kind; });
        return found == events.end() ? Json::object() : *found;
    }

    /// What a print line shows.
    Json printed(const std::string& what) {
        EXPECT_EQ(run("print " + what), Next::GoOn) << what;
        return event("print").value("value", Json());
    }

    TemporaryFolder folder;
    EventRecorder recorder;
    BatchSession session{recorder, {folder.path(), {800, 600}, false}};
    std::vector<Json> events;
    std::int64_t number = 0;
};

} // namespace velmora::test

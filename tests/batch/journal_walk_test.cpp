#include <gmock/gmock.h>

#include <cstdlib>
#include <random>

#include "SessionFixture.h"

// Lines in any order, with the mouse beside the model and values that are refused among them: the journal does the same
// again, and writes itself.

namespace velmora::test {
namespace {

/// Fields of a dialog and what a walk sets them to; some are out of range, or off.
struct Choice {
    const char* command;
    std::vector<std::pair<const char*, std::vector<const char*>>> fields;
};

const std::vector<Choice>& choices() {
    static const std::vector<Choice> all = {
        {"model.move", {{"deltaX", {"1", "0", "-2.5"}}, {"deltaY", {"3"}}}},
        {"model.scaling", {{"scale", {"2", "0.5", "0", "1e308"}}, {"xCenter", {"1"}}}},
        {"model.rotation", {{"angle", {"30", "90"}}, {"z2", {"1", "0"}}}},
        {"model.flip", {{"plane", {"1", "2", "3"}}, {"xPlane", {"1"}}, {"yPlane", {"2"}}}},
        {"model.smooth", {{"regime", {"1", "2"}}, {"function", {"1", "2", "3"}}}},
        {"model.compare", {{"target", {"1", "2", "3"}}}},
        {"model.saveDistances", {{"file", {"walk.csv"}}}},
        {"model.turnRound", {}},
        {"model.convertation", {}},
        {"model.lastFirstSwitch", {{"kind", {"1", "2"}}}},
        {"line.inputSection", {{"patch", {"1", "2", "3", "9"}}, {"section", {"1", "2", "4"}}}},
        {"line.inputLine", {{"patch", {"1", "2", "3"}}, {"line", {"1", "3", "5"}}}},
        {"patch.inputAndAdd", {{"number", {"1", "2", "3", "7"}}}},
        {"line.rebreak",
         {{"regime", {"1", "2"}},
          {"firstPoint", {"1", "2", "3"}},
          {"newCount", {"3", "4", "9"}},
          {"compression", {"1", "2", "0"}},
          {"firstCurve", {"1", "2"}},
          {"useBlock", {"0", "1"}},
          {"function", {"1", "2", "3"}}}},
        {"point.rebreakPart", {{"position", {"1", "2"}}, {"newCount", {"2", "5"}}, {"regime", {"1", "2"}}}},
        {"line.duplicate", {{"duplicateCount", {"1", "2", "0"}}}},
        {"point.duplicate", {{"duplicateCount", {"1", "3"}}}},
        {"line.interpolate", {{"coefficient", {"0.5", "-0.5", "4"}}}},
        {"line.prescribe", {{"useZ", {"1", "0"}}, {"z", {"1", "2"}}, {"useX", {"1"}}, {"x", {"5"}}}},
        {"line.correct", {{"linesBefore", {"0", "1"}}, {"linesAfter", {"1", "2"}}, {"power", {"1", "2"}}}},
        {"line.firstPoint", {{"kind", {"1", "2"}}, {"makeLoop", {"1"}}}},
        {"line.scaling", {{"scale", {"2"}}}},
        {"line.move", {{"deltaZ", {"1", "-1"}}}},
        {"point.edit", {{"x", {"0.5", "2"}}, {"z", {"1"}}}},
        {"block.extrapolate", {{"kind", {"1", "2", "3", "4"}}, {"coefficient", {"1", "0.5"}}}},
        {"block.merge", {{"kind", {"1", "2"}}, {"matching", {"0", "1"}}, {"showDouble", {"1"}}}},
        {"view.features", {{"showFirstPoints", {"1", "0"}}, {"showBuffer", {"1"}}}},
        {"view.colourByValue", {{"quantity", {"1", "2"}}, {"bands", {"5", "30"}}}},
        {"convert.toSkl", {{"number", {"3", "0"}}, {"planeAxis", {"1", "2"}}}},
        {"file.saveAs", {{"file", {"walk.apt", "walk.skl"}}}},
    };
    return all;
}

class JournalWalk : public SessionFixture {
protected:
    int pick(std::size_t count) { return std::uniform_int_distribution<int>(0, static_cast<int>(count) - 1)(random_); }
    template <class List>
    const auto& oneOf(const List& list) {
        return list[static_cast<std::size_t>(pick(list.size()))];
    }

    std::string number(int most) { return std::to_string(1 + pick(static_cast<std::size_t>(most))); }

    std::string runLine() {
        if (pick(2) == 0) {
            const Choice& choice = oneOf(choices());
            std::string line = std::string("run ") + choice.command;
            for (const auto& [name, values] : choice.fields) {
                if (pick(2) == 0) {
                    const std::string value = oneOf(values);
                    line += std::string(" ") + name + '=';
                    line += std::string(name) == "file" ? file(value) : value;
                }
            }
            return line + (pick(8) == 0 ? " cancel=dialog" : "");
        }
        const auto commands = commandTable();
        const Command& command = oneOf(commands);
        const std::string id = command.id;
        const bool leaves = id == "file.exit" || id == "file.new" || id == "file.open" || id == "file.picture";
        return leaves ? "run line.exit" : "run " + id + (pick(3) == 0 ? " answer=yes" : "");
    }

    /// A word and numbers from 1 up to what `most` says. They are drawn in this order by every compiler.
    std::string numbered(std::string line, std::initializer_list<int> most) {
        for (const int each : most) {
            line += ' ' + number(each);
        }
        return line;
    }

    std::vector<std::string> anything() {
        switch (pick(10)) {
        case 0:
        case 1: {
            const std::string x = number(799);
            const std::string y = number(599);
            const std::string at = x + ' ' + y;
            const std::string moved = std::to_string(std::stoi(x) + pick(30)) + ' ' + y;
            if (pick(3) == 0) {
                return {"mouse down " + at, runLine(), "mouse up " + moved};
            }
            return {"mouse down " + at, "mouse move " + moved, "mouse up " + moved};
        }
        case 2:
            return {numbered("capture point", {3, 4, 5})};
        case 3:
            return {numbered("capture section", {3, 4}), numbered("capture line", {3, 5})};
        case 4:
            return {numbered("capture patch", {3})};
        case 5: {
            const auto armings = {"run point.capture", "run line.captureSection", "run line.captureLine",
                                  "run patch.capture", "run point.drag",          "run point.next",
                                  "run point.free",    "run patch.addToBlock"};
            return {oneOf(std::vector<std::string>(armings.begin(), armings.end()))};
        }
        case 6:
            return {numbered("drag", {5, 5}) + " 0", "release"};
        default:
            return {runLine()};
        }
    }

    /// A walk that begins with three patches; `seed` tells it from others.
    void walk(unsigned seed) {
        random_.seed(seed);
        layModel();
        std::vector<std::string> lines = {"open " + file("three.apt")};
        EventRecorder ignored;
        BatchSession walked(ignored, {folder.path(), {800, 600}, false});
        std::int64_t at = 0;
        walked.run(++at, lines.front());
        for (int step = 0; step < 40; ++step) {
            for (const std::string& line : anything()) {
                lines.push_back(line);
                walked.run(++at, line);
            }
        }
        const std::vector<std::string> journal = walked.session().script();
        const Json model = documentOf(walked, ignored);
        forgetFiles();
        layModel();
        EventRecorder again;
        BatchSession replay(again, {folder.path(), {800, 600}, false});
        std::string done;
        at = 0;
        for (const std::string& line : journal) {
            again.events.clear();
            ASSERT_EQ(replay.run(++at, line), Next::GoOn) << "walk " << seed << ", the journal:\n"
                                                          << done << "stopped at: " << line << '\n'
                                                          << again.events.back().dump() << "\nthe walk:\n"
                                                          << joined(lines);
            done += line + '\n';
        }
        const Json other = documentOf(replay, again);
        ASSERT_TRUE(model == other) << "walk " << seed << ", the journal:\n"
                                    << done << Json::diff(model, other).dump().substr(0, 1000) << "\nthe walk:\n"
                                    << joined(lines);
        ASSERT_EQ(replay.session().script(), journal) << "walk " << seed << ", the walk:\n" << joined(lines);
        forgetFiles();
    }

private:
    static std::string joined(const std::vector<std::string>& lines) {
        std::string text;
        for (const std::string& line : lines) {
            text += line + '\n';
        }
        return text;
    }

    void layModel() {
        writeFileText(folder / "three.apt", aptText({flatPatch(4, 5), flatPatch(3, 3), flatPatch(2, 4)}));
    }

    /// What the walk wrote is not there when it is done again.
    void forgetFiles() {
        for (const char* name : {"walk.apt", "walk.skl", "walk.csv", "three.skl", "three.dat"}) {
            std::filesystem::remove(folder / name);
        }
    }

    static Json documentOf(BatchSession& session, EventRecorder& recorder) {
        Json all;
        for (const char* what : {"state", "patches", "region", "fieldPatches", "blockClipboard", "lineBuffer",
                                 "undoPatches", "interLine", "comparison", "curve"}) {
            recorder.events.clear();
            session.run(1, std::string("print ") + what);
            all[what] = recorder.events.empty() ? Json() : recorder.events.front().value("value", Json());
        }
        // What was looked at and said, and places and a number that nothing looks at without a capture.
        for (const char* name : {"status", "leftButtonDown", "spinTimerOn", "patchToRemove", "pickedPoint",
                                 "capturedPointPos", "boxMin", "boxMax", "modelCenter", "modelRadius"}) {
            all["state"].erase(name);
        }
        return all;
    }

    std::mt19937 random_;
};

TEST_F(JournalWalk, IsDoneAgainByItsJournal) {
    const char* extent = std::getenv("VELMORA_RELIABILITY");
    const unsigned walks = extent != nullptr && std::string(extent) == "long" ? 5000 : 150;
    for (unsigned seed = 1; seed <= walks; ++seed) {
        ASSERT_NO_FATAL_FAILURE(walk(seed));
    }
}

} // namespace
} // namespace velmora::test

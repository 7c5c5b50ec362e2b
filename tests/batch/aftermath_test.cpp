#include <array>
#include <cmath>
#include <optional>
#include <ostream>

#include "SessionFixture.h"

namespace velmora::test {

namespace {

using Script = std::vector<std::string>;

/// A command that ends, takes out, puts in or cuts, what it must leave, and where a click finds the model afterwards.
struct Aftermath {
    std::string name;
    Script before = {};
    std::string command;
    Json left = Json::object();                        ///< beside the idle state
    std::array<double, 2> click = {1, 1};              ///< a point of the model
    std::optional<std::array<double, 2>> patchAt = {}; ///< inside a patch; absent: beside the point
    std::string model = "three.apt";
};

void PrintTo(const Aftermath& aftermath, std::ostream* out) {
    *out << aftermath.name;
}

const std::array<const char*, 12> flags = {"pointCaptureArmed",   "pointCaptured",     "freePointArmed",
                                           "freePointHeld",       "patchCaptureArmed", "patchCaptured",
                                           "sectionCaptureArmed", "sectionCaptured",   "lineCaptureArmed",
                                           "lineCaptured",        "pointDragging",     "patchRemoving"};

/// Each way to arm a click, with the flag that is on while it waits and the one that the click turns on.
struct Regime {
    const char* command;
    const char* armed;
    const char* captured;
};

const Regime regimes[] = {
    {"point.capture", "pointCaptureArmed", "pointCaptured"},
    {"patch.capture", "patchCaptureArmed", "patchCaptured"},
    {"patch.addToBlock", "patchCaptureArmed", "patchCaptured"},
    {"line.captureSection", "sectionCaptureArmed", "sectionCaptured"},
    {"line.captureLine", "lineCaptureArmed", "lineCaptured"},
};

const Script firstPatch = {"run patch.inputAndAdd number=1"};
const Script bothPatches = {"run patch.inputAndAdd number=1", "run patch.inputAndAdd number=2"};
const Script heldSection = {"run line.inputSection patch=1 section=2"};
const Script heldLine = {"run line.inputLine patch=1 line=2"};

/// A click of the second point of the second section of patch 1.
const Script heldPoint = {"run point.capture", "click 1 1"};

Script operator+(Script first, const Script& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

const Json onSection = {{"sectionCaptured", true}, {"capturedPatch", 0}, {"capturedSection", 1}, {"capturedLine", -1}};

/// The state with the first given over the second.
Json over(const Json& first, Json second) {
    second.update(first);
    return second;
}

const std::vector<Aftermath> aftermaths = {
    // Extract and Delete end every regime and empty the zBlock.
    {.name = "DeleteWhileRemoving",
     .before = firstPatch + Script{"run block.only", "run patch.removeFromBlock"},
     .command = "run block.delete",
     .left = {{"patchUndoReady", true}},
     .click = {1, 7}},
    {.name = "DeleteWhileAdding",
     .before = firstPatch + Script{"run patch.addToBlock"},
     .command = "run block.delete",
     .click = {1, 7}},
    {.name = "DeleteWithSectionAndPoint",
     .before = firstPatch + heldSection + heldPoint,
     .command = "run block.delete",
     .click = {1, 7}},
    {.name = "DeleteWithAnArmedSection",
     .before = firstPatch + Script{"run line.captureSection"},
     .command = "run block.delete",
     .click = {1, 7}},
    {.name = "DeleteWithALineAndABend",
     .before = firstPatch + heldLine + Script{"run point.capture", "click 1 1", "run point.dragAndCorrect"},
     .command = "run block.delete",
     .click = {1, 7}},
    {.name = "DeleteWhileDragging",
     .before = firstPatch + heldPoint + Script{"run point.drag"},
     .command = "run block.delete",
     .left = {{"pointUndoReady", false}},
     .click = {1, 7}},
    {.name = "ExtractWhileRemoving",
     .before = firstPatch + Script{"run block.only", "run patch.removeFromBlock"},
     .command = "run block.extract",
     .left = {{"patchUndoReady", true}}},
    {.name = "ExtractWhileAdding",
     .before = firstPatch + Script{"run patch.addToBlock"},
     .command = "run block.extract"},
    {.name = "ExtractWithLineAndPoint", .before = firstPatch + heldLine + heldPoint, .command = "run block.extract"},
    {.name = "ExtractWithAnArmedPoint",
     .before = firstPatch + heldSection + Script{"run point.capture"},
     .command = "run block.extract"},
    {.name = "ExtractWithAFreePoint",
     .before = firstPatch + heldSection + Script{"run point.free.line", "click 1 2"},
     .command = "run block.extract"},

    // Paste takes the place of the zBlock: the pasted patch is the last one.
    {.name = "PasteWhileAdding",
     .before = firstPatch + Script{"run block.copy", "run patch.addToBlock"},
     .command = "run block.paste",
     .left = {{"patchCaptured", true}, {"blockList", {2}}, {"patchUndoReady", true}}},
    {.name = "PasteWhileRemoving",
     .before = firstPatch + Script{"run block.copy", "run patch.removeFromBlock"},
     .command = "run block.paste",
     .left = {{"patchCaptured", true}, {"blockList", {2}}, {"capturedPatch", 0}}},
    {.name = "PasteWithSectionAndPoint",
     .before = firstPatch + Script{"run block.copy"} + heldSection + heldPoint,
     .command = "run block.paste",
     .left = {{"patchCaptured", true}, {"blockList", {2}}, {"pointUndoReady", false}}},
    {.name = "PasteWithAnArmedLine",
     .before = firstPatch + Script{"run block.copy", "run line.captureLine"},
     .command = "run block.paste",
     .left = {{"patchCaptured", true}, {"blockList", {2}}}},
    {.name = "PasteWithoutAZBlock",
     .before = firstPatch + Script{"run block.copy", "run patch.exit"},
     .command = "run block.paste",
     .left = {{"patchCaptured", true}, {"blockList", {3}}}},

    // Merge
    {.name = "MergeWithSectionAndPoint",
     .before = bothPatches + Script{"run block.only"} + heldSection + heldPoint,
     .command = "run block.merge kind=1",
     .left = {{"patchUndoReady", true}}},
    {.name = "MergeWhileRemoving",
     .before = bothPatches + Script{"run patch.removeFromBlock"},
     .command = "run block.merge kind=1"},
    {.name = "MergeWhileAdding",
     .before = bothPatches + Script{"run patch.addToBlock"},
     .command = "run block.merge kind=1"},

    // Symmetric keeps the point, Flip lets it go.
    {.name = "SymmetricWithAPoint",
     .before = heldPoint,
     .command = "run model.symmetric plane=1 xPlane=-5",
     .left = {{"pointCaptured", true},
              {"pointPicked", true},
              {"capturedPatch", 0},
              {"capturedPointSection", 1},
              {"capturedPoint", 1},
              {"pointUndoReady", true},
              {"patchUndoReady", true}}},
    {.name = "SymmetricOfTheZBlock",
     .before = firstPatch,
     .command = "run model.symmetric plane=1 xPlane=-5",
     .left = {{"patchCaptured", true}, {"blockList", {0}}, {"capturedPatch", 0}}},
    {.name = "FlipWithAPoint",
     .before = heldPoint,
     .command = "run model.flip plane=3 zPlane=0",
     .left = {{"capturedPatch", 0}, {"capturedPoint", -1}, {"pointUndoReady", false}}},

    // Cut of the last point of the first section: the point is gone, and so is its capture.
    {.name = "CutOfTheLastPoint",
     .before = Script{"run point.capture", "click 4 0"},
     .command = "run point.cut answer=yes",
     .left = {{"capturedPointSection", -1},
              {"capturedPoint", -1},
              {"savedPatch", 0},
              {"savedPointSection", 0},
              {"savedPoint", 4},
              {"pointUndoReady", true},
              {"pointClipboardFull", true}}},
    {.name = "CutOfTheLastPointWithPatchAndSection",
     .before = firstPatch + Script{"run line.inputSection patch=1 section=1", "run point.capture", "click 4 0"},
     .command = "run point.cut answer=yes",
     .left = {{"patchCaptured", true},
              {"blockList", {0}},
              {"sectionCaptured", true},
              {"capturedPatch", 0},
              {"capturedSection", 0},
              {"capturedPointSection", -1},
              {"capturedPoint", -1},
              {"savedPatch", 0},
              {"savedPointSection", 0},
              {"savedPoint", 4},
              {"pointUndoReady", true}},
     .click = {1, 0}},
    {.name = "CutOfTheLastPointOfALine",
     .before = Script{"run line.inputLine patch=1 line=5", "run point.capture", "click 4 0"},
     .command = "run point.cut answer=yes",
     .left = {{"capturedPointSection", -1}, {"capturedPoint", -1}, {"savedPoint", 4}}},
    {.name = "CutOfALastPointGoesToTheSectionBefore",
     .before = Script{"run point.capture", "click 4 2"},
     .command = "run point.cut answer=yes",
     .left = {{"pointCaptured", true},
              {"pointPicked", true},
              {"capturedPatch", 0},
              {"capturedPointSection", 1},
              {"capturedPoint", 0},
              {"savedPatch", 0},
              {"savedPointSection", 2},
              {"savedPoint", 4}}},
    {.name = "DeleteOfAnEndPoint",
     .before = Script{"run point.capture", "click 4 0"},
     .command = "run point.delete answer=yes",
     .left = {{"savedPatch", -1}, {"pointUndoReady", false}}},
    {.name = "UndoOfACut",
     .before = Script{"run point.capture", "click 4 2", "run point.cut answer=yes"},
     .command = "run point.undo",
     .left = {{"pointCaptured", true},
              {"pointPicked", true},
              {"capturedPatch", 0},
              {"capturedPointSection", 2},
              {"capturedPoint", 4},
              {"savedPatch", -1},
              {"savedPointSection", -1},
              {"savedPoint", -1},
              {"pointUndoReady", false}}},

    // Sections and lines
    {.name = "DeleteOfASection",
     .before = heldSection,
     .command = "run line.delete",
     .left = over({{"patchUndoReady", true}}, onSection),
     .click = {1, 2},
     .patchAt = {{1.4, 2.4}}},
    {.name = "DeleteOfTheLastSection",
     .before = {"run line.inputSection patch=1 section=4"},
     .command = "run line.delete",
     .left = over({{"capturedSection", 2}}, onSection),
     .click = {1, 2},
     .patchAt = {{1.4, 1.4}}},
    {.name = "DeleteOfASectionThatMustStay",
     .before = {"run line.inputSection patch=1 section=1", "run line.delete", "run line.delete"},
     .command = "run line.delete",
     .left = {{"patchUndoReady", true}},
     .click = {1, 2}},
    {.name = "DeleteOfTheOnlySectionOfAPatch",
     .before = {"run patch.inputAndAdd number=2", "run patch.inputAndAdd number=1",
                "run line.inputSection patch=1 section=1"},
     .command = "run line.delete",
     .left = {{"patchCaptured", true}, {"blockList", {0}}},
     .click = {1, 8},
     .patchAt = {{0.5, 7.5}},
     .model = "lines.skl"},
    {.name = "DeleteOfALineThatMustStay",
     .before = {"run line.inputLine patch=1 line=1", "run line.delete", "run line.delete", "run line.delete"},
     .command = "run line.delete",
     .click = {3, 1}},
    {.name = "SplitOfAPatch",
     .before = firstPatch + Script{"run block.only"} + heldSection,
     .command = "run line.splitPatch",
     .left = over({{"patchCaptured", true}, {"blockList", Json::array()}}, onSection)},
    {.name = "CylinderWithEverythingHeld",
     .before = firstPatch + Script{"run block.only"} + heldSection + heldPoint,
     .command = "run line.cylinder answer=yes",
     .left = {{"patchCaptured", true}, {"pointUndoReady", false}, {"patchUndoReady", true}},
     .click = {0, 0}},
    {.name = "WeedingWithAPoint",
     .before = heldSection + heldPoint,
     .command = "run line.weeding",
     .left = onSection,
     .click = {2, 1}},

    // Exits
    {.name = "ExitOfThePatches",
     .before = firstPatch + Script{"run block.only"} + heldSection + heldPoint,
     .command = "run patch.exit",
     .left = {{"pointUndoReady", false}}},
    {.name = "ExitOfThePatchesWhileRemoving",
     .before = firstPatch + Script{"run patch.removeFromBlock"},
     .command = "run patch.exit"},
    {.name = "ExitOfThePatchesWhileAdding",
     .before = firstPatch + Script{"run patch.addToBlock"},
     .command = "run patch.exit"},
    {.name = "ExitOfTheLines", .before = heldSection + heldPoint, .command = "run line.exit"},
    {.name = "ExitOfAnArmedLine", .before = {"run line.captureLine"}, .command = "run line.exit"},
    {.name = "ExitOfThePointWithADragBegun",
     .before = heldSection + heldPoint + Script{"run point.drag"},
     .command = "run point.exit",
     .left =
         over({{"savedPatch", 0}, {"savedPointSection", 1}, {"savedPoint", 1}, {"pointUndoReady", false}}, onSection)},
    {.name = "ExitOfThePointWithABendBegun",
     .before = heldSection + heldPoint + Script{"run point.dragAndCorrect"},
     .command = "run point.exit",
     .left = over({{"dragCorrectsLine", false}, {"pointUndoReady", false}}, onSection)},
    {.name = "ExitOfAFreePoint",
     .before = heldSection + Script{"run point.free.line", "click 2 2"},
     .command = "run point.exit",
     .left = onSection},
    {.name = "RemovalOfTheOnlyPatch",
     .before = firstPatch + Script{"run block.only", "run patch.removeFromBlock"},
     .command = "click 1.5 1.5",
     .left = {{"capturedPatch", 0}, {"pointUndoReady", false}}},
    {.name = "RemovalOfOneOfTwo",
     .before = bothPatches + Script{"run patch.removeFromBlock"},
     .command = "click 1.5 1.5",
     .left = {{"patchCaptured", true}, {"blockList", {1}}, {"capturedPatch", 1}},
     .click = {1, 7}},

    // From adding to removing and back: one click does one thing.
    {.name = "AddingAfterRemoving",
     .before = firstPatch + Script{"run patch.removeFromBlock", "run patch.addToBlock"},
     .command = "click 1.5 7.5",
     .left = {{"patchCaptured", true}, {"blockList", {0, 1}}, {"capturedPatch", 1}}},
    {.name = "RemovingAfterAdding",
     .before = bothPatches + Script{"run patch.addToBlock", "run patch.removeFromBlock"},
     .command = "click 1.5 7.5",
     .left = {{"patchCaptured", true}, {"blockList", {0}}}},
    {.name = "InputAfterRemoving",
     .before = firstPatch + Script{"run patch.removeFromBlock"},
     .command = "run patch.inputAndAdd number=2",
     .left = {{"patchCaptured", true}, {"blockList", {0, 1}}, {"capturedPatch", 1}}},
    {.name = "InputOfASectionAfterRemoving",
     .before = firstPatch + Script{"run patch.removeFromBlock"},
     .command = "run line.inputSection patch=1 section=2",
     .left = over({{"patchCaptured", true}, {"blockList", {0}}}, onSection)},
    {.name = "InputOfALineWhileAPointIsArmed",
     .before = {"run point.capture"},
     .command = "run line.inputLine patch=1 line=2",
     .left = {{"lineCaptured", true}, {"capturedPatch", 0}, {"capturedLine", 1}}},
    {.name = "CaptureOfAPatchAfterAnArmedLine",
     .before = {"run line.captureLine", "run patch.capture"},
     .command = "click 1.5 1.5",
     .left = {{"patchCaptured", true}, {"blockList", {0}}, {"capturedPatch", 0}}},
    {.name = "CaptureOfAPointAfterAnArmedLine",
     .before = {"run line.captureLine", "run point.capture"},
     .command = "click 1 1",
     .left = {{"pointCaptured", true}, {"pointPicked", true}, {"capturedPatch", 0}}},
    {.name = "CaptureOfAPointAfterAnArmedSection",
     .before = {"run line.captureSection", "run point.capture"},
     .command = "click 1 1",
     .left = {{"pointCaptured", true}, {"pointPicked", true}, {"capturedPatch", 0}}},
    {.name = "CaptureOfALineAfterAnArmedPatch",
     .before = {"run patch.capture", "run line.captureLine answer=yes"},
     .command = "click 1 1",
     .left = {{"lineCaptured", true}, {"capturedPatch", 0}, {"capturedLine", 1}}},

    // Undo, conversions and files
    {.name = "UndoOfADelete",
     .before = firstPatch + Script{"run block.delete"},
     .command = "run patch.undo",
     .left = {{"patchUndoReady", false}}},
    {.name = "UndoInThePatchRegime",
     .before = firstPatch + Script{"run model.coonsRebuild", "run block.only"},
     .command = "run patch.undo",
     .left = {{"patchCaptured", true}, {"capturedPatch", 0}, {"patchUndoReady", false}}},
    {.name = "ConversionToTriangles",
     .before = firstPatch + Script{"run block.only"} + heldSection + heldPoint,
     .command = "run convert.toUnstructured",
     .left = {{"pointUndoReady", false}}},
    {.name = "ConversionToTrianglesWhileRemoving",
     .before = firstPatch + Script{"run patch.removeFromBlock"},
     .command = "run convert.toUnstructured"},
    {.name = "ConversionToLines",
     .before = Script{"run convert.toUnstructured"} + firstPatch + Script{"run block.only", "run point.capture"},
     .command = "run convert.toSkl planeAxis=2 number=5",
     .click = {2, 7.5},
     .patchAt = {{2.2, 8}}},
    {.name = "ConversionToAGrid",
     .before = {"run patch.inputAndAdd number=2", "run line.inputSection patch=2 section=1"},
     .command = "run convert.toApt",
     .left = {{"patchCaptured", true}, {"blockList", {1}}},
     .click = {1, 7},
     .model = "lines.skl"},
    {.name = "OpeningWhileRemoving",
     .before = firstPatch + Script{"run block.only", "run patch.removeFromBlock"},
     .command = "run file.open answer=yes file=FOLDER/three.apt"},
    {.name = "AppendingWithEverythingHeld",
     .before = firstPatch + heldSection + heldPoint,
     .command = "run file.append file=FOLDER/plate.apt",
     .left = {{"pointUndoReady", false}}},
    {.name = "NewZBlock",
     .before = firstPatch + Script{"run block.only"} + heldSection,
     .command = "run block.new",
     .left = {{"patchCaptureArmed", true}}},
};

/// A session whose mouse is told places of the model.
class ClickFixture : public SessionFixture {
protected:
    void click(double x, double y) {
        const Json at = printed("window " + std::to_string(x) + ' ' + std::to_string(y) + " 0");
        const std::string pixel = ' ' + std::to_string(std::lround(at.at(0).get<double>())) + ' ' +
                                  std::to_string(std::lround(at.at(1).get<double>()));
        must("mouse down" + pixel);
        must("mouse up" + pixel);
    }
};

class AftermathTest : public ClickFixture, public testing::WithParamInterface<Aftermath> {
protected:
    AftermathTest() {
        writeFileText(folder / "three.apt", aptText({flatPatch(4, 5), plateAt(6), plateAt(12)}));
        writeFileText(folder / "lines.skl",
                      "1\n3\n0 0 0\n1 0 0\n2 0 0\n"
                      "3\n3\n0 7 0\n1 7 0\n2 7 0\n2\n0 8 0\n1 8 0\n4\n0 9 0\n1 9 0\n2 9 0\n3 9 0\n");
    }

    static Patch plateAt(double y) {
        Patch patch = flatPatch(4, 5);
        for (PointList& section : patch) {
            for (zVec<double>& p : section) {
                p.y += y;
            }
        }
        return patch;
    }

    /// One line, with `click X Y` for a click on the point (X, Y, 0) of the model.
    void follow(std::string line) {
        if (line.starts_with("click ")) {
            const auto blank = line.find(' ', 6);
            click(std::stod(line.substr(6, blank - 6)), std::stod(line.substr(blank)));
            return;
        }
        if (const auto mark = line.find("FOLDER"); mark != std::string::npos) {
            line.replace(mark, 6, folder.path().string());
        }
        ASSERT_NO_FATAL_FAILURE(must(line));
    }

    void follow(const Script& script) {
        for (const std::string& line : script) {
            ASSERT_NO_FATAL_FAILURE(follow(line)) << line;
        }
    }

    void reachTheEnd() {
        ASSERT_NO_FATAL_FAILURE(must("open " + file(GetParam().model)));
        ASSERT_NO_FATAL_FAILURE(follow(GetParam().before));
        ASSERT_NO_FATAL_FAILURE(follow(GetParam().command));
    }

    /// The click that gives the regime what it waits for.
    static std::string placeFor(const Regime& regime) {
        const auto [x, y] = GetParam().click;
        const bool patch = std::string(regime.captured) == "patchCaptured";
        const auto place = patch ? GetParam().patchAt.value_or(std::array{x + 0.4, y + 0.4}) : GetParam().click;
        return "click " + std::to_string(place[0]) + ' ' + std::to_string(place[1]);
    }

    Json flagsNow() {
        const Json state = printed("state");
        Json now;
        for (const char* flag : flags) {
            now[flag] = state.at(flag);
        }
        now["dragCorrectsLine"] = state.at("dragCorrectsLine");
        return now;
    }

    /// What is so when nothing is armed, captured or selected.
    static Json idleState() {
        Json idle = {{"dragCorrectsLine", false},  {"pointPicked", false}, {"showBlockOnly", false},
                     {"blockList", Json::array()}, {"capturedPatch", -1},  {"capturedSection", -1},
                     {"capturedLine", -1}};
        for (const char* flag : flags) {
            idle[flag] = false;
        }
        return idle;
    }
};

} // namespace

TEST_P(AftermathTest, LeavesWhatTheRuleSays) {
    ASSERT_NO_FATAL_FAILURE(reachTheEnd());
    const Json state = printed("state");
    const Json expected = over(GetParam().left, idleState());
    for (const auto& [key, value] : expected.items()) {
        EXPECT_EQ(state.at(key), value) << key;
    }
    EXPECT_EQ(state.at("blockCount"), expected.at("blockList").size());
}

TEST_P(AftermathTest, TheNextClickCapturesOneThing) {
    for (const Regime& regime : regimes) {
        SCOPED_TRACE(regime.command);
        ASSERT_NO_FATAL_FAILURE(reachTheEnd());
        const Json state = printed("state");
        if (printed("commands").at(regime.command).get<bool>()) {
            // Whatever is armed still waits: a question may come first.
            const bool curve = std::string(regime.command).starts_with("line.");
            const bool asks = curve && state.at("patchCaptureArmed").get<bool>();
            must(std::string("run ") + regime.command + (asks ? " answer=yes" : ""));
            Json armed = flagsNow();
            EXPECT_TRUE(armed.at(regime.armed).get<bool>());
            const std::string at = placeFor(regime);
            follow(at);
            armed[regime.armed] = false;
            armed[regime.captured] = true;
            EXPECT_EQ(flagsNow(), armed); // that flag alone has moved on
            const Json after = printed("state");
            for (const char* flag : flags) {
                EXPECT_FALSE(std::string(flag).ends_with("Armed") && after.at(flag).get<bool>()) << flag;
            }
            follow(at);
            EXPECT_EQ(printed("state"), after); // nothing waits for another
        } else {
            EXPECT_TRUE(state.at(regime.captured).get<bool>() || state.at("fileKind") != "apt");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, AftermathTest, testing::ValuesIn(aftermaths),
                         [](const testing::TestParamInfo<Aftermath>& each) { return each.param.name; });

/// Picks must see the model as it is now, not as it was at the pick before.
class PickAgainTest : public ClickFixture {
protected:
    PickAgainTest() {
        must("open " + file("plate.apt"));
        must("run convert.toUnstructured");
        must("run view.fit");
    }

    /// The zBlock after a click on a place of the model in the patch regime.
    Json blockAfterClick(double x, double y) {
        click(x, y);
        return printed("state").at("blockList");
    }
};

TEST_F(PickAgainTest, FindsAZoneWhereItHasMovedTo) {
    must("run patch.capture");
    EXPECT_EQ(blockAfterClick(1.4, 1.4), Json::array({0}));
    must("run model.move deltaX=20");
    must("run block.new");
    EXPECT_EQ(blockAfterClick(1.4, 1.4), Json::array()); // nothing is there any more
    EXPECT_EQ(kinds("message"), 0);
    EXPECT_EQ(blockAfterClick(21.4, 1.4), Json::array({0}));
}

TEST_F(PickAgainTest, FindsANodeWhereItWasPut) {
    must("run point.capture");
    click(1, 1);
    EXPECT_TRUE(printed("state").at("pointCaptured").get<bool>());
    must("run point.edit x=1.5 y=1.5 z=0");
    must("run point.next");
    click(1, 1);
    EXPECT_FALSE(printed("state").at("pointCaptured").get<bool>());
    click(1.5, 1.5);
    EXPECT_TRUE(printed("state").at("pointCaptured").get<bool>());
    EXPECT_EQ(printed("state").at("pickedPoint"), Json({1.5, 1.5, 0.0}));
}

TEST_F(PickAgainTest, FindsAZoneWhoseNodeWasMovedAway) {
    must("run point.capture");
    click(4, 3);
    must("run point.edit x=3.5 y=2.5 z=0"); // the corner is drawn in
    must("run point.exit");
    must("run patch.capture");
    EXPECT_EQ(blockAfterClick(3.95, 2.95), Json::array());
    EXPECT_EQ(blockAfterClick(3.3, 2.3), Json::array({0}));
}

TEST_F(PickAgainTest, FindsAPatchWhereUndoHasPutItBack) {
    must("open " + file("plate.apt"));
    must("run model.move deltaX=20");
    must("run patch.capture");
    EXPECT_EQ(blockAfterClick(21.4, 1.4), Json::array({0}));
    must("run patch.undo");
    must("run patch.addToBlock");
    EXPECT_EQ(blockAfterClick(1.4, 1.4), Json::array({0}));
}

} // namespace velmora::test

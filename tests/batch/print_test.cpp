#include <gmock/gmock.h>

#include <cmath>
#include <set>
#include <sstream>

#include "FakeSurface.h"
#include "RecordingUi.h"
#include "SessionFixture.h"
#include "print_values.h"

namespace velmora {
namespace {

using test::SessionFixture;
using testing::HasSubstr;

class Print : public SessionFixture {
protected:
    /// The promised names that `value` has not, separated by blanks.
    static std::string missing(const Json& value, const std::string& names) {
        std::istringstream words(names);
        std::string absent;
        for (std::string name; words >> name;) {
            absent += value.contains(name) ? "" : name + ' ';
        }
        return absent;
    }

    void openPlate() { must("open " + file("plate.apt")); }
};

TEST_F(Print, EventsNameWhatWasPrinted) {
    must("print   window 1  2.5 \"3\"");
    EXPECT_EQ(event("print").at("what"), "window 1 2.5 3");
}

TEST(PrintOfALargeValue, FailsAsALineWhenTheMemoryDoesNotHoldIt) {
    test::TemporaryFolder folder;
    test::RecordingUi ui;
    VelmoraDoc doc(ui, folder.path());
    test::FakeSurface surface;
    VelmoraView view(doc, surface);
    doc.patches = {test::flatPatch(10, 10)};
    const std::vector<std::string> words = {"patches"};
    const double needed = printedBytes("patches", doc, view);
    EXPECT_GT(needed, 300.0 * sizeof(double));
    doc.freeMemory = [needed] { return static_cast<std::uint64_t>(2 * needed) - 2; };
    auto printed = printedValue(words, doc, view);
    ASSERT_TRUE(std::holds_alternative<ScriptFailure>(printed));
    EXPECT_THAT(std::get<ScriptFailure>(printed).cause, HasSubstr("not enough free memory to print \"patches\""));
    // What is small whatever the model is printed.
    const std::vector<std::string> state = {"state"};
    EXPECT_TRUE(std::holds_alternative<Json>(printedValue(state, doc, view)));
    doc.freeMemory = [needed] { return static_cast<std::uint64_t>(2 * needed) + 2; };
    EXPECT_TRUE(std::holds_alternative<Json>(printedValue(words, doc, view)));
}

TEST_F(Print, UnknownValuesAreErrors) {
    EXPECT_THAT(errorOf("print everything"), HasSubstr("\"everything\""));
    EXPECT_NE(errorOf("print state now"), "");
    EXPECT_NE(errorOf("print scene underlay"), "");
    EXPECT_NE(errorOf("print patches 1"), "");
}

TEST_F(Print, StateHasItsPromisedMembers) {
    EXPECT_EQ(missing(printed("state"),
                      "structureKind fileKind secondKind blockKind documentTitle currentPath currentDirectory "
                      "fileExtension gridPath documentModified pointCaptureArmed pointCaptured freePointArmed "
                      "freePointHeld patchCaptureArmed patchCaptured sectionCaptureArmed sectionCaptured "
                      "lineCaptureArmed lineCaptured pointDragging patchRemoving capturedPatch capturedPointSection "
                      "capturedPoint capturedSection capturedLine savedPatch savedPointSection savedPoint "
                      "savedSection savedLine blockList blockCount pointClipboard pointClipboardFull lineBufferFull "
                      "blockClipboardFull pointUndoReady patchUndoReady rebuildOnUndo patchToRemove "
                      "dragCorrectsLine undoNode showBlockOnly showFirstPoints showDoublePoints showBuffer "
                      "showZBlockMarkers partBefore partAfter sftOpen markersOpen cbcAppended gridNamed fieldLoaded "
                      "fieldMode fieldOpening surfaceMode pointPicked intersectionTolerance leftButtonDown "
                      "spinTimerOn pickedPoint capturedPointPos modelCenter modelRadius boxMin boxMax status counts "
                      "regionTitle zones"),
              "");
}

TEST_F(Print, StateTellsTheModel) {
    openPlate();
    const Json state = printed("state");
    EXPECT_EQ(state.at("structureKind"), "str");
    EXPECT_EQ(state.at("fileKind"), "apt");
    EXPECT_EQ(state.at("documentTitle"), "plate.apt");
    EXPECT_EQ(state.at("counts"), Json({{5, 5, 5, 5}}));
    EXPECT_EQ(state.at("boxMax"), Json({4.0, 3.0, 0.0}));
    EXPECT_EQ(state.at("modelCenter"), Json({2.0, 1.5, 0.0}));
    EXPECT_EQ(state.at("modelRadius"), 2.625);
    EXPECT_EQ(state.at("capturedSection"), -1);
    EXPECT_EQ(state.at("partAfter"), true);
    EXPECT_EQ(state.at("intersectionTolerance"), 0.0005);
}

TEST_F(Print, BlockListHoldsItsValidEntriesOnly) {
    test::writeFileText(folder / "two.apt", aptText({test::flatPatch(2, 2), test::flatPatch(2, 2, 1.0)}));
    must("open " + file("two.apt"));
    EXPECT_EQ(printed("state").at("blockList"), Json::array());
    must("run patch.inputAndAdd number=2");
    must("run patch.inputAndAdd number=1");
    EXPECT_EQ(printed("state").at("blockList"), Json::array({1, 0}));
    EXPECT_EQ(printed("state").at("blockCount"), 2);
}

TEST_F(Print, PatchesAreNestedLists) {
    test::writeFileText(folder / "small.apt", "2 2\n0 0 0\n0.1 0 0\n0 1 0\n1 1 -2e-3\n");
    must("open " + file("small.apt"));
    EXPECT_EQ(printed("patches").dump(), "[[[[0.0,0.0,0.0],[0.1,0.0,0.0]],[[0.0,1.0,0.0],[1.0,1.0,-0.002]]]]");
}

TEST_F(Print, EveryPromisedListIsThereFromTheStart) {
    for (const char* name :
         {"patches", "fieldPatches", "referencePatches", "blockClipboard", "undoPatches", "pointUndoPatches",
          "dragPatches", "region", "referenceRegion", "undoRegion", "lineBuffer", "markers", "sftPoints", "sftTargets",
          "interLine", "beforeIntersection", "afterIntersection", "interPatches"}) {
        EXPECT_EQ(printed(name), Json::array()) << name;
    }
}

TEST_F(Print, UndoPatchesHoldTheModelBeforeTheCommand) {
    openPlate();
    const Json before = printed("patches");
    must("run line.inputSection patch=1 section=1");
    must("run line.rebreak regime=2 function=2 newCount=3");
    EXPECT_EQ(printed("undoPatches"), before);
    EXPECT_NE(printed("patches"), before);
}

TEST_F(Print, CommandsHaveEveryIdOnce) {
    const Json commands = printed("commands");
    EXPECT_EQ(commands.size(), commandTable().size());
    EXPECT_EQ(commands.at("file.new"), true);
    EXPECT_EQ(commands.at("file.save"), false);
    EXPECT_EQ(commands.at("view.iso"), false);
    openPlate();
    EXPECT_EQ(printed("commands").at("file.save"), true);
    EXPECT_EQ(printed("commands").at("view.iso"), true);
    EXPECT_EQ(printed("commands").at("view.previous"), false);
}

TEST_F(Print, ViewHasItsPromisedMembers) {
    const Json view = printed("view");
    EXPECT_EQ(missing(view, "mouseMode projectionMode viewAngles viewAlongX viewAlongY viewAlongZ modelRotation "
                            "modelOffset defaultOffset modelScale zoomFactor viewCentreX viewCentreY aspectRatio "
                            "nearPlane farPlane viewport spinActive spinAngle spinAxis rubberBandShown "
                            "modelViewMatrix projectionMatrix"),
              "");
    EXPECT_EQ(view.at("modelRotation").size(), 16U);
    EXPECT_EQ(view.at("modelViewMatrix").size(), 16U);
    EXPECT_EQ(view.at("projectionMatrix").size(), 16U);
}

TEST_F(Print, ProjectionIsColumnMajor) {
    openPlate();
    // Of a perspective projection element 11 is -1 and element 15 is 0.
    const Json matrix = printed("view").at("projectionMatrix");
    EXPECT_EQ(matrix.at(11), -1.0);
    EXPECT_EQ(matrix.at(15), 0.0);
}

TEST_F(Print, SceneIsEmptyWithoutAModel) {
    EXPECT_EQ(printed("scene").dump(), R"({"list":0,"batches":[]})");
    EXPECT_EQ(printed("scene overlay").dump(), R"({"batches":[],"texts":[]})");
}

TEST_F(Print, SceneOfTheSurfaceHasLitQuadStrips) {
    openPlate();
    const Json scene = printed("scene");
    EXPECT_EQ(scene.at("list"), 2);
    ASSERT_EQ(scene.at("batches").size(), 3U) << "a strip for each pair of sections";
    const Json strip = scene.at("batches").at(0);
    EXPECT_EQ(strip.at("primitive"), "quadStrip");
    EXPECT_EQ(strip.at("lit"), true);
    EXPECT_EQ(strip.at("vertices").size(), 10U);
    EXPECT_EQ(strip.at("normals").size(), 10U);
    EXPECT_EQ(strip.at("vertices").at(0), Json({4.0, 0.0, 0.0})) << "from the last point to the first";
    EXPECT_EQ(strip.at("colours"), Json::array({{0.5, 0.5, 1.0, 1.0}}));
}

TEST_F(Print, SceneOfTheWireHasUnlitStripsWithoutNormals) {
    openPlate();
    must("run view.surface");
    const Json scene = printed("scene");
    EXPECT_EQ(scene.at("list"), 1);
    ASSERT_EQ(scene.at("batches").size(), 9U) << "four sections and five lines";
    const Json strip = scene.at("batches").at(0);
    EXPECT_EQ(strip.at("primitive"), "lineStrip");
    EXPECT_EQ(strip.at("lit"), false);
    EXPECT_EQ(strip.at("normals"), Json());
    EXPECT_EQ(strip.at("vertices").size(), 5U);
}

TEST_F(Print, ColoursHaveTheirShortDigits) {
    PatchList four;
    for (int i = 0; i < 4; ++i) {
        four.push_back(test::flatPatch(2, 2, i));
    }
    test::writeFileText(folder / "four.apt", aptText(four));
    must("open " + file("four.apt"));
    EXPECT_EQ(printed("scene").at("batches").at(3).at("colours").dump(), "[[0.7,0.7,0.7,1.0]]");
}

TEST_F(Print, OverlayShowsTheCapturedPointAndTheTriad) {
    openPlate();
    const std::size_t triad = printed("scene overlay").at("batches").size();
    must("run point.capture");
    must("mouse down 400 242"); // point (2, 2, 0)
    must("mouse up 400 242");
    ASSERT_EQ(printed("state").at("capturedPointPos"), Json({2.0, 2.0, 0.0}));
    const Json batches = printed("scene overlay").at("batches");
    ASSERT_EQ(batches.size(), triad + 2);
    EXPECT_EQ(batches.at(0).at("primitive"), "points");
    EXPECT_EQ(batches.at(0).at("pointSize"), 6.0);
    EXPECT_EQ(batches.at(0).at("vertices"), Json::array({{2.0, 2.0, 0.0}}));
    EXPECT_EQ(batches.at(1).at("pointSize"), 8.0);
    EXPECT_EQ(batches.at(1).at("colours"), Json::array({{1.0, 0.0, 0.0, 1.0}}));
}

TEST_F(Print, WindowTellsTheMousePositionOfAPoint) {
    openPlate();
    const Json place = printed("window 4 3 0");
    EXPECT_NEAR(place.at(0).get<double>(), 400 + 2 * 300 / 2.625, 1e-6);
    EXPECT_NEAR(place.at(1).get<double>(), 599 - (300 + 1.5 * 300 / 2.625), 1e-6);
    EXPECT_GT(place.at(2).get<double>(), 0.0);
    EXPECT_LT(place.at(2).get<double>(), 1.0);
}

TEST_F(Print, WindowUsesTheCameraAsItStandsAndChangesNothing) {
    openPlate();
    must("run view.top"); // no repaint of its own
    const Json before = printed("view");
    // Turned by 90 degrees about X, a point in the plane of the centre's y stands at the centre's height.
    EXPECT_NEAR(printed("window 2 1.5 0").at(1).get<double>(), 299.0, 1e-6);
    EXPECT_NEAR(printed("window 2 3 0").at(1).get<double>(), 299.0, 1e-6);
    EXPECT_EQ(printed("view"), before);
}

TEST_F(Print, WindowNeedsThreeNumbers) {
    EXPECT_NE(errorOf("print window 1 2"), "");
    EXPECT_NE(errorOf("print window 1 2 z"), "");
    EXPECT_NE(errorOf("print window 1 2 3 4"), "");
    EXPECT_NE(errorOf("print window 1 2 nan"), "");
}

TEST_F(Print, KernelTellsWhereALineMeetsATriangle) {
    // The line along z through (0.25, 0.25) meets the triangle in the plane z = 2 inside.
    const Json hit = printed("kernel intersectLineTriangle 0 0 2 1 0 2 0 1 2 0 0 1 0.25 0.25 0");
    EXPECT_EQ(hit.dump(), R"({"code":3,"hit":[0.25,0.25,2.0]})");
    EXPECT_EQ(printed("kernel intersectLineTriangle 0 0 2 1 0 2 0 1 2 0 0 1 5 5 0").at("code"), 0);
}

TEST_F(Print, KernelsNeedFifteenNumbers) {
    EXPECT_THAT(errorOf("print kernel intersectLineTriangle 1 2 3"), HasSubstr("fifteen numbers"));
    EXPECT_NE(errorOf("print kernel intersectLineTriangle 0 0 2 1 0 2 0 1 2 0 0 1 0.25 0.25 zero"), "");
    EXPECT_NE(errorOf("print kernel nothing"), "");
    EXPECT_NE(errorOf("print kernel"), "");
}

} // namespace
} // namespace velmora

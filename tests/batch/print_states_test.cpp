#include <gmock/gmock.h>

#include <cmath>

#include "SessionFixture.h"

// What a print line shows of states that are not those of the start: each member takes its value from its own field.

namespace velmora {
namespace {

using test::SessionFixture;
using testing::ElementsAre;

using Names = std::vector<std::string>;

/// The regimes, in words of the state.
const char* const regimes[] = {"pointCaptureArmed", "pointCaptured",    "freePointArmed", "freePointHeld",
                               "patchCaptureArmed", "patchCaptured",    "patchRemoving",  "sectionCaptureArmed",
                               "sectionCaptured",   "lineCaptureArmed", "lineCaptured",   "pointDragging",
                               "dragCorrectsLine",  "leftButtonDown"};

class PrintState : public SessionFixture {
protected:
    PrintState() {
        // Its numbers tell patch, section and point apart: the second patch stands at x = 10 to 14.
        PatchList two{test::flatPatch(3, 4), test::flatPatch(4, 5)};
        for (PointList& section : two[1]) {
            for (zVec<double>& point : section) {
                point.x += 10.0;
            }
        }
        test::writeFileText(folder / "two.apt", aptText(two));
    }

    void openTwo() { must("open " + file("two.apt")); }

    std::string pixelOf(double x, double y, double z) {
        const Json at = printed("window " + std::to_string(x) + ' ' + std::to_string(y) + ' ' + std::to_string(z));
        return std::to_string(std::lround(at.at(0).get<double>())) + ' ' +
               std::to_string(std::lround(at.at(1).get<double>()));
    }
    void press(double x, double y) { must("mouse down " + pixelOf(x, y, 0.0)); }
    void click(double x, double y) {
        const std::string pixel = pixelOf(x, y, 0.0);
        must("mouse down " + pixel);
        must("mouse up " + pixel);
    }
    /// The regimes that the state says are on.
    Names on() {
        const Json state = printed("state");
        Names set;
        for (const char* name : regimes) {
            if (state.at(name).get<bool>()) {
                set.emplace_back(name);
            }
        }
        return set;
    }
    /// Those of `names` whose value is true.
    Names switchedOn(const Names& names) {
        const Json state = printed("state");
        Names set;
        for (const std::string& name : names) {
            if (state.at(name).get<bool>()) {
                set.push_back(name);
            }
        }
        return set;
    }
    Json member(const char* name) { return printed("state").at(name); }
    std::vector<int> indices(const Names& names) {
        const Json state = printed("state");
        std::vector<int> values;
        for (const std::string& name : names) {
            values.push_back(state.at(name).get<int>());
        }
        return values;
    }
};

// ---- Regimes --------------------------------------------------------------------------------------------------------

TEST_F(PrintState, EachRegimeIsNamedByItself) {
    openTwo();
    EXPECT_THAT(on(), ElementsAre());
    must("run point.capture");
    EXPECT_THAT(on(), ElementsAre("pointCaptureArmed"));
    press(12, 2);
    EXPECT_THAT(on(), ElementsAre("pointCaptureArmed", "leftButtonDown"));
    must("mouse up " + pixelOf(12, 2, 0));
    EXPECT_THAT(on(), ElementsAre("pointCaptured"));
    must("run point.drag");
    EXPECT_THAT(on(), ElementsAre("pointCaptured", "pointDragging"));
    click(12, 2);
    must("run point.exit");
    must("run line.captureLine");
    EXPECT_THAT(on(), ElementsAre("lineCaptureArmed"));
    click(12, 2);
    EXPECT_THAT(on(), ElementsAre("lineCaptured"));
    must("run line.captureSection");
    EXPECT_THAT(on(), ElementsAre("sectionCaptureArmed"));
    click(12, 2);
    EXPECT_THAT(on(), ElementsAre("sectionCaptured"));
    must("run point.capture");
    click(13, 2);
    must("run point.dragAndCorrect");
    EXPECT_THAT(on(), ElementsAre("pointCaptured", "sectionCaptured", "dragCorrectsLine"));
    click(13, 2);
    must("run point.free");
    EXPECT_THAT(on(), ElementsAre("pointCaptured", "freePointArmed", "sectionCaptured"));
    click(11, 1);
    EXPECT_THAT(on(), ElementsAre("pointCaptured", "freePointHeld", "sectionCaptured"));
    must("run point.exit");
    must("run line.exit");
    must("run patch.capture");
    EXPECT_THAT(on(), ElementsAre("patchCaptureArmed"));
    click(12.4, 1.7);
    EXPECT_THAT(on(), ElementsAre("patchCaptured"));
    must("run patch.removeFromBlock");
    EXPECT_THAT(on(), ElementsAre("patchCaptured", "patchRemoving"));
    press(12.4, 1.7);
    EXPECT_EQ(member("patchToRemove"), 1);
}

TEST_F(PrintState, IndicesCountFromZeroEachInItsPlace) {
    openTwo();
    const Names captured = {"capturedPatch", "capturedPointSection", "capturedPoint", "capturedSection",
                            "capturedLine"};
    const Names saved = {"savedPatch", "savedPointSection", "savedPoint", "savedSection", "savedLine"};
    EXPECT_THAT(indices(captured), ElementsAre(-1, -1, -1, -1, -1));
    must("run point.capture");
    click(13, 2);
    EXPECT_THAT(indices(captured), ElementsAre(1, 2, 3, -1, -1));
    EXPECT_THAT(indices(saved), ElementsAre(-1, -1, -1, -1, -1));
    must("run point.edit x=13.5");
    EXPECT_THAT(indices(saved), ElementsAre(1, 2, 3, -1, -1));
    must("run point.exit");
    must("run line.inputSection patch=2 section=4");
    EXPECT_EQ(indices(captured)[3], 3);
    must("run line.exit");
    must("run line.inputLine patch=2 line=5");
    EXPECT_EQ(indices(captured)[4], 4);
    must("run patch.inputAndAdd number=2");
    EXPECT_EQ(member("blockList"), Json::array({1}));
    EXPECT_EQ(member("blockCount"), 1);
}

// ---- Buffers and undo -----------------------------------------------------------------------------------------------

TEST_F(PrintState, ClipboardsAndUndoAreToldByThemselves) {
    const Names flags = {"pointClipboardFull", "lineBufferFull", "blockClipboardFull", "pointUndoReady",
                         "patchUndoReady"};
    openTwo();
    EXPECT_THAT(switchedOn(flags), ElementsAre());
    must("run point.capture");
    click(13, 2);
    must("run point.copy");
    EXPECT_THAT(switchedOn(flags), ElementsAre("pointClipboardFull"));
    EXPECT_EQ(member("pointClipboard"), Json({13.0, 2.0, 0.0}));
    must("run point.edit z=0.5");
    EXPECT_THAT(switchedOn(flags), ElementsAre("pointClipboardFull", "pointUndoReady"));
    EXPECT_EQ(printed("pointUndoPatches").at(1).at(2).at(3), Json({13.0, 2.0, 0.0}));
    must("run point.exit");
    must("run line.inputSection patch=1 section=3");
    must("run line.copy");
    EXPECT_THAT(switchedOn(flags), ElementsAre("pointClipboardFull", "lineBufferFull")) << "Exit ends the undo";
    EXPECT_EQ(printed("lineBuffer").dump(), "[[0.0,2.0,0.0],[1.0,2.0,0.0],[2.0,2.0,0.0],[3.0,2.0,0.0]]");
    must("run line.exit");
    must("run patch.inputAndAdd number=1");
    must("run block.copy");
    EXPECT_EQ(printed("blockClipboard").size(), 1U);
    EXPECT_EQ(printed("blockClipboard").at(0).size(), 3U);
    EXPECT_EQ(member("blockClipboardFull"), true);
    EXPECT_EQ(member("patchUndoReady"), false);
    must("run model.move deltaX=1");
    EXPECT_EQ(member("patchUndoReady"), true);
    EXPECT_EQ(printed("undoPatches").at(0).at(0).at(0), Json({0.0, 0.0, 0.0}));
    EXPECT_EQ(printed("patches").at(0).at(0).at(0), Json({1.0, 0.0, 0.0}));
}

// ---- Switches -------------------------------------------------------------------------------------------------------

TEST_F(PrintState, EachSwitchOfTheViewIsItsOwn) {
    const Names shown = {"showBlockOnly", "showFirstPoints",   "showDoublePoints",
                         "showBuffer",    "showZBlockMarkers", "surfaceMode"};
    openTwo();
    must("run patch.inputAndAdd number=1");
    must("run view.surface");
    EXPECT_THAT(switchedOn(shown), ElementsAre());
    for (const std::string& name : Names(shown.begin(), shown.end() - 1)) {
        must(
            "run view.features showBlockOnly=0 showFirstPoints=0 showDoublePoints=0 showBuffer=0 showZBlockMarkers=0 " +
            name + "=1");
        EXPECT_THAT(switchedOn(shown), ElementsAre(name));
    }
    must("run view.surface");
    EXPECT_THAT(switchedOn(shown), ElementsAre("showZBlockMarkers", "surfaceMode"));
}

TEST_F(PrintState, FilesBesideTheModelAreToldByThemselves) {
    const Names files = {"sftOpen", "markersOpen", "cbcAppended", "gridNamed", "fieldLoaded", "fieldOpening"};
    test::writeFileText(folder / "marks.apm", "1 2 3\n4 5 6\n7 8\n");
    test::writeFileText(folder / "shifts.sft", "1\n2\n3\n4\n5\n6\n7\n1 2 3 0.5 0.25 0.125 9\n");
    openTwo();
    EXPECT_THAT(switchedOn(files), ElementsAre());
    must("run file.openApm file=" + file("marks.apm"));
    EXPECT_THAT(switchedOn(files), ElementsAre("markersOpen"));
    EXPECT_EQ(printed("markers"), Json({{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}}));
    const Json texts = printed("scene overlay").at("texts");
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts.at(1).at("text"), "2");
    EXPECT_EQ(texts.at(1).at("colour"), Json({1.0, 0.0, 0.0, 1.0}));
    const Json& at = texts.at(1).at("position");
    const Json digits = printed("window " + at.at(0).dump() + ' ' + at.at(1).dump() + ' ' + at.at(2).dump());
    const Json marker = printed("window 4 5 6");
    for (const int axis : {0, 1}) {
        EXPECT_NEAR(digits.at(axis).get<double>(), marker.at(axis).get<double>(), 1e-6) << "on its marker's pixel";
    }
    EXPECT_NEAR(digits.at(2).get<double>(), marker.at(2).get<double>() * 0.99, 1e-9) << "and nearer to the eye";
    must("run file.closeApm");
    must("run file.appendSft file=" + file("shifts.sft"));
    EXPECT_THAT(switchedOn(files), ElementsAre("sftOpen"));
    EXPECT_EQ(printed("sftPoints"), Json::array({{1.0, 2.0, 3.0}}));
    EXPECT_EQ(printed("sftTargets"), Json::array({{1.5, 2.25, 3.125}}));
}

TEST_F(PrintState, PartsAreChosenByTheirDialog) {
    openTwo();
    must("run line.inputSection patch=2 section=1");
    must("run point.capture");
    click(12, 0);
    EXPECT_THAT(switchedOn({"partBefore", "partAfter"}), ElementsAre("partAfter"));
    must("run point.copyPart choice=1");
    EXPECT_THAT(switchedOn({"partBefore", "partAfter"}), ElementsAre("partBefore"));
}

// ---- Places ---------------------------------------------------------------------------------------------------------

TEST_F(PrintState, PlacesAndNamesAreThoseOfTheModel) {
    test::writeFileText(folder / "Body.apt", "2 2\n-1 -2 -3\n1 -2 -3\n-1 4 -3\n1 4 5\n");
    must("open " + file("Body.apt"));
    const Json state = printed("state");
    EXPECT_EQ(state.at("boxMin"), Json({-1.0, -2.0, -3.0}));
    EXPECT_EQ(state.at("boxMax"), Json({1.0, 4.0, 5.0}));
    EXPECT_EQ(state.at("modelCenter"), Json({0.0, 1.0, 1.0}));
    EXPECT_DOUBLE_EQ(state.at("modelRadius").get<double>(), 0.525 * std::sqrt(4.0 + 36.0 + 64.0));
    EXPECT_EQ(state.at("documentTitle"), "body.apt");
    EXPECT_EQ(state.at("fileExtension"), "apt");
    EXPECT_EQ(state.at("secondKind"), "non");
    EXPECT_EQ(state.at("blockKind"), printed("state").at("blockKind"));
    std::string lower = (folder / "body.apt").string();
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
    EXPECT_EQ(state.at("currentPath"), lower);
}

TEST_F(PrintState, ThePickedPointAndTheCapturedOneMayDiffer) {
    openTwo();
    must("run point.capture");
    click(13, 2);
    EXPECT_EQ(member("pointPicked"), true);
    EXPECT_EQ(member("pickedPoint"), Json({13.0, 2.0, 0.0}));
    EXPECT_EQ(member("capturedPointPos"), Json({13.0, 2.0, 0.0}));
    EXPECT_EQ(member("status"), "Captured point: (Patch K=2, Section N=3, Point M=4) X=13.000000, Y=2.000000, "
                                "Z=0.000000 // Press right button to continue ");
    must("run point.exit");
    EXPECT_EQ(member("pointPicked"), false);
}

TEST_F(PrintState, ZonesAreToldWithTheirCounts) {
    test::writeFileText(folder / "zones.dat",
                        "TITLE = \"two\"\nVARIABLES = \"X\", \"Y\", \"Z\", \"P\"\n"
                        "ZONE T=\"left\", N = 4, E = 2, DATAPACKING = POINT, ZONETYPE = FETRIANGLE\n"
                        "0 0 0 1\n1 0 0 2\n1 1 0 3\n0 1 0 4\n1 2 3\n1 3 4\n"
                        "ZONE T=\"right\", N = 3, E = 1, DATAPACKING = POINT, ZONETYPE = FETRIANGLE\n"
                        "5 0 0 1\n6 0 0 2\n6 1 0 3\n1 2 3\n");
    must("open " + file("zones.dat"));
    const Json zones = member("zones");
    ASSERT_EQ(zones.size(), 2U);
    EXPECT_EQ(member("structureKind"), "uns");
    EXPECT_EQ(zones.at(0).at("title"), "left");
    EXPECT_EQ(zones.at(0).at("variables"), Json({"X", "Y", "Z"})) << "the geometry alone";
    EXPECT_EQ(zones.at(0).at("nodeCount"), 4);
    EXPECT_EQ(zones.at(0).at("elementCount"), 2);
    EXPECT_EQ(zones.at(0).at("connectivitySize"), 8);
    EXPECT_EQ(zones.at(1).at("nodeCount"), 3);
    EXPECT_EQ(zones.at(1).at("elementCount"), 1);
    const Json region = printed("region");
    ASSERT_EQ(region.size(), 2U);
    EXPECT_EQ(region.at(0).at("triangles").dump(), "[[0,1,2],[0,2,3]]");
    EXPECT_EQ(region.at(1).at("triangles").dump(), "[[0,1,2]]");
    EXPECT_EQ(region.at(0).at("variables").at(0).at("values").dump(), "[0.0,1.0,1.0,0.0]");
    EXPECT_EQ(region.at(0).at("variables").at(1).at("values").dump(), "[0.0,0.0,1.0,1.0]");
    must("run view.surface");
    EXPECT_EQ(printed("scene").at("list"), 3);
    EXPECT_EQ(printed("scene").at("batches").at(0).at("primitive"), "triangles");
    EXPECT_EQ(printed("scene").at("batches").at(0).at("lit"), false);
    must("run view.surface");
    EXPECT_EQ(printed("scene").at("list"), 4);
    EXPECT_EQ(printed("scene").at("batches").at(0).at("lit"), true);
}

// ---- View -----------------------------------------------------------------------------------------------------------

TEST_F(PrintState, TheViewIsToldAsItStands) {
    openTwo();
    must("size 400 200");
    must("run view.orthographic");
    must("run view.shift");
    must("mouse down 100 100");
    must("mouse move 130 120");
    must("mouse up 130 120");
    must("run view.scale");
    must("mouse down 100 100");
    must("mouse move 100 150");
    must("mouse up 100 150");
    const Json view = printed("view");
    const double radius = printed("state").at("modelRadius").get<double>();
    EXPECT_EQ(view.at("mouseMode"), 7);
    EXPECT_EQ(view.at("projectionMode"), 1);
    EXPECT_EQ(view.at("aspectRatio"), 2.0);
    EXPECT_EQ(view.at("viewCentreX"), 200.0 - 30.0);
    EXPECT_EQ(view.at("viewCentreY"), 100.0 + 20.0);
    EXPECT_DOUBLE_EQ(view.at("zoomFactor").get<double>(), 1.0 / 1.5) << "down by 50 of 200 pixels";
    EXPECT_DOUBLE_EQ(view.at("nearPlane").get<double>(), 0.1 * radius);
    EXPECT_DOUBLE_EQ(view.at("farPlane").get<double>(), 250.0 * radius);
    EXPECT_EQ(view.at("defaultOffset"), view.at("modelOffset"));
    EXPECT_DOUBLE_EQ(view.at("defaultOffset").at(2).get<double>(), -27.99038155676617 * radius);
    EXPECT_EQ(view.at("modelScale"), Json({1.0, 1.0, 1.0}));
    EXPECT_EQ(view.at("viewAlongZ"), true);
    must("run view.manual distanceX=1 distanceY=2 scale=4");
    EXPECT_EQ(printed("view").at("modelOffset").at(0), 1.0);
    EXPECT_EQ(printed("view").at("modelOffset").at(1), 2.0);
    EXPECT_EQ(printed("view").at("zoomFactor"), 0.25);
    EXPECT_EQ(printed("view").at("defaultOffset"), view.at("defaultOffset"));
    must("run view.front");
    must("run view.zoomOut");
    EXPECT_EQ(printed("view").at("viewAngles"), Json({0.0, 90.0, 0.0}));
    EXPECT_EQ(printed("view").at("viewAlongX"), true);
    EXPECT_EQ(printed("view").at("viewAlongZ"), false);
}

TEST_F(PrintState, TheRubberBandIsToldWhileItIsDrawn) {
    openTwo();
    must("run view.zoomIn");
    EXPECT_EQ(printed("view").at("rubberBandShown"), false);
    must("mouse down 100 100");
    EXPECT_EQ(printed("view").at("rubberBandShown"), true);
    must("mouse up 100 100");
    EXPECT_EQ(printed("view").at("rubberBandShown"), false);
    EXPECT_EQ(printed("view").at("zoomFactor"), 0.0);
    // Nothing can be seen through a window of no size: numbers that are none are words.
    const Json view = printed("view");
    for (const Json& element : view.at("projectionMatrix")) {
        EXPECT_TRUE(element.is_number() || element == "inf" || element == "-inf" || element == "nan");
    }
    EXPECT_EQ(view.at("projectionMatrix").at(0), "inf");
}

TEST_F(PrintState, PointsOfTheSceneHaveTheirSizes) {
    openTwo();
    must("run view.surface");
    must("run view.features showFirstPoints=1");
    const Json first = printed("scene").at("batches").at(0);
    EXPECT_EQ(first.at("primitive"), "points");
    EXPECT_EQ(first.at("pointSize"), 6.0);
    EXPECT_EQ(first.at("colours"), Json::array({{1.0, 0.0, 0.0, 1.0}}));
    EXPECT_EQ(first.at("normals"), Json());
}

// ---- Kernels --------------------------------------------------------------------------------------------------------

TEST_F(PrintState, BothKernelsTakeTheirNumbersInTheirOrder) {
    struct Case {
        const char* numbers; ///< corners, direction, origin
        int code;
        Json hit;
    };
    // Of a triangle in the plane z = 2: inside, at a corner, and off it; a line along x at height 2 lies in the plane.
    const Case cases[] = {
        {.numbers = "0 0 2 4 0 2 0 4 2 0 0 1 1 2 0", .code = 3, .hit = {1.0, 2.0, 2.0}},
        {.numbers = "0 0 2 4 0 2 0 4 2 0 0 1 4 0 -5", .code = 1, .hit = {4.0, 0.0, 2.0}},
        {.numbers = "0 0 2 4 0 2 0 4 2 0 0 -3 0 4 7", .code = 1, .hit = {0.0, 4.0, 2.0}},
    };
    for (const Case& c : cases) {
        const Json hit = printed(std::string("kernel lineHitsTriangle ") + c.numbers);
        EXPECT_EQ(hit.at("code"), c.code) << c.numbers;
        EXPECT_EQ(hit.at("hit"), c.hit) << c.numbers;
    }
    EXPECT_EQ(printed("kernel lineHitsTriangle 0 0 2 4 0 2 0 4 2 0 0 1 5 5 0").at("code"), 0);
    EXPECT_EQ(printed("kernel lineHitsTriangle 0 0 2 4 0 2 0 4 2 1 0 0 -1 1 1").at("code"), 0) << "beside the plane";
}

} // namespace
} // namespace velmora

#include <algorithm>

#include "vectors.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectMatrix;
using test::expectVector;
using test::sent;
using test::twoPatches;
using test::ViewRig;

/// Window coordinates of a model point, not rounded to pixels: x from the left, y from the bottom.
zVec<double> windowOf(ViewRig& rig, const zVec<double>& point) {
    rig.view.ApplyModelTransform(rig.doc.modelCenter);
    return projectPoint(point, rig.view.modelViewMatrix, rig.view.projectionMatrix, rig.view.viewport).value();
}

struct Range {
    double left = 1e300;
    double right = -1e300;
    double bottom = 1e300;
    double top = -1e300;
};

/// What the points cover of the window, in pixels.
Range covered(ViewRig& rig, const std::vector<zVec<double>>& points) {
    Range range;
    for (const zVec<double>& point : points) {
        const zVec<double> at = windowOf(rig, point);
        range.left = std::min(range.left, at.x);
        range.right = std::max(range.right, at.x);
        range.bottom = std::min(range.bottom, at.y);
        range.top = std::max(range.top, at.y);
    }
    return range;
}

std::vector<zVec<double>> allPoints(const PatchList& list) {
    std::vector<zVec<double>> points;
    for (const Patch& patch : list) {
        for (const PointList& section : patch) {
            points.insert(points.end(), section.begin(), section.end());
        }
    }
    return points;
}

/// Fitted: in the middle, and the longer way across takes all of the window but a twentieth of itself.
void expectFitted(ViewRig& rig, const std::vector<zVec<double>>& points) {
    const Range range = covered(rig, points);
    const double width = rig.view.viewport.width;
    const double height = rig.view.viewport.height;
    EXPECT_NEAR(range.left + range.right, width, 1e-6);
    EXPECT_NEAR(range.bottom + range.top, height, 1e-6);
    EXPECT_NEAR(std::max((range.right - range.left) / width, (range.top - range.bottom) / height), 1.0 / 1.05, 1e-9);
}

struct NavigationRig : ViewRig {
    NavigationRig() { show(twoPatches()); }

    void dragMiddle(MouseMode act, PixelPoint from, PixelPoint to) {
        view.BeginNavigation(act, from);
        view.Navigate(to);
        view.EndNavigation();
    }
};

// ---- Wheel ----------------------------------------------------------------------------------------------------------

TEST(Wheel, ANotchEnlargesByAFifthAndKeepsWhatLiesUnderTheMouse) {
    for (const char* projection : {"view.perspective", "view.orthographic"}) {
        NavigationRig rig;
        rig.view.runViewCommand(projection);
        rig.view.runViewCommand("view.iso");
        const PixelPoint mouse{150, 420};
        const PixelLine before = rig.view.PixelRay(mouse.x, mouse.y);
        const int repaints = rig.surface.repaints;
        rig.view.OnWheel(mouse, 1.0);
        EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.0 / 1.2);
        EXPECT_EQ(rig.surface.repaints, repaints + 1);
        const PixelLine after = rig.view.PixelRay(mouse.x, mouse.y);
        expectVector(after.nearPoint, before.nearPoint, 1e-9);
        expectVector(after.farPoint, before.farPoint, 1e-6);
        rig.view.OnWheel(mouse, -2.0);
        EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.2);
        expectVector(rig.view.PixelRay(mouse.x, mouse.y).nearPoint, before.nearPoint, 1e-9);
    }
}

TEST(Wheel, StopsBeforeThePictureIsLost) {
    NavigationRig rig;
    rig.view.OnWheel({300, 300}, 1000.0);
    EXPECT_EQ(rig.view.zoomFactor, 1e-6);
    rig.view.OnWheel({300, 300}, -10000.0);
    EXPECT_EQ(rig.view.zoomFactor, 1e4);
}

TEST(Wheel, DoesNothingInADragOfTheLeftButtonAndWithoutAModel) {
    NavigationRig rig;
    rig.view.setMouseMode(ModeShift);
    rig.view.OnLeftButtonDown({300, 300});
    rig.view.OnWheel({300, 300}, 1.0);
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
    ViewRig empty;
    empty.view.OnWheel({300, 300}, 1.0);
    EXPECT_EQ(empty.view.zoomFactor, 1.0);
}

// ---- Middle button --------------------------------------------------------------------------------------------------

TEST(MiddleButton, TurnsTheFrontAlongWithTheMouse) {
    NavigationRig rig;
    // Half of the window is a quarter of a turn: what points at the eye points to the right then.
    rig.dragMiddle(ModeRotate, {100, 300}, {400, 300});
    expectMatrix(rig.view.modelRotation, {0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1}, 1e-9);
    rig.view.runViewCommand("view.left");
    // Down by half of it: what points at the eye points down.
    rig.dragMiddle(ModeRotate, {100, 100}, {100, 400});
    expectVector(sent(rig.view.modelRotation, {0, 0, 1}), {0, -1, 0}, 1e-9);
    expectVector(sent(rig.view.modelRotation, {1, 0, 0}), {1, 0, 0}, 1e-9);
}

TEST(MiddleButton, TurnsByTheShorterSideOfTheWindow) {
    NavigationRig rig;
    rig.view.OnSize(1200, 300);
    rig.dragMiddle(ModeRotate, {100, 100}, {400, 100});
    expectVector(sent(rig.view.modelRotation, {0, 0, 1}), {0, 0, -1}, 1e-9);
}

TEST(MiddleButton, TurnsEachPixelAndNotInStepsOfSix) {
    NavigationRig rig;
    rig.dragMiddle(ModeRotate, {300, 300}, {301, 300});
    // 180 degrees on 600 pixels.
    EXPECT_NEAR(rig.view.modelRotation[8], std::sin(0.3 * 3.14159265358979 / 180.0), 1e-9);
}

TEST(MiddleButton, TheModelTurnsAboutItsMiddleWhenAllOfItIsSeen) {
    NavigationRig rig;
    rig.view.modelOffset.x += 1.0;
    const zVec<double> before = windowOf(rig, rig.doc.modelCenter);
    rig.dragMiddle(ModeRotate, {300, 300}, {380, 250});
    expectVector(windowOf(rig, rig.doc.modelCenter), before, 1e-9);
}

TEST(MiddleButton, FromNearTheMiddleOfTheViewStaysWhereItIs) {
    for (const char* projection : {"view.perspective", "view.orthographic"}) {
        NavigationRig rig;
        rig.view.runViewCommand(projection);
        rig.view.zoomFactor = 0.1;
        rig.view.viewCentreX = 100.0;
        rig.view.UpdateProjection();
        // The model is flat, at z = 0: the middle of the view shows this place of it.
        const PixelLine ray = rig.view.PixelRay(300.0, 299.0);
        const double t = -ray.nearPoint.z / (ray.farPoint.z - ray.nearPoint.z);
        const zVec<double> place = ray.nearPoint + (ray.farPoint - ray.nearPoint) * t;
        EXPECT_GT(distance(place, rig.doc.modelCenter), 1.0);
        rig.dragMiddle(ModeRotate, {300, 300}, {340, 300});
        const zVec<double> after = windowOf(rig, place);
        EXPECT_NEAR(after.x, 300.0, 3.0) << projection;
        EXPECT_NEAR(after.y, 300.0, 3.0) << projection;
    }
}

TEST(MiddleButton, ShiftsThePictureByWhatTheMouseMoves) {
    NavigationRig rig;
    rig.useParallelProjection();
    rig.view.zoomFactor = 0.5;
    rig.view.UpdateProjection();
    const zVec<double> before = windowOf(rig, {1, 1, 0});
    rig.dragMiddle(ModeShift, {200, 200}, {237, 190});
    const zVec<double> after = windowOf(rig, {1, 1, 0});
    EXPECT_NEAR(after.x - before.x, 37.0, 1e-9);
    EXPECT_NEAR(after.y - before.y, 10.0, 1e-9) << "counted from the bottom";
}

TEST(MiddleButton, ZoomsDownToEnlargeAndUpToShrink) {
    NavigationRig rig;
    rig.dragMiddle(ModeScale, {200, 200}, {200, 300});
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.0 / (1.0 + 2.0 * 100.0 / 600.0));
    rig.dragMiddle(ModeScale, {200, 300}, {200, 200});
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.0);
}

TEST(MiddleButton, LeavesARegimeThatWaitsForItsClickAsItIs) {
    NavigationRig rig;
    rig.call("line.captureSection");
    for (const MouseMode act : {ModeRotate, ModeShift, ModeScale}) {
        rig.dragMiddle(act, {200, 200}, {230, 210});
        rig.view.OnWheel({200, 200}, 1.0);
        EXPECT_EQ(rig.view.mouseMode, ModeSection);
        EXPECT_TRUE(rig.doc.capture->sectionCaptureArmed);
        EXPECT_EQ(rig.doc.capture->capturedSection, -1);
    }
    rig.click({10, 1, 0});
    EXPECT_TRUE(rig.doc.capture->sectionCaptured);
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.doc.capture->capturedSection, 1);
}

TEST(MiddleButton, ShowsTheCursorOfWhatItDoesForAsLongAsItDoesIt) {
    NavigationRig rig;
    rig.call("line.captureSection");
    rig.view.BeginNavigation(ModeShift, {200, 200});
    EXPECT_TRUE(rig.view.isNavigating());
    EXPECT_EQ(rig.surface.cursor, ModeShift);
    rig.view.EndNavigation();
    EXPECT_FALSE(rig.view.isNavigating());
    EXPECT_EQ(rig.surface.cursor, ModeSection);
}

TEST(MiddleButton, StopsASpin) {
    NavigationRig rig;
    rig.view.spinActive = true;
    rig.surface.timerRuns = true;
    rig.view.BeginNavigation(ModeRotate, {200, 200});
    EXPECT_FALSE(rig.view.spinActive);
    EXPECT_FALSE(rig.surface.timerRuns);
}

TEST(MiddleButton, DoesNothingInADragOfTheLeftButtonAndWithoutAModel) {
    NavigationRig rig;
    rig.view.OnLeftButtonDown({300, 300});
    rig.view.BeginNavigation(ModeRotate, {200, 200});
    EXPECT_FALSE(rig.view.isNavigating());
    ViewRig empty;
    empty.view.BeginNavigation(ModeRotate, {200, 200});
    EXPECT_FALSE(empty.view.isNavigating());
    empty.view.Navigate({300, 200});
    EXPECT_EQ(empty.view.modelRotation, identityMatrix());
}

// ---- Fits -----------------------------------------------------------------------------------------------------------

TEST(FitKeepingRotation, IsFitToWindowButForTheRotation) {
    NavigationRig rig;
    rig.view.runViewCommand("view.iso");
    const Matrix4 rotation = rig.view.modelRotation;
    rig.view.modelOffset.x += 3.0;
    rig.view.zoomFactor = 0.3;
    rig.view.viewCentreX = 17.0;
    rig.doc.patches[1][2][3].x = 33.0; // is measured anew
    rig.view.runViewCommand("view.fitKeepRotation");
    EXPECT_EQ(rig.view.modelRotation, rotation);
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
    EXPECT_EQ(rig.view.viewCentreX, 300.0);
    EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
    EXPECT_EQ(rig.doc.modelCenter.x, 16.5);
}

TEST(FitKeepingRotation, LeavesTheMouseToARegime) {
    NavigationRig rig;
    rig.call("line.captureSection");
    rig.view.runViewCommand("view.fitKeepRotation");
    EXPECT_EQ(rig.view.mouseMode, ModeSection);
    EXPECT_EQ(rig.surface.cursor, ModeSection);
    rig.click({1, 1, 0});
    EXPECT_TRUE(rig.doc.capture->sectionCaptured);
}

TEST(FitCaptured, WithoutACaptureShowsTheWholeModel) {
    NavigationRig rig;
    rig.view.runViewCommand("view.fitCaptured");
    expectFitted(rig, {{0, 0, 0}, {13, 2, 0}});
}

TEST(FitCaptured, ShowsTheSectionTheLineOrTheZBlock) {
    NavigationRig rig;
    rig.putIntoBlock({1});
    rig.view.runViewCommand("view.fitCaptured");
    expectFitted(rig, {{10, 0, 0}, {13, 2, 0}});
    rig.call("line.captureLine");
    rig.click({11, 1, 0});
    ASSERT_TRUE(rig.doc.capture->lineCaptured);
    rig.view.runViewCommand("view.fitCaptured");
    expectFitted(rig, {{11, 0, 0}, {11, 2, 0}});
    rig.call("line.captureSection");
    rig.click({11, 1, 0});
    ASSERT_TRUE(rig.doc.capture->sectionCaptured);
    rig.view.runViewCommand("view.fitCaptured");
    expectFitted(rig, {{10, 1, 0}, {13, 1, 0}});
}

TEST(FitCaptured, ShowsAPointWithATwentiethOfTheRadiusAround) {
    NavigationRig rig;
    rig.useParallelProjection();
    rig.call("point.capture");
    rig.click({2, 1, 0});
    ASSERT_TRUE(rig.doc.capture->pointCaptured);
    rig.view.runViewCommand("view.fitCaptured");
    const double reach = 0.05 * rig.doc.modelRadius;
    expectFitted(rig, {{2 - reach, 1 - reach, 0}, {2 + reach, 1 + reach, 0}});
}

TEST(FitCaptured, KeepsTheRotation) {
    NavigationRig rig;
    rig.view.runViewCommand("view.top");
    const Matrix4 rotation = rig.view.modelRotation;
    rig.view.runViewCommand("view.fitCaptured");
    EXPECT_EQ(rig.view.modelRotation, rotation);
}

TEST(Oblique, IsTheIsoViewFittedToTheWindowsSides) {
    for (const auto& [width, height] : {std::pair{600, 600}, {1200, 300}, {300, 1200}}) {
        for (const char* projection : {"view.perspective", "view.orthographic"}) {
            NavigationRig rig;
            rig.view.OnSize(width, height);
            rig.view.runViewCommand(projection);
            rig.view.runViewCommand("view.iso");
            const Matrix4 iso = rig.view.modelRotation;
            rig.view.runViewCommand("view.left");
            rig.view.modelOffset.z -= 5.0;
            rig.view.runViewCommand("view.oblique");
            EXPECT_EQ(rig.view.modelRotation, iso);
            expectFitted(rig, allPoints(rig.doc.patches));
        }
    }
}

// ---- The view before ------------------------------------------------------------------------------------------------

TEST(ViewBefore, GoesBackStepByStepThroughDragsWheelsAndCommands) {
    NavigationRig rig;
    rig.view.runViewCommand("view.top");
    const Matrix4 top = rig.view.modelRotation;
    rig.surface.now = 1000;
    rig.view.OnWheel({100, 100}, 1.0);
    rig.surface.now = 1100;
    rig.view.OnWheel({100, 100}, 1.0);
    const double zoomed = rig.view.zoomFactor;
    const double centre = rig.view.viewCentreX;
    rig.dragMiddle(ModeRotate, {300, 300}, {350, 320});
    EXPECT_NE(rig.view.modelRotation, top);
    rig.view.runViewCommand("view.before");
    EXPECT_EQ(rig.view.modelRotation, top);
    EXPECT_EQ(rig.view.zoomFactor, zoomed);
    EXPECT_DOUBLE_EQ(rig.view.viewCentreX, centre);
    rig.view.runViewCommand("view.before");
    EXPECT_EQ(rig.view.zoomFactor, 1.0) << "both notches at once: they came close to each other";
    EXPECT_EQ(rig.view.modelRotation, top);
    rig.view.runViewCommand("view.before");
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
    rig.view.runViewCommand("view.before");
    EXPECT_EQ(rig.view.modelRotation, identityMatrix()) << "there is nothing before the first";
}

TEST(ViewBefore, BringsTheProjectionAndWhatAFitResetBack) {
    NavigationRig rig;
    rig.useParallelProjection();
    rig.view.runViewCommand("view.iso");
    const Matrix4 iso = rig.view.modelRotation;
    rig.call("view.fit");
    ASSERT_EQ(rig.view.modelRotation, identityMatrix());
    rig.view.runViewCommand("view.before");
    EXPECT_EQ(rig.view.modelRotation, iso);
    rig.view.runViewCommand("view.otherProjection");
    EXPECT_EQ(rig.view.projectionMode, 0);
    rig.view.runViewCommand("view.before");
    EXPECT_EQ(rig.view.projectionMode, 1);
}

TEST(ViewBefore, KnowsNothingOfAnotherModel) {
    NavigationRig rig;
    rig.view.runViewCommand("view.top");
    rig.show({test::flatPatch(3, 4)});
    rig.view.runViewCommand("view.before");
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
}

// ---- Modes that show ------------------------------------------------------------------------------------------------

TEST(ModeCommands, ShowWhichOfThemIsOn) {
    NavigationRig rig;
    EXPECT_EQ(rig.view.checkedState("view.rotate"), false);
    rig.view.runViewCommand("view.rotate");
    EXPECT_EQ(rig.view.checkedState("view.rotate"), true);
    EXPECT_EQ(rig.view.checkedState("view.rotateX"), false);
    rig.view.runViewCommand("view.rotate");
    EXPECT_EQ(rig.view.checkedState("view.rotate"), false);
    EXPECT_EQ(VelmoraView::mouseModeOf("view.zoomIn"), ModeZoomIn);
    EXPECT_EQ(VelmoraView::mouseModeOf("view.zoomOut"), ModeNone);
}

} // namespace
} // namespace velmora

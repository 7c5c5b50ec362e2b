#include "view_rig.h"

namespace velmora {
namespace {

using test::twoPatches;
using test::ViewRig;
using ::testing::ElementsAre;

const std::string dragPrompt = "status: Press left button of mouse and drag it";
const std::string pointText =
    "status: Captured point: (Patch K=1, Section N=2, Point M=3) X=2.000000, Y=1.000000, Z=0.000000";
const std::string pointContinueText = pointText + " // Press right button to continue ";
const std::string sectionText = "status: Captured section: Patch K=1, Section N=2, Points M=4";
const std::string sectionContinueText = sectionText + "  // Press right button to continue ";
const std::string lineText = "status: Captured line: Patch K=1, Line N=3, Points M=3 ";
const std::string lineContinueText = lineText + " // Press right button to continue ";

/// A pixel that shows nothing.
const zVec<double> nowhere{6.5, 5.5, 0};

struct RegimeRig : ViewRig {
    RegimeRig() { show(twoPatches()); }
    void run(const char* id) {
        call(id);
        ui.transcript.clear();
    }
};

// ---- Points ---------------------------------------------------------------------------------------------------------

TEST(PointRegime, ArmsWithThePromptAndThePointMode) {
    RegimeRig rig;
    rig.call("point.capture");
    EXPECT_THAT(rig.ui.transcript, ElementsAre(dragPrompt));
    EXPECT_EQ(rig.view.mouseMode, ModePoint);
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed);
}

TEST(PointRegime, ClickOnAPointCapturesItAtTheRelease) {
    RegimeRig rig;
    rig.run("point.capture");
    const int repaints = rig.surface.repaints;
    rig.press({2, 1, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->pointCaptured);
    EXPECT_TRUE(rig.doc.capture->pointPicked);
    EXPECT_GT(rig.surface.repaints, repaints);
    EXPECT_TRUE(rig.ui.transcript.empty());
    rig.release({2, 1, 0});
    EXPECT_FALSE(rig.doc.capture->pointCaptureArmed);
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_TRUE(rig.doc.capture->pointPicked);
    EXPECT_FALSE(rig.view.leftButtonDown);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(pointContinueText));
}

TEST(PointRegime, ClickBesideTheGeometryStaysArmed) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.click(nowhere);
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->pointCaptured);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(dragPrompt));
    rig.click({2, 1, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
}

TEST(PointRegime, DragPicksAtEveryAcceptedMoveAndShowsTheShortText) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.press(nowhere);
    EXPECT_FALSE(rig.doc.capture->pointPicked);
    rig.view.OnMouseMove(rig.pixelOf({2, 1, 0}));
    EXPECT_TRUE(rig.doc.capture->pointPicked);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(pointText));
    rig.view.OnMouseMove(rig.pixelOf({1, 2, 0}));
    EXPECT_EQ(rig.ui.transcript.back(),
              "status: Captured point: (Patch K=1, Section N=3, Point M=2) X=1.000000, Y=2.000000, Z=0.000000");
    rig.release({1, 2, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_EQ(rig.doc.capture->capturedPointSection, 2);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 1);
}

TEST(PointRegime, DragOffTheGeometryLosesThePick) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.press({2, 1, 0});
    rig.view.OnMouseMove(rig.pixelOf(nowhere));
    EXPECT_FALSE(rig.doc.capture->pointPicked);
    rig.release(nowhere);
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed);
    EXPECT_EQ(rig.ui.transcript.back(), dragPrompt);
}

// The first pick binds the capture to its patch until the next one is begun.
TEST(PointRegime, DragDoesNotLeaveThePatchOfItsFirstPick) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.press({2, 1, 0});
    rig.view.OnMouseMove(rig.pixelOf({12, 1, 0}));
    EXPECT_FALSE(rig.doc.capture->pointPicked);
    rig.release({12, 1, 0});
    rig.run("point.capture");
    rig.click({12, 1, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
}

TEST(PointRegime, MoveWithoutAButtonPicksNothing) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.view.OnMouseMove(rig.pixelOf({2, 1, 0}));
    EXPECT_FALSE(rig.doc.capture->pointPicked);
    EXPECT_TRUE(rig.ui.transcript.empty());
}

TEST(PointRegime, ViewModeInBetweenLeavesTheRegimeAlone) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.view.setMouseMode(ModeShift);
    rig.drag(rig.pixelOf({2, 1, 0}), {10, 10});
    rig.view.OnLeftButtonUp({10, 10});
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->pointPicked);
    EXPECT_TRUE(rig.ui.transcript.empty());
    rig.view.setMouseMode(ModeShift);
    EXPECT_EQ(rig.view.mouseMode, ModePoint);
}

TEST(PointRegime, ClickAfterTheCapturePicksNothingMore) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.click({2, 1, 0});
    rig.ui.transcript.clear();
    rig.click({1, 2, 0});
    EXPECT_EQ(rig.doc.capture->capturedPointSection, 1);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 2);
    EXPECT_TRUE(rig.ui.transcript.empty());
}

TEST(PointRegime, NextPointMayLieInAnyPatch) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.click({2, 1, 0});
    rig.run("point.capture");
    rig.click({13, 0, 0});
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
}

// ---- Free points ----------------------------------------------------------------------------------------------------

TEST(FreePointRegime, ClickHoldsThePointBesideTheCapturedOne) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.click({1, 0, 0});
    rig.call("point.free");
    EXPECT_TRUE(rig.doc.capture->freePointArmed);
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_EQ(rig.view.mouseMode, ModePoint);
    rig.ui.transcript.clear();
    rig.click({2, 1, 0});
    EXPECT_FALSE(rig.doc.capture->freePointArmed);
    EXPECT_TRUE(rig.doc.capture->freePointHeld);
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(pointContinueText));
}

TEST(FreePointRegime, ClickBesideTheGeometryStaysArmed) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.click({1, 0, 0});
    rig.run("point.free");
    rig.click(nowhere);
    EXPECT_TRUE(rig.doc.capture->freePointArmed);
    EXPECT_FALSE(rig.doc.capture->freePointHeld);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(dragPrompt));
}

TEST(FreePointRegime, MayLieOffTheCapturedSectionOfItsPatch) {
    RegimeRig rig;
    rig.run("line.captureSection");
    rig.click({2, 1, 0});
    rig.run("point.free.line");
    EXPECT_EQ(rig.view.mouseMode, ModeSection);
    rig.click({3, 2, 0});
    EXPECT_TRUE(rig.doc.capture->freePointHeld);
    EXPECT_EQ(rig.doc.capture->capturedPointSection, 2);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 3);
    EXPECT_EQ(rig.doc.capture->capturedSection, 1);
}

TEST(FreePointRegime, DoesNotLeaveThePatchOfTheSection) {
    RegimeRig rig;
    rig.run("line.captureSection");
    rig.click({2, 1, 0});
    rig.run("point.free.line");
    rig.click({12, 1, 0});
    EXPECT_TRUE(rig.doc.capture->freePointArmed);
}

TEST(FreePointRegime, DragShowsTheShortText) {
    RegimeRig rig;
    rig.run("line.captureSection");
    rig.click({2, 1, 0});
    rig.run("point.free.line");
    rig.press(nowhere);
    rig.view.OnMouseMove(rig.pixelOf({2, 1, 0}));
    EXPECT_EQ(rig.ui.transcript.back(), pointText);
}

// ---- Sections -------------------------------------------------------------------------------------------------------

TEST(SectionRegime, ClickShowsTheShortTextAndTheReleaseCaptures) {
    RegimeRig rig;
    rig.call("line.captureSection");
    EXPECT_THAT(rig.ui.transcript, ElementsAre(dragPrompt));
    EXPECT_EQ(rig.view.mouseMode, ModeSection);
    rig.ui.transcript.clear();
    rig.press({2, 1, 0});
    EXPECT_THAT(rig.ui.transcript, ElementsAre(sectionText));
    EXPECT_TRUE(rig.doc.capture->sectionCaptureArmed);
    rig.release({2, 1, 0});
    EXPECT_THAT(rig.ui.transcript, ElementsAre(sectionText, sectionContinueText));
    EXPECT_FALSE(rig.doc.capture->sectionCaptureArmed);
    EXPECT_TRUE(rig.doc.capture->sectionCaptured);
    EXPECT_EQ(rig.view.mouseMode, ModeSection);
}

TEST(SectionRegime, ClickFarFromTheGeometryStaysArmed) {
    RegimeRig rig;
    rig.run("line.captureSection");
    rig.click(nowhere);
    EXPECT_TRUE(rig.doc.capture->sectionCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->sectionCaptured);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(dragPrompt, dragPrompt));
}

TEST(SectionRegime, DragPicksAtEveryAcceptedMove) {
    RegimeRig rig;
    rig.run("line.captureSection");
    rig.press(nowhere);
    rig.view.OnMouseMove(rig.pixelOf({2, 1, 0}));
    EXPECT_EQ(rig.ui.transcript.back(), sectionText);
    rig.view.OnMouseMove(rig.pixelOf(nowhere));
    EXPECT_EQ(rig.doc.capture->capturedSection, -1);
    rig.view.OnMouseMove(rig.pixelOf({2, 1, 0}));
    rig.release({2, 1, 0});
    EXPECT_TRUE(rig.doc.capture->sectionCaptured);
}

TEST(SectionRegime, PointCaptureStaysInsideTheSection) {
    RegimeRig rig;
    rig.run("line.captureSection");
    rig.click({2, 1, 0});
    rig.run("point.capture");
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    rig.click({2, 2, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed);
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    rig.click({2, 1, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_TRUE(rig.doc.capture->sectionCaptured);
    EXPECT_EQ(rig.ui.transcript.back(), pointContinueText);
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

TEST(LineRegime, ClickShowsTheShortTextAndTheReleaseCaptures) {
    RegimeRig rig;
    rig.call("line.captureLine");
    EXPECT_THAT(rig.ui.transcript, ElementsAre(dragPrompt));
    EXPECT_EQ(rig.view.mouseMode, ModeLine);
    rig.ui.transcript.clear();
    rig.click({2, 1, 0});
    EXPECT_THAT(rig.ui.transcript, ElementsAre(lineText, lineContinueText));
    EXPECT_FALSE(rig.doc.capture->lineCaptureArmed);
    EXPECT_TRUE(rig.doc.capture->lineCaptured);
    EXPECT_EQ(rig.doc.capture->capturedLine, 2);
}

TEST(LineRegime, ClickBesideTheGeometryStillCaptures) {
    RegimeRig rig;
    rig.run("line.captureLine");
    rig.click(nowhere);
    EXPECT_TRUE(rig.doc.capture->lineCaptured);
}

TEST(LineRegime, ClickVeryFarAwayStaysArmed) {
    RegimeRig rig;
    rig.run("line.captureLine");
    rig.view.zoomFactor = 5.0;
    rig.view.UpdateProjection();
    rig.clickPixel({0, 0});
    EXPECT_TRUE(rig.doc.capture->lineCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->lineCaptured);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(dragPrompt, dragPrompt));
}

// A failed pick leaves the line of the pick before it, and the release takes that one.
TEST(LineRegime, DragOffTheGeometryKeepsTheLineOfThePress) {
    RegimeRig rig;
    rig.run("line.captureLine");
    rig.view.zoomFactor = 5.0;
    rig.view.UpdateProjection();
    rig.press({2, 1, 0});
    ASSERT_EQ(rig.doc.capture->capturedLine, 2);
    rig.view.OnMouseMove({0, 0});
    EXPECT_EQ(rig.ui.transcript.back(), dragPrompt);
    rig.view.OnLeftButtonUp({0, 0});
    EXPECT_TRUE(rig.doc.capture->lineCaptured);
    EXPECT_EQ(rig.doc.capture->capturedLine, 2);
    EXPECT_EQ(rig.ui.transcript.back(), lineContinueText);
}

TEST(LineRegime, PointCaptureStaysOnTheLineAndNamesIt) {
    RegimeRig rig;
    rig.run("line.captureLine");
    rig.click({2, 1, 0});
    rig.run("point.capture");
    rig.click({1, 2, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed);
    rig.click({2, 0, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_EQ(rig.ui.transcript.back(), "status: Captured point: (Patch K=1, Line N=3, Point M=1) X=2.000000, "
                                        "Y=0.000000, Z=0.000000 // Press right button to continue ");
}

TEST(LineRegime, NextLineIsCapturedByTheNextClick) {
    RegimeRig rig;
    rig.run("line.captureLine");
    rig.click({2, 1, 0});
    rig.run("line.next");
    EXPECT_TRUE(rig.doc.capture->lineCaptureArmed);
    rig.click({11, 1, 0});
    EXPECT_TRUE(rig.doc.capture->lineCaptured);
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.doc.capture->capturedLine, 1);
}

// ---- The mouse around a regime --------------------------------------------------------------------------------------

TEST(RegimeClick, ConfinesTheCursorUntilTheRelease) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.press({2, 1, 0});
    EXPECT_TRUE(rig.surface.confined);
    rig.release({2, 1, 0});
    EXPECT_FALSE(rig.surface.confined);
}

TEST(RegimeClick, StopsASpin) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.view.spinActive = rig.view.spinTimerOn = true;
    rig.surface.timerRuns = true;
    rig.click({2, 1, 0});
    EXPECT_FALSE(rig.view.spinActive);
    EXPECT_FALSE(rig.view.spinTimerOn);
    EXPECT_FALSE(rig.surface.timerRuns);
}

TEST(RegimeClick, DragTurnsNothing) {
    RegimeRig rig;
    rig.run("point.capture");
    rig.drag({100, 100}, {200, 200});
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
    EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
}

} // namespace
} // namespace velmora

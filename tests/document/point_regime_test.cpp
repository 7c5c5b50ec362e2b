#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const dragStatus = "status: Press left button of mouse and drag it";
const char* const continueStatus = "status: Press right button to continue";

class PointRegime : public StateTest {
protected:
    PointRegime() { hold({flatPatch(3, 4), flatPatch(2, 2)}); }
};

using FreePoint = PointRegime;
using ExitPoint = PointRegime;

} // namespace

// ---- Capture --------------------------------------------------------------------------------------------------------

TEST_F(PointRegime, CaptureArmsThePoint) {
    arranged(doc).pointCaptured = arranged(doc).freePointArmed = arranged(doc).freePointHeld = true;
    doc.capture.showPoint();
    arranged(doc).patchCaptureArmed = arranged(doc).sectionCaptureArmed = true;
    doc.capture.renumberPoint(doc.capture->capturedPointSection, 3);
    call("point.capture");
    EXPECT_TRUE(doc.capture->pointCaptureArmed);
    EXPECT_FALSE(doc.capture->pointCaptured || doc.capture->freePointArmed || doc.capture->freePointHeld ||
                 doc.capture->pointPicked);
    EXPECT_FALSE(doc.capture->patchCaptureArmed || doc.capture->sectionCaptureArmed);
    EXPECT_EQ(doc.capture->capturedPoint, -1);
    EXPECT_EQ(doc.capture->pointStatus, doc.capture->dragPrompt);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
    EXPECT_THAT(viewCalls(), ElementsAre("force point"));
}

TEST_F(PointRegime, CaptureWithNothingElseCapturedFreesThePatch) {
    doc.capture.renumberPatch(1);
    call("point.capture");
    EXPECT_EQ(doc.capture->capturedPatch, -1);
}

TEST_F(PointRegime, CaptureOnASectionStaysInside) {
    captureSection(1, 0);
    call("point.capture");
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

TEST_F(PointRegime, CaptureOnALineStaysInside) {
    captureLine(1, 0);
    call("point.capture");
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_TRUE(doc.capture->lineCaptured);
}

TEST_F(PointRegime, CaptureKeepsACapturedPatch) {
    doc.capture.holdBlock();
    call("point.capture");
    EXPECT_TRUE(doc.capture->patchCaptured);
}

// ---- Free point -----------------------------------------------------------------------------------------------------

TEST_F(FreePoint, FromTheLineMenuArmsItAndLeavesTheMouse) {
    captureLine(1, 0);
    arranged(doc).pointCaptured = arranged(doc).pointPicked = arranged(doc).freePointHeld = true;
    arranged(doc).pointCaptureArmed = true;
    arranged(doc).patchCaptureArmed = arranged(doc).sectionCaptureArmed = true;
    doc.capture.renumberPoint(doc.capture->capturedPointSection, 2);
    call("point.free.line");
    EXPECT_TRUE(doc.capture->freePointArmed);
    EXPECT_FALSE(doc.capture->freePointHeld);
    EXPECT_TRUE(doc.capture->pointCaptureArmed && doc.capture->pointCaptured && doc.capture->pointPicked);
    EXPECT_FALSE(doc.capture->patchCaptureArmed || doc.capture->sectionCaptureArmed);
    EXPECT_EQ(doc.capture->capturedPoint, -1);
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(FreePoint, FromThePointMenuForcesPointMode) {
    captureSection(1, 0);
    call("point.free");
    EXPECT_TRUE(doc.capture->freePointArmed);
    EXPECT_THAT(viewCalls(), ElementsAre("force point"));
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

// ---- Exit -----------------------------------------------------------------------------------------------------------

TEST_F(ExitPoint, ClearsAllThatBelongsToThePoint) {
    capturePoint(0, 1, 2);
    arranged(doc).pointCaptureArmed = arranged(doc).freePointArmed = arranged(doc).freePointHeld = true;
    arranged(doc).pointDragging = doc.pointUndoReady = true;
    call("point.exit");
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_FALSE(doc.capture->pointDragging || doc.capture->pointPicked || doc.pointUndoReady);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
}

TEST_F(ExitPoint, WithNothingBeneathResetsTheMouse) {
    capturePoint(0, 1, 2);
    call("point.exit");
    EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw"));
    EXPECT_THAT(heard(), ElementsAre("status: For Help, press F1"));
}

TEST_F(ExitPoint, OnASectionComesBackToSectionMode) {
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    call("point.exit");
    EXPECT_THAT(heard(), ElementsAre(continueStatus));
    EXPECT_EQ(doc.capture->capturedPatch, 0);
    EXPECT_EQ(doc.capture->capturedSection, 1);
    EXPECT_TRUE(doc.capture->sectionCaptured);
    const Lines calls = viewCalls();
    EXPECT_TRUE(calls.front().ends_with(" section"));
    EXPECT_THAT(calls, testing::Not(testing::Contains("reset")));
}

TEST_F(ExitPoint, WithASectionArmedComesBackToSectionMode) {
    arranged(doc).sectionCaptureArmed = true;
    capturePoint(0, 1, 2);
    call("point.exit");
    EXPECT_THAT(heard(), ElementsAre(continueStatus));
    EXPECT_TRUE(viewCalls().front().ends_with(" section"));
}

TEST_F(ExitPoint, WithAPatchCapturedOrArmedComesBackToPatchMode) {
    for (bool CaptureState::*flag : {&CaptureState::patchCaptured, &CaptureState::patchCaptureArmed}) {
        arranged(doc).*flag = true;
        capturePoint(0, 1, 2);
        call("point.exit");
        EXPECT_THAT(heard(), ElementsAre(continueStatus));
        EXPECT_TRUE(viewCalls().front().ends_with(" patch"));
        EXPECT_EQ(doc.capture->capturedPatch, -1);
        arranged(doc).*flag = false;
    }
}

TEST_F(ExitPoint, OnALineResetsTheMouseAndKeepsTheLine) {
    captureLine(0, 2);
    capturePoint(0, 1, 2);
    call("point.exit");
    EXPECT_EQ(viewCalls().front(), "reset");
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedPatch, 0);
    EXPECT_EQ(doc.capture->capturedLine, 2);
}

} // namespace velmora::test

#include "document_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const dragStatus = "status: Press left button of mouse and drag it";
const char* const continueStatus = "status: Press right button to continue";

class PointRegime : public DocumentTest {
protected:
    PointRegime() { hold({flatPatch(3, 4), flatPatch(2, 2)}); }
};

using FreePoint = PointRegime;
using ExitPoint = PointRegime;

} // namespace

// ---- Capture --------------------------------------------------------------------------------------------------------

TEST_F(PointRegime, CaptureArmsThePoint) {
    doc.pointCaptured = doc.freePointArmed = doc.freePointHeld = doc.pointPicked = true;
    doc.patchCaptureArmed = doc.sectionCaptureArmed = true;
    doc.capturedPoint = 3;
    doc.CapturePoint();
    EXPECT_TRUE(doc.pointCaptureArmed);
    EXPECT_FALSE(doc.pointCaptured || doc.freePointArmed || doc.freePointHeld || doc.pointPicked);
    EXPECT_FALSE(doc.patchCaptureArmed || doc.sectionCaptureArmed);
    EXPECT_EQ(doc.capturedPoint, -1);
    EXPECT_EQ(doc.pointStatus, doc.dragPrompt);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
    EXPECT_THAT(viewCalls(), ElementsAre("force point"));
}

TEST_F(PointRegime, CaptureWithNothingElseCapturedFreesThePatch) {
    doc.capturedPatch = 1;
    doc.CapturePoint();
    EXPECT_EQ(doc.capturedPatch, -1);
}

TEST_F(PointRegime, CaptureOnASectionStaysInside) {
    captureSection(1, 0);
    doc.CapturePoint();
    EXPECT_EQ(doc.capturedPatch, 1);
    EXPECT_TRUE(doc.sectionCaptured);
}

TEST_F(PointRegime, CaptureOnALineStaysInside) {
    captureLine(1, 0);
    doc.CapturePoint();
    EXPECT_EQ(doc.capturedPatch, 1);
    EXPECT_TRUE(doc.lineCaptured);
}

TEST_F(PointRegime, CaptureKeepsACapturedPatch) {
    doc.patchCaptured = true;
    doc.CapturePoint();
    EXPECT_TRUE(doc.patchCaptured);
}

// ---- Free point -----------------------------------------------------------------------------------------------------

TEST_F(FreePoint, FromTheLineMenuArmsItAndLeavesTheMouse) {
    captureLine(1, 0);
    doc.pointCaptured = doc.pointPicked = doc.freePointHeld = true;
    doc.pointCaptureArmed = true;
    doc.patchCaptureArmed = doc.sectionCaptureArmed = true;
    doc.capturedPoint = 2;
    doc.CaptureFreePoint();
    EXPECT_TRUE(doc.freePointArmed);
    EXPECT_FALSE(doc.freePointHeld);
    EXPECT_TRUE(doc.pointCaptureArmed && doc.pointCaptured && doc.pointPicked);
    EXPECT_FALSE(doc.patchCaptureArmed || doc.sectionCaptureArmed);
    EXPECT_EQ(doc.capturedPoint, -1);
    EXPECT_EQ(doc.capturedPatch, 1);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(FreePoint, FromThePointMenuForcesPointMode) {
    captureSection(1, 0);
    doc.CaptureFreePointInPointRegime();
    EXPECT_TRUE(doc.freePointArmed);
    EXPECT_THAT(viewCalls(), ElementsAre("force point"));
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

// ---- Exit -----------------------------------------------------------------------------------------------------------

TEST_F(ExitPoint, ClearsAllThatBelongsToThePoint) {
    capturePoint(0, 1, 2);
    doc.pointCaptureArmed = doc.freePointArmed = doc.freePointHeld = true;
    doc.pointDragging = doc.pointUndoReady = true;
    doc.ExitPointRegime();
    EXPECT_FALSE(doc.pointRegimeActive());
    EXPECT_FALSE(doc.pointDragging || doc.pointPicked || doc.pointUndoReady);
    EXPECT_EQ(doc.capturedPatch, -1);
}

TEST_F(ExitPoint, WithNothingBeneathResetsTheMouse) {
    capturePoint(0, 1, 2);
    doc.ExitPointRegime();
    EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw"));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ExitPoint, OnASectionComesBackToSectionMode) {
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    doc.ExitPointRegime();
    EXPECT_THAT(heard(), ElementsAre(continueStatus));
    EXPECT_EQ(doc.capturedPatch, 0);
    EXPECT_EQ(doc.capturedSection, 1);
    EXPECT_TRUE(doc.sectionCaptured);
    const Lines calls = viewCalls();
    EXPECT_TRUE(calls.front().ends_with(" section"));
    EXPECT_THAT(calls, testing::Not(testing::Contains("reset")));
}

TEST_F(ExitPoint, WithASectionArmedComesBackToSectionMode) {
    doc.sectionCaptureArmed = true;
    capturePoint(0, 1, 2);
    doc.ExitPointRegime();
    EXPECT_THAT(heard(), ElementsAre(continueStatus));
    EXPECT_TRUE(viewCalls().front().ends_with(" section"));
}

TEST_F(ExitPoint, WithAPatchCapturedOrArmedComesBackToPatchMode) {
    for (bool VelmoraDoc::*flag : {&VelmoraDoc::patchCaptured, &VelmoraDoc::patchCaptureArmed}) {
        doc.*flag = true;
        capturePoint(0, 1, 2);
        doc.ExitPointRegime();
        EXPECT_THAT(heard(), ElementsAre(continueStatus));
        EXPECT_TRUE(viewCalls().front().ends_with(" patch"));
        EXPECT_EQ(doc.capturedPatch, -1);
        doc.*flag = false;
    }
}

TEST_F(ExitPoint, OnALineResetsTheMouseAndKeepsTheLine) {
    captureLine(0, 2);
    capturePoint(0, 1, 2);
    doc.ExitPointRegime();
    EXPECT_EQ(viewCalls().front(), "reset");
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(doc.lineCaptured);
    EXPECT_EQ(doc.capturedPatch, 0);
    EXPECT_EQ(doc.capturedLine, 2);
}

} // namespace velmora::test

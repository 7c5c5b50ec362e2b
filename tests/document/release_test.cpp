#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const dragStatus = "status: Press left button of mouse and drag it";

/// The left button comes up after a pick that found something, or nothing.
class Release : public StateTest {
protected:
    Release() {
        hold({flatPatch(3, 4)});
        arranged(doc).pointContinueStatus = "the point ";
        arranged(doc).sectionContinueStatus = "the section ";
        arranged(doc).lineContinueStatus = "the line ";
    }
};

} // namespace

TEST_F(Release, InNoRegimeDoesNothing) {
    doc.capture.showPoint();
    arranged(doc).capturedSection = arranged(doc).capturedLine = 1;
    releaseButton();
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), IsEmpty());
    EXPECT_FALSE(doc.capture->pointCaptured || doc.capture->freePointHeld || doc.capture->sectionCaptured ||
                 doc.capture->lineCaptured);
}

TEST_F(Release, OnAPointCapturesIt) {
    arranged(doc).pointCaptureArmed = arranged(doc).pointPicked = true;
    releaseButton();
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_FALSE(doc.capture->pointCaptureArmed);
    EXPECT_TRUE(doc.capture->pointPicked);
    EXPECT_THAT(heard(), ElementsAre("status: the point "));
}

TEST_F(Release, BesideTheGeometryKeepsThePointArmed) {
    arranged(doc).pointCaptureArmed = true;
    releaseButton();
    EXPECT_TRUE(doc.capture->pointCaptureArmed);
    EXPECT_FALSE(doc.capture->pointCaptured);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

TEST_F(Release, OnAFreePointHoldsIt) {
    arranged(doc).freePointArmed = arranged(doc).pointPicked = arranged(doc).pointCaptured = true;
    releaseButton();
    EXPECT_TRUE(doc.capture->freePointHeld && doc.capture->pointCaptured);
    EXPECT_FALSE(doc.capture->freePointArmed);
    EXPECT_THAT(heard(), ElementsAre("status: the point "));
}

TEST_F(Release, BesideTheGeometryKeepsTheFreePointArmed) {
    arranged(doc).freePointArmed = true;
    releaseButton();
    EXPECT_TRUE(doc.capture->freePointArmed);
    EXPECT_FALSE(doc.capture->freePointHeld);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

TEST_F(Release, OnASectionCapturesIt) {
    arranged(doc).sectionCaptureArmed = true;
    doc.capture.renumberPatch(0);
    doc.capture.renumberSection(2);
    releaseButton();
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_FALSE(doc.capture->sectionCaptureArmed);
    EXPECT_THAT(heard(), ElementsAre("status: the section "));
}

TEST_F(Release, BesideTheGeometryKeepsTheSectionArmed) {
    arranged(doc).sectionCaptureArmed = true;
    releaseButton();
    EXPECT_TRUE(doc.capture->sectionCaptureArmed);
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

TEST_F(Release, OnALineCapturesIt) {
    arranged(doc).lineCaptureArmed = true;
    doc.capture.renumberPatch(0);
    doc.capture.renumberLine(2);
    releaseButton();
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_FALSE(doc.capture->lineCaptureArmed);
    EXPECT_THAT(heard(), ElementsAre("status: the line "));
}

TEST_F(Release, BesideTheGeometryKeepsTheLineArmed) {
    arranged(doc).lineCaptureArmed = true;
    releaseButton();
    EXPECT_TRUE(doc.capture->lineCaptureArmed);
    EXPECT_FALSE(doc.capture->lineCaptured);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

TEST_F(Release, WithoutAPatchPutsNothingIntoTheZBlock) {
    call("patch.addToBlock");
    releaseButton();
    EXPECT_THAT(block(), IsEmpty());
}

TEST_F(Release, OfTheFirstPointIsFoundAtIndexZero) {
    arranged(doc).sectionCaptureArmed = true;
    doc.capture.renumberSection(0);
    releaseButton();
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

} // namespace velmora::test

#include "document_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const dragStatus = "status: Press left button of mouse and drag it";

/// The left button comes up after a pick that found something, or nothing.
class Release : public DocumentTest {
protected:
    Release() {
        hold({flatPatch(3, 4)});
        doc.pointContinueStatus = "the point ";
        doc.sectionContinueStatus = "the section ";
        doc.lineContinueStatus = "the line ";
    }
};

} // namespace

TEST_F(Release, InNoRegimeDoesNothing) {
    doc.pointPicked = true;
    doc.capturedSection = doc.capturedLine = 1;
    doc.moveRegimeAtRelease();
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), IsEmpty());
    EXPECT_FALSE(doc.pointCaptured || doc.freePointHeld || doc.sectionCaptured || doc.lineCaptured);
}

TEST_F(Release, OnAPointCapturesIt) {
    doc.pointCaptureArmed = doc.pointPicked = true;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.pointCaptured);
    EXPECT_FALSE(doc.pointCaptureArmed);
    EXPECT_TRUE(doc.pointPicked);
    EXPECT_THAT(heard(), ElementsAre("status: the point "));
}

TEST_F(Release, BesideTheGeometryKeepsThePointArmed) {
    doc.pointCaptureArmed = true;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.pointCaptureArmed);
    EXPECT_FALSE(doc.pointCaptured);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

TEST_F(Release, OnAFreePointHoldsIt) {
    doc.freePointArmed = doc.pointPicked = doc.pointCaptured = true;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.freePointHeld && doc.pointCaptured);
    EXPECT_FALSE(doc.freePointArmed);
    EXPECT_THAT(heard(), ElementsAre("status: the point "));
}

TEST_F(Release, BesideTheGeometryKeepsTheFreePointArmed) {
    doc.freePointArmed = true;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.freePointArmed);
    EXPECT_FALSE(doc.freePointHeld);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

TEST_F(Release, OnASectionCapturesIt) {
    doc.sectionCaptureArmed = true;
    doc.capturedPatch = 0;
    doc.capturedSection = 2;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.sectionCaptured);
    EXPECT_FALSE(doc.sectionCaptureArmed);
    EXPECT_THAT(heard(), ElementsAre("status: the section "));
}

TEST_F(Release, BesideTheGeometryKeepsTheSectionArmed) {
    doc.sectionCaptureArmed = true;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.sectionCaptureArmed);
    EXPECT_FALSE(doc.sectionCaptured);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

TEST_F(Release, OnALineCapturesIt) {
    doc.lineCaptureArmed = true;
    doc.capturedPatch = 0;
    doc.capturedLine = 2;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.lineCaptured);
    EXPECT_FALSE(doc.lineCaptureArmed);
    EXPECT_THAT(heard(), ElementsAre("status: the line "));
}

TEST_F(Release, BesideTheGeometryKeepsTheLineArmed) {
    doc.lineCaptureArmed = true;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.lineCaptureArmed);
    EXPECT_FALSE(doc.lineCaptured);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
}

TEST_F(Release, OfTheFirstPointIsFoundAtIndexZero) {
    doc.sectionCaptureArmed = true;
    doc.capturedSection = 0;
    doc.moveRegimeAtRelease();
    EXPECT_TRUE(doc.sectionCaptured);
}

} // namespace velmora::test

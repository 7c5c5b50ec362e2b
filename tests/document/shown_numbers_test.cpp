#include "CommandTest.h"
#include "messages.h"
#include "status_texts.h"

namespace velmora::test {

namespace {

/// The numbers of a status text are those of the model, whatever a command made of it since the capture.
class ShownNumbers : public CommandTest {
protected:
    ShownNumbers() { hold({flatPatch(4, 5), flatPatch(3, 6)}); }
};

} // namespace

TEST_F(ShownNumbers, PointsOfTheCapturedSectionFollowRebreak) {
    runWith("line.inputSection", {{"patch", "1"}, {"section", "2"}});
    EXPECT_EQ(doc.status, "Captured section: Patch K=1, Section N=2, Points M=5  // Press right button to continue ");
    runWith("line.rebreak", {{"regime", "2"}, {"newCount", "9"}});
    ASSERT_EQ(doc.patches[0][1].size(), 9U);
    EXPECT_EQ(doc.status, "Captured section: Patch K=1, Section N=2, Points M=9  // Press right button to continue ");
}

TEST_F(ShownNumbers, PointsOfTheCapturedSectionFollowWeeding) {
    runWith("line.inputSection", {{"patch", "1"}, {"section", "2"}});
    run("line.weeding");
    ASSERT_EQ(doc.patches[0][1].size(), 3U);
    EXPECT_EQ(doc.status, "Captured section: Patch K=1, Section N=2, Points M=3  // Press right button to continue ");
}

TEST_F(ShownNumbers, CoordinatesOfTheCapturedPointFollowAMove) {
    doc.capture.holdPoint(0, 1, 2, doc.patches[0][1][2]);
    doc.capture.describePoint(false);
    showStatus(doc.capture->pointContinueStatus);
    runWith("model.move", {{"deltaX", "10"}, {"deltaY", "0"}, {"deltaZ", "0"}});
    const zVec<double> now = doc.patches[0][1][2];
    EXPECT_EQ(doc.status, "Captured point: (Patch K=1, Section N=2, Point M=3) X=" + fixedText(now.x) +
                              ", Y=" + fixedText(now.y) + ", Z=0.000000 // Press right button to continue ");
}

TEST_F(ShownNumbers, CoordinatesFollowADrag) {
    doc.capture.holdPoint(0, 1, 2, doc.patches[0][1][2]);
    doc.capture.describePoint(false);
    doc.capture.armDrag();
    placeDraggedPoint({7.5, -2, 1});
    releaseButton();
    EXPECT_EQ(doc.status, "Captured point: (Patch K=1, Section N=2, Point M=3) X=7.500000, Y=-2.000000, Z=1.000000"
                          " // Press right button to continue ");
}

TEST_F(ShownNumbers, LeavingALineShowsTheLastPatchOfTheBlock) {
    runWith("patch.inputAndAdd", {{"number", "1"}});
    runWith("patch.inputAndAdd", {{"number", "2"}});
    runWith("line.inputSection", {{"patch", "1"}, {"section", "2"}});
    run("line.exit");
    EXPECT_EQ(doc.status, "Captured patch: Patch K=2 // Press right button to continue ");
    doc.blockList[0] = 0;
    doc.blockCount = 1;
    runWith("line.inputSection", {{"patch", "1"}, {"section", "2"}});
    run("line.exit");
    EXPECT_EQ(doc.status, "Captured patch: Patch K=1 // Press right button to continue ");
}

TEST_F(ShownNumbers, AnotherTextIsLeftAlone) {
    runWith("line.inputSection", {{"patch", "1"}, {"section", "2"}});
    showStatus("Something else");
    runWith("line.rebreak", {{"regime", "2"}, {"newCount", "9"}});
    EXPECT_EQ(doc.status, "Something else");
}

TEST(MessageNumbers, OfIntersectionCountFromOne) {
    EXPECT_EQ(message::lineNotIntersected(0, 2).text, "Intersection with line 1 from patch 3 is not found");
}

} // namespace velmora::test

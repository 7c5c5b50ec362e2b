#include "arranged_capture.h"
#include "draw_rig.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::flatPatch;
using test::twoPatches;
using test::ViewRig;

/// Two flat patches, seen along z.
struct CurveRig : ViewRig {
    CurveRig() { show(twoPatches()); }
    bool pickSection(const zVec<double>& at) { return view.PickSection(pixelOf(at)); }
    bool pickLine(const zVec<double>& at) { return view.PickLine(pixelOf(at)); }
    /// Shrinks the model on the screen, so that a corner pixel is far from it.
    void shrink() {
        view.zoomFactor = 5.0;
        view.UpdateProjection();
    }
};

// ---- Sections -------------------------------------------------------------------------------------------------------

TEST(PickSection, TakesTheSectionOfTheNearestPointWithItsTexts) {
    CurveRig rig;
    rig.call("line.captureSection");
    ASSERT_TRUE(rig.pickSection({12, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.doc.capture->capturedSection, 1);
    EXPECT_EQ(rig.doc.capture->sectionStatus, "Captured section: Patch K=2, Section N=2, Points M=4");
    EXPECT_EQ(rig.doc.capture->sectionContinueStatus,
              "Captured section: Patch K=2, Section N=2, Points M=4  // Press right button to continue ");
    EXPECT_EQ(rig.ui.transcript.back(), "status: Captured section: Patch K=2, Section N=2, Points M=4");
}

TEST(PickSection, TextCountsThePointsOfThatSection) {
    ViewRig rig;
    rig.show({{{{0, 0, 0}, {1, 0, 0}}, {{0, 5, 0}, {1, 5, 0}, {2, 5, 0}}}});
    rig.call("line.captureSection");
    ASSERT_TRUE(rig.view.PickSection(rig.pixelOf({1, 5, 0})));
    EXPECT_EQ(rig.doc.capture->sectionStatus, "Captured section: Patch K=1, Section N=2, Points M=3");
}

TEST(PickSection, MovesShowTheListOfTheirSectionWithoutBuildingTheModelAnew) {
    CurveRig rig;
    rig.call("line.captureSection");
    rig.paint();
    const auto revision = rig.surface.lastFrame.listRevision;
    for (const zVec<double>& place : {zVec<double>(12, 1, 0), zVec<double>(0, 0, 0), zVec<double>(11, 0, 0)}) {
        ASSERT_TRUE(rig.pickSection(place));
        rig.paint();
        EXPECT_EQ(rig.surface.lastFrame.listRevision, revision);
        EXPECT_EQ(rig.surface.lastFrame.list->accents.size(), 1U);
        EXPECT_EQ(test::dump(rig.view.list()), test::dump(buildDrawList(rig.doc, 1)));
    }
}

TEST(PickLine, MovesShowTheListOfTheirLineWithoutBuildingTheModelAnew) {
    CurveRig rig;
    rig.call("line.captureLine");
    rig.paint();
    const auto revision = rig.surface.lastFrame.listRevision;
    for (const zVec<double>& place : {zVec<double>(12, 1, 0), zVec<double>(0, 0, 0)}) {
        ASSERT_TRUE(rig.pickLine(place));
        rig.paint();
        EXPECT_EQ(rig.surface.lastFrame.listRevision, revision);
        EXPECT_EQ(rig.surface.lastFrame.list->accents.size(), 1U);
        EXPECT_EQ(test::dump(rig.view.list()), test::dump(buildDrawList(rig.doc, 1)));
    }
}

TEST(PickSection, MovesBuildTheMarkersOfTheZBlockAnew) {
    CurveRig rig;
    rig.doc.showZBlockMarkers = true;
    rig.doc.blockList[0] = 1;
    rig.doc.blockCount = 1;
    rig.call("line.captureSection");
    for (const zVec<double>& place : {zVec<double>(12, 1, 0), zVec<double>(11, 0, 0)}) {
        ASSERT_TRUE(rig.pickSection(place));
        EXPECT_EQ(test::dump(rig.view.list()), test::dump(buildDrawList(rig.doc, 1)));
    }
}

TEST(PickSection, ShowsTheSectionWhiteInTheSectionMode) {
    CurveRig rig;
    rig.call("line.captureSection");
    const int repaints = rig.surface.repaints;
    ASSERT_TRUE(rig.pickSection({12, 1, 0}));
    EXPECT_EQ(rig.view.mouseMode, ModeSection);
    EXPECT_GT(rig.surface.repaints, repaints);
    int whitePoints = 0;
    for (const DrawBatch& batch : rig.view.list().batches) {
        if (batch.primitive == Primitive::Points && batch.colour == Colour{1, 1, 1, 1}) {
            whitePoints += static_cast<int>(batch.vertexCount);
            EXPECT_EQ(rig.view.list().vertices[batch.firstVertex].y, 1.0);
        }
    }
    EXPECT_EQ(whitePoints, 4);
}

TEST(PickSection, FailureDropsTheSectionAndLeavesTheNearestPatch) {
    CurveRig rig;
    rig.call("line.captureSection");
    ASSERT_TRUE(rig.pickSection({2, 1, 0}));
    rig.shrink();
    // The upper right corner of the window: the second patch is the nearer one.
    EXPECT_FALSE(rig.view.PickSection({599, 0}));
    EXPECT_EQ(rig.doc.capture->capturedSection, -1);
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.ui.transcript.back(), "status: Press left button of mouse and drag it");
    EXPECT_EQ(rig.view.mouseMode, ModeSection);
}

TEST(PickSection, LooksAtTheBlockOnlyInThePatchRegime) {
    CurveRig rig;
    rig.putIntoBlock({1});
    ASSERT_TRUE(rig.pickSection({2, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    rig.doc.capture.holdBlock();
    EXPECT_FALSE(rig.pickSection({2, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    rig.putIntoBlock({});
    EXPECT_TRUE(rig.pickSection({2, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
}

TEST(PickSection, IsNotBoundToTheCapturedPatch) {
    CurveRig rig;
    rig.doc.capture.renumberPatch(0);
    ASSERT_TRUE(rig.pickSection({12, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
}

TEST(PickSection, InThePatchRegimeEndsInTheSectionMode) {
    CurveRig rig;
    rig.doc.capture.holdBlock();
    rig.putIntoBlock({1});
    rig.call("line.captureSection");
    ASSERT_TRUE(rig.pickSection({12, 1, 0}));
    EXPECT_EQ(rig.view.mouseMode, ModeSection);
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

TEST(PickLine, TakesTheLineOfTheNearestPointWithItsTexts) {
    CurveRig rig;
    rig.call("line.captureLine");
    rig.doc.capture.renumberPoint(7, rig.doc.capture->capturedPoint);
    ASSERT_TRUE(rig.pickLine({13, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.doc.capture->capturedLine, 3);
    EXPECT_EQ(rig.doc.capture->capturedPointSection, -1);
    EXPECT_EQ(rig.doc.capture->lineStatus, "Captured line: Patch K=2, Line N=4, Points M=3 ");
    EXPECT_EQ(rig.doc.capture->lineContinueStatus,
              "Captured line: Patch K=2, Line N=4, Points M=3  // Press right button to continue ");
    EXPECT_EQ(rig.ui.transcript.back(), "status: Captured line: Patch K=2, Line N=4, Points M=3 ");
    EXPECT_EQ(rig.view.mouseMode, ModeLine);
}

TEST(PickLine, FarFromTheGeometryStillTakesALine) {
    CurveRig rig;
    rig.call("line.captureLine");
    // A quarter of the diagonal above the model: far too much for a point or a section.
    const double diagonal = std::sqrt(13.0 * 13.0 + 2.0 * 2.0);
    const zVec<double> far{13, 2 + diagonal / 4, 0};
    EXPECT_FALSE(rig.view.PickPoint(rig.pixelOf(far)));
    EXPECT_FALSE(rig.pickSection(far));
    EXPECT_TRUE(rig.pickLine(far));
    EXPECT_EQ(rig.doc.capture->capturedLine, 3);
}

TEST(PickLine, FailureKeepsTheLineAndLeavesTheNearestPatch) {
    CurveRig rig;
    rig.call("line.captureLine");
    ASSERT_TRUE(rig.pickLine({2, 1, 0}));
    rig.shrink();
    rig.doc.capture.renumberPoint(7, rig.doc.capture->capturedPoint);
    EXPECT_FALSE(rig.view.PickLine({599, 0}));
    EXPECT_EQ(rig.doc.capture->capturedLine, 2);
    EXPECT_EQ(rig.doc.capture->capturedPointSection, -1);
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.ui.transcript.back(), "status: Press left button of mouse and drag it");
    EXPECT_EQ(rig.view.mouseMode, ModeLine);
}

TEST(PickLine, LooksAtTheBlockOnlyInThePatchRegime) {
    CurveRig rig;
    rig.doc.capture.holdBlock();
    rig.putIntoBlock({1});
    // One unit beside the first patch, six before the second.
    ASSERT_TRUE(rig.pickLine({4, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.doc.capture->capturedLine, 0);
}

TEST(PickLine, DoesNotTouchTheCapturedSection) {
    CurveRig rig;
    rig.doc.capture.renumberSection(2);
    rig.pickLine({12, 1, 0});
    EXPECT_EQ(rig.doc.capture->capturedSection, 2);
    rig.doc.capture.renumberLine(1);
    rig.pickSection({12, 1, 0});
    EXPECT_EQ(rig.doc.capture->capturedLine, 1);
}

} // namespace
} // namespace velmora

#include <limits>

#include "command_table.h"
#include "vectors.h"
#include "view_rig.h"

// What becomes of a drag or a regime when something comes between the press and the release.

namespace velmora {
namespace {

using test::flatPatch;
using test::twoPatches;
using test::ViewRig;

struct DragRig : ViewRig {
    DragRig() { show(twoPatches()); }
    void run(const char* id) { view.runViewCommand(id); }
};

/// Everything that a drag may move.
struct Camera {
    Matrix4 rotation;
    zVec<double> offset;
    double centreX = 0.0;
    double centreY = 0.0;
    double zoom = 0.0;

    friend bool operator==(const Camera&, const Camera&) = default;
};

Camera cameraOf(const VelmoraView& view) {
    return {view.modelRotation, view.modelOffset, view.viewCentreX, view.viewCentreY, view.zoomFactor};
}

TEST(InterruptedDrag, AModeChosenInItsMiddleTakesOverFromTheLastPosition) {
    DragRig rig;
    rig.run("view.rotate");
    rig.drag({100, 100}, {150, 100});
    const Matrix4 turned = rig.view.modelRotation;
    rig.run("view.shift");
    EXPECT_TRUE(rig.view.leftButtonDown);
    rig.view.OnMouseMove({170, 90});
    EXPECT_EQ(rig.view.modelRotation, turned);
    EXPECT_EQ(rig.view.viewCentreX, 300.0 - 20.0);
    EXPECT_EQ(rig.view.viewCentreY, 300.0 - 10.0);
    rig.view.OnLeftButtonUp({170, 90});
    EXPECT_FALSE(rig.view.spinActive) << "a shift is no throw";
    EXPECT_FALSE(rig.view.leftButtonDown);
}

TEST(InterruptedDrag, AModeThatWasLeftByItsOwnCommandMovesNothingMore) {
    DragRig rig;
    rig.run("view.rotate");
    rig.drag({100, 100}, {150, 100});
    rig.run("view.rotate");
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
    const Camera before = cameraOf(rig.view);
    rig.view.OnMouseMove({200, 100});
    rig.view.OnLeftButtonUp({210, 100});
    EXPECT_EQ(cameraOf(rig.view), before);
    EXPECT_FALSE(rig.view.spinActive);
}

TEST(InterruptedDrag, AModeChosenAfterTheIdlePressWorksToTheRelease) {
    DragRig rig;
    rig.drag({100, 100}, {150, 100});
    EXPECT_EQ(rig.view.viewCentreX, 300.0);
    rig.run("view.shift");
    rig.view.OnMouseMove({160, 100});
    EXPECT_EQ(rig.view.viewCentreX, 290.0);
}

TEST(InterruptedDrag, TheZoomThatIsChosenAfterThePressHasNoRectangleToFollow) {
    DragRig rig;
    rig.drag({100, 100}, {150, 100});
    rig.run("view.zoomIn");
    rig.view.OnMouseMove({200, 160});
    EXPECT_FALSE(rig.view.rubberBandShown);
    rig.paint();
    EXPECT_TRUE(rig.surface.rectangles.empty());
}

TEST(InterruptedDrag, AZoomThatIsLeftBeforeTheReleaseDoesNotZoom) {
    DragRig rig;
    rig.run("view.zoomIn");
    rig.drag({100, 100}, {200, 160});
    rig.run("view.scale");
    rig.view.OnLeftButtonUp({200, 160});
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
    EXPECT_FALSE(rig.view.leftButtonDown);
}

TEST(InterruptedDrag, AViewModeInTheMiddleOfACaptureLeavesItArmed) {
    DragRig rig;
    rig.call("point.capture");
    rig.press({1, 1, 0});
    EXPECT_TRUE(rig.doc.capture->pointPicked);
    rig.run("view.shift");
    const PixelPoint at = rig.view.lastMousePos;
    rig.view.OnMouseMove({at.x + 30, at.y});
    EXPECT_EQ(rig.view.viewCentreX, 270.0);
    rig.view.OnLeftButtonUp({at.x + 30, at.y});
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed) << "the release belongs to the view's mode";
    EXPECT_FALSE(rig.doc.capture->pointCaptured);
    EXPECT_FALSE(rig.view.leftButtonDown);
    rig.run("view.shift");
    EXPECT_EQ(rig.view.mouseMode, ModePoint);
    rig.click({1, 1, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
}

TEST(InterruptedDrag, ACaptureThatStartsInTheMiddleOfADragPicksFromTheNextMoveOn) {
    DragRig rig;
    rig.run("view.shift");
    rig.drag({100, 100}, {150, 100});
    const double centre = rig.view.viewCentreX;
    rig.call("point.capture");
    rig.view.OnMouseMove(rig.pixelOf({2, 1, 0}));
    EXPECT_EQ(rig.view.viewCentreX, centre);
    EXPECT_TRUE(rig.doc.capture->pointPicked);
    rig.release({2, 1, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_EQ(rig.doc.capture->capturedPointPos, (zVec<double>{2, 1, 0}));
}

TEST(InterruptedDrag, ANewModelInItsMiddleStandsIdleAndFree) {
    DragRig rig;
    rig.run("view.rotate");
    rig.drag({100, 100}, {150, 100});
    rig.updateBounds();
    EXPECT_FALSE(rig.surface.confined);
    const Camera before = cameraOf(rig.view);
    rig.view.OnMouseMove({250, 100});
    EXPECT_EQ(cameraOf(rig.view), before);
    rig.view.OnLeftButtonUp({250, 100});
    EXPECT_FALSE(rig.view.leftButtonDown);
    EXPECT_FALSE(rig.view.spinActive);
}

TEST(InterruptedDrag, ASizeChangedInItsMiddleKeepsTheDrag) {
    DragRig rig;
    rig.run("view.shift");
    rig.drag({100, 100}, {110, 100});
    rig.view.OnSize(300, 600);
    EXPECT_EQ(rig.view.viewCentreX, 145.0) << "290 of 600, halved";
    rig.view.OnMouseMove({120, 100});
    EXPECT_EQ(rig.view.viewCentreX, 135.0);
    rig.view.OnLeftButtonUp({120, 100});
    EXPECT_FALSE(rig.view.leftButtonDown);
}

TEST(InterruptedDrag, OfAPointEndsAtTheReleaseWhereverItIs) {
    DragRig rig;
    rig.call("point.capture");
    rig.click({1, 1, 0});
    rig.call("point.drag");
    ASSERT_TRUE(rig.doc.capture->pointDragging);
    const zVec<double> start = rig.doc.patches[0][1][1];
    rig.press({1, 1, 0});
    rig.view.OnLeftButtonUp({0, 0});
    EXPECT_FALSE(rig.doc.capture->pointDragging);
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    rig.view.OnMouseMove(rig.pixelOf({1.5, 1.5, 0}));
    const zVec<double> end = rig.doc.patches[0][1][1];
    EXPECT_LT(lengthOf(end - start), 0.05) << "it was let go where it was taken";
}

TEST(ViewSize, OfOnePixelIsTakenAndTheModelIsPickedThere) {
    DragRig rig;
    rig.view.OnSize(1, 1);
    EXPECT_EQ(rig.view.aspectRatio, 1.0);
    EXPECT_EQ(rig.view.viewport.width, 1);
    rig.view.OnSize(0, 1);
    rig.view.OnSize(1, 0);
    rig.view.OnSize(-1, 600);
    EXPECT_EQ(rig.view.viewport.height, 1);
    rig.paint();
    rig.run("view.rotate");
    rig.drag({0, 0}, {10, 10});
    for (const double element : rig.view.modelRotation) {
        EXPECT_TRUE(std::isfinite(element));
    }
    rig.view.OnSize(600, 600);
    EXPECT_NEAR(rig.view.viewCentreX, 300.0, 1e-9);
}

// ---- The zBlock is full ---------------------------------------------------------------------------------------------

/// A model of one patch more than the zBlock takes; all but the first are in it, in the same place.
struct FullBlockRig : ViewRig {
    FullBlockRig() {
        PatchList model{flatPatch(2, 2)};
        Patch other = flatPatch(2, 2);
        for (PointList& section : other) {
            for (zVec<double>& point : section) {
                point.x += 3.0;
            }
        }
        model.resize(static_cast<std::size_t>(blockCapacity) + 1, other);
        show(model);
        call("patch.capture");
        click({0.3, 0.6, 0});
        call("block.invert");
        EXPECT_EQ(doc.blockCount, blockCapacity);
        ui.transcript.clear();
    }
};

TEST(FullBlock, AClickOnOneMoreIsToldAndLeavesTheBlock) {
    FullBlockRig rig;
    rig.call("patch.capture");
    rig.ui.transcript.clear();
    rig.press({0.3, 0.6, 0});
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    EXPECT_EQ(rig.ui.count("message: It is impossible to add one more zBlock"), 0U) << "only the release would add";
    rig.release({0.3, 0.6, 0});
    EXPECT_EQ(rig.ui.count("message: It is impossible to add one more zBlock"), 1U);
    EXPECT_EQ(rig.doc.blockCount, blockCapacity);
    EXPECT_FALSE(rig.doc.inBlock(0));
    EXPECT_TRUE(rig.doc.capture->patchCaptured);
    EXPECT_FALSE(rig.doc.capture->patchCaptureArmed);
    EXPECT_FALSE(rig.view.leftButtonDown);
}

TEST(FullBlock, AClickOnAMemberIsNoTrouble) {
    FullBlockRig rig;
    rig.call("patch.capture");
    rig.ui.transcript.clear();
    rig.click({3.3, 0.6, 0});
    EXPECT_EQ(rig.ui.count("message: It is impossible to add one more zBlock"), 0U);
    EXPECT_EQ(rig.doc.blockCount, blockCapacity);
    EXPECT_TRUE(rig.doc.capture->patchCaptured);
}

TEST(FullBlock, AfterARemovalOneMoreIsTakenIn) {
    FullBlockRig rig;
    rig.call("patch.removeFromBlock");
    rig.click({3.3, 0.6, 0});
    EXPECT_EQ(rig.doc.blockCount, blockCapacity - 1);
    EXPECT_EQ(rig.doc.blockList[static_cast<std::size_t>(blockCapacity) - 1], -1);
    rig.call("patch.capture");
    rig.ui.transcript.clear();
    rig.click({0.3, 0.6, 0});
    EXPECT_EQ(rig.ui.count("message: It is impossible to add one more zBlock"), 0U);
    EXPECT_EQ(rig.doc.blockCount, blockCapacity);
    EXPECT_EQ(rig.doc.blockList[static_cast<std::size_t>(blockCapacity) - 1], 0) << "the last of them";
}

} // namespace
} // namespace velmora

#include "view_rig.h"

namespace velmora {
namespace {

using test::expectVector;
using test::twoPatches;
using test::ViewRig;

/// A model in the view and a mouse mode set.
struct MouseRig : ViewRig {
    explicit MouseRig(MouseMode mode) {
        show(twoPatches());
        view.setMouseMode(mode);
    }
    double radius() const { return doc.modelRadius; }
};

// ---- Press, threshold, release --------------------------------------------------------------------------------------

TEST(LeftButtonDown, KeepsPositionAndTimeAndConfinesTheCursor) {
    MouseRig rig(ModeScale);
    rig.surface.now = 777;
    rig.view.OnLeftButtonDown({50, 60});
    EXPECT_TRUE(rig.view.leftButtonDown);
    EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{50, 60}));
    EXPECT_EQ(rig.view.prevMousePos, (PixelPoint{50, 60}));
    EXPECT_EQ(rig.view.lastMoveClock, 777);
    EXPECT_TRUE(rig.surface.confined);
}

TEST(LeftButtonUp, FreesTheCursor) {
    MouseRig rig(ModeScale);
    rig.view.OnLeftButtonDown({50, 60});
    rig.view.OnLeftButtonUp({50, 60});
    EXPECT_FALSE(rig.view.leftButtonDown);
    EXPECT_FALSE(rig.surface.confined);
}

TEST(LeftButtonUp, WithoutAPressDoesNothing) {
    for (int mode = ModeRotate; mode <= ModeLine; ++mode) {
        MouseRig rig(static_cast<MouseMode>(mode));
        const double zoom = rig.view.zoomFactor;
        rig.view.OnLeftButtonUp({10, 20});
        EXPECT_FALSE(rig.view.leftButtonDown);
        EXPECT_FALSE(rig.view.spinActive);
        EXPECT_EQ(rig.view.zoomFactor, zoom);
        EXPECT_TRUE(rig.ui.transcript.empty());
    }
}

TEST(MouseMove, FivePixelsChangeNothing) {
    MouseRig rig(ModeShift);
    rig.view.OnLeftButtonDown({100, 100});
    rig.surface.now = 500;
    const int repaints = rig.surface.repaints;
    for (const PixelPoint& position : {PixelPoint{105, 100}, {100, 95}, {103, 98}, {96, 101}, {100, 100}}) {
        rig.view.OnMouseMove(position);
    }
    EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{100, 100}));
    EXPECT_EQ(rig.view.lastMoveClock, 0);
    EXPECT_EQ(rig.view.viewCentreX, 300.0);
    EXPECT_EQ(rig.surface.repaints, repaints);
}

TEST(MouseMove, OneMorePixelIsAMoveOfSix) {
    MouseRig rig(ModeShift);
    rig.view.OnLeftButtonDown({100, 100});
    rig.view.OnMouseMove({105, 100});
    rig.view.OnMouseMove({106, 100});
    EXPECT_EQ(rig.view.viewCentreX, 294.0);
    EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{106, 100}));
    EXPECT_EQ(rig.view.prevMousePos, (PixelPoint{100, 100}));
}

TEST(MouseMove, BothAxesAddUpWhateverTheirSign) {
    for (const PixelPoint& position : {PixelPoint{103, 103}, {97, 103}, {103, 97}, {97, 97}, {100, 94}}) {
        MouseRig rig(ModeShift);
        rig.view.OnLeftButtonDown({100, 100});
        rig.view.OnMouseMove(position);
        EXPECT_EQ(rig.view.lastMousePos, position);
    }
}

TEST(MouseMove, ThresholdIsMeasuredFromTheLastAcceptedPosition) {
    for (const PixelPoint& step : {PixelPoint{10, 0}, {0, 10}}) {
        MouseRig rig(ModeShift);
        rig.view.OnLeftButtonDown({100, 100});
        const PixelPoint accepted{100 + step.x, 100 + step.y};
        rig.view.OnMouseMove(accepted);
        // Five pixels on from there, and a move back to the start.
        rig.view.OnMouseMove({accepted.x + step.x / 2, accepted.y + step.y / 2});
        EXPECT_EQ(rig.view.lastMousePos, accepted);
        rig.view.OnMouseMove({100, 100});
        EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{100, 100}));
    }
}

TEST(MouseMove, KeepsTimeAndBothPositionsAndRepaints) {
    MouseRig rig(ModeScale);
    rig.view.OnLeftButtonDown({100, 100});
    rig.surface.now = 40;
    const int repaints = rig.surface.repaints;
    rig.view.OnMouseMove({110, 100});
    rig.surface.now = 55;
    rig.view.OnMouseMove({120, 110});
    EXPECT_EQ(rig.view.lastMoveClock, 55);
    EXPECT_EQ(rig.view.prevMousePos, (PixelPoint{110, 100}));
    EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{120, 110}));
    EXPECT_EQ(rig.surface.repaints, repaints + 2);
    EXPECT_EQ(rig.surface.sameFrames, 0);
}

TEST(MouseMove, WhileTheModelSpinsAsksForANewFrame) {
    MouseRig rig(ModeRotate);
    rig.view.spinActive = true;
    rig.view.OnMouseMove({200, 210});
    EXPECT_EQ(rig.surface.sameFrames, 0);
}

TEST(MouseMove, WithoutAButtonOnlyRepaintsAndKeepsThePosition) {
    for (int mode = ModeRotate; mode <= ModeLine; ++mode) {
        MouseRig rig(static_cast<MouseMode>(mode));
        rig.surface.now = 90;
        const int repaints = rig.surface.repaints;
        const Matrix4 projection = rig.view.projectionMatrix;
        rig.view.OnMouseMove({200, 210});
        EXPECT_EQ(rig.surface.repaints, repaints + 1) << mode;
        EXPECT_EQ(rig.surface.sameFrames, 1) << "who keeps the picture paints nothing";
        EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{200, 210}));
        EXPECT_EQ(rig.view.lastMoveClock, 90);
        EXPECT_EQ(rig.view.modelRotation, identityMatrix());
        EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
        EXPECT_EQ(rig.view.projectionMatrix, projection);
    }
}

TEST(MouseMove, IdleModeMovesNothing) {
    MouseRig rig(ModeScale);
    rig.view.resetMouseMode();
    const Matrix4 projection = rig.view.projectionMatrix;
    const int repaints = rig.surface.repaints;
    rig.drag({100, 100}, {150, 170});
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
    EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
    EXPECT_EQ(rig.view.projectionMatrix, projection);
    EXPECT_EQ(rig.surface.repaints, repaints + 1);
}

// ---- Translate, shift, scale ----------------------------------------------------------------------------------------

TEST(TranslateXY, MovesWithTheMouseAtTheModelsDepth) {
    MouseRig rig(ModeTranslateXY);
    const zVec<double> start = rig.view.modelOffset;
    rig.drag({100, 100}, {130, 80});
    const double s = rig.radius() * 1.8 / 600.0;
    expectVector(rig.view.modelOffset, start + zVec<double>(30 * s, 20 * s, 0), 1e-12);
}

TEST(TranslateXY, StepFollowsZoomAndDistance) {
    MouseRig rig(ModeTranslateXY);
    rig.view.zoomFactor = 0.25;
    rig.view.modelOffset.z = 3.0 * rig.view.defaultOffset.z;
    const zVec<double> start = rig.view.modelOffset;
    rig.drag({100, 100}, {92, 104});
    const double s = 3.0 * rig.radius() * 1.8 * 0.25 / 600.0;
    expectVector(rig.view.modelOffset, start + zVec<double>(-8 * s, -4 * s, 0), 1e-12);
}

TEST(TranslateZ, DownBringsTheModelNearer) {
    MouseRig rig(ModeTranslateZ);
    const zVec<double> start = rig.view.modelOffset;
    rig.drag({100, 100}, {300, 130});
    expectVector(rig.view.modelOffset, start + zVec<double>(0, 0, rig.radius() * 8.0 / 600.0 * 30.0), 1e-12);
    rig.view.OnMouseMove({300, 70});
    expectVector(rig.view.modelOffset, start - zVec<double>(0, 0, rig.radius() * 8.0 / 600.0 * 30.0), 1e-12);
}

TEST(Shift, MovesTheViewCentreAgainstTheMouse) {
    MouseRig rig(ModeShift);
    rig.view.zoomFactor = 0.5;
    rig.drag({100, 100}, {140, 70});
    EXPECT_EQ(rig.view.viewCentreX, 280.0);
    EXPECT_EQ(rig.view.viewCentreY, 285.0);
}

TEST(Shift, ModelFollowsTheMouse) {
    MouseRig rig(ModeShift);
    const PixelPoint before = rig.pixelOf(rig.doc.modelCenter);
    rig.drag({100, 100}, {140, 70});
    EXPECT_EQ(rig.pixelOf(rig.doc.modelCenter), (PixelPoint{before.x + 40, before.y - 30}));
}

TEST(Scale, DownEnlargesTheModel) {
    MouseRig rig(ModeScale);
    rig.drag({100, 100}, {100, 160});
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.0 / 1.2);
}

TEST(Scale, UpShrinksTheModel) {
    MouseRig rig(ModeScale);
    rig.drag({100, 160}, {100, 100});
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.2);
}

TEST(Scale, SidewaysKeepsTheScale) {
    MouseRig rig(ModeScale);
    rig.drag({100, 100}, {300, 100});
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
}

TEST(Scale, MovesMultiplyAndReachTheProjection) {
    MouseRig rig(ModeScale);
    const double before = rig.view.projectionMatrix[0];
    rig.drag({100, 100}, {100, 160});
    rig.view.OnMouseMove({100, 190});
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.0 / 1.2 / 1.1);
    EXPECT_NEAR(rig.view.projectionMatrix[0], before * 1.2 * 1.1, 1e-9);
}

TEST(DragModes, DoNotMixTheirQuantities) {
    for (const MouseMode mode : {ModeTranslateXY, ModeTranslateZ, ModeShift, ModeScale, ModeZoomIn}) {
        MouseRig rig(mode);
        rig.drag({100, 100}, {140, 170});
        EXPECT_EQ(rig.view.modelRotation, identityMatrix()) << mode;
        EXPECT_EQ(rig.view.modelScale, zVec<double>(1, 1, 1)) << mode;
        EXPECT_EQ(rig.view.zoomFactor != 1.0, mode == ModeScale) << mode;
        EXPECT_EQ(rig.view.viewCentreX != 300.0, mode == ModeShift) << mode;
        EXPECT_EQ(rig.view.modelOffset.x != rig.view.defaultOffset.x, mode == ModeTranslateXY) << mode;
        EXPECT_EQ(rig.view.modelOffset.z != rig.view.defaultOffset.z, mode == ModeTranslateZ) << mode;
    }
}

// ---- The zoom rectangle ---------------------------------------------------------------------------------------------

TEST(ZoomRectangle, StartsAtThePress) {
    MouseRig rig(ModeZoomIn);
    rig.view.OnLeftButtonDown({100, 200});
    EXPECT_TRUE(rig.view.rubberBandShown);
    EXPECT_EQ(rig.view.rubberStart, (PixelPoint{100, 200}));
    EXPECT_EQ(rig.view.rubberEnd, (PixelPoint{100, 200}));
    EXPECT_EQ(rig.view.rubberStartX, 100);
    EXPECT_EQ(rig.view.rubberStartY, 399);
}

TEST(ZoomRectangle, IsNotStartedByOtherModes) {
    for (const MouseMode mode : {ModeRotate, ModeShift, ModeScale, ModeTranslateXY}) {
        MouseRig rig(mode);
        rig.view.OnLeftButtonDown({100, 200});
        EXPECT_FALSE(rig.view.rubberBandShown);
    }
}

TEST(ZoomRectangle, FollowsTheMouseFromPaintToPaint) {
    MouseRig rig(ModeZoomIn);
    rig.drag({100, 200}, {160, 260});
    rig.paint();
    rig.view.OnMouseMove({170, 240});
    rig.paint();
    ASSERT_EQ(rig.surface.rectangles.size(), 2U);
    EXPECT_EQ(rig.surface.rectangles[0], std::pair(PixelPoint{100, 200}, PixelPoint{160, 260}));
    EXPECT_EQ(rig.surface.rectangles[1], std::pair(PixelPoint{100, 200}, PixelPoint{170, 240}));
}

TEST(ZoomRectangle, IsNotMovedWithoutOne) {
    MouseRig rig(ModeScale);
    rig.view.OnLeftButtonDown({100, 200});
    rig.view.setMouseMode(ModeZoomIn);
    const PixelPoint before = rig.view.rubberEnd;
    rig.view.OnMouseMove({160, 260});
    EXPECT_EQ(rig.view.rubberEnd, before);
}

TEST(ZoomRectangle, FinishCentresAndMagnifiesTheSelectedPart) {
    MouseRig rig(ModeZoomIn);
    const int repaints = rig.surface.repaints;
    rig.drag({100, 200}, {160, 230});
    rig.view.OnLeftButtonUp({160, 230});
    // 100 to 160 across: centre 130. 399 to 369 from the bottom: centre 384. Parts 0.1 and 0.05: the larger wins.
    EXPECT_DOUBLE_EQ(rig.view.viewCentreX, 130.0);
    EXPECT_DOUBLE_EQ(rig.view.viewCentreY, 384.0);
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 0.1);
    EXPECT_FALSE(rig.view.rubberBandShown);
    EXPECT_EQ(rig.surface.repaints, repaints + 2);
}

TEST(ZoomRectangle, DirectionOfTheDragHasNoEffect) {
    for (const auto& [from, to] :
         {std::pair(PixelPoint{100, 230}, PixelPoint{160, 200}), std::pair(PixelPoint{160, 230}, PixelPoint{100, 200}),
          std::pair(PixelPoint{160, 200}, PixelPoint{100, 230})}) {
        MouseRig rig(ModeZoomIn);
        rig.drag(from, to);
        rig.view.OnLeftButtonUp(to);
        EXPECT_DOUBLE_EQ(rig.view.viewCentreX, 130.0);
        EXPECT_DOUBLE_EQ(rig.view.viewCentreY, 384.0);
        EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 0.1);
    }
}

TEST(ZoomRectangle, TallSelectionTakesItsHeight) {
    MouseRig rig(ModeZoomIn);
    rig.drag({100, 200}, {130, 500});
    rig.view.OnLeftButtonUp({130, 500});
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 0.5);
}

// A second zoom works inside the window of the first.
TEST(ZoomRectangle, SecondZoomIsScaledByTheFirst) {
    MouseRig rig(ModeZoomIn);
    rig.view.zoomFactor = 0.5;
    rig.view.viewCentreX = 200.0;
    rig.view.viewCentreY = 250.0;
    rig.drag({300, 299}, {360, 239});
    rig.view.OnLeftButtonUp({360, 239});
    // Centre of the rectangle: 330 and 330 from the bottom, each 30 from the middle, at half scale.
    EXPECT_DOUBLE_EQ(rig.view.viewCentreX, 215.0);
    EXPECT_DOUBLE_EQ(rig.view.viewCentreY, 265.0);
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 0.05);
}

TEST(ZoomRectangle, CornersOfTheViewportCountAgainstItsSize) {
    MouseRig rig(ModeZoomIn);
    rig.view.viewport = {100, 0, 600, 600};
    rig.view.viewCentreX = 350.0;
    rig.drag({200, 299}, {250, 299});
    rig.view.OnLeftButtonUp({250, 299});
    EXPECT_DOUBLE_EQ(rig.view.viewCentreX, 350.0 + (450.0 - 700.0) * 0.5);
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 50.0 / 500.0);
}

// The release counts, also where it is less than a move away from the last position.
TEST(ZoomRectangle, EndsWhereTheButtonComesUp) {
    MouseRig rig(ModeZoomIn);
    rig.drag({100, 200}, {160, 200});
    rig.view.OnLeftButtonUp({163, 200});
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 63.0 / 600.0);
}

TEST(ZoomRectangle, ClickWithoutADragMakesTheZoomFactorZero) {
    MouseRig rig(ModeZoomIn);
    rig.clickPixel({100, 200});
    EXPECT_EQ(rig.view.zoomFactor, 0.0);
    EXPECT_FALSE(rig.view.rubberBandShown);
    rig.paint();
    rig.view.runViewCommand("view.zoomOut");
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
    EXPECT_EQ(rig.pixelOf(rig.doc.modelCenter), (PixelPoint{300, 299}));
}

TEST(ZoomRectangle, SelectedPartFillsTheWindow) {
    MouseRig rig(ModeZoomIn);
    rig.useParallelProjection();
    const PixelPoint corner = rig.pixelOf({10, 0, 0});
    const PixelPoint opposite = rig.pixelOf({12, 2, 0});
    rig.drag(corner, opposite);
    rig.view.OnLeftButtonUp(opposite);
    // The square becomes the whole window; the pixels of its corners were rounded before they were magnified.
    const PixelPoint lower = rig.pixelOf({10, 0, 0});
    const PixelPoint upper = rig.pixelOf({12, 2, 0});
    EXPECT_NEAR(lower.x, 0, 10);
    EXPECT_NEAR(lower.y, 599, 10);
    EXPECT_NEAR(upper.x, 600, 10);
    EXPECT_NEAR(upper.y, -1, 10);
}

} // namespace
} // namespace velmora

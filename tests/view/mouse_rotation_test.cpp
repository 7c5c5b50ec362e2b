#include "view_reference.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectMatrix;
using test::expectVector;
using test::flatPatch;
using test::twoPatches;
using test::ViewRig;

constexpr double eyeRadii = 27.99038155676617;

/// The model in a parallel projection of 600 by 600 pixels, so that a pixel is a 300th of the radius.
struct RotationRig : ViewRig {
    explicit RotationRig(int mode) {
        show(twoPatches());
        useParallelProjection();
        paint();
        view.setMouseMode(static_cast<MouseMode>(mode));
    }
};

// ---- The table, by hand ---------------------------------------------------------------------------------------------

// Pixel (450, 299) shows half a radius to the right of the centre, pixel (300, 149) half a radius above it.

TEST(MouseRotation, FreeTurnIsAboutTheNormalOfBothPositions) {
    RotationRig rig(ModeRotate);
    rig.drag({450, 299}, {300, 149});
    // A = (0.5, 0, 1), B = (0, 0.5, 1): A x B = (-0.5, -0.5, 0.25), length 0.75; middle (0.25, 0.25, 1), square 1.125.
    expectMatrix(rig.view.modelRotation, rotationMatrix(38.0, {-2, -2, 1}), 1e-11);
}

TEST(MouseRotation, AboutXTurnsByTheVerticalPartOnly) {
    RotationRig rig(ModeRotateX);
    rig.drag({450, 299}, {300, 149});
    // Half a radius up: 57 degrees about the axis that points left.
    expectMatrix(rig.view.modelRotation, rotationMatrix(57.0, {-1, 0, 0}), 1e-11);
}

TEST(MouseRotation, AboutYTurnsByTheHorizontalPartOnly) {
    RotationRig rig(ModeRotateY);
    rig.drag({450, 299}, {300, 149});
    // Half a radius to the left: 57 degrees about the axis that points down.
    expectMatrix(rig.view.modelRotation, rotationMatrix(57.0, {0, -1, 0}), 1e-11);
}

TEST(MouseRotation, AboutZTurnsInTheScreen) {
    RotationRig rig(ModeRotateZ);
    rig.drag({450, 299}, {300, 149});
    // A' = (0.5, 0, 0), B' = (0, 0.5, 0): A' x B' = 0.25, middle (0.25, 0.25), square 0.125.
    expectMatrix(rig.view.modelRotation, rotationMatrix(114.0, {0, 0, 1}), 1e-11);
}

TEST(MouseRotation, FrontOfTheModelFollowsTheMouse) {
    RotationRig rig(ModeRotateX);
    rig.drag({300, 299}, {300, 239});
    EXPECT_GT(test::sent(rig.view.modelRotation, {0, 0, 1}).y, 0.0);
    RotationRig sideways(ModeRotateY);
    sideways.drag({300, 299}, {360, 299});
    EXPECT_GT(test::sent(sideways.view.modelRotation, {0, 0, 1}).x, 0.0);
}

TEST(MouseRotation, AxesAreThoseOfTheScreenWhenTheModelIsTurned) {
    RotationRig rig(ModeRotateX);
    rig.view.SetEulerView({0, 0, 90});
    rig.drag({300, 299}, {300, 149});
    // The model stands turned by 90 degrees; the screen's turn comes behind it.
    expectMatrix(rig.view.modelRotation, rotationMatrix(57.0, {-1, 0, 0}) * rotationMatrix(90.0, {0, 0, 1}), 1e-11);
}

TEST(MouseRotation, DragsAddUp) {
    RotationRig rig(ModeRotateX);
    rig.drag({300, 299}, {300, 239});
    rig.view.OnMouseMove({300, 149});
    expectMatrix(rig.view.modelRotation, rotationMatrix(57.0, {-1, 0, 0}), 1e-9);
}

// ---- The table, against the plain form ------------------------------------------------------------------------------

/// The position on the plane one radius before the centre that a pixel shows, from the centre, in screen axes.
zVec<double> screenVector(const ViewRig& rig, PixelPoint pixel) {
    const double radius = rig.doc.modelRadius;
    const double across = (pixel.x / 300.0 - 1.0) * radius;
    const double upward = ((599 - pixel.y) / 300.0 - 1.0) * radius;
    // In perspective the window is that of the model's centre, and the plane is nearer.
    const double shrink = rig.view.projectionMode == 1 ? 1.0 : (eyeRadii - 1.0) / eyeRadii;
    return {across * shrink, upward * shrink, radius};
}

struct Drag {
    PixelPoint from;
    PixelPoint to;
};

const Drag drags[] = {
    {{450, 299}, {300, 149}}, {{100, 500}, {130, 480}}, {{599, 0}, {10, 20}},     {{310, 290}, {310, 340}},
    {{40, 299}, {560, 299}},  {{5, 5}, {5, 590}},       {{290, 310}, {300, 280}},
};

void expectDragAsPlainForm(ViewRig& rig, int mode, const Drag& drag) {
    SCOPED_TRACE("mode " + std::to_string(mode) + " from " + std::to_string(drag.from.x) + " " +
                 std::to_string(drag.from.y));
    const Matrix4 before = rig.view.modelRotation;
    const reference::ScreenTurn turn =
        reference::dragTurn(mode, screenVector(rig, drag.from), screenVector(rig, drag.to), rig.doc.modelRadius);
    rig.drag(drag.from, drag.to);
    for (std::size_t column = 0; column < 3; ++column) {
        const zVec<double> old{before[4 * column], before[4 * column + 1], before[4 * column + 2]};
        const zVec<double> now{rig.view.modelRotation[4 * column], rig.view.modelRotation[4 * column + 1],
                               rig.view.modelRotation[4 * column + 2]};
        const zVec<double> wanted = turn.degrees == 0.0 ? old : reference::turned(old, turn.degrees, turn.axis);
        // The rays come from the inverse of the projection, with planes at 0.1 and 250 radii.
        expectVector(now, wanted, 1e-8);
    }
}

TEST(MouseRotation, EveryModeTurnsAsThePlainFormInBothProjections) {
    for (int mode = ModeRotate; mode <= ModeRotateZ; ++mode) {
        for (const Drag& drag : drags) {
            if (mode == ModeRotateZ && drag.from.x + drag.to.x == 600 && drag.from.y == drag.to.y) {
                continue; // straight through the axis: the angle is that of rounding errors
            }
            for (const int projection : {0, 1}) {
                ViewRig rig;
                PatchList model = twoPatches();
                model[0][1][1].z = 4.0; // a box with depth, so that its centre lies off z = 0
                rig.show(model);
                rig.view.runViewCommand(projection == 1 ? "view.orthographic" : "view.perspective");
                rig.view.SetEulerView({25, -40, 70});
                rig.view.setMouseMode(static_cast<MouseMode>(mode));
                expectDragAsPlainForm(rig, mode, drag);
            }
        }
    }
}

// Clicks on the axis and drags straight through it have no angle, or one made of rounding errors.
TEST(MouseRotation, OnTheAxisOfTheScreenTheModelIsNotLost) {
    for (int size = 100; size < 300; ++size) {
        for (const int reach : {0, 5, 40}) {
            RotationRig rig(ModeRotateZ);
            rig.view.OnSize(size, size);
            const int middle = size / 2;
            rig.drag({middle - reach, size - 1 - middle}, {middle + reach, size - 1 - middle});
            rig.view.OnLeftButtonUp({middle + reach, size - 1 - middle});
            rig.view.OnTimer();
            rig.paint();
            for (const double element : rig.view.modelRotation) {
                ASSERT_TRUE(std::isfinite(element)) << size << " " << reach;
            }
        }
    }
}

TEST(MouseRotation, KeepsTheRotationARotation) {
    RotationRig rig(ModeRotate);
    rig.view.OnLeftButtonDown({100, 100});
    for (int i = 0; i < 400; ++i) {
        rig.view.OnMouseMove({100 + (i * 37) % 400, 100 + (i * 53) % 400});
    }
    const Matrix4& m = rig.view.modelRotation;
    const zVec<double> x{m[0], m[1], m[2]};
    const zVec<double> y{m[4], m[5], m[6]};
    EXPECT_NEAR(dot(x, x), 1.0, 1e-10);
    EXPECT_NEAR(dot(x, y), 0.0, 1e-10);
    rig.paint();
    EXPECT_TRUE(eulerAngles(m).has_value());
}

// ---- The spin -------------------------------------------------------------------------------------------------------

/// Drags by 30 pixels and lets go `pause` milliseconds after the last move.
void throwModel(ViewRig& rig, std::int64_t pause) {
    rig.surface.now = 1000;
    rig.drag({300, 299}, {330, 299});
    rig.surface.now += pause;
    rig.view.OnLeftButtonUp({330, 299});
}

TEST(Spin, StartsWithinFiftyMillisecondsInTheFourRotateModes) {
    for (int mode = ModeRotate; mode <= ModeRotateZ; ++mode) {
        RotationRig rig(mode);
        throwModel(rig, 49);
        EXPECT_TRUE(rig.view.spinActive) << mode;
        EXPECT_TRUE(rig.view.spinTimerOn) << mode;
        EXPECT_TRUE(rig.surface.timerRuns) << mode;
        EXPECT_EQ(rig.surface.timerPeriod, 15) << mode;
        EXPECT_EQ(rig.view.prevMousePos, (PixelPoint{330, 299})) << mode;
    }
}

TEST(Spin, DoesNotStartAtFiftyMilliseconds) {
    for (int mode = ModeRotate; mode <= ModeRotateZ; ++mode) {
        RotationRig rig(mode);
        throwModel(rig, 50);
        EXPECT_FALSE(rig.view.spinActive) << mode;
        EXPECT_FALSE(rig.view.spinTimerOn) << mode;
        EXPECT_FALSE(rig.surface.timerRuns) << mode;
    }
}

TEST(Spin, DoesNotStartInOtherModes) {
    for (int mode = ModeTranslateXY; mode <= ModeLine; ++mode) {
        RotationRig rig(mode);
        throwModel(rig, 0);
        EXPECT_FALSE(rig.view.spinActive) << mode;
        EXPECT_FALSE(rig.surface.timerRuns) << mode;
    }
}

TEST(Spin, StepIsTheRotationFromThePositionBeforeTheLast) {
    RotationRig rig(ModeRotateX);
    rig.view.OnLeftButtonDown({300, 419});
    rig.view.OnMouseMove({300, 359});
    rig.view.OnMouseMove({300, 329});
    rig.view.OnLeftButtonUp({300, 326});
    // From 359 to 326 is 33 pixels up, a 300th of the radius each: 114 * 33 / 300 degrees.
    EXPECT_NEAR(rig.view.spinAngle, 12.54, 1e-9);
    // The axis is the screen's: turning the model back onto the screen gives the left.
    expectVector(test::sent(rig.view.modelRotation, rig.view.spinAxis), {-1, 0, 0}, 1e-9);
}

TEST(Spin, EachTickAndItsRepaintTurnByAQuarterEach) {
    RotationRig rig(ModeRotateX);
    throwModel(rig, 10);
    rig.view.spinAngle = 20.0;
    rig.view.spinAxis = {0, 0, 1};
    const Matrix4 start = rig.view.modelRotation;
    const int repaints = rig.surface.repaints;
    rig.view.OnTimer();
    expectMatrix(rig.view.modelRotation, start * rotationMatrix(5.0, {0, 0, 1}), 1e-14);
    EXPECT_EQ(rig.surface.repaints, repaints + 1);
    rig.paint();
    expectMatrix(rig.view.modelRotation, start * rotationMatrix(10.0, {0, 0, 1}), 1e-14);
    rig.view.OnTimer();
    rig.paint();
    expectMatrix(rig.view.modelRotation, start * rotationMatrix(20.0, {0, 0, 1}), 1e-14);
}

TEST(Spin, AnyOtherPaintTurnsTheModelToo) {
    RotationRig rig(ModeRotateX);
    rig.view.spinActive = true;
    rig.view.spinAngle = 40.0;
    rig.view.spinAxis = {0, 1, 0};
    rig.paint();
    expectMatrix(rig.view.modelRotation, rotationMatrix(10.0, {0, 1, 0}), 1e-15);
    rig.view.spinActive = false;
    rig.paint();
    expectMatrix(rig.view.modelRotation, rotationMatrix(10.0, {0, 1, 0}), 1e-15);
}

TEST(Spin, ClickStopsIt) {
    RotationRig rig(ModeRotate);
    throwModel(rig, 10);
    rig.view.OnLeftButtonDown({100, 100});
    EXPECT_TRUE(rig.view.spinActive);
    rig.view.OnLeftButtonUp({100, 100});
    EXPECT_FALSE(rig.view.spinActive);
    EXPECT_FALSE(rig.view.spinTimerOn);
    EXPECT_FALSE(rig.surface.timerRuns);
    EXPECT_FALSE(rig.view.leftButtonDown);
}

TEST(Spin, DragStopsItAtOnce) {
    for (const MouseMode mode : {ModeRotate, ModeShift, ModeNone}) {
        RotationRig rig(ModeRotate);
        throwModel(rig, 10);
        rig.view.mouseMode = mode;
        rig.drag({100, 100}, {120, 100});
        EXPECT_FALSE(rig.view.spinActive);
        EXPECT_FALSE(rig.surface.timerRuns);
    }
}

TEST(Spin, MoveWithoutAButtonLetsItGoOn) {
    RotationRig rig(ModeRotate);
    throwModel(rig, 10);
    rig.view.OnMouseMove({100, 100});
    EXPECT_TRUE(rig.view.spinActive);
    EXPECT_TRUE(rig.surface.timerRuns);
}

// The release that ends a drag out of a spin only stops it; the throw after that spins again.
TEST(Spin, DragOutOfASpinEndsWithoutANewOne) {
    RotationRig rig(ModeRotate);
    throwModel(rig, 10);
    throwModel(rig, 10);
    EXPECT_FALSE(rig.view.spinActive);
    EXPECT_FALSE(rig.view.spinTimerOn);
    EXPECT_FALSE(rig.surface.timerRuns);
    throwModel(rig, 10);
    EXPECT_TRUE(rig.view.spinActive);
}

TEST(Spin, ReleaseWithoutAPressStopsIt) {
    RotationRig rig(ModeRotate);
    throwModel(rig, 10);
    rig.view.OnLeftButtonUp({100, 100});
    EXPECT_FALSE(rig.view.spinActive);
    EXPECT_FALSE(rig.surface.timerRuns);
}

TEST(Spin, QuickClickWithoutAMoveKeepsTheModelInPlace) {
    for (int mode = ModeRotate; mode <= ModeRotateZ; ++mode) {
        RotationRig rig(mode);
        rig.view.SetEulerView({10, 20, 30});
        const Matrix4 start = rig.view.modelRotation;
        rig.clickPixel({200, 250});
        rig.view.OnTimer();
        rig.paint();
        expectMatrix(rig.view.modelRotation, start, 1e-12);
    }
}

TEST(Spin, NewModelKeepsTheTimerAndFindsTheRotationReset) {
    RotationRig rig(ModeRotate);
    throwModel(rig, 10);
    rig.doc.updateBounds();
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
}

} // namespace
} // namespace velmora

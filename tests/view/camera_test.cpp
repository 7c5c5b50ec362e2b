#include "VelmoraDoc.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectMatrix;
using test::expectVector;
using test::flatPatch;
using test::sent;
using test::ViewRig;

/// 7.5 / tan(15 degrees): how many radii the eye stands from the model.
constexpr double eyeRadii = 27.99038155676617;

/// A rig whose model is only its centre (1, 2, 3) and its radius 2, seen in a window of 300 by 200.
struct CameraRig : ViewRig {
    CameraRig() {
        doc.modelCenter = {1, 2, 3};
        doc.modelRadius = 2.0;
        view.viewport = {0, 0, 300, 200};
        view.aspectRatio = 1.5;
        view.viewCentreX = 150.0;
        view.viewCentreY = 100.0;
    }
};

TEST(Camera, StartsIdleInPerspectiveWithAllFlagsClear) {
    test::RecordingUi ui;
    VelmoraDoc doc(ui, ".");
    test::FakeSurface surface;
    const VelmoraView view(doc, surface);
    EXPECT_EQ(view.mouseMode, 9);
    EXPECT_EQ(view.projectionMode, 0);
    EXPECT_EQ(view.viewAngles, zVec<double>(0, 0, 0));
    EXPECT_FALSE(view.viewAlongX || view.viewAlongY || view.viewAlongZ);
    EXPECT_EQ(view.modelOffset, zVec<double>(0, 0, 0));
    EXPECT_EQ(view.modelScale, zVec<double>(1, 1, 1));
    EXPECT_EQ(view.defaultOffset, zVec<double>(0, 0, 0));
    EXPECT_EQ(view.fieldOfView, 20.0);
    EXPECT_EQ(view.aspectRatio, 1.0);
    EXPECT_EQ(view.nearPlane, 0.1);
    EXPECT_EQ(view.farPlane, 10.0);
    EXPECT_EQ(view.zoomFactor, 1.0);
    EXPECT_FALSE(view.spinActive || view.spinTimerOn || view.rubberBandShown || view.leftButtonDown);
}

TEST(UpdateCameraLimits, FollowCentreAndRadius) {
    CameraRig rig;
    rig.view.UpdateCameraLimits();
    EXPECT_EQ(rig.view.fieldOfView, 30.0);
    EXPECT_DOUBLE_EQ(rig.view.nearPlane, 0.2);
    EXPECT_DOUBLE_EQ(rig.view.farPlane, 500.0);
    expectVector(rig.view.defaultOffset, {-1, -2, -3 - 2 * eyeRadii}, 1e-12);
}

TEST(UpdateCameraLimits, EyeDistanceIsThatOfThirtyDegreesOfView) {
    EXPECT_NEAR(7.5 / std::tan(0.2617993833333333), eyeRadii, 1e-12);
}

TEST(UpdateProjection, CentredParallelWindowIsTheRadiusTimesTheAspect) {
    CameraRig rig;
    rig.view.projectionMode = 1;
    rig.view.UpdateProjection();
    // Half sizes 3 and 2, depth 0.2 to 500.
    expectMatrix(rig.view.projectionMatrix,
                 {1.0 / 3.0, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, -2.0 / 499.8, 0, 0, 0, -500.2 / 499.8, 1}, 1e-14);
}

TEST(UpdateProjection, ZoomFactorScalesTheHalfSizes) {
    CameraRig rig;
    rig.view.projectionMode = 1;
    rig.view.zoomFactor = 0.5;
    rig.view.UpdateProjection();
    EXPECT_DOUBLE_EQ(rig.view.projectionMatrix[0], 1.0 / 1.5);
    EXPECT_DOUBLE_EQ(rig.view.projectionMatrix[5], 1.0);
}

TEST(UpdateProjection, WindowIsCentredOnTheViewCentre) {
    CameraRig rig;
    rig.view.projectionMode = 1;
    rig.view.zoomFactor = 0.5;
    rig.view.viewCentreX = 225.0; // three quarters: 225 * 6 / 300 - 3 = 1.5
    rig.view.viewCentreY = 50.0;  // one quarter: 50 * 4 / 200 - 2 = -1
    rig.view.UpdateProjection();
    // Half sizes 1.5 and 1: the offsets are -1.5 / 1.5 and 1 / 1.
    EXPECT_NEAR(rig.view.projectionMatrix[12], -1.0, 1e-14);
    EXPECT_NEAR(rig.view.projectionMatrix[13], 1.0, 1e-14);
}

TEST(UpdateProjection, ViewportCornerCountsAgainstItsWidthAndHeight) {
    CameraRig rig;
    rig.view.projectionMode = 1;
    rig.view.viewport = {10, 20, 300, 200};
    rig.view.UpdateProjection();
    const double cx = (150.0 - 10.0) * 6.0 / 290.0 - 3.0;
    const double cy = (100.0 - 20.0) * 4.0 / 180.0 - 2.0;
    EXPECT_NEAR(rig.view.projectionMatrix[12], -cx / 3.0, 1e-14);
    EXPECT_NEAR(rig.view.projectionMatrix[13], -cy / 2.0, 1e-14);
}

TEST(UpdateProjection, WindowCentreIsZeroWhereTheCornerEqualsTheExtent) {
    CameraRig rig;
    rig.view.projectionMode = 1;
    rig.view.viewCentreX = 225.0;
    rig.view.viewCentreY = 50.0;
    rig.view.viewport = {300, 0, 300, 200};
    rig.view.UpdateProjection();
    EXPECT_EQ(rig.view.projectionMatrix[12], 0.0);
    EXPECT_NEAR(rig.view.projectionMatrix[13], 0.5, 1e-14);
    rig.view.viewport = {0, 200, 300, 200};
    rig.view.UpdateProjection();
    EXPECT_NEAR(rig.view.projectionMatrix[12], -0.5, 1e-14);
    EXPECT_EQ(rig.view.projectionMatrix[13], 0.0);
}

TEST(UpdateProjection, PerspectiveWindowIsScaledToTheNearPlane) {
    CameraRig rig;
    rig.view.viewCentreX = 225.0;
    rig.view.UpdateProjection();
    const double s = 0.2 / (2.0 * eyeRadii);
    // Left -1.5, right 4.5, bottom -2, top 2, each times s; near 0.2, far 500.
    const Matrix4 expected{0.4 / (6 * s),  0, 0, 0, 0, 0.4 / (4 * s), 0, 0, 0.5, 0, -500.2 / 499.8, -1.0, 0, 0,
                           -200.0 / 499.8, 0};
    expectMatrix(rig.view.projectionMatrix, expected, 1e-11);
}

TEST(UpdateProjection, BothProjectionsShowTheDefaultDistanceAtTheSameSize) {
    CameraRig rig;
    rig.view.zoomFactor = 0.7;
    rig.view.viewCentreX = 170.0;
    rig.view.UpdateProjection();
    const zVec<double> point{0.4, -0.3, -2.0 * eyeRadii};
    const auto perspective = projectPoint(point, identityMatrix(), rig.view.projectionMatrix, rig.view.viewport);
    rig.view.projectionMode = 1;
    rig.view.UpdateProjection();
    const auto parallel = projectPoint(point, identityMatrix(), rig.view.projectionMatrix, rig.view.viewport);
    ASSERT_TRUE(perspective && parallel);
    EXPECT_NEAR(perspective->x, parallel->x, 1e-9);
    EXPECT_NEAR(perspective->y, parallel->y, 1e-9);
}

// A left wing lies on the side of negative z, a distant body beyond the place of the eye of one at the origin.
TEST(UpdateProjection, ModelIsAsLargeInBothProjectionsWhereverItsCentreLies) {
    for (const double z : {0.0, 40.0, -40.0, -2.0 * eyeRadii, -1000.0}) {
        SCOPED_TRACE(z);
        CameraRig rig;
        rig.doc.modelCenter = {1, 2, z};
        rig.view.UpdateCameraLimits();
        rig.view.ResetModelTransform();
        rig.view.UpdateProjection();
        rig.view.ApplyModelTransform(rig.doc.modelCenter);
        const zVec<double> tip = rig.doc.modelCenter + zVec<double>(1.5, 0.5, 0);
        const auto perspective =
            projectPoint(tip, rig.view.modelViewMatrix, rig.view.projectionMatrix, rig.view.viewport);
        rig.view.projectionMode = 1;
        rig.view.UpdateProjection();
        const auto parallel = projectPoint(tip, rig.view.modelViewMatrix, rig.view.projectionMatrix, rig.view.viewport);
        ASSERT_TRUE(perspective && parallel);
        // Of 3 and 2 model units to each side of the middle, 150 and 100 pixels.
        expectVector(*parallel, {225, 125, parallel->z}, 1e-9);
        expectVector(*perspective, {225, 125, perspective->z}, 1e-9);
    }
}

TEST(UpdateProjection, TakesTheCameraLimitsAnew) {
    CameraRig rig;
    rig.view.UpdateProjection();
    rig.doc.modelRadius = 5.0;
    rig.view.UpdateProjection();
    EXPECT_DOUBLE_EQ(rig.view.nearPlane, 0.5);
    EXPECT_DOUBLE_EQ(rig.view.farPlane, 1250.0);
}

TEST(ResetViewCentre, GoesToTheMiddleAndUndoesTheZoom) {
    CameraRig rig;
    rig.view.viewport = {10, 20, 300, 200};
    rig.view.zoomFactor = 0.3;
    rig.view.ResetViewCentre();
    EXPECT_EQ(rig.view.viewCentreX, 155.0);
    EXPECT_EQ(rig.view.viewCentreY, 110.0);
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
}

TEST(ResetViewCentre, RubberBandTakesTheViewport) {
    CameraRig rig;
    rig.view.viewport = {10, 20, 300, 200};
    rig.view.ResetViewCentre();
    EXPECT_EQ(rig.view.rubberStart, (PixelPoint{10, 20}));
    EXPECT_EQ(rig.view.rubberEnd, (PixelPoint{300, 200}));
}

TEST(ResetModelTransform, TakesTheDefaultOffsetAndNoRotation) {
    CameraRig rig;
    rig.view.UpdateCameraLimits();
    rig.view.modelScale = {2, 2, 2};
    rig.view.modelOffset = {9, 9, 9};
    rig.view.modelRotation = rotationMatrix(30.0, {1, 1, 0});
    rig.view.modelViewMatrix = rotationMatrix(90.0, {0, 0, 1});
    rig.view.ResetModelTransform();
    EXPECT_EQ(rig.view.modelScale, zVec<double>(1, 1, 1));
    EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
    // The matrix in force is moved by the offset first and turned then: (-1, -2, z) becomes (2, -1, z).
    expectVector(sent(rig.view.modelViewMatrix, {0, 0, 0}), {2, -1, rig.view.defaultOffset.z}, 1e-12);
}

TEST(ApplyModelTransform, TurnsScalesAndMovesAboutTheCentre) {
    CameraRig rig;
    rig.view.modelOffset = {1, 2, 3};
    rig.view.modelScale = {2, 3, 4};
    rig.view.modelRotation = rotationMatrix(90.0, {0, 0, 1});
    rig.view.ApplyModelTransform({10, 0, 0});
    // (11, 0, 0): from the centre (1, 0, 0), turned (0, 1, 0), scaled (0, 3, 0), moved by (11, 2, 3).
    EXPECT_EQ(sent(rig.view.modelViewMatrix, {11, 0, 0}), zVec<double>(11, 5, 3));
    EXPECT_EQ(sent(rig.view.modelViewMatrix, {10, 0, 0}), zVec<double>(11, 2, 3));
}

TEST(ApplyModelTransform, CentreOfTheModelStandsBeforeTheEyeAfterAReset) {
    CameraRig rig;
    rig.view.UpdateCameraLimits();
    rig.view.ResetModelTransform();
    rig.view.modelRotation = rotationMatrix(77.0, {1, 2, 3});
    rig.view.ApplyModelTransform(rig.doc.modelCenter);
    expectVector(sent(rig.view.modelViewMatrix, {1, 2, 3}), {0, 0, -2 * eyeRadii}, 1e-12);
}

TEST(ResizeViewport, ViewCentreFollowsTheSize) {
    CameraRig rig;
    rig.view.viewCentreX = 120.0;
    rig.view.viewCentreY = 50.0;
    rig.view.ResizeViewport(600, 100);
    EXPECT_DOUBLE_EQ(rig.view.viewCentreX, 240.0);
    EXPECT_DOUBLE_EQ(rig.view.viewCentreY, 25.0);
    EXPECT_EQ(rig.view.viewport.x, 0);
    EXPECT_EQ(rig.view.viewport.y, 0);
    EXPECT_EQ(rig.view.viewport.width, 600);
    EXPECT_EQ(rig.view.viewport.height, 100);
}

TEST(ResizeViewport, FirstSizeLeavesTheViewCentre) {
    CameraRig rig;
    rig.view.viewport = {};
    rig.view.ResizeViewport(600, 100);
    EXPECT_EQ(rig.view.viewCentreX, 150.0);
    EXPECT_EQ(rig.view.viewCentreY, 100.0);
}

TEST(OnSize, TakesTheAspectAndTheProjection) {
    CameraRig rig;
    rig.view.projectionMode = 1;
    rig.view.OnSize(500, 250);
    EXPECT_DOUBLE_EQ(rig.view.aspectRatio, 2.0);
    EXPECT_NEAR(rig.view.projectionMatrix[0], 1.0 / 4.0, 1e-14);
    EXPECT_NEAR(rig.view.projectionMatrix[5], 1.0 / 2.0, 1e-14);
    // The centre went along: still in the middle.
    EXPECT_NEAR(rig.view.projectionMatrix[12], 0.0, 1e-14);
}

TEST(OnSize, SizeWithoutWidthOrHeightChangesNothing) {
    CameraRig rig;
    rig.view.UpdateProjection();
    const Matrix4 before = rig.view.projectionMatrix;
    for (const auto& [width, height] : {std::pair(0, 100), std::pair(100, 0), std::pair(0, 0), std::pair(-5, 100)}) {
        rig.view.OnSize(width, height);
        EXPECT_EQ(rig.view.aspectRatio, 1.5);
        EXPECT_EQ(rig.view.viewport.width, 300);
        EXPECT_EQ(rig.view.viewport.height, 200);
        EXPECT_EQ(rig.view.viewCentreX, 150.0);
        EXPECT_EQ(rig.view.projectionMatrix, before);
    }
}

TEST(OnSize, ModelKeepsItsPlaceInTheMiddle) {
    ViewRig rig;
    rig.show({flatPatch(3, 5)});
    rig.view.OnSize(900, 300);
    EXPECT_EQ(rig.pixelOf(rig.doc.modelCenter), (PixelPoint{450, 149}));
}

// ---- New bounds -----------------------------------------------------------------------------------------------------

TEST(BoundsChanged, ResetModeCentreZoomOffsetAndRotation) {
    ViewRig rig;
    rig.show({flatPatch(3, 5)});
    rig.view.setMouseMode(ModeRotate);
    rig.view.viewCentreX = 17.0;
    rig.view.zoomFactor = 3.0;
    rig.view.modelOffset = {5, 5, 5};
    rig.view.modelRotation = rotationMatrix(40.0, {1, 0, 0});
    rig.updateBounds();
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
    EXPECT_EQ(rig.view.viewCentreX, 300.0);
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
    EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
}

// The limits are those of the new box by the time the offset is taken from them.
TEST(BoundsChanged, OffsetIsThatOfTheNewBox) {
    ViewRig rig;
    rig.show({flatPatch(3, 5)});
    for (PointList& section : rig.doc.patches[0]) {
        for (zVec<double>& point : section) {
            point = point * 10.0 + zVec<double>(100, 0, 0);
        }
    }
    rig.updateBounds();
    // The box is 100 to 140, 0 to 20: centre (120, 10, 0), radius 0.525 times its diagonal.
    const double radius = 0.525 * std::sqrt(40.0 * 40.0 + 20.0 * 20.0);
    expectVector(rig.view.modelOffset, {-120, -10, -radius * eyeRadii}, 1e-9);
    EXPECT_NEAR(rig.view.nearPlane, 0.1 * radius, 1e-12);
}

TEST(BoundsChanged, RebuildsTheListAndAsksForARepaint) {
    ViewRig rig;
    rig.show({flatPatch(3, 5)});
    rig.paint();
    const auto revision = rig.surface.lastFrame.listRevision;
    const int repaints = rig.surface.repaints;
    rig.updateBounds();
    rig.paint();
    EXPECT_NE(rig.surface.lastFrame.listRevision, revision);
    EXPECT_GT(rig.surface.repaints, repaints);
}

TEST(BoundsChanged, NothingHappensWithoutAModel) {
    ViewRig rig;
    rig.view.zoomFactor = 3.0;
    rig.updateBounds();
    EXPECT_EQ(rig.view.zoomFactor, 3.0);
}

} // namespace
} // namespace velmora

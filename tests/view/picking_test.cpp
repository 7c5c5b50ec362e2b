#include "picking.h"

#include <limits>
#include <random>

#include "vectors.h"
#include "view_reference.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectVector;
using test::flatPatch;
using test::twoPatches;
using test::ViewRig;

constexpr double eyeRadii = 27.99038155676617;

/// The line through (x, y) parallel to z.
PixelLine upright(double x, double y) {
    return {{x, y, 10}, {x, y, -10}};
}

// ---- Distance -------------------------------------------------------------------------------------------------------

TEST(RayDistance, IsTheDistanceFromTheInfiniteLine) {
    EXPECT_DOUBLE_EQ(RayDistance(upright(0, 0), {3, 4, 0}), 5.0);
    EXPECT_DOUBLE_EQ(RayDistance(upright(0, 0), {3, 4, 7000}), 5.0);
    EXPECT_DOUBLE_EQ(RayDistance(upright(1, 2), {1, 2, 5}), 0.0);
    // The line x = y in the plane: (1, 0, 0) lies half a diagonal beside it.
    EXPECT_DOUBLE_EQ(RayDistance({{0, 0, 0}, {5, 5, 0}}, {1, 0, 0}), std::sqrt(0.5));
}

TEST(RayDistance, DirectionOfTheLineHasNoEffect) {
    EXPECT_DOUBLE_EQ(RayDistance({{0, 0, -10}, {0, 0, 10}}, {3, 4, 1}), 5.0);
}

TEST(RayDistance, OfALineWithoutLengthBeatsAnyRealDistance) {
    EXPECT_EQ(RayDistance({{1, 1, 1}, {1, 1, 1}}, {50, 50, 50}), -1e10);
    EXPECT_EQ(RayDistance({{0, 0, 0.9e-10}, {0, 0, 0}}, {3, 4, 0}), -1e10);
    EXPECT_NEAR(RayDistance({{0, 0, 1e-10}, {0, 0, 0}}, {3, 4, 0}), 5.0, 1e-12);
}

// ---- Nearest point --------------------------------------------------------------------------------------------------

TEST(NearestGridPoint, GivesAddressPositionAndDistance) {
    const auto nearest = nearestGridPoint(twoPatches(), upright(12.25, 1.0), {});
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->patch, 1);
    EXPECT_EQ(nearest->section, 1);
    EXPECT_EQ(nearest->point, 2);
    EXPECT_EQ(nearest->position, zVec<double>(12, 1, 0));
    EXPECT_DOUBLE_EQ(nearest->distance, 0.25);
}

TEST(NearestGridPoint, TieStaysWithTheFirstInListOrder) {
    // The middle of a cell is as far from all four corners.
    const auto nearest = nearestGridPoint({flatPatch(3, 3), flatPatch(3, 3)}, upright(0.5, 1.5), {});
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->patch, 0);
    EXPECT_EQ(nearest->section, 1);
    EXPECT_EQ(nearest->point, 0);
}

TEST(NearestGridPoint, DepthHasNoEffect) {
    PatchList list{flatPatch(1, 1, -1000.0), flatPatch(1, 1, 5.0)};
    list[0][0][0].x = 0.1;
    list[1][0][0].x = 0.2;
    EXPECT_EQ(nearestGridPoint(list, upright(0, 0), {})->patch, 0);
}

TEST(NearestGridPoint, LineWithoutLengthTakesTheFirstPointTested) {
    const PixelLine degenerate{{5, 5, 5}, {5, 5, 5}};
    const auto first = nearestGridPoint(twoPatches(), degenerate, {});
    ASSERT_TRUE(first);
    EXPECT_EQ(first->patch, 0);
    EXPECT_EQ(first->section, 0);
    EXPECT_EQ(first->point, 0);
    EXPECT_EQ(first->distance, -1e10);
    PickFilter filter;
    filter.patch = 1;
    filter.section = 2;
    const auto filtered = nearestGridPoint(twoPatches(), degenerate, filter);
    ASSERT_TRUE(filtered);
    EXPECT_EQ(filtered->patch, 1);
    EXPECT_EQ(filtered->section, 2);
    EXPECT_EQ(filtered->point, 0);
}

TEST(NearestGridPoint, NothingIsFoundInNothing) {
    EXPECT_FALSE(nearestGridPoint({}, upright(0, 0), {}));
    EXPECT_FALSE(nearestGridPoint({{}, {{}, {}}}, upright(0, 0), {}));
}

TEST(NearestGridPoint, FilterOutsideTheModelFindsNothing) {
    PickFilter filter;
    filter.patch = 2;
    EXPECT_FALSE(nearestGridPoint(twoPatches(), upright(0, 0), filter));
    filter = {};
    filter.section = 3;
    EXPECT_FALSE(nearestGridPoint(twoPatches(), upright(0, 0), filter));
    filter = {};
    filter.point = 4;
    EXPECT_FALSE(nearestGridPoint(twoPatches(), upright(0, 0), filter));
}

TEST(NearestGridPoint, PointThatIsNoNumberIsPassedOver) {
    PatchList list{flatPatch(1, 3)};
    const double none = std::numeric_limits<double>::quiet_NaN();
    list[0][0][0] = {none, none, none};
    list[0][0][1] = {none, 0, 0};
    const auto nearest = nearestGridPoint(list, upright(0, 0), {});
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->point, 2);
    list[0][0][2] = {0, none, 0};
    EXPECT_FALSE(nearestGridPoint(list, upright(0, 0), {}));
}

TEST(NearestGridPoint, AgreesWithThePlainScanUnderEveryFilter) {
    std::mt19937 random(20);
    std::uniform_real_distribution<double> place(-1.0, 1.0);
    const auto any = [&random](int count) {
        return static_cast<std::int32_t>(random() % static_cast<unsigned>(count));
    };
    for (int round = 0; round < 400; ++round) {
        PatchList list(4);
        for (Patch& patch : list) {
            patch.resize(static_cast<std::size_t>(any(4)));
            for (PointList& section : patch) {
                for (int m = any(5); m > 0; --m) {
                    // Coarse places make ties likely.
                    section.emplace_back(std::round(place(random) * 3), std::round(place(random) * 3), place(random));
                }
            }
        }
        reference::PickState state;
        PickFilter filter;
        if (any(2) == 0) {
            filter.patches.assign(4, false);
            for (const std::int32_t member : {any(4), any(4)}) {
                filter.patches[static_cast<std::size_t>(member)] = true;
                state.block.push_back(member);
            }
        }
        state.patch = filter.patch = any(6) - 2 < 0 ? -1 : any(4);
        state.section = filter.section = any(2) == 0 ? -1 : any(4);
        state.point = filter.point = any(2) == 0 ? -1 : any(5);
        const PixelLine line{{place(random), place(random), 5}, {place(random), place(random), -5}};
        const auto expected = reference::nearestPoint(list, line.nearPoint, line.farPoint, state);
        const auto found = nearestGridPoint(list, line, filter);
        ASSERT_EQ(found.has_value(), expected.has_value()) << round;
        if (found) {
            ASSERT_EQ(found->patch, expected->patch) << round;
            ASSERT_EQ(found->section, expected->section) << round;
            ASSERT_EQ(found->point, expected->point) << round;
        }
    }
}

// ---- The ray of a pixel ---------------------------------------------------------------------------------------------

TEST(PixelRay, ParallelRayRunsFromTheNearToTheFarPlane) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.useParallelProjection();
    // Pixel (450, 149) shows half a radius to the right of the centre and half above it.
    const PixelLine ray = rig.view.PixelRay(450, 149);
    const double radius = rig.doc.modelRadius;
    const zVec<double> centre = rig.doc.modelCenter;
    expectVector(ray.nearPoint, centre + zVec<double>(0.5, 0.5, eyeRadii - 0.1) * radius, 1e-8);
    // The far plane is 250 radii away; the inverse of the matrix loses digits there.
    expectVector(ray.farPoint, centre + zVec<double>(0.5, 0.5, eyeRadii - 250.0) * radius, 1e-6);
}

TEST(PixelRay, PerspectiveRayStartsAtTheEye) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.perspective");
    const PixelLine ray = rig.view.PixelRay(450, 149);
    const zVec<double> eye = rig.doc.modelCenter + zVec<double>(0, 0, eyeRadii * rig.doc.modelRadius);
    EXPECT_LT(RayDistance(ray, eye), 1e-9);
    EXPECT_LT(RayDistance(ray, rig.doc.modelCenter + zVec<double>(0.5, 0.5, 0) * rig.doc.modelRadius), 1e-8);
}

TEST(PixelRay, FollowsTheModelsRotationBeforeAnyPaint) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.useParallelProjection();
    rig.view.runViewCommand("view.top");
    const PixelLine ray = rig.view.PixelRay(300, 299);
    // From the top the eye stands at the far end of y of the model and looks down it.
    expectVector(unitOf(ray.farPoint - ray.nearPoint), {0, -1, 0}, 1e-12);
}

TEST(PixelRay, GoesThroughThePointThatThePixelShows) {
    ViewRig rig;
    PatchList model = twoPatches();
    model[1][2][3].z = 5.0;
    rig.show(model);
    rig.view.SetEulerView({35, -20, 110});
    rig.view.zoomFactor = 0.6;
    rig.view.viewCentreX = 250.0;
    rig.view.UpdateProjection();
    for (const Patch& patch : model) {
        for (const PointList& section : patch) {
            for (const zVec<double>& point : section) {
                rig.view.ApplyModelTransform(rig.doc.modelCenter);
                const auto at =
                    projectPoint(point, rig.view.modelViewMatrix, rig.view.projectionMatrix, rig.view.viewport);
                ASSERT_TRUE(at);
                EXPECT_LT(RayDistance(rig.view.PixelRay(at->x, 599.0 - at->y), point), 1e-8);
            }
        }
    }
}

} // namespace
} // namespace velmora

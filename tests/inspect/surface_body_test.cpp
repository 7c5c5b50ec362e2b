#include "surface_body.h"

#include <cmath>

#include <gtest/gtest.h>

#include "inspected_models.h"

namespace velmora::test {

namespace {

SurfaceBody bodyOf(const PatchList& patches, const zRegion_fe& region, const Vector& centre = {}) {
    const ModelFaces model = modelFaces(patches, region);
    return surfaceBody(model, EdgeTable(model.points.count(), model.faces), centre);
}

zRegion_fe box(const std::vector<std::int32_t>& triangles) {
    return triangleRegion(boxCorners(2, 3, 4), triangles);
}

/// The patches of a closed tube of square section (side 1) from x = 0 to x = 2, and its two ends.
PatchList squareBar() {
    const PointList ring = {{0, 0, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}, {0, 0, 0}};
    PointList far = ring;
    for (Vector& p : far) {
        p.x = 2;
    }
    return {{ring, far},
            oneCell({0, 0, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}),
            oneCell({2, 0, 0}, {2, 1, 0}, {2, 1, 1}, {2, 0, 1})};
}

} // namespace

TEST(SurfaceBody, ABoxOfTrianglesHasItsVolume) {
    const SurfaceBody body = bodyOf({}, box(boxTriangles()));
    EXPECT_EQ(body.components, 1);
    EXPECT_EQ(body.openBorder, 0.0);
    EXPECT_EQ(body.badEdges, 0);
    ASSERT_TRUE(body.volume);
    EXPECT_DOUBLE_EQ(*body.volume, 24.0);
}

TEST(SurfaceBody, TheVolumeHoldsAboutAnyCentre) {
    EXPECT_NEAR(*bodyOf({}, box(boxTriangles()), {1, 1.5, 2}).volume, 24.0, 1e-12);
    EXPECT_NEAR(*bodyOf({}, box(boxTriangles()), {-30, 50, 7}).volume, 24.0, 1e-10);
}

TEST(SurfaceBody, LooseTrianglesAreJoinedByTheirCoordinates) {
    const SurfaceBody body = bodyOf({}, looseTriangles(boxCorners(2, 3, 4), boxTriangles()));
    EXPECT_EQ(body.components, 1);
    EXPECT_DOUBLE_EQ(*body.volume, 24.0);
}

TEST(SurfaceBody, TurnedTrianglesAreTurnedToAgree) {
    std::vector<std::int32_t> triangles = boxTriangles();
    for (const std::size_t triangle : {0, 3, 4, 10}) {
        std::swap(triangles[3 * triangle + 1], triangles[3 * triangle + 2]);
    }
    EXPECT_DOUBLE_EQ(*bodyOf({}, box(triangles)).volume, 24.0);
}

TEST(SurfaceBody, AClosedBodyOfCells) {
    const SurfaceBody body = bodyOf(squareBar(), {});
    EXPECT_EQ(body.components, 1);
    EXPECT_EQ(body.openBorder, 0.0);
    ASSERT_TRUE(body.volume);
    EXPECT_DOUBLE_EQ(*body.volume, 2.0);
}

TEST(SurfaceBody, CellsAndTrianglesCloseABodyTogether) {
    PatchList patches = squareBar();
    patches.pop_back();
    const zRegion_fe lid = triangleRegion({{2, 0, 0}, {2, 1, 0}, {2, 1, 1}, {2, 0, 1}}, {0, 1, 2, 2, 3, 0});
    const SurfaceBody body = bodyOf(patches, lid);
    EXPECT_EQ(body.components, 1);
    EXPECT_DOUBLE_EQ(*body.volume, 2.0);
}

TEST(SurfaceBody, EachComponentCountsWithItsOwnSign) {
    // The second box is inside out: it counts all the same, and the one inside of another is not subtracted.
    std::vector<Vector> nodes = boxCorners(2, 3, 4);
    const std::vector<Vector> inner = boxCorners(1, 1, 1, {0.5, 0.5, 0.5});
    nodes.insert(nodes.end(), inner.begin(), inner.end());
    std::vector<std::int32_t> triangles = boxTriangles();
    std::vector<std::int32_t> turned = boxTriangles(8);
    std::reverse(turned.begin(), turned.end());
    triangles.insert(triangles.end(), turned.begin(), turned.end());
    const SurfaceBody body = bodyOf({}, triangleRegion(nodes, triangles));
    EXPECT_EQ(body.components, 2);
    EXPECT_NEAR(*body.volume, 25.0, 1e-12);
}

TEST(SurfaceBody, AnOpenEdgeLeavesNoVolume) {
    std::vector<std::int32_t> triangles = boxTriangles();
    triangles.resize(triangles.size() - 3); // (1, 7, 3): sides of 2, 3 and the diagonal of both
    const SurfaceBody body = bodyOf({}, box(triangles));
    EXPECT_FALSE(body.volume);
    EXPECT_DOUBLE_EQ(body.openBorder, 2.0 + 3.0 + std::sqrt(13.0));
    EXPECT_EQ(body.badEdges, 0);
}

TEST(SurfaceBody, AnEdgeOfThreeTrianglesIsBad) {
    std::vector<std::int32_t> triangles = boxTriangles();
    triangles.insert(triangles.end(), {0, 1, 6}); // 0-1 becomes an edge of three, and 0-6 too, a diagonal of the box
    const SurfaceBody body = bodyOf({}, box(triangles));
    EXPECT_FALSE(body.volume);
    EXPECT_EQ(body.badEdges, 2);
    EXPECT_DOUBLE_EQ(body.openBorder, std::sqrt(29.0)); // 1-6
    EXPECT_EQ(body.components, 1);
}

TEST(SurfaceBody, TheSameBoxTwiceHasBadEdgesOnly) {
    std::vector<std::int32_t> triangles = boxTriangles();
    const std::vector<std::int32_t> again = boxTriangles();
    triangles.insert(triangles.end(), again.begin(), again.end());
    const SurfaceBody body = bodyOf({}, box(triangles));
    EXPECT_EQ(body.badEdges, 18);
    EXPECT_EQ(body.openBorder, 0.0);
    EXPECT_FALSE(body.volume);
}

TEST(SurfaceBody, ATwistedBandCannotBeTurnedToAgree) {
    // The least triangulation of the projective plane: six points, ten triangles, each edge in two of them.
    const std::vector<Vector> nodes = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 0}, {1, 0, 1}};
    const SurfaceBody body = bodyOf({}, triangleRegion(nodes, {0, 1, 4, 0, 1, 5, 0, 2, 3, 0, 2, 5, 0, 3, 4,
                                                               1, 2, 3, 1, 2, 4, 1, 3, 5, 2, 4, 5, 3, 4, 5}));
    EXPECT_EQ(body.openBorder, 0.0);
    EXPECT_EQ(body.badEdges, 0);
    EXPECT_EQ(body.components, 1);
    EXPECT_FALSE(body.volume);
}

TEST(SurfaceBody, FacesThatMeetInAPointOnlyAreTwoComponents) {
    const zRegion_fe bowtie =
        triangleRegion({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {-1, 0, 0}, {-1, -1, 0}}, {0, 1, 2, 0, 3, 4});
    EXPECT_EQ(bodyOf({}, bowtie).components, 2);
}

TEST(SurfaceBody, AFaceWithoutAnEdgeIsInNoComponent) {
    const SurfaceBody body = bodyOf({}, triangleRegion({{0, 0, 0}, {1, 0, 0}}, {0, 1, 0, 1, 1, 1}));
    EXPECT_EQ(body.components, 0);
    EXPECT_EQ(body.openBorder, 0.0);
    EXPECT_FALSE(body.volume) << "there is no edge";
}

TEST(SurfaceBody, ACellWithACollapsedSideHasThreeEdges) {
    const SurfaceBody body = bodyOf({oneCell({0, 0, 0}, {0, 0, 0}, {3, 0, 0}, {0, 4, 0})}, {});
    EXPECT_DOUBLE_EQ(body.openBorder, 12.0);
    EXPECT_EQ(body.components, 1);
}

TEST(SurfaceBody, ACellThatRunsToAndFroIsClosed) {
    // a = c: the outline passes a-b and a-d twice, so no edge is open, and nothing is enclosed.
    const SurfaceBody body = bodyOf({oneCell({0, 0, 0}, {1, 0, 0}, {0, 0, 0}, {0, 1, 0})}, {});
    EXPECT_EQ(body.components, 1);
    EXPECT_EQ(body.openBorder, 0.0);
    ASSERT_TRUE(body.volume);
    EXPECT_EQ(*body.volume, 0.0);
}

TEST(SurfaceBody, ATubeIsOpenAtBothEnds) {
    EXPECT_DOUBLE_EQ(bodyOf({squareBar()[0]}, {}).openBorder, 8.0);
}

TEST(SurfaceBody, NothingIsNoBody) {
    const SurfaceBody body = bodyOf({}, {});
    EXPECT_EQ(body.components, 0);
    EXPECT_FALSE(body.volume);
}

} // namespace velmora::test

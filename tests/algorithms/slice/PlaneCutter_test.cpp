#include "PlaneCutter.h"

#include <limits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "small_zones.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// What one plane cut.
struct Cut {
    std::size_t plane;
    std::vector<SliceSegment> segments;
};

/// Cuts by planes across z.
std::vector<Cut> cuts(const zRegion_fe& region, const std::vector<double>& planes) {
    std::vector<Cut> taken;
    const PlaneCutter cutter(region, 2, planes);
    PlaneCutter::Workplace workplace;
    for (std::size_t group = 0; group < cutter.groups(); ++group) {
        cutter.cutGroup(group, workplace, [&taken](std::size_t plane, std::span<const SliceSegment> segments) {
            taken.push_back({plane, {segments.begin(), segments.end()}});
        });
    }
    return taken;
}

/// Upright, the right angle at the origin, both legs of length 4.
zRegion_fe uprightTriangle() {
    return triangleRegion({{0, 0, 0}, {4, 0, 0}, {0, 0, 4}}, {0, 1, 2});
}

} // namespace

TEST(PlaneCutter, CutsTheTwoEdgesThatAPlaneCrosses) {
    const auto found = cuts(uprightTriangle(), {1});
    ASSERT_THAT(found, SizeIs(1));
    ASSERT_THAT(found[0].segments, SizeIs(1));
    EXPECT_THAT(found[0].segments[0].first, ElementsAre(3, 0, 1));
    EXPECT_THAT(found[0].segments[0].second, ElementsAre(0, 0, 1));
}

TEST(PlaneCutter, HandsOverPlanesByRisingCoordinateUnderTheirOwnNumbers) {
    const auto found = cuts(uprightTriangle(), {3, std::numeric_limits<double>::quiet_NaN(), 1, 3, 9, -1});
    std::vector<std::size_t> planes;
    for (const Cut& cut : found) {
        planes.push_back(cut.plane);
    }
    EXPECT_THAT(planes, ElementsAre(2, 0, 3));
    EXPECT_THAT(found[1].segments[0].first, ElementsAre(1, 0, 3));
}

TEST(PlaneCutter, KeepsTheOrderOfTheTriangles) {
    const zRegion_fe region =
        triangleRegion({{0, 7, 0}, {4, 7, 0}, {0, 7, 4}, {0, 2, 0}, {4, 2, 0}, {0, 2, 4}}, {0, 1, 2, 3, 4, 5});
    const auto found = cuts(region, {1, 2});
    ASSERT_THAT(found, SizeIs(2));
    for (const Cut& cut : found) {
        ASSERT_THAT(cut.segments, SizeIs(2));
        EXPECT_EQ(cut.segments[0].first[1], 7);
        EXPECT_EQ(cut.segments[1].first[1], 2);
    }
}

TEST(PlaneCutter, ManyPlanesAreCutInGroupsThatRise) {
    // A fan of 100 triangles around an upright edge, each spanned by all of 1000 planes.
    std::vector<zVec<double>> nodes = {{0, 0, 0}, {0, 0, 4}};
    std::vector<std::int32_t> corners;
    for (std::int32_t i = 0; i < 100; ++i) {
        nodes.emplace_back(1, i, 0);
        corners.insert(corners.end(), {0, 1, i + 2});
    }
    std::vector<double> planes;
    for (int i = 0; i < 1000; ++i) {
        planes.push_back(0.004 * i);
    }
    const zRegion_fe fan = triangleRegion(nodes, corners);
    EXPECT_GT(PlaneCutter(fan, 2, planes).groups(), 1U);
    const auto found = cuts(fan, planes);
    ASSERT_THAT(found, SizeIs(1000));
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].plane, i);
        ASSERT_THAT(found[i].segments, SizeIs(100));
        EXPECT_EQ(found[i].segments[99].first[2], planes[i]);
    }
}

TEST(PlaneCutter, ATriangleMaySpanMorePlanesThanSixteenBitsCount) {
    std::vector<double> planes;
    for (int i = 1; i <= 70000; ++i) {
        planes.push_back(i / 20000.0);
    }
    const auto found = cuts(uprightTriangle(), planes);
    ASSERT_THAT(found, SizeIs(70000));
    for (const std::size_t plane : {std::size_t{0}, std::size_t{65534}, std::size_t{65535}, std::size_t{69999}}) {
        EXPECT_EQ(found[plane].plane, plane);
        ASSERT_THAT(found[plane].segments, SizeIs(1));
        EXPECT_EQ(found[plane].segments[0].first[2], planes[plane]);
    }
}

TEST(PlaneCutter, NeighboursThatSpanOtherPlanesAreCutByTheirOwn) {
    // Triangles that rise over 1, over 1 and 2, over none between them, from one plane on, and up to one.
    const std::vector<std::pair<double, double>> rises = {{0.5, 1.5}, {0.5, 2.5}, {1.2, 1.8}, {1.3, 1.7}, {1, 1.5},
                                                          {1.5, 2},   {1.5, 1.9}, {2.5, 9},   {0, 0.5},   {0.5, 1.5}};
    std::vector<zVec<double>> nodes;
    std::vector<std::int32_t> corners;
    for (const auto& [low, high] : rises) {
        const auto node = static_cast<std::int32_t>(nodes.size());
        nodes.insert(nodes.end(), {{0, 0, low}, {1, 0, low}, {0, static_cast<double>(node), high}});
        corners.insert(corners.end(), {node, node + 1, node + 2});
    }
    const auto found = cuts(triangleRegion(nodes, corners), {1, 2});
    ASSERT_THAT(found, SizeIs(2));
    // An edge that begins on the plane is cut, one that ends on it is not: so what begins at 1 leaves a point there,
    // and what rises up to 2 leaves its tip, where one of its edges ends and the other begins.
    EXPECT_THAT(found[0].segments, SizeIs(4));
    EXPECT_THAT(found[1].segments, SizeIs(2));
}

TEST(PlaneCutter, PlanesAtUnequalStepsAreAllFound) {
    const std::vector<double> planes = {-1e300, 1e-300, 1, 1.0000000001, 2, 3.5, 3.5, 1e300};
    const auto found = cuts(uprightTriangle(), planes);
    std::vector<std::size_t> numbers;
    for (const Cut& cut : found) {
        numbers.push_back(cut.plane);
    }
    EXPECT_THAT(numbers, ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(PlaneCutter, TellsWhetherPlanesCountAsOne) {
    const auto apart = [](const std::vector<double>& planes) { return PlaneCutter({}, 2, planes).planesApart(); };
    EXPECT_TRUE(apart({}));
    EXPECT_TRUE(apart({1}));
    EXPECT_TRUE(apart({3, 1, 2, 1.000000001}));
    EXPECT_FALSE(apart({3, 1, 2, 1.00000000001}));
    EXPECT_FALSE(apart({0, 1, 0}));
}

TEST(PlaneCutter, OfACornerThatOnlyTouchesLeavesThatPointTwice) {
    const auto found = cuts(triangleRegion({{0, 0, 0}, {1, 0, 1}, {0, 1, 1}}, {0, 1, 2}), {0});
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_THAT(found[0].segments[0].first, ElementsAre(0, 0, 0));
    EXPECT_THAT(found[0].segments[0].second, ElementsAre(0, 0, 0));
}

TEST(PlaneCutter, CutsNothingWhereATriangleLiesInThePlaneOrThereIsNone) {
    EXPECT_THAT(cuts(triangleRegion({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}}, {0, 1, 2}), {1, 1}), IsEmpty());
    EXPECT_THAT(cuts({}, {1, 2}), IsEmpty());
    EXPECT_THAT(cuts(uprightTriangle(), {}), IsEmpty());
}

} // namespace velmora::test

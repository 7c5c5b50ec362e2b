#include "cut_zones.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "curve_samples.h"
#include "cut_zones_reference.h"
#include "slice_bodies.h"

namespace velmora::test {

namespace {

using samples::sameBits;
using samples::Source;
using testing::ElementsAre;
using testing::IsEmpty;
using Point = zVec<double>;

KnifePlane across(int axis, double section) {
    KnifePlane plane;
    plane.axis = axis;
    plane.section = section;
    return plane;
}

KnifePlane throughPoint(const Point& point, const Point& normal) {
    KnifePlane plane;
    plane.axis = 3;
    plane.point = point;
    plane.normal = unitVector(normal);
    return plane;
}

Point areaOf(const zRegion_fe& region) {
    Point sum;
    const zBlock_fe& zone = *region.blocks[0];
    for (std::size_t i = 0; i < zone.connectivity.size(); i += 4) {
        const Point a = nodeOf(region, 0, zone.connectivity[i]);
        sum = sum +
              cross(nodeOf(region, 0, zone.connectivity[i + 1]) - a, nodeOf(region, 0, zone.connectivity[i + 2]) - a) *
                  0.5;
    }
    return sum;
}

testing::AssertionResult sameZone(const zBlock_fe& a, const zBlock_fe& b) {
    if (a.title != b.title || a.nodeCount != b.nodeCount || a.elementCount != b.elementCount ||
        a.connectivitySize != b.connectivitySize || a.connectivity != b.connectivity ||
        a.variables.size() != b.variables.size()) {
        return testing::AssertionFailure() << "title, counts or connectivity differ";
    }
    for (std::size_t i = 0; i < a.variables.size(); ++i) {
        if (a.variables[i]->name != b.variables[i]->name || a.variables[i]->size != b.variables[i]->size) {
            return testing::AssertionFailure() << "field " << i << " differs";
        }
        if (const auto same = sameBits(a.variables[i]->data, b.variables[i]->data); !same) {
            return same;
        }
    }
    return testing::AssertionSuccess();
}

} // namespace

TEST(SplitZones, WhicheverCornerStandsAloneThePiecesRunRoundAsTheTriangleDid) {
    const std::vector<Point> nodes = {{0, 0, 0}, {2, -1, 0}, {2, 1, 0}};
    const std::vector<std::vector<std::int32_t>> orders = {{0, 1, 2}, {2, 0, 1}, {1, 2, 0}};
    for (const auto& order : orders) {
        zRegion_fe region = triangleRegion(nodes, order);
        const Point area = areaOf(region);
        splitZones(region, across(0, 1));
        const zBlock_fe& zone = *region.blocks[0];
        EXPECT_EQ(zone.nodeCount, 5);
        EXPECT_EQ(zone.elementCount, 3);
        EXPECT_EQ(zone.connectivitySize, 12);
        EXPECT_EQ(nodeOf(region, 0, 3), Point(1, -0.5, 0)); // on the edge that leaves the lone corner
        EXPECT_EQ(nodeOf(region, 0, 4), Point(1, 0.5, 0));
        EXPECT_EQ((std::vector<std::int32_t>(zone.connectivity.begin() + 4, zone.connectivity.end())),
                  (std::vector<std::int32_t>{3, 1, 2, -1, 3, 2, 4, -1}));
        EXPECT_EQ(areaOf(region), area);
        EXPECT_EQ(zone.title, "z");
    }
}

TEST(SplitZones, CornerOnThePlaneSplitsATriangleInTwo) {
    zRegion_fe region = triangleRegion({{1, 0, 0}, {2, 2, 0}, {0, 2, 0}}, {0, 1, 2});
    const Point area = areaOf(region);
    splitZones(region, across(0, 1 + 0.9e-8));
    const zBlock_fe& zone = *region.blocks[0];
    EXPECT_EQ(zone.nodeCount, 4);
    EXPECT_EQ(zone.connectivity, (std::vector<std::int32_t>{0, 1, 3, -1, 3, 2, 0, -1}));
    EXPECT_NEAR(areaOf(region).z, area.z, 1e-12);
}

TEST(SplitZones, CornerNearThePlaneWithBothOthersOnOneSideSplitsNothing) {
    zRegion_fe region = triangleRegion({{1, 0, 0}, {2, 2, 0}, {3, 2, 0}}, {0, 1, 2});
    splitZones(region, across(0, 1 + 0.9e-8));
    EXPECT_EQ(region.blocks[0]->elementCount, 1);
    EXPECT_EQ(region.blocks[0]->title, "body"); // no field was looked up
}

TEST(SplitZones, FieldsOtherThanCoordinatesAreZeroAtNewNodes) {
    zRegion_fe region = triangleRegion({{0, 0, 0}, {2, -1, 0}, {2, 1, 0}}, {0, 1, 2});
    region.blocks[0]->addVariable("p")->data = {7, 8, 9};
    splitZones(region, across(0, 1));
    EXPECT_THAT(region.blocks[0]->variables[3]->data, ElementsAre(7, 8, 9, 0, 0));
    EXPECT_TRUE(consistent(*region.blocks[0]));
}

TEST(SplitZones, ZonesWithoutCoordinatesStay) {
    zRegion_fe region = triangleRegion({{0, 0, 0}, {2, -1, 0}, {2, 1, 0}}, {0, 1, 2});
    region.blocks[0]->variables.pop_back();
    splitZones(region, across(0, 1));
    keepSide(region, across(0, 1), Side::Before);
    EXPECT_EQ(region.blocks[0]->elementCount, 1);
}

TEST(SplitZonesAgainstThePlainRule, GiveTheSameZonesForPlanesAcrossAxes) {
    Source source(71);
    int split = 0;
    for (int round = 0; round < 600; ++round) {
        zRegion_fe fast = round % 2 == 0 ? anyBody(source, 0, 4, 0) : anyBody(source, 10, 1e3, 1e-4);
        fast.blocks[0]->addVariable("p")->data.assign(static_cast<std::size_t>(fast.blocks[0]->nodeCount), 1.5);
        zRegion_fe plain;
        copyRegion(fast, plain);
        const int axis = source.whole(0, 2);
        const double p = source.once(2) ? source.whole(-3, 3) : source.real(-3, 13);
        const auto along = [axis](const Point& at) { return axis == 0 ? at.x : axis == 1 ? at.y : at.z; };
        reference::splitZonesOneByOne(plain, [&](const Point& from, const Point& to) -> std::optional<Point> {
            const double u1 = along(from);
            const double u2 = along(to);
            if (!((p - u1 > nearZero && u2 - p > nearZero) || (u1 - p > nearZero && p - u2 > nearZero))) {
                return std::nullopt;
            }
            const double t = (p - u1) / (u2 - u1);
            Point cut(from.x + t * (to.x - from.x), from.y + t * (to.y - from.y), from.z + t * (to.z - from.z));
            (axis == 0 ? cut.x : axis == 1 ? cut.y : cut.z) = p;
            return cut;
        });
        splitZones(fast, across(axis, p));
        ASSERT_TRUE(sameZone(*fast.blocks[0], *plain.blocks[0])) << "round " << round;
        split += fast.blocks[0]->title == "z" ? 1 : 0;
    }
    EXPECT_GT(split, 300);
}

TEST(SplitZonesAgainstThePlainRule, GiveTheSameZonesForAnyPlane) {
    Source source(72);
    for (int round = 0; round < 400; ++round) {
        zRegion_fe fast = anyBody(source, 0, 4, 0);
        zRegion_fe plain;
        copyRegion(fast, plain);
        const KnifePlane plane = throughPoint({source.real(-2, 2), source.real(-2, 2), source.whole(-2, 2) * 1.0},
                                              {source.real(-1, 1), source.real(-1, 1), source.real(-1, 1)});
        reference::splitZonesOneByOne(plain, [&](const Point& from, const Point& to) -> std::optional<Point> {
            const double s1 = dot(from - plane.point, plane.normal);
            const double s2 = dot(to - plane.point, plane.normal);
            const bool crossed = (s1 > nearZero && s2 < -nearZero) || (s2 > nearZero && s1 < -nearZero);
            return crossed ? segmentPlane(from, to, plane.point, plane.normal) : std::nullopt;
        });
        splitZones(fast, plane);
        ASSERT_TRUE(sameZone(*fast.blocks[0], *plain.blocks[0])) << "round " << round;
    }
}

TEST(KeepSide, KeepsTrianglesWithACornerOnThatSide) {
    const auto kept = [](const KnifePlane& plane, Side side) {
        zRegion_fe region = triangleRegion(
            {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {3, 0, 0}, {3, 1, 0}, {1, 1, 0}, {1, 2, 0}}, {0, 1, 2, 1, 3, 4, 1, 5, 6});
        keepSide(region, plane, side);
        const zBlock_fe& zone = *region.blocks[0];
        std::vector<std::int32_t> first;
        for (std::int32_t i = 0; i < zone.elementCount; ++i) {
            first.push_back(zone.connectivity[4 * static_cast<std::size_t>(i) + 1]);
        }
        return first;
    };
    EXPECT_THAT(kept(across(0, 1), Side::Before), ElementsAre(1));
    EXPECT_THAT(kept(across(0, 1), Side::After), ElementsAre(3)); // the one in the plane goes either way
    EXPECT_THAT(kept(across(0, 0), Side::Before), IsEmpty());
    EXPECT_THAT(kept(across(0, 0), Side::After), ElementsAre(1, 3, 5));
    EXPECT_THAT(kept(throughPoint({1, 0, 0}, {2, 0, 0}), Side::Before), ElementsAre(1));
    EXPECT_THAT(kept(throughPoint({1, 0, 0}, {-2, 0, 0}), Side::Before), ElementsAre(3));
}

TEST(SegmentPlane, FollowsItsFourCases) {
    const Point z(0, 0, 1);
    EXPECT_EQ(segmentPlane({1, 1, 1}, {1, 1, 1}, {1, 1, 1}, z), Point(1, 1, 1));
    EXPECT_EQ(segmentPlane({1, 1, 1}, {1, 1, 1}, {1, 1, 2}, z), std::nullopt);
    EXPECT_EQ(segmentPlane({1, 1, 1}, {2, 2, 2}, {2, 2, 2}, z), Point(2, 2, 2));
    EXPECT_EQ(segmentPlane({1, 1, 1}, {2, 2, 2}, {1, 1, 1}, z), Point(1, 1, 1));
    EXPECT_EQ(segmentPlane({0, 0, 5}, {2, 0, 5}, {0, 7, 5}, z), Point(1, 0, 5)); // in the plane: the middle
    EXPECT_EQ(segmentPlane({0, 0, 4}, {2, 0, 4}, {0, 7, 5}, z), std::nullopt);
    EXPECT_EQ(segmentPlane({0, 0, 0}, {2, 4, 8}, {9, 9, 2}, z), Point(0.5, 1, 2));
    EXPECT_EQ(segmentPlane({0, 0, 3}, {2, 4, 8}, {9, 9, 2}, z), std::nullopt); // beyond the end
}

TEST(PlaneThrough, HasTheMeanPointAndTheUnitNormal) {
    const KnifePlane plane = planeThrough({0, 0, 3}, {3, 0, 3}, {0, 3, 3});
    EXPECT_EQ(plane.point, Point(1, 1, 3));
    // Nz = (Cy - Ay)(Bx - Ax) - (By - Ay)(Cx - Ax) = 9, of length 1.
    EXPECT_EQ(plane.normal, Point(0, 0, 1));
    // x = 2: Nx = (Cz - Az)(By - Ay) - (Bz - Az)(Cy - Ay) = 1 * 1 - 0 = 1.
    EXPECT_EQ(planeThrough({2, 0, 0}, {2, 1, 0}, {2, 0, 1}).normal, Point(1, 0, 0));
    // y = 2: Ny = (Bz - Az)(Cx - Ax) - (Cz - Az)(Bx - Ax) = 0 - 1 = -1.
    EXPECT_EQ(planeThrough({0, 2, 0}, {1, 2, 0}, {0, 2, 1}).normal, Point(0, -1, 0));
    EXPECT_EQ(planeThrough({0, 0, 0}, {1, 1, 1}, {2, 2, 2}).normal, Point());
}

TEST(UnitVector, HasTheDirectionOfVeryShortAndVeryLongOnes) {
    for (const double size : {1e-300, 1e-200, 1e-5, 1.0, 1e200, 1e300}) {
        const Point v = unitVector({3.0 * size, 0.0, -4.0 * size});
        EXPECT_DOUBLE_EQ(v.x, 0.6) << size;
        EXPECT_EQ(v.y, 0.0) << size;
        EXPECT_DOUBLE_EQ(v.z, -0.8) << size;
    }
    EXPECT_EQ(unitVector({}), Point());
    EXPECT_EQ(unitVector({INFINITY, 0, 0}), Point());
}

TEST(SplitZones, TellTheirProgress) {
    std::vector<double> told;
    zRegion_fe region = box(1, 1, 1);
    splitZones(region, across(0, 0.5), [&told](double fraction) { told.push_back(fraction); });
    EXPECT_FALSE(told.empty());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_LE(told.back(), 1);
}

} // namespace velmora::test

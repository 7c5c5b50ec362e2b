#include "corner_box.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "small_zones.h"

namespace velmora::test {

namespace {

using Point = zVec<double>;

} // namespace

TEST(CornerBoxOfZones, RisingCoordinatesOfOneTriangleBeginAtTheFirst) {
    const CornerBox box = cornerBox(triangleRegion({{0, 5, 2}, {1, 4, 3}, {2, 3, 1}}, {0, 1, 2}));
    EXPECT_EQ(box.upper, Point(2, 5, 3));
    EXPECT_EQ(box.lower, Point(0, 3, 1));
}

TEST(CornerBoxOfZones, LeavesOutNodesOfNoTriangle) {
    const CornerBox box =
        cornerBox(triangleRegion({{0, 0, 0}, {1, 1, 1}, {0.5, 0, 1}, {0, 1, 0}, {9, 9, 9}}, {1, 0, 2, 3, 0, 1}));
    EXPECT_EQ(box.lower, Point(0, 0, 0));
    EXPECT_EQ(box.upper, Point(1, 1, 1));
}

TEST(CornerBoxOfZones, OfTrianglesThatShareNodesLeavesOutNodesOfNone) {
    // A fan of six triangles around the first node; the last one is no corner, and lies outside on one side or within.
    const std::vector<std::int32_t> corners = {0, 1, 2, 0, 2, 3, 0, 3, 4, 0, 4, 5, 0, 5, 1, 0, 1, 3};
    const std::vector<Point> fan = {{2, 2, 2}, {1, 2, 3}, {3, 1, 2}, {2, 3, 1}, {2.5, 2, 2}, {2, 1.5, 2.5}};
    const double notANumber = std::nan("");
    for (const Point& last : {Point(9, 2, -9), Point(-9, 9, 2), Point(2, -9, 9), Point(2, 2, 2), Point(3, 1, 1),
                              Point(notANumber, 2, notANumber), Point(1e70, -1e70, 2)}) {
        std::vector<Point> nodes = fan;
        nodes.push_back(last);
        const CornerBox box = cornerBox(triangleRegion(nodes, corners));
        EXPECT_EQ(box.lower, Point(1, 1, 1));
        EXPECT_EQ(box.upper, Point(3, 3, 3));
    }
}

TEST(CornerBoxOfZones, OfSharedNodesTheZeroThatATriangleNamesFirstStays) {
    const std::vector<Point> nodes = {{0.0, 1, 1}, {-0.0, 2, 2}, {1, 3, -0.0}, {2, 1, -1}};
    const CornerBox box = cornerBox(triangleRegion(nodes, {1, 0, 2, 0, 2, 3, 1, 2, 3, 0, 1, 3}));
    EXPECT_TRUE(std::signbit(box.lower.x));
    EXPECT_EQ(box.lower, Point(0, 1, -1));
    EXPECT_EQ(box.upper, Point(2, 3, 2));
}

TEST(CornerBoxOfZones, StaysInsideOutWithoutTriangles) {
    const CornerBox box = cornerBox({});
    EXPECT_EQ(box.lower, Point(1e65, 1e65, 1e65));
    EXPECT_EQ(box.upper, Point(-1e65, -1e65, -1e65));
}

TEST(CornerBoxOfZones, OfTwoZerosTheFirstOneStays) {
    for (const bool negativeFirst : {false, true}) {
        const double first = negativeFirst ? -0.0 : 0.0;
        const CornerBox box = cornerBox(
            triangleRegion({{1, -1, -first}, {first, -first, 1}, {-first, first, first}}, {0, 1, 2, 2, 1, 0}));
        EXPECT_EQ(std::signbit(box.lower.x), negativeFirst);
        EXPECT_EQ(std::signbit(box.upper.y), !negativeFirst);
        EXPECT_EQ(std::signbit(box.lower.z), !negativeFirst);
    }
}

} // namespace velmora::test

#include "corner_box.h"

#include <cmath>

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

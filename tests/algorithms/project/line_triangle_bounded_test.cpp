#include "line_triangle_bounded.h"

#include <cmath>

#include <gtest/gtest.h>

namespace velmora::test {

TEST(HitsWithinReach, BesideTheTriangleWithinItsMargin) {
    const double a[] = {1e3, 0, 0};
    const double b[] = {1e3 + 1, 0, 0};
    const double c[] = {1e3, 1, 0};
    const double up[] = {0, 0, 1};
    const double onEdge[] = {1e3 + 0.5, -1e-7, 7};
    double place[3];
    EXPECT_TRUE(hitsWithinReach(a, b, c, up, onEdge, place));
    const double outside[] = {1e3 + 0.5, -0.1, 7};
    EXPECT_FALSE(hitsWithinReach(a, b, c, up, outside, place));
}

TEST(HitReach, OfAProperTriangleIsAPartOfTheSumOfItsExtents) {
    const double a[] = {1, 1, 1};
    const double b[] = {3, 1, 1};
    const double c[] = {1, 4, 1};
    const HitReach reach = hitReach(a, b, c);
    EXPECT_FALSE(reach.anywhere);
    EXPECT_DOUBLE_EQ(reach.margin, 0.002 * (2 + 3 + 0));
}

TEST(HitReach, OfAPointIsNone) {
    const double p[] = {1, 2, 3};
    EXPECT_FALSE(hitReach(p, p, p).anywhere);
    EXPECT_EQ(hitReach(p, p, p).margin, 0);
}

TEST(HitReach, IsUnknownOfTrianglesThatCountAsSegmentsOrAreNearlyFlat) {
    const double a[] = {1, 1, 1};
    const double besideA[] = {1 + 1e-7, 1, 1};
    const double c[] = {2, 3, 4};
    EXPECT_TRUE(hitReach(a, besideA, c).anywhere);
    EXPECT_TRUE(hitReach(c, a, besideA).anywhere);
    const double left[] = {0, 0, 0};
    const double right[] = {1, 0, 0};
    const double low[] = {0.5, 1e-7, 0}; // the height is to be a millionth of the longest edge at least
    const double higher[] = {0.5, 1e-5, 0};
    EXPECT_TRUE(hitReach(left, right, low).anywhere);
    EXPECT_FALSE(hitReach(left, right, higher).anywhere);
}

TEST(HitReach, IsUnknownWhereSquaresOfAreasLeaveTheRangeOfNumbers) {
    const double origin[] = {0, 0, 0};
    const double far[] = {1e61, 0, 0};
    const double up[] = {0, 1, 0};
    EXPECT_TRUE(hitReach(origin, far, up).anywhere);
    const double nan[] = {std::nan(""), 0, 0};
    EXPECT_TRUE(hitReach(origin, nan, up).anywhere);
}

} // namespace velmora::test

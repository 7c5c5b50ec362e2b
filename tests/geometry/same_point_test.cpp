#include "same_point.h"

#include <limits>

#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using Point = zVec<double>;

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(SamePoint, IsRelativeToTheLargestCoordinateOfBoth) {
    EXPECT_TRUE(samePoint(Point(1, 0, 0), Point(1 + 0.9e-10, 0, 0)));
    EXPECT_FALSE(samePoint(Point(1, 0, 0), Point(1 + 1.1e-10, 0, 0)));
    EXPECT_TRUE(samePoint(Point(1, 1e-12, 0), Point(1, -5e-11, 0)));
    EXPECT_FALSE(samePoint(Point(1e-12, 0, 0), Point(-5e-11, 0, 0)));
    EXPECT_TRUE(samePoint(Point(0, 0, 0), Point(-0.0, 0, 0)));
    EXPECT_FALSE(samePoint(Point(0, 0, 0), Point(1e-300, 0, 0)));
}

TEST(SamePoint, TakesTheCallersTolerance) {
    EXPECT_TRUE(samePoint(Point(100, 0, 0), Point(100, 0.00999, 0), 1e-4));
    EXPECT_FALSE(samePoint(Point(100, 0, 0), Point(100, 0.01001, 0), 1e-4));
    EXPECT_FALSE(samePoint(Point(0, 0, 0), Point(1e-20, 0, 0), 0.5));
}

TEST(SamePoint, WithoutNumbersIsNotEvenTheSameAsItself) {
    EXPECT_FALSE(samePoint(Point(infinite, 0, 0), Point(infinite, 0, 0)));
    EXPECT_FALSE(samePoint(Point(notANumber, 0, 0), Point(notANumber, 0, 0), 1));
}

TEST(SamePoint, SaysTheSameOfThreeNumbersInARow) {
    EXPECT_TRUE(samePoint({1.0, 2.0, 3.0}, std::array<double, 3>{1.0, 2.0, 3.0 + 2e-10}));
    EXPECT_FALSE(samePoint({1.0, 2.0, 3.0}, std::array<double, 3>{1.0, 2.0, 3.0 + 4e-10}));
}

TEST(DoublePoint, ComparesWithTheLargestCoordinateOfBoth) {
    // 0.5 of 1e10 is 5e-11, 2 of 1e10 is 2e-10.
    EXPECT_TRUE(isDoublePoint({1e10, 0, 0}, {1e10 + 0.5, 0, 0}));
    EXPECT_FALSE(isDoublePoint({1e10, 0, 0}, {1e10 + 2.0, 0, 0}));
    // Any coordinate sets the scale for all.
    EXPECT_TRUE(isDoublePoint({0, 0.5, -1e10}, {0, 0, -1e10}));
    EXPECT_FALSE(isDoublePoint({0, 0.5, 1e9}, {0, 0, 1e9}));
    EXPECT_TRUE(isDoublePoint({1, 2, 3}, {1, 2, 3}));
    EXPECT_FALSE(isDoublePoint({1, 2, 3}, {1, 2, 3.0001}));
}

TEST(DoublePoint, TestsEachCoordinate) {
    EXPECT_FALSE(isDoublePoint({1, 0, 0}, {1, 0.1, 0}));
    EXPECT_FALSE(isDoublePoint({1, 0, 0}, {1, 0, -0.1}));
    EXPECT_FALSE(isDoublePoint({1, 0, 0}, {0.9, 0, 0}));
}

TEST(DoublePoint, TinyPointsAreApartByTheirOwnMeasure) {
    EXPECT_FALSE(isDoublePoint({1e-12, 0, 0}, {2e-12, 0, 0}));
    EXPECT_FALSE(isDoublePoint({0, 0, 0}, {1e-300, 0, 0}));
}

TEST(DoublePoint, TwoOriginsDoAlthoughNothingCanBeDivided) {
    EXPECT_TRUE(isDoublePoint({0, 0, 0}, {0, 0, 0}));
    EXPECT_TRUE(isDoublePoint({-0.0, 0, 0}, {0, 0, -0.0}));
}

TEST(DoublePoint, ATenBillionthItselfIsApart) {
    // 1 of 1e10, the numbers exact.
    EXPECT_FALSE(isDoublePoint({1e10, 0, 0}, {1e10 - 1.0, 0, 0}));
}

TEST(DoublePoint, NoNumberCoincidesWithNothing) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(isDoublePoint({none, 0, 0}, {none, 0, 0}));
}

TEST(WithinReach, IsALengthOnEachAxis) {
    EXPECT_TRUE(withinReach({1, 2, 3}, {1.5, 1.5, 3.5}, 0.75));
    EXPECT_FALSE(withinReach({1, 2, 3}, {1.75, 2, 3}, 0.75)) << "as far as the reach is too far";
    EXPECT_FALSE(withinReach({1, 2, 3}, {1, 1, 3}, 0.75));
    EXPECT_FALSE(withinReach({1, 2, 3}, {1, 2, 4}, 0.75));
    EXPECT_FALSE(withinReach({notANumber, 0, 0}, {notANumber, 0, 0}, 1));
}

TEST(SameCoordinates, MeasuresEachByItsOwnSum) {
    // A part of 0.25: 3 and 5 differ by 2, a quarter of their sum; 4 and 5 by less.
    EXPECT_TRUE(sameCoordinates({4, 4, -4}, {5, 5, -5}, 0.25));
    EXPECT_FALSE(sameCoordinates({3, 4, 4}, {5, 5, 5}, 0.25));
    EXPECT_FALSE(sameCoordinates({4, 3, 4}, {5, 5, 5}, 0.25));
    EXPECT_FALSE(sameCoordinates({4, 4, 3}, {5, 5, 5}, 0.25));
    EXPECT_FALSE(sameCoordinates({0, 4, 4}, {0, 4, 4}, 0.25)) << "two zeros have no sum to measure by";
}

} // namespace velmora::test

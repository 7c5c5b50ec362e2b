#include "SharedPoints.h"

#include <limits>

#include <gtest/gtest.h>

namespace velmora::test {

namespace {

/// Of ten by ten by ten points, along x first.
zVec<double> pointOfLattice(int i) {
    const int column = i % 10;
    const int row = i / 10 % 10;
    const int layer = i / 100;
    return {1.0 * column, 1.0 * row, 0.1 * layer};
}

} // namespace

TEST(SharedPoints, EqualCoordinatesHaveOneNumber) {
    SharedPoints points;
    EXPECT_EQ(points.numberOf({1, 2, 3}), 0);
    EXPECT_EQ(points.numberOf({3, 2, 1}), 1);
    EXPECT_EQ(points.numberOf({1, 2, 3}), 0);
    EXPECT_EQ(points.count(), 2);
    EXPECT_EQ(points.at(1), zVec<double>(3, 2, 1));
}

TEST(SharedPoints, NegativeZeroEqualsZero) {
    SharedPoints points;
    EXPECT_EQ(points.numberOf({0.0, -0.0, 5}), points.numberOf({-0.0, 0.0, 5}));
}

TEST(SharedPoints, ThereIsNoTolerance) {
    SharedPoints points;
    const double next = std::nextafter(1.0, 2.0);
    EXPECT_EQ(points.numberOf({1, 1, 1}), 0);
    EXPECT_EQ(points.numberOf({1, 1, next}), 1);
    EXPECT_EQ(points.numberOf({next, 1, 1}), 2);
}

TEST(SharedPoints, WhatIsNoNumberEqualsNothing) {
    SharedPoints points;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(points.numberOf({0, nan, 0}), 0);
    EXPECT_EQ(points.numberOf({0, nan, 0}), 1);
}

TEST(SharedPoints, GrowsBeyondWhatWasExpected) {
    SharedPoints points(3);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    points.numberOf({nan, 0, 0});
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(points.numberOf(pointOfLattice(i)), i + 1);
    }
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(points.numberOf(pointOfLattice(i)), i + 1);
    }
    EXPECT_EQ(points.count(), 1001);
}

} // namespace velmora::test

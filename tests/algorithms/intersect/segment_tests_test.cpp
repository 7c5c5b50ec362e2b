#include "segment_tests.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using Vector = zVec<double>;

} // namespace

TEST(LineDistance, IsThatFromTheInfiniteLine) {
    EXPECT_DOUBLE_EQ(lineDistance({0, 0, 0}, {2, 0, 0}, {17, 3, 4}), 5);
    EXPECT_DOUBLE_EQ(lineDistance({1, 1, 1}, {1, 1, 1 + 1e-9}, {1, 4, 5}), 5);
}

TEST(PointOnSegment, IsOnWithinAPartOfTheLength) {
    const Vector a(0, 0, 0);
    const Vector b(10, 0, 0);
    const SegmentPlace on = pointOnSegment(a, b, {4, 0.0000099, 0}, 1e-5);
    EXPECT_EQ(on.kind, SegmentPlace::On);
    EXPECT_NEAR(on.t, 0.4, 1e-11);
    EXPECT_EQ(pointOnSegment(a, b, {4, 0.000101, 0}, 1e-5).kind, SegmentPlace::Off);
    EXPECT_EQ(pointOnSegment(a, b, {10.1, 0, 0}, 1e-5).kind, SegmentPlace::Off);
    EXPECT_EQ(pointOnSegment(a, b, {-0.1, 0, 0}, 1e-5).kind, SegmentPlace::Off);
}

TEST(PointOnSegment, LetsProductsUpToNearZeroThrough) {
    // Of the flat direction y rounding leaves 9e-5: its square is below 1e-8.
    EXPECT_EQ(pointOnSegment({0, 0, 0}, {1, 0, 0}, {0.5, 9e-5, 0}, 0.001).kind, SegmentPlace::On);
    EXPECT_EQ(pointOnSegment({0, 0, 0}, {1, 0, 0}, {0.5, 1.1e-4, 0}, 0.001).kind, SegmentPlace::Off);
}

TEST(PointOnSegment, IsCoincidentAtTheBeginAndOnNoLength) {
    EXPECT_EQ(pointOnSegment({1, 1, 1}, {1, 1, 1 + 1e-9}, {5, 5, 5}, 1).kind, SegmentPlace::Coincident);
    EXPECT_EQ(pointOnSegment({0, 0, 0}, {1, 0, 0}, {5e-9, 0, 0}, 0.001).kind, SegmentPlace::Coincident);
    const SegmentPlace end = pointOnSegment({0, 0, 0}, {1, 0, 0}, {1, 0, 0}, 0.001);
    EXPECT_EQ(end.kind, SegmentPlace::On);
    EXPECT_EQ(end.t, 1);
}

TEST(LiesBetween, AcceptsTheEndsAndWhatIsBetweenThem) {
    EXPECT_TRUE(liesBetween({0, 0, -1}, {0, 0, 1}, {0, 0, -1}));
    EXPECT_TRUE(liesBetween({0, 0, 0.3}, {0, 0, 1}, {0, 0, -1}));
    EXPECT_FALSE(liesBetween({0, 0, 1.01}, {0, 0, 1}, {0, 0, -1}));
}

} // namespace velmora::test

#include "nearest_on_triangle.h"

#include <gtest/gtest.h>

#include "compare_reference.h"
#include "curve_samples.h"
#include "vectors.h"

namespace velmora::test {

namespace {

using Vector = zVec<double>;

/// The triangle (0, 0, 0), (4, 0, 0), (0, 3, 0) in any order of its corners.
void expectNearest(const Vector& point, const Vector& place) {
    const Vector a(0, 0, 0);
    const Vector b(4, 0, 0);
    const Vector c(0, 3, 0);
    // The foot is summed up from another corner each time: two units in the last place.
    EXPECT_LT(distance(nearestOnTriangle(point, a, b, c), place), 1e-15);
    EXPECT_LT(distance(nearestOnTriangle(point, b, c, a), place), 1e-15);
    EXPECT_LT(distance(nearestOnTriangle(point, c, b, a), place), 1e-15);
}

} // namespace

TEST(NearestOnTriangle, AbovePlacesAreTheFoot) {
    expectNearest({1, 1, 5}, {1, 1, 0});
    expectNearest({1, 0.5, -2}, {1, 0.5, 0});
}

TEST(NearestOnTriangle, BesideItIsABorder) {
    expectNearest({1, -2, 1}, {1, 0, 0});
    expectNearest({-7, 2, 0}, {0, 2, 0});
    const Vector place = nearestOnTriangle({2 + 3, 1.5 + 4, 1}, {0, 0, 0}, {4, 0, 0}, {0, 3, 0});
    EXPECT_NEAR(distance(place, {2, 1.5, 0}), 0.0, 1e-15) << "the middle of the longest side";
}

TEST(NearestOnTriangle, BeyondTheCornersItIsACorner) {
    expectNearest({-1, -1, 3}, {0, 0, 0});
    expectNearest({9, -1, 0}, {4, 0, 0});
    expectNearest({-1, 9, 0}, {0, 3, 0});
}

TEST(NearestOnTriangle, TrianglesThatAreSegmentsAndPoints) {
    const Vector a(0, 0, 0);
    const Vector b(4, 0, 0);
    EXPECT_EQ(nearestOnTriangle({1, 2, 0}, a, b, b), Vector(1, 0, 0));
    EXPECT_EQ(nearestOnTriangle({1, 2, 0}, a, a, b), Vector(1, 0, 0));
    EXPECT_EQ(nearestOnTriangle({1, 2, 0}, a, b, a), Vector(1, 0, 0));
    EXPECT_EQ(nearestOnTriangle({3, 2, 0}, a, {2, 0, 0}, b), Vector(3, 0, 0));
    EXPECT_EQ(nearestOnTriangle({3, 2, 0}, b, b, b), b);
}

TEST(NearestOnTriangle, FindsWhatTheRegionsOfATriangleGive) {
    samples::Source source(7);
    for (int round = 0; round < 20000; ++round) {
        const auto any = [&source](double size) {
            return Vector(source.real(-size, size), source.real(-size, size), source.real(-size, size));
        };
        const Vector a = any(1);
        const Vector b = any(1);
        Vector c = any(1);
        if (source.once(4)) { // thin
            c = a + (b - a) * source.real(-1, 2) + any(source.once(2) ? 1e-9 : 1e-5);
        }
        const Vector point = source.once(3) ? a + (b - a) * source.real(0, 1) + any(1e-3) : any(3);
        const double found = distance(point, nearestOnTriangle(point, a, b, c));
        const double expected = reference::distanceToTriangle(point, a, b, c);
        ASSERT_NEAR(found, expected, 1e-8) << "round " << round;
    }
}

} // namespace velmora::test

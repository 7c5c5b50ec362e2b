#include "zVec.h"

#include <limits>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

namespace velmora {
namespace {

using Vector = zVec<double>;

const Vector a(1, 2, 3);
const Vector b(-4, 8, 0.5);

TEST(zVec, IsTheOriginByDefault) {
    const Vector v;
    EXPECT_EQ(v.x, 0);
    EXPECT_EQ(v.y, 0);
    EXPECT_EQ(v.z, 0);
}

TEST(zVec, HoldsItsCoordinatesInOrder) {
    EXPECT_EQ(a.x, 1);
    EXPECT_EQ(a.y, 2);
    EXPECT_EQ(a.z, 3);
}

TEST(zVec, DestructorIsVirtual) {
    EXPECT_TRUE(std::has_virtual_destructor_v<Vector>);
}

TEST(zVec, CopiesAreTheirOwn) {
    Vector copy = a;
    copy.y = 9;
    EXPECT_EQ(a, Vector(1, 2, 3));
    copy = b;
    EXPECT_EQ(copy, b);
    EXPECT_EQ(std::exchange(copy, a), b);
}

TEST(zVec, AddsAndSubtractsByComponent) {
    EXPECT_EQ(a + b, Vector(-3, 10, 3.5));
    EXPECT_EQ(a - b, Vector(5, -6, 2.5));
}

TEST(zVec, ScalesEveryComponent) {
    EXPECT_EQ(b * 2, Vector(-8, 16, 1));
    EXPECT_EQ(b * 0, Vector());
}

TEST(zVec, OperationsLeaveTheirOperandsAlone) {
    const Vector left = a;
    const Vector right = b;
    (void)(left + right);
    (void)(left - right);
    (void)(left * 3);
    (void)cross(left, right);
    EXPECT_EQ(left, a);
    EXPECT_EQ(right, b);
}

TEST(zVec, CrossProductOfTheAxesIsRightHanded) {
    const Vector x(1, 0, 0);
    const Vector y(0, 1, 0);
    const Vector z(0, 0, 1);
    EXPECT_EQ(cross(x, y), z);
    EXPECT_EQ(cross(y, z), x);
    EXPECT_EQ(cross(z, x), y);
    EXPECT_EQ(cross(y, x), Vector(0, 0, -1));
}

TEST(zVec, CrossProductByHand) {
    // (2 * 0.5 - 3 * 8, 3 * -4 - 1 * 0.5, 1 * 8 - 2 * -4)
    EXPECT_EQ(cross(a, b), Vector(-23, -12.5, 16));
    EXPECT_EQ(cross(a, a), Vector());
}

TEST(zVec, DotProductByHand) {
    EXPECT_EQ(dot(a, b), -4 + 16 + 1.5);
    EXPECT_EQ(dot(a, cross(a, b)), 0);
}

TEST(zVec, EqualityIsExactInAllThreeCoordinates) {
    EXPECT_FALSE(a == Vector(1, 2, 3.0000000000000004));
    EXPECT_FALSE(a == Vector(1, 2.5, 3));
    EXPECT_FALSE(a == Vector(0, 2, 3));
    EXPECT_EQ(Vector(0, 0, 0), Vector(-0.0, -0.0, -0.0));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(Vector(nan, 0, 0) == Vector(nan, 0, 0));
}

} // namespace
} // namespace velmora

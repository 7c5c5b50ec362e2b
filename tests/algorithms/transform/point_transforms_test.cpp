#include "point_transforms.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "axis_rotation_reference.h"

namespace velmora {
namespace {

using Vec = zVec<double>;

constexpr double quarterTurnError = 2e-9; // 90 times what 0.01745329 lacks of pi / 180, to be safe

Vec turned(const Vec& point, const RotationAxis& about) {
    RotationAxis axis = about;
    return rotatePoint(point, axis).value();
}

void expectNear(const Vec& point, const Vec& wanted, double tolerance) {
    EXPECT_NEAR(point.x, wanted.x, tolerance);
    EXPECT_NEAR(point.y, wanted.y, tolerance);
    EXPECT_NEAR(point.z, wanted.z, tolerance);
}

TEST(ScaledPoint, MovesAwayFromTheCentreOnEachAxisAlike) {
    EXPECT_EQ(scaledPoint({3, 5, 7}, {1, 1, 1}, 2.0), (Vec{5, 9, 13}));
    EXPECT_EQ(scaledPoint({3, 5, 7}, {1, 1, 1}, 0.0), (Vec{1, 1, 1}));
    EXPECT_EQ(scaledPoint({3, 5, 7}, {1, 1, 1}, -1.0), (Vec{-1, -3, -5}));
}

TEST(ReflectedPoint, ChangesTheCoordinateOfThePlaneAlone) {
    EXPECT_EQ(reflectedPoint({3, 5, 7}, {&Vec::x, 1.0}), (Vec{-1, 5, 7}));
    EXPECT_EQ(reflectedPoint({3, 5, 7}, {&Vec::y, 1.0}), (Vec{3, -3, 7}));
    EXPECT_EQ(reflectedPoint({3, 5, 7}, {&Vec::z, 10.0}), (Vec{3, 5, 13}));
}

TEST(AxisFoot, IsAbsentForAnAxisShorterThanAMillionth) {
    Vec foot{7, 7, 7};
    double distance = 7;
    EXPECT_EQ(axisFoot({0, 0, 0}, {0.9e-6, 0, 0}, {0, 1, 0}, foot, distance), 0);
    EXPECT_EQ(foot, (Vec{7, 7, 7}));
    EXPECT_EQ(distance, 7);
    EXPECT_EQ(axisFoot({0, 0, 0}, {1.1e-6, 0, 0}, {0, 1, 0}, foot, distance), 2);
}

TEST(AxisFoot, UprightOverAnEndIsThatEndToItsWholeDistance) {
    Vec foot;
    double distance = 0;
    // The cosine at the end is 0.5 / 10000.25, below a ten thousandth: the end itself is taken.
    EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, {0.5, 10000, 0}, foot, distance), 2);
    EXPECT_EQ(foot, (Vec{0, 0, 0}));
    EXPECT_DOUBLE_EQ(distance, std::sqrt(10000.0 * 10000.0 + 0.25));
    EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, {1, 3, 4}, foot, distance), 2);
    EXPECT_EQ(foot, (Vec{1, 0, 0}));
    EXPECT_EQ(distance, 5);
}

TEST(AxisFoot, UprightIsACosineBelowATenThousandth) {
    Vec foot;
    double distance = 0;
    // At a height of 1 the cosine at an end is the way along the axis, to nine digits.
    EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, {0.000099, 1, 0}, foot, distance), 2);
    EXPECT_EQ(foot, (Vec{0, 0, 0}));
    EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, {0.000101, 1, 0}, foot, distance), -1);
    expectNear(foot, {0.000101, 0, 0}, 1e-12);
    EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, {1 - 0.000099, 1, 0}, foot, distance), 2);
    EXPECT_EQ(foot, (Vec{1, 0, 0}));
    EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, {1 - 0.000101, 1, 0}, foot, distance), -1);
    expectNear(foot, {1 - 0.000101, 0, 0}, 1e-12);
}

TEST(AxisFoot, BetweenTheEndsHasCodeMinusOne) {
    Vec foot;
    double distance = 0;
    EXPECT_EQ(axisFoot({0, 0, 0}, {4, 0, 0}, {1, 2, 0}, foot, distance), -1);
    expectNear(foot, {1, 0, 0}, 1e-15);
    EXPECT_NEAR(distance, 2, 1e-15);
}

TEST(AxisFoot, BeyondTheSecondPointHasCodeOneAndBeforeTheFirstMinusOne) {
    Vec foot;
    double distance = 0;
    EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, {3, 2, 0}, foot, distance), 1);
    expectNear(foot, {3, 0, 0}, 1e-6);
    EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, {-3, 2, 0}, foot, distance), -1);
    expectNear(foot, {-3, 0, 0}, 1e-6);
}

TEST(AxisFoot, BeyondTheEndsGoesThroughSinglePrecision) {
    Vec foot;
    double distance = 0;
    // The exact foot is at 0.1 beyond or before the end: in single precision that is another number.
    axisFoot({0, 0, 0}, {1, 0, 0}, {1.1, 1, 0}, foot, distance);
    EXPECT_EQ(foot.x, static_cast<double>(static_cast<float>(foot.x)));
    EXPECT_NE(foot.x, 1.1);
    EXPECT_EQ(distance, static_cast<double>(static_cast<float>(distance)));
    axisFoot({0, 0, 0}, {1, 0, 0}, {-0.1, 1, 0}, foot, distance);
    EXPECT_EQ(foot.x, static_cast<double>(-0.1F));
    EXPECT_EQ(distance, static_cast<double>(static_cast<float>(distance)));
}

TEST(AxisFoot, InAnEndLeavesFootAndDistanceAsTheyWere) {
    for (const Vec& end : {Vec{0, 0, 0}, Vec{1, 0, 0}}) {
        Vec foot{7, 7, 7};
        double distance = 7;
        EXPECT_EQ(axisFoot({0, 0, 0}, {1, 0, 0}, end, foot, distance), -1);
        EXPECT_EQ(foot, (Vec{7, 7, 7}));
        EXPECT_EQ(distance, 7);
    }
}

TEST(RotatePoint, AQuarterAboutTheXAxisTakesYToZ) {
    const RotationAxis axis{{0, 0, 0}, {1, 0, 0}, 90.0};
    const double angle = 90.0 * 0.01745329;
    EXPECT_EQ(turned({0, 1, 0}, axis), (Vec{0, std::cos(angle), std::sin(angle)}));
    expectNear(turned({0, 1, 0}, axis), {0, 0, 1}, 5e-7);
    EXPECT_GT(std::abs(turned({0, 1, 0}, axis).y), quarterTurnError); // not pi to full precision
}

TEST(RotatePoint, KeepsItsDirectionBeforeBetweenAndBeyondTheEnds) {
    for (const double x : {-3.0, 0.25, 4.0}) {
        expectNear(turned({x, 2, 0}, {{0, 0, 0}, {1, 0, 0}, 90.0}), {x, 0, 2}, 2e-6);
        expectNear(turned({x, 2, 0}, {{0, 0, 0}, {1, 0, 0}, -90.0}), {x, 0, -2}, 2e-6);
    }
}

TEST(RotatePoint, IsRefusedWithoutAnAxis) {
    RotationAxis axis{{1, 2, 3}, {1, 2, 3}, 90.0};
    EXPECT_FALSE(rotatePoint({0, 1, 0}, axis).has_value());
    EXPECT_EQ(axis.to, (Vec{1, 2, 3}));
}

TEST(RotatePoint, MovesTheEndAwayWhenTheFootFallsOnIt) {
    RotationAxis axis{{1, 0, 0}, {3, 0, 0}, 90.0};
    expectNear(rotatePoint({3, 1, 0}, axis).value(), {3, 0, 1}, 5e-7);
    EXPECT_EQ(axis.to, (Vec{4, 0, 0}));
    // What follows uses the moved end.
    rotatePoint({3, 1, 0}, axis);
    EXPECT_EQ(axis.to, (Vec{4, 0, 0}));
    rotatePoint({4, 1, 0}, axis);
    EXPECT_EQ(axis.to, (Vec{5.5, 0, 0}));
}

TEST(RotatePoint, StaysOnTheAxis) {
    const RotationAxis axis{{0, 0, 0}, {1, 0, 0}, 90.0};
    for (const Vec& point :
         {Vec{0.5, 0, 0}, Vec{0, 0, 0}, Vec{1, 0, 0}, Vec{-2, 0, 0}, Vec{3, 0, 0}, Vec{0.5, 0.9e-4, 0}}) {
        EXPECT_EQ(turned(point, axis), point);
    }
    EXPECT_NE(turned({0.5, 1.1e-4, 0}, axis), (Vec{0.5, 1.1e-4, 0}));
}

TEST(RotatePoint, OfWhatIsNoNumberComesToAnEnd) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    RotationAxis axis{{0, 0, 0}, {1, 0, 0}, 90.0};
    EXPECT_TRUE(rotatePoint({nan, 0, 0}, axis).has_value());
    EXPECT_TRUE(rotatePoint({0, infinity, 0}, axis).has_value());
    RotationAxis wild{{0, 0, 0}, {nan, 0, 0}, 90.0};
    EXPECT_TRUE(rotatePoint({0, 1, 0}, wild).has_value());
    RotationAxis far{{0, 0, 0}, {infinity, 0, 0}, 90.0};
    EXPECT_TRUE(rotatePoint({0, 1, 0}, far).has_value());
}

TEST(RotatePoint, AgreesWithThePlainFormToTheLastBit) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> real(-3, 3);
    std::uniform_int_distribution<int> whole(-2, 2);
    for (int round = 0; round < 20000; ++round) {
        // Whole numbers bring feet on the ends, points on the axis and axes without a length.
        const auto number = [&] { return round % 2 == 0 ? real(random) : static_cast<double>(whole(random)); };
        const reference::Triple a{number(), number(), number()};
        reference::Triple b{number(), number(), number()};
        reference::Triple p{number(), number(), number()};
        const double degrees = 60.0 * number();
        RotationAxis axis{{a[0], a[1], a[2]}, {b[0], b[1], b[2]}, degrees};
        const auto result = rotatePoint({p[0], p[1], p[2]}, axis);
        const bool there = reference::turn(p, a, b, degrees);
        ASSERT_EQ(result.has_value(), there);
        ASSERT_EQ(axis.to, (Vec{b[0], b[1], b[2]}));
        if (there) {
            ASSERT_EQ(*result, (Vec{p[0], p[1], p[2]})) << round;
        }
    }
}

TEST(TransformPoints, ThatIsEndedLeavesTheListAsItWas) {
    PointList points = {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
    const PointList before = points;
    int left = 2;
    const PointMap map = [&left](const Vec& p) { return left-- > 0 ? std::optional(p * 2.0) : std::optional<Vec>(); };
    EXPECT_FALSE(transformPoints(points, map));
    EXPECT_EQ(points, before);
    left = 3;
    EXPECT_TRUE(transformPoints(points, map));
    EXPECT_EQ(points, (PointList{{2, 0, 0}, {4, 0, 0}, {6, 0, 0}}));
}

TEST(TransformPatch, ThatIsEndedLeavesThePatchAsItWas) {
    Patch patch = {{{1, 0, 0}}, {{2, 0, 0}}};
    const Patch before = patch;
    int left = 1;
    const PointMap map = [&left](const Vec& p) { return left-- > 0 ? std::optional(p * 2.0) : std::optional<Vec>(); };
    EXPECT_FALSE(transformPatch(patch, map));
    EXPECT_EQ(patch, before);
}

} // namespace
} // namespace velmora

#include "curve_values.h"

#include <cmath>
#include <numbers>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using Vector = zVec<double>;

const auto none = testing::Eq(std::nullopt);

} // namespace

TEST(CurveValues, StepsGrowthAndLengthOfAStraightLine) {
    const CurveValues values = curveValues({{0, 0, 0}, {1, 0, 0}, {4, 0, 0}, {6, 0, 0}});
    EXPECT_THAT(values.steps, ElementsAre(1.0, 3.0, 2.0));
    EXPECT_THAT(values.growth, ElementsAre(none, Optional(3.0), Optional(1.5), none));
    EXPECT_THAT(values.curvature, ElementsAre(none, Optional(0.0), Optional(0.0), none));
    EXPECT_THAT(values.length, ElementsAre(0.0, 1.0, 4.0, 6.0));
    EXPECT_EQ(values.points.size(), 4U);
}

TEST(CurveValues, CurvatureIsOneByTheRadius) {
    PointList arc;
    for (const double degrees : {0.0, 20.0, 50.0, 110.0, 200.0}) {
        const double t = degrees * std::numbers::pi / 180.0;
        arc.push_back({5.0, 3.0 + 4.0 * std::cos(t), 4.0 * std::sin(t)});
    }
    const CurveValues values = curveValues(arc);
    for (const std::size_t i : {1, 2, 3}) {
        EXPECT_THAT(values.curvature[i], Optional(testing::DoubleNear(0.25, 1e-14)));
    }
}

TEST(CurveValues, ARightAngleHasItsCircleOnTheHypotenuse) {
    // Legs 3 and 4: the circle's radius is 2.5.
    EXPECT_THAT(curvatureOf({3, 0, 0}, {0, 0, 0}, {0, 4, 0}), Optional(DoubleEq(0.4)));
}

TEST(CurveValues, ARepeatedPointHasNeitherGrowthNorCurvature) {
    const CurveValues values = curveValues({{0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {1, 2, 0}});
    EXPECT_THAT(values.steps, ElementsAre(1.0, 0.0, 2.0));
    EXPECT_THAT(values.growth, ElementsAre(none, none, none, none));
    EXPECT_THAT(values.curvature, ElementsAre(none, none, none, none));
    EXPECT_THAT(values.length, ElementsAre(0.0, 1.0, 1.0, 3.0));
}

TEST(CurveValues, AStepThereAndBackMakesNoCircle) {
    const CurveValues values = curveValues({{0, 0, 0}, {1, 0, 0}, {0, 0, 0}});
    EXPECT_THAT(values.growth, ElementsAre(none, Optional(1.0), none));
    EXPECT_THAT(values.curvature, ElementsAre(none, none, none));
}

TEST(CurveValues, ShortCurves) {
    EXPECT_THAT(curveValues({}).steps, IsEmpty());
    EXPECT_THAT(curveValues({}).length, IsEmpty());
    const CurveValues one = curveValues({{1, 2, 3}});
    EXPECT_THAT(one.steps, IsEmpty());
    EXPECT_THAT(one.length, ElementsAre(0.0));
    EXPECT_THAT(one.growth, ElementsAre(none));
    const CurveValues two = curveValues({{0, 0, 0}, {3, 0, 4}});
    EXPECT_THAT(two.steps, ElementsAre(5.0));
    EXPECT_THAT(two.growth, ElementsAre(none, none));
    EXPECT_THAT(two.length, ElementsAre(0.0, 5.0));
}

} // namespace velmora::test

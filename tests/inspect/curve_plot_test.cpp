#include "curve_plot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Along x, with steps of 1, 2 and 4.
PointList growing() {
    return {{0, 0, 0}, {1, 0, 0}, {3, 0, 0}, {7, 0, 0}};
}

std::vector<double> valuesOf(const PlotCurve& curve) {
    std::vector<double> values;
    for (const auto& piece : curve.pieces) {
        for (const PlotPoint& point : piece) {
            values.push_back(point.value);
        }
    }
    return values;
}

std::vector<double> placesOf(const PlotCurve& curve) {
    std::vector<double> places;
    for (const auto& piece : curve.pieces) {
        for (const PlotPoint& point : piece) {
            places.push_back(point.along);
        }
    }
    return places;
}

TEST(CurvePlot, AStepStandsInItsMiddleAndNamesItsFirstPoint) {
    const CurvePlot plot = curvePlot(PlotQuantity::Step, growing(), {});
    EXPECT_THAT(valuesOf(plot.curve), ElementsAre(1, 2, 4));
    EXPECT_THAT(placesOf(plot.curve), ElementsAre(0.5, 2, 5));
    EXPECT_EQ(plot.curve.pieces.at(0).at(2).point, 2);
    EXPECT_EQ(plot.alongEnd, 5);
    EXPECT_DOUBLE_EQ(plot.lowest, 1 - 0.12) << "4 % of the range, which is 3";
    EXPECT_DOUBLE_EQ(plot.highest, 4 + 0.12);
}

TEST(CurvePlot, GrowthHasNoValueAtTheEnds) {
    const CurvePlot plot = curvePlot(PlotQuantity::Growth, growing(), {});
    EXPECT_THAT(valuesOf(plot.curve), ElementsAre(2, 2));
    EXPECT_THAT(placesOf(plot.curve), ElementsAre(1, 3));
}

TEST(CurvePlot, CurvatureOfARightAngleIsOneByItsCircle) {
    // The circle through the corners of a right angle has the far side, 5, as its diameter.
    const CurvePlot plot = curvePlot(PlotQuantity::Curvature, {{3, 0, 0}, {0, 0, 0}, {0, 4, 0}}, {});
    EXPECT_THAT(valuesOf(plot.curve), ElementsAre(testing::DoubleEq(0.4)));
}

TEST(CurvePlot, CoordinatesStandOverTheLength) {
    const CurvePlot plot = curvePlot(PlotQuantity::Y, {{0, 5, 0}, {0, 2, 0}, {4, 2, 0}}, {});
    EXPECT_THAT(valuesOf(plot.curve), ElementsAre(5, 2, 2));
    EXPECT_THAT(placesOf(plot.curve), ElementsAre(0, 3, 7));
    EXPECT_THAT(valuesOf(curvePlot(PlotQuantity::X, growing(), {}).curve), ElementsAre(0, 1, 3, 7));
    EXPECT_THAT(valuesOf(curvePlot(PlotQuantity::Z, {{0, 0, 9}}, {}).curve), ElementsAre(9));
}

TEST(CurvePlot, APieceEndsWhereThereIsNoValue) {
    // Two points in one place: no growth beside the step of 0.
    const CurvePlot plot =
        curvePlot(PlotQuantity::Growth, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}}, {});
    ASSERT_EQ(plot.curve.pieces.size(), 2U);
    EXPECT_EQ(plot.curve.pieces[0][0].point, 1);
    EXPECT_EQ(plot.curve.pieces[1][0].point, 4);
}

TEST(CurvePlot, NeighboursWidenTheRanges) {
    const CurvePlot plot = curvePlot(PlotQuantity::X, growing(), {{{-2, 0, 0}, {8, 0, 0}}, {}});
    ASSERT_EQ(plot.neighbours.size(), 2U);
    EXPECT_THAT(valuesOf(plot.neighbours[0]), ElementsAre(-2, 8));
    EXPECT_THAT(plot.neighbours[1].pieces, IsEmpty());
    EXPECT_EQ(plot.alongEnd, 10);
    EXPECT_DOUBLE_EQ(plot.lowest, -2.4);
    EXPECT_DOUBLE_EQ(plot.highest, 8.4);
}

TEST(CurvePlot, WhatIsTheSameEverywhereStandsInTheMiddle) {
    const CurvePlot plot = curvePlot(PlotQuantity::Z, growing(), {});
    EXPECT_LT(plot.lowest, 0.0);
    EXPECT_EQ(placeIn({0, 0, 100, 50}, plot, 0.0, 0.0).y, 25.0);
    EXPECT_THAT(curvePlot(PlotQuantity::Step, {}, {}).curve.pieces, IsEmpty());
}

TEST(CurvePlot, TheEndsOfTheRangeStandBesideTheFrame) {
    // 4 % above and below: of the height, 108 parts, the lowest value is 4 from below and the highest 4 from above.
    const CurvePlot plot = curvePlot(PlotQuantity::X, growing(), {});
    EXPECT_NEAR(placeIn({0, 0, 100, 108}, plot, 0.0, 0.0).y, 104.0, 1e-9);
    EXPECT_NEAR(placeIn({0, 0, 100, 108}, plot, 0.0, 7.0).y, 4.0, 1e-9);
    const double far = 1e308;
    const CurvePlot wide =
        curvePlot(PlotQuantity::X, {{-far, 0, 0}, {-far, 0, 0}}, {{{far * 1.7, 0, 0}, {far * 1.7, 0, 0}}});
    EXPECT_TRUE(std::isfinite(wide.lowest) && std::isfinite(wide.highest));
}

TEST(CurvePlot, ACurveMayHaveNoValue) {
    EXPECT_TRUE(curvePlot(PlotQuantity::Growth, {{0, 0, 0}, {1, 0, 0}}, {}).hasCurve);
    EXPECT_FALSE(curvePlot(PlotQuantity::Growth, {}, {growing()}).hasCurve);
}

TEST(CurvePlot, WhatIsNotFiniteHasNoPlace) {
    const double far = 1e200; // its square is beyond all numbers
    const CurvePlot plot = curvePlot(PlotQuantity::X, {{0, 0, 0}, {1, 0, 0}, {far, 0, 0}}, {});
    EXPECT_THAT(valuesOf(plot.curve), ElementsAre(0, 1));
}

TEST(AxisMarks, AreRoundNumbersInsideOfTheRange) {
    EXPECT_THAT(axisMarks(0, 10, 6), ElementsAre(0, 2, 4, 6, 8, 10));
    EXPECT_THAT(axisMarks(-1, 1, 5), ElementsAre(-1, -0.5, 0, 0.5, 1));
    EXPECT_THAT(axisMarks(12, 57, 5), ElementsAre(20, 30, 40, 50));
    EXPECT_THAT(axisMarks(3, 3, 5), IsEmpty());
    EXPECT_THAT(axisMarks(0, 10, 0), IsEmpty());
}

TEST(PlotFrame, HasItsLowestValueBelowAndTheStartAtTheLeft) {
    const CurvePlot plot = curvePlot(PlotQuantity::X, growing(), {});
    const PlotFrame frame{10, 20, 70, 151.2}; // 140 for the range of 7, and 4 % of that below and above
    EXPECT_EQ(placeIn(frame, plot, 0, 0).x, 10);
    EXPECT_NEAR(placeIn(frame, plot, 0, 0).y, 165.6, 1e-9);
    EXPECT_EQ(placeIn(frame, plot, 7, 7).x, 80);
    EXPECT_NEAR(placeIn(frame, plot, 7, 7).y, 25.6, 1e-9);
}

TEST(PlotFrame, FindsThePointWhoseMarkIsNearest) {
    const CurvePlot plot = curvePlot(PlotQuantity::X, growing(), {});
    const PlotFrame frame{0, 0, 70, 70};
    const auto found = nearestIn(frame, plot, {33, 38}, 10);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->point, 2) << "at 30, 39.6";
    EXPECT_FALSE(nearestIn(frame, plot, {50, 50}, 10));
}

TEST(CurveTable, HasALineForEachPointAndNothingWhereThereIsNoValue) {
    // Legs of 2 and 1.5: the circle through the corner has the diameter 2.5.
    EXPECT_EQ(curveTable(curveValues({{0, 0, 0}, {2, 0, 0}, {2, 1.5, 0}})), "point,x,y,z,length,step,growth,curvature\n"
                                                                            "1,0,0,0,0,2,,\n"
                                                                            "2,2,0,0,2,1.5,1.3333333333333333,0.8\n"
                                                                            "3,2,1.5,0,3.5,,,\n");
}

} // namespace
} // namespace velmora

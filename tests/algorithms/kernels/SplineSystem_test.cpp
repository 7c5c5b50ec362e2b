#include "SplineSystem.h"

#include <gtest/gtest.h>

namespace velmora::test {

namespace {

std::vector<double> momentsOf(const SplineSystem& system, const std::vector<double>& values) {
    std::vector<double> moments(values.size());
    system.solve(values.data(), moments.data());
    return moments;
}

} // namespace

// Of three knots at unit steps: m0 = 0, m0 / 2 + 2 m1 + m2 / 2 = 3 (y0 - 2 y1 + y2), m2 = -m1 / 2.

TEST(SplineSystem, SolvesThreeKnotsByHand) {
    SplineSystem system;
    const double knots[] = {0, 1, 2};
    system.factor(3, knots);
    const auto moments = momentsOf(system, {0, 1, 0});
    EXPECT_EQ(moments[0], 0);
    EXPECT_DOUBLE_EQ(moments[1], -24.0 / 7);
    EXPECT_DOUBLE_EQ(moments[2], 12.0 / 7);
}

TEST(SplineSystem, MadeOnceServesAnyNumberOfColumns) {
    SplineSystem system;
    const double knots[] = {0, 1, 2};
    system.factor(3, knots);
    momentsOf(system, {0, 1, 0});
    EXPECT_EQ(momentsOf(system, {5, 7, 9}), (std::vector<double>{0, 0, 0}));
    EXPECT_DOUBLE_EQ(momentsOf(system, {0, 2, 0})[1], -48.0 / 7);
}

TEST(SplineSystem, CanBeMadeAnewForFewerKnots) {
    SplineSystem system;
    const double four[] = {0, 1, 2, 3};
    system.factor(4, four);
    const double wider[] = {0, 2, 4}; // the slopes 1/2 and -1/2 give 7/4 m1 = 6 (-1) / 4
    system.factor(3, wider);
    EXPECT_DOUBLE_EQ(momentsOf(system, {0, 1, 0})[1], -6.0 / 7);
}

TEST(SplineSystem, OfFewerThanThreeKnotsHasNoBending) {
    SplineSystem system;
    const double knots[] = {0, 3};
    system.factor(2, knots);
    EXPECT_EQ(momentsOf(system, {4, -1}), (std::vector<double>{0, 0}));
    system.factor(1, knots);
    EXPECT_EQ(momentsOf(system, {4}), (std::vector<double>{0}));
}

TEST(SplinePiece, GivesValueSlopeAndCurvatureByHand) {
    // The first interval of the spline above, in its middle.
    const double values[] = {0, 1};
    const double moments[] = {0, -24.0 / 7};
    const SplinePiece piece(0, 1, 0.5);
    EXPECT_DOUBLE_EQ(piece.value(values, moments), 5.0 / 7);
    EXPECT_DOUBLE_EQ(piece.slope(values, moments), 8.0 / 7);
    EXPECT_DOUBLE_EQ(piece.curvature(moments), -12.0 / 7);
}

TEST(SplinePiece, MeetsItsEnds) {
    const double values[] = {2, 5};
    const double moments[] = {0.5, -1};
    EXPECT_DOUBLE_EQ(SplinePiece(1, 3, 1).value(values, moments), 2);
    EXPECT_DOUBLE_EQ(SplinePiece(1, 3, 3).value(values, moments), 5);
    EXPECT_DOUBLE_EQ(SplinePiece(1, 3, 1).curvature(moments), 0.5);
    EXPECT_DOUBLE_EQ(SplinePiece(1, 3, 3).curvature(moments), -1);
}

} // namespace velmora::test

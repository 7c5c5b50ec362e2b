#include "drag_correction.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmora {
namespace {

const DragPlane planeXY{&zVec<double>::x, &zVec<double>::y};
const DragPlane planeYZ{&zVec<double>::y, &zVec<double>::z};

/// Five points on the x axis at 0, 1, 2, 3, 4.
PointList straight() {
    PointList curve;
    for (int i = 0; i < 5; ++i) {
        curve.push_back({static_cast<double>(i), 0.0, 7.0});
    }
    return curve;
}

TEST(BendCurve, TheBentPointMovesByTheWholeAndTheFirstEndStays) {
    PointList curve = straight();
    bendCurve(curve, 2, {0.5, 1.0, 9.0}, planeXY);
    EXPECT_EQ(curve[2], (zVec<double>{2.5, 1.0, 7.0}));
    EXPECT_EQ(curve[0], (zVec<double>{0.0, 0.0, 7.0}));
    EXPECT_EQ(curve[4], (zVec<double>{4.0, 0.0, 7.0}));
}

TEST(BendCurve, ALowerPointMovesByItsShareOfTheLengthToAFallingPower) {
    PointList curve = straight();
    bendCurve(curve, 2, {0.0, 1.0, 0.0}, planeXY);
    // s = 1/2 of the way, k / i = 1/2: the exponent is 0.7 - 0.5 * 0.6.
    EXPECT_DOUBLE_EQ(curve[1].y, std::pow(0.5, 0.7 - 0.5 * 0.6));
}

TEST(BendCurve, AnUpperPointDividesByOneStepMore) {
    PointList curve = straight();
    bendCurve(curve, 2, {0.0, 1.0, 0.0}, planeXY);
    // One step from the end of two: s = 1/2, but the exponent counts 1 / (5 - 2).
    EXPECT_DOUBLE_EQ(curve[3].y, std::pow(0.5, 0.7 - 1.0 / 3.0 * 0.6));
}

TEST(BendCurve, OnlyTheTwoCoordinatesOfThePlaneMove) {
    PointList curve = {{0, 0, 0}, {1, 1, 0}, {2, 2, 1}, {3, 3, 0}};
    bendCurve(curve, 1, {5.0, 1.0, 2.0}, planeYZ);
    EXPECT_EQ(curve[1], (zVec<double>{1, 2, 2}));
    for (std::size_t i = 0; i < curve.size(); ++i) {
        EXPECT_EQ(curve[i].x, static_cast<double>(i));
    }
}

TEST(BendCurve, AnEndCanBeBent) {
    PointList curve = straight();
    bendCurve(curve, 0, {0.0, 1.0, 0.0}, planeXY);
    EXPECT_EQ(curve[0].y, 1.0);
    EXPECT_EQ(curve[4].y, 0.0);
    EXPECT_GT(curve[1].y, curve[2].y);
    EXPECT_GT(curve[2].y, curve[3].y);
}

TEST(BendCurve, ACurveSeenEndOnMovesItsPointAlone) {
    PointList curve = straight();
    bendCurve(curve, 2, {0.0, 1.0, 2.0}, planeYZ);
    EXPECT_EQ(curve[2], (zVec<double>{2.0, 1.0, 9.0}));
    EXPECT_EQ(curve[1], (zVec<double>{1.0, 0.0, 7.0}));
    EXPECT_EQ(curve[3], (zVec<double>{3.0, 0.0, 7.0}));
}

TEST(BendCurve, AnIndexOutsideTheCurveChangesNothing) {
    PointList curve = straight();
    bendCurve(curve, 5, {1, 1, 1}, planeXY);
    bendCurve(curve, -1, {1, 1, 1}, planeXY);
    EXPECT_EQ(curve, straight());
}

} // namespace
} // namespace velmora

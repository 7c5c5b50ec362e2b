#include "line_triangle_strict.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmora {
namespace {

using Vec = zVec<double>;

const Vec a(0, 0, 0);
const Vec b(4, 0, 0);
const Vec c(0, 4, 0);
const Vec down(0, 0, -2);

TEST(LineHitsTriangle, InsideIsCodeThreeWhateverTheLengthOfTheDirection) {
    for (const double length : {0.25, 1.0, 80.0}) {
        const TriangleHit hit = LineHitsTriangle(a, b, c, {0, 0, -length}, {1, 1, 5});
        EXPECT_EQ(hit.code, 3);
        EXPECT_EQ(hit.point, Vec(1, 1, 0));
    }
}

TEST(LineHitsTriangle, TheLineIsInfiniteBothWays) {
    EXPECT_EQ(LineHitsTriangle(a, b, c, down, {1, 1, -5}).code, 3);
}

TEST(LineHitsTriangle, OutsideIsNoHit) {
    EXPECT_EQ(LineHitsTriangle(a, b, c, down, {3, 3, 5}).code, 0);
    EXPECT_EQ(LineHitsTriangle(a, b, c, down, {-0.001, 1, 5}).code, 0);
}

TEST(LineHitsTriangle, AVertexIsCodeOneAndComesBeforeAllElse) {
    const TriangleHit hit = LineHitsTriangle(a, b, c, down, {4, 0, 5});
    EXPECT_EQ(hit.code, 1);
    EXPECT_EQ(hit.point, b);
}

TEST(LineHitsTriangle, ALineInThePlaneHitsNothingButVertices) {
    EXPECT_EQ(LineHitsTriangle(a, b, c, {0, 1, 0}, {1, -1, 0}).code, 0);
    EXPECT_EQ(LineHitsTriangle(a, b, c, {0, 1, 0}, {0, -1, 0}).code, 1);
}

TEST(LineHitsTriangle, AnOriginOnAnEdgeIsItselfTheHit) {
    const TriangleHit hit = LineHitsTriangle(a, b, c, {1, 2, 3}, {1, 0, 0});
    EXPECT_EQ(hit.code, 2);
    EXPECT_EQ(hit.point, Vec(1, 0, 0));
}

TEST(LineHitsTriangle, AnOriginInLineWithAnEdgeButBeyondItIsNoHit) {
    // The line would pass through the inside: the edge's word comes first.
    EXPECT_EQ(LineHitsTriangle(a, b, c, {-4, 1, 0.001}, {6, 0, 0}).code, 0);
}

TEST(LineHitsTriangle, ThreeEqualVerticesAreAPoint) {
    const Vec p(1, 2, 3);
    EXPECT_EQ(LineHitsTriangle(p, p, p, {0, 0, 1}, {1, 2, 0}).code, 1);
    EXPECT_EQ(LineHitsTriangle(p, p, p, {0, 0, 1}, {1, 2.5, 0}).code, 0);
}

TEST(LineHitsTriangle, TwoEqualVerticesAreASegment) {
    const Vec u(1, 1, 1);
    const Vec w(3, 1, 1);
    // Straight down on the segment's middle, exactly coplanar.
    const TriangleHit hit = LineHitsTriangle(u, u, w, {0, 0, -1}, {2, 1, 9});
    EXPECT_EQ(hit.code, 2);
    EXPECT_EQ(hit.point, Vec(2, 1, 1));
    EXPECT_EQ(LineHitsTriangle(u, u, w, {0, 0, -1}, {2, 1.5, 9}).code, 0);
}

TEST(LineHitsTriangle, ASegmentIsTheSameWhicheverTwoVerticesAreEqual) {
    const Vec u(2, 1, 1);
    const Vec w(1, 1, 1);
    for (const TriangleHit& hit :
         {LineHitsTriangle(w, w, u, {0, 1, 0}, {1.5, 0, 1}), LineHitsTriangle(w, u, w, {0, 1, 0}, {1.5, 0, 1}),
          LineHitsTriangle(u, w, w, {0, 1, 0}, {1.5, 0, 1})}) {
        EXPECT_EQ(hit.code, 2);
        EXPECT_EQ(hit.point, Vec(1.5, 1, 1));
    }
}

TEST(LineHitsTriangle, ASegmentThatRunsAlongTheLineIsCodeOneAtItsFirstEnd) {
    const Vec u(1, 1, 1);
    const Vec w(3, 1, 1);
    // Vertices that lie exactly on the line are found before: a segment beside it is not on it.
    EXPECT_EQ(LineHitsTriangle(u, w, w, {1, 0, 0}, {0, 1, 1}).code, 1);
    EXPECT_EQ(LineHitsTriangle(u, w, w, {1, 0, 0}, {0, 2, 1}).code, 0);
}

TEST(LineHitsTriangle, VerticesAreEqualByTheSumOfTheirCoordinates) {
    EXPECT_TRUE(sameVertex({1, 1, 1}, {1 + 1e-12, 1, 1}));
    EXPECT_FALSE(sameVertex({1, 1, 1}, {1 + 1e-11, 1, 1}));
    // Two zeros are not below zero times a part of their sum.
    EXPECT_FALSE(sameVertex({1, 1, 0}, {1, 1, 0}));
}

TEST(LineHitsTriangle, JustOutsideWithinTheToleranceIsInside) {
    EXPECT_EQ(LineHitsTriangle(a, b, c, down, {-1e-12, 1, 5}).code, 3);
    EXPECT_EQ(LineHitsTriangle(a, b, c, down, {-1e-10, 1, 5}).code, 0);
}

TEST(LineHitsTriangle, WhatIsNotANumberIsNoHit) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(LineHitsTriangle({nan, 0, 0}, b, c, down, {1, 1, 5}).code, 0);
    EXPECT_EQ(LineHitsTriangle(a, b, c, {0, nan, -1}, {1, 1, 5}).code, 0);
}

} // namespace
} // namespace velmora

#include "triangulate_polygon.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using Polygon = std::vector<zVec<double>>;
using Triangles = std::vector<std::array<std::int32_t, 3>>;

double areaOf(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c) {
    return 0.5 * cross(b - a, c - a).z;
}

// Of a polygon in the plane z = 0 by the trapezium rule; positive when it turns left.
double areaOf(const Polygon& polygon) {
    double area = 0.0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const zVec<double>& a = polygon[i];
        const zVec<double>& b = polygon[(i + 1) % polygon.size()];
        area += 0.5 * (a.x * b.y - b.x * a.y);
    }
    return area;
}

// Triangles that all turn as the polygon does and have its area together lie inside of it and cover it.
void expectCovered(const Polygon& polygon, int flat = 0) {
    Triangles triangles;
    EXPECT_TRUE(triangulatePolygon(polygon, triangles));
    ASSERT_EQ(triangles.size(), polygon.size() - 2);
    const double side = areaOf(polygon) < 0.0 ? -1.0 : 1.0;
    double sum = 0.0;
    int withoutArea = 0;
    for (const auto& [a, b, c] : triangles) {
        const double area = side * areaOf(polygon[static_cast<std::size_t>(a)], polygon[static_cast<std::size_t>(b)],
                                          polygon[static_cast<std::size_t>(c)]);
        EXPECT_GE(area, 0.0);
        withoutArea += area == 0.0 ? 1 : 0;
        sum += area;
    }
    EXPECT_EQ(withoutArea, flat);
    EXPECT_NEAR(sum, std::abs(areaOf(polygon)), 1e-12 * std::abs(areaOf(polygon)));
}

Polygon reversed(Polygon polygon) {
    std::reverse(polygon.begin(), polygon.end());
    return polygon;
}

TEST(TriangulatePolygon, ATriangleStays) {
    Triangles triangles;
    EXPECT_TRUE(triangulatePolygon(Polygon{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, triangles));
    EXPECT_EQ(triangles, (Triangles{{0, 1, 2}}));
}

TEST(TriangulatePolygon, AConvexOneIsAFanOfItsFirstCorner) {
    Triangles triangles;
    EXPECT_TRUE(triangulatePolygon(Polygon{{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {2, 2, 0}, {0, 2, 0}}, triangles));
    EXPECT_EQ(triangles, (Triangles{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}}));
}

// The fan of the first corner would leave the polygon: the reflex corner 2 sees corner 0 alone.
TEST(TriangulatePolygon, ADartIsSplitAtItsReflexCorner) {
    const Polygon dart = {{0, 0, 0}, {4, 2, 0}, {1, 2, 0}, {0, 4, 0}};
    expectCovered({dart[1], dart[2], dart[3], dart[0]});
    expectCovered(dart);
    expectCovered(reversed(dart));
}

TEST(TriangulatePolygon, ConcaveOnesAreCoveredInsideTheirBorder) {
    const Polygon ell = {{0, 0, 0}, {3, 0, 0}, {3, 1, 0}, {1, 1, 0}, {1, 3, 0}, {0, 3, 0}};
    const Polygon comb = {{0, 0, 0}, {7, 0, 0}, {7, 3, 0}, {6, 3, 0}, {6, 1, 0}, {5, 1, 0}, {5, 3, 0}, {4, 3, 0},
                          {4, 1, 0}, {3, 1, 0}, {3, 3, 0}, {2, 3, 0}, {2, 1, 0}, {1, 1, 0}, {1, 3, 0}, {0, 3, 0}};
    for (const Polygon& polygon : {ell, comb}) {
        expectCovered(polygon);
        expectCovered(reversed(polygon));
    }
}

// A spiral of two turns, in and out again.
TEST(TriangulatePolygon, ASpiralIsCovered) {
    Polygon spiral;
    constexpr int steps = 60;
    for (int i = 0; i <= steps; ++i) {
        const double angle = 0.2 * i;
        spiral.emplace_back((1.0 + 0.1 * i) * std::cos(angle), (1.0 + 0.1 * i) * std::sin(angle), 0.0);
    }
    for (int i = steps; i >= 0; --i) {
        const double angle = 0.2 * i;
        spiral.emplace_back((0.5 + 0.1 * i) * std::cos(angle), (0.5 + 0.1 * i) * std::sin(angle), 0.0);
    }
    expectCovered(spiral);
}

// The middle of a side would be a triangle of no area in a fan of its neighbour.
TEST(TriangulatePolygon, ACornerInAStraightSideMakesNoFlatTriangle) {
    expectCovered({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 2, 0}});
    expectCovered({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {2, 2, 0}, {1, 2, 0}, {0, 2, 0}, {0, 1, 0}});
}

TEST(TriangulatePolygon, ARepeatedCornerMakesOneFlatTriangle) {
    expectCovered({{0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, 1);
}

// The same L in planes along the other axes, and far from the origin.
TEST(TriangulatePolygon, TheWidestAxisDecides) {
    const Polygon ell = {{0, 0, 0}, {3, 0, 0}, {3, 1, 0}, {1, 1, 0}, {1, 3, 0}, {0, 3, 0}};
    Triangles wanted;
    triangulatePolygon(ell, wanted);
    Polygon turned;
    for (const zVec<double>& p : ell) {
        turned.emplace_back(p.y + 1e6, 7.0, p.x - 1e6);
    }
    Triangles triangles;
    EXPECT_TRUE(triangulatePolygon(turned, triangles));
    EXPECT_EQ(triangles, wanted);
}

TEST(TriangulatePolygon, ABorderThatCrossesItselfIsTold) {
    Triangles triangles;
    EXPECT_FALSE(triangulatePolygon(Polygon{{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 3, 0}}, triangles));
    EXPECT_EQ(triangles.size(), 2U);
}

TEST(TriangulatePolygon, PointsOnALineOrAtOnePlaceGiveAllTriangles) {
    for (const Polygon& polygon :
         {Polygon(7, {1, 2, 3}), Polygon{{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}}}) {
        Triangles triangles;
        triangulatePolygon(polygon, triangles);
        EXPECT_EQ(triangles.size(), polygon.size() - 2);
    }
}

TEST(TriangulatePolygon, HugeCoordinatesAreScaled) {
    const double big = std::numeric_limits<double>::max();
    Triangles triangles;
    EXPECT_TRUE(triangulatePolygon(Polygon{{-big, -big, 0}, {big, -big, 0}, {0, 0, 0}, {-big, big, 0}}, triangles));
    EXPECT_THAT(triangles, testing::SizeIs(2));
}

// Teeth of a saw, half a million corners: it ends, and soon.
TEST(TriangulatePolygon, AMillionCornersAreTakenInGoodTime) {
    constexpr int teeth = 250'000;
    Polygon saw;
    for (int i = 0; i < teeth; ++i) {
        saw.emplace_back(2.0 * i, 0.0, 0.0);
        saw.emplace_back(2.0 * i + 1.0, -1.0, 0.0);
    }
    saw.emplace_back(2.0 * teeth, 0.0, 0.0);
    saw.emplace_back(2.0 * teeth, 5.0, 0.0);
    saw.emplace_back(0.0, 5.0, 0.0);
    Triangles triangles;
    triangulatePolygon(saw, triangles);
    EXPECT_EQ(triangles.size(), saw.size() - 2);
}

} // namespace
} // namespace velmora

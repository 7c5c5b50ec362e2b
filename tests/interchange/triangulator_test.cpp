#include "zTriangulator.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "triangulation_reference.h"
#include "zExceptions.h"

namespace velmora {
namespace {

using testing::ElementsAre;

VertexList verticesOf(const std::vector<reference::Point>& points) {
    VertexList vertices;
    for (const reference::Point& point : points) {
        vertices.append(point[0], point[1], point[2]);
    }
    return vertices;
}

const VertexList square = verticesOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});

std::vector<Triangle> trianglesOf(const VertexList& vertices, const std::vector<std::int64_t>& corners) {
    Polygon polygon(corners);
    std::vector<Triangle> triangles;
    triangulate(vertices, polygon, triangles);
    return triangles;
}

TEST(Polygon, TheCursorBeginsAtTheFirstEntryAndGoesRound) {
    Polygon polygon(std::vector<std::int64_t>{7, 8, 9});
    EXPECT_EQ(polygon.current(), 7);
    EXPECT_EQ(polygon.next(), 8);
    EXPECT_EQ(polygon.previous(), 9);
    polygon.advance();
    polygon.advance();
    EXPECT_EQ(polygon.current(), 9);
    EXPECT_EQ(polygon.next(), 7);
    EXPECT_EQ(polygon.previous(), 8);
    polygon.advance();
    EXPECT_EQ(polygon.current(), 7);
    polygon.advance();
    polygon.first();
    EXPECT_EQ(polygon.current(), 7);
}

TEST(Polygon, SetCursorGoesToTheFirstEntryOfThatNumber) {
    Polygon polygon(std::vector<std::int64_t>{4, 5, 4, 6});
    polygon.setCursor(6);
    EXPECT_EQ(polygon.next(), 4);
    polygon.setCursor(4);
    EXPECT_EQ(polygon.next(), 5);
    EXPECT_THROW(polygon.setCursor(3), IndexError);
    EXPECT_EQ(polygon.current(), 4);
}

TEST(Polygon, ARangeEndsBeforeItsLastNumber) {
    const Polygon polygon(5, 8);
    EXPECT_THAT(polygon.corners(), ElementsAre(5, 6, 7));
    EXPECT_EQ(Polygon(5, 5).size(), 0U);
    EXPECT_THROW(Polygon(5, 4), IndexError);
}

TEST(Polygon, AnEmptyOneHasNoCursorPlace) {
    Polygon polygon;
    EXPECT_THROW(polygon.first(), IndexError);
    EXPECT_THROW(polygon.current(), IndexError);
    EXPECT_THROW(polygon.next(), IndexError);
    EXPECT_THROW(polygon.previous(), IndexError);
    EXPECT_THROW(polygon.advance(), IndexError);
    EXPECT_THROW(polygon.setCursor(0), IndexError);
}

TEST(Polygon, ItsErrorsHaveTheDefaultMessage) {
    try {
        Polygon().first();
        FAIL() << "no error";
    } catch (const IndexError& error) {
        EXPECT_EQ(error.text(), "...");
        EXPECT_EQ(error.file(), "zTriangulator");
    }
}

TEST(PolygonList, PolygonsStandOneBehindTheOther) {
    PolygonList list;
    EXPECT_TRUE(list.isOpenEmpty());
    list.addCorner(1);
    list.addCorner(2);
    EXPECT_FALSE(list.isOpenEmpty());
    list.close();
    EXPECT_TRUE(list.isOpenEmpty());
    list.addCorner(3);
    list.close();
    ASSERT_EQ(list.size(), 2U);
    EXPECT_THAT(list[0], ElementsAre(1, 2));
    EXPECT_THAT(list[1], ElementsAre(3));
    list.clear();
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(list.isOpenEmpty());
}

TEST(Triangulate, ThreeCornersKeepTheirOrder) {
    EXPECT_THAT(trianglesOf(square, {2, 0, 1}), ElementsAre(Triangle{2, 0, 1}));
}

TEST(Triangulate, ThreeCornersBeginAtTheCursor) {
    Polygon polygon(std::vector<std::int64_t>{0, 1, 2});
    polygon.advance();
    std::vector<Triangle> triangles;
    triangulate(square, polygon, triangles);
    EXPECT_THAT(triangles, ElementsAre(Triangle{1, 2, 0}));
}

TEST(Triangulate, ASquareIsAFanFromItsFirstCorner) {
    EXPECT_THAT(trianglesOf(square, {0, 1, 2, 3}), ElementsAre(Triangle{0, 1, 2}, Triangle{0, 2, 3}));
    EXPECT_THAT(trianglesOf(square, {2, 3, 0, 1}), ElementsAre(Triangle{2, 3, 0}, Triangle{2, 0, 1}));
}

// Between the edges at (1, 1) the cosine is (-2 - 2) / 5; at (0, 0) it is 0 and at the two tips above 0.
TEST(Triangulate, TheWidestCornerIsTheApex) {
    const VertexList kite = verticesOf({{0, 0, 0}, {3, 0, 0}, {1, 1, 0}, {0, 3, 0}});
    EXPECT_THAT(trianglesOf(kite, {0, 1, 2, 3}), ElementsAre(Triangle{2, 3, 0}, Triangle{2, 0, 1}));
}

// At the corners 2 and 5 the cosine is (1 - 4) / 5, at the four others -1 / sqrt(5): 2 is the first of the widest.
TEST(Triangulate, AHexagonIsFourTrianglesWithOneApex) {
    const VertexList hexagon = verticesOf({{1, 2, 0}, {-1, 2, 0}, {-2, 0, 0}, {-1, -2, 0}, {1, -2, 0}, {2, 0, 0}});
    EXPECT_THAT(trianglesOf(hexagon, {0, 1, 2, 3, 4, 5}),
                ElementsAre(Triangle{2, 3, 4}, Triangle{2, 4, 5}, Triangle{2, 5, 0}, Triangle{2, 0, 1}));
}

TEST(Triangulate, FewerThanThreeCornersAreNoPolygon) {
    EXPECT_THROW(trianglesOf(square, {0, 1}), AlgoError);
    EXPECT_THROW(trianglesOf(square, {0}), AlgoError);
    EXPECT_THROW(trianglesOf(square, {}), IndexError);
}

TEST(Triangulate, ACornerThatIsNoVertexIsRefused) {
    EXPECT_THROW(trianglesOf(square, {0, 1, 4}), ValueError);
    EXPECT_THROW(trianglesOf(square, {0, 1, -1}), ValueError);
    EXPECT_THROW(trianglesOf(square, {0, 1, 2, 9223372036854775807}), ValueError);
    EXPECT_THROW(trianglesOf(VertexList(), {0, 0, 0}), ValueError);
}

TEST(Triangulate, APolygonWithoutAnAngleIsAFanFromItsFirstCorner) {
    const VertexList point = verticesOf({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
    EXPECT_THAT(trianglesOf(point, {0, 1, 2, 3}), ElementsAre(Triangle{0, 1, 2}, Triangle{0, 2, 3}));
}

TEST(Triangulate, AnApexThatOccursTwiceBeginsAtItsFirstEntry) {
    const std::vector<Triangle> triangles = trianglesOf(square, {0, 1, 0, 2});
    EXPECT_EQ(triangles.size(), 2U);
}

TEST(Triangulate, RandomPolygonsBecomeThePlainRulesTriangles) {
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        std::vector<reference::Point> points(3 + random() % 8);
        for (reference::Point& point : points) {
            for (double& value : point) {
                value = static_cast<double>(random() % 9) - 4.0;
            }
        }
        reference::Corners corners(3 + random() % 8);
        for (std::int64_t& corner : corners) {
            corner = static_cast<std::int64_t>(random() % points.size());
        }
        reference::Triangles expected;
        reference::triangulate(points, corners, expected);
        ASSERT_EQ(trianglesOf(verticesOf(points), corners), expected);
    }
}

TEST(Triangulate, AllPolygonsAreTakenInTurn) {
    PolygonList list;
    for (const std::int64_t corner : {0, 1, 2}) {
        list.addCorner(corner);
    }
    list.close();
    for (const std::int64_t corner : {0, 1, 2, 3}) {
        list.addCorner(corner);
    }
    list.close();
    std::vector<Triangle> triangles{{9, 9, 9}};
    triangulateAll(square, list, triangles);
    EXPECT_THAT(triangles, ElementsAre(Triangle{9, 9, 9}, Triangle{0, 1, 2}, Triangle{0, 1, 2}, Triangle{0, 2, 3}));
}

TEST(Scale, AFiniteFactorMultipliesEveryComponent) {
    EXPECT_EQ(scale({1, -2, 0.5}, 4.0), zVec<double>(4, -8, 2));
    EXPECT_EQ(scale({1, -2, 0.5}, 0.0), zVec<double>(0, 0, 0));
}

TEST(Scale, AnyOtherFactorIsAnInfinityError) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_THROW(scale({1, 2, 3}, infinity), InfinityError);
    EXPECT_THROW(scale({1, 2, 3}, -infinity), InfinityError);
    EXPECT_THROW(scale({1, 2, 3}, std::nan("")), InfinityError);
}

} // namespace
} // namespace velmora

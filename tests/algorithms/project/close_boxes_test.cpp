#include "close_boxes.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

#include "random_numbers.h"
#include "slivers.h"
#include "vectors.h"

namespace velmora::test {

namespace {

using Vector = zVec<double>;
using Corners = std::array<Vector, 3>;

CloseBoxes boxesOf(const std::vector<Corners>& triangles) {
    std::vector<std::int32_t> numbers(triangles.size());
    std::iota(numbers.begin(), numbers.end(), 0);
    return closeBoxes(numbers, [&](std::int32_t triangle) { return triangles[static_cast<std::size_t>(triangle)]; });
}

/// The boxes that stand for each triangle: those of its pieces, else its own.
std::vector<TrianglePiece> allBoxes(const CloseBoxes& boxes, const std::vector<Corners>& triangles) {
    std::vector<TrianglePiece> all = boxes.pieces;
    std::vector<bool> cut(triangles.size(), false);
    for (const TrianglePiece& piece : all) {
        cut[static_cast<std::size_t>(piece.triangle)] = true;
    }
    for (std::size_t t = 0; t < triangles.size(); ++t) {
        if (!cut[t]) {
            all.push_back({static_cast<std::int32_t>(t), boxes.frame.boxOf(triangles[t])});
        }
    }
    return all;
}

bool holds(const FrameBox& box, const Vector& p, double margin) {
    return p.x >= box.lower[0] - margin && p.x <= box.upper[0] + margin && p.y >= box.lower[1] - margin &&
           p.y <= box.upper[1] + margin && p.z >= box.lower[2] - margin && p.z <= box.upper[2] + margin;
}

/// Any place of a triangle.
Vector placeOn(const Corners& corners) {
    double s = number(0, 1);
    double t = number(0, 1);
    if (s + t > 1.0) {
        s = 1.0 - s;
        t = 1.0 - t;
    }
    return corners[0] + (corners[1] - corners[0]) * s + (corners[2] - corners[0]) * t;
}

/// In how many boxes a place of a triangle lies, on the average; one of them is its own.
double boxesAtPlaces(const std::vector<Corners>& triangles, const CloseBoxes& boxes) {
    const std::vector<TrianglePiece> all = allBoxes(boxes, triangles);
    constexpr int places = 200;
    std::int64_t met = 0;
    for (int i = 0; i < places; ++i) {
        const auto triangle = static_cast<std::int32_t>(pick(static_cast<int>(triangles.size())));
        const Vector place = boxes.frame.in(placeOn(triangles[static_cast<std::size_t>(triangle)]));
        bool own = false;
        for (const TrianglePiece& piece : all) {
            const bool inside = holds(piece.box, place, 1e-12);
            met += inside ? 1 : 0;
            own = own || (inside && piece.triangle == triangle);
        }
        EXPECT_TRUE(own) << "triangle " << triangle;
    }
    return static_cast<double>(met) / places;
}

} // namespace

TEST(CloseBoxes, AreTheUsualOnesForTrianglesOfSomeWidth) {
    std::vector<Corners> triangles;
    for (int i = 0; i < 500; ++i) {
        const Vector a = anyVector(10);
        triangles.push_back({a, a + anyVector(1), a + anyVector(1)});
    }
    const CloseBoxes boxes = boxesOf(triangles);
    EXPECT_TRUE(boxes.pieces.empty());
    const Vector p(0.1, 0.2, 0.3);
    EXPECT_EQ(boxes.frame.in(p), p) << "the axes are those of the coordinates";
}

TEST(CloseBoxes, OfSliversAlongAnAxisNeedNothing) {
    std::vector<Corners> triangles;
    for (int i = 0; i < 500; ++i) {
        const Vector a = anyVector(1);
        triangles.push_back({a, a + Vector(1, 0, 0), a + Vector(0, 1e-4, 0)});
    }
    EXPECT_TRUE(boxesOf(triangles).pieces.empty());
}

TEST(CloseBoxes, OfSliversInOneDirectionHoldAPlaceWithHardlyAnyOther) {
    generator().seed(1); // the same slivers and places, whatever tests ran before
    const std::vector<Corners> triangles = parallelSlivers(600);
    const CloseBoxes close = boxesOf(triangles);
    EXPECT_TRUE(close.pieces.empty()) << "the frame alone does";
    EXPECT_LT(boxesAtPlaces(triangles, close), 2.0);
    EXPECT_GT(boxesAtPlaces(triangles, {}), 60.0) << "the usual boxes";
}

TEST(CloseBoxes, OfSliversInAllDirectionsHoldAPlaceWithFarFewerThanTheUsualOnes) {
    generator().seed(1); // the same slivers and places, whatever tests ran before
    const std::vector<Corners> triangles = crossingSlivers(600);
    const CloseBoxes close = boxesOf(triangles);
    EXPECT_FALSE(close.pieces.empty());
    EXPECT_LE(close.pieces.size(), 13 * triangles.size()) << "twelve on the average, and what is rounded up";
    EXPECT_LT(boxesAtPlaces(triangles, close), 0.1 * boxesAtPlaces(triangles, {}));
}

TEST(CloseBoxes, OfPiecesHoldEveryPlaceOfTheirTriangle) {
    for (const double apex : {0.0, 1e-5, 0.3, 0.999, 1.0, 1.2}) { // where the third corner stands
        std::vector<Corners> triangles;
        for (int i = 0; i < 60; ++i) {
            const Vector a = anyVector(0.5);
            const Vector b = a + unitOf(anyVector(1));
            Corners corners = {a, b, a + (b - a) * apex + anyVector(1e-4)};
            std::rotate(corners.begin(), corners.begin() + i % 3, corners.end());
            triangles.push_back(corners);
        }
        const CloseBoxes boxes = boxesOf(triangles);
        ASSERT_FALSE(boxes.pieces.empty());
        boxesAtPlaces(triangles, boxes);
    }
}

TEST(CloseBoxes, TurnLengthsIntoLengths) {
    const BoxFrame frame = boxesOf(parallelSlivers(50)).frame;
    for (int i = 0; i < 20; ++i) {
        const Vector v = anyVector(3);
        EXPECT_NEAR(lengthOf(frame.in(v)), lengthOf(v), 1e-14);
    }
    const Vector along = frame.in(unitOf(Vector(1, 1, 1)));
    EXPECT_NEAR(std::abs(along.x), 1.0, 1e-6) << "the first axis runs along the slivers";
}

TEST(CloseBoxes, OfCoordinatesBeyondAnyBoundAreTheUsualOnes) {
    for (const double size : {1e-200, 1e200}) {
        std::vector<Corners> triangles = crossingSlivers(20);
        for (Corners& corners : triangles) {
            for (Vector& corner : corners) {
                corner = corner * size;
            }
        }
        EXPECT_TRUE(boxesOf(triangles).pieces.empty());
    }
    EXPECT_TRUE(boxesOf({}).pieces.empty());
}

} // namespace velmora::test

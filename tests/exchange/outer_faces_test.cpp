#include "outer_faces.h"

#include <cstdint>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

namespace velmora {
namespace {

using Corners = std::vector<std::int64_t>;

std::vector<Corners> outerFaces(OuterFaces& elements) {
    std::vector<Corners> faces;
    elements.forEach([&faces](std::span<const std::int64_t> face) { faces.emplace_back(face.begin(), face.end()); },
                     {});
    return faces;
}

/// Bricks behind each other, with four corners between two of them.
OuterFaces rowOf(std::int64_t bricks) {
    OuterFaces row;
    for (std::int64_t first = 0; first < 4 * bricks; first += 4) {
        row.add(VolumeShape::Brick,
                Corners{first, first + 1, first + 2, first + 3, first + 4, first + 5, first + 6, first + 7});
    }
    return row;
}

// Two tetrahedra on both sides of the face 1 2 3, in whatever turn they name it.
TEST(OuterFaces, WhatTwoElementsHaveIsInside) {
    OuterFaces elements;
    elements.add(VolumeShape::Tetrahedron, Corners{0, 1, 2, 3});
    elements.add(VolumeShape::Tetrahedron, Corners{4, 3, 2, 1});
    EXPECT_EQ(outerFaces(elements),
              (std::vector<Corners>{{0, 2, 1}, {0, 1, 3}, {2, 0, 3}, {4, 2, 3}, {4, 3, 1}, {2, 4, 1}}));
}

// Each brick of a row has four sides, and the row two ends.
TEST(OuterFaces, TheSearchTellsItsProgressAndCanBeStopped) {
    constexpr std::int64_t bricks = 50'000;
    OuterFaces row = rowOf(bricks);
    double last = 0.0;
    int words = 0;
    std::int64_t faces = 0;
    row.forEach([&faces](std::span<const std::int64_t> /*face*/) { ++faces; },
                [&](double fraction) {
                    EXPECT_GE(fraction, last);
                    EXPECT_LE(fraction, 1.0);
                    last = fraction;
                    ++words;
                });
    EXPECT_EQ(faces, 4 * bricks + 2);
    EXPECT_GT(words, 2);
    EXPECT_THROW(
        row.forEach([](std::span<const std::int64_t> /*face*/) {}, [](double) { throw std::runtime_error("stop"); }),
        std::runtime_error);
}

// A damaged file may name one element any number of times: its faces are none of the outside then.
TEST(OuterFaces, AnElementThatIsThereOftenTakesNoLongTime) {
    OuterFaces elements;
    for (int i = 0; i < 200'000; ++i) {
        elements.add(VolumeShape::Tetrahedron, Corners{0, 1, 2, 3});
    }
    elements.add(VolumeShape::Tetrahedron, Corners{4, 5, 6, 7});
    EXPECT_EQ(outerFaces(elements), (std::vector<Corners>{{4, 6, 5}, {4, 5, 7}, {5, 6, 7}, {6, 4, 7}}));
}

} // namespace
} // namespace velmora

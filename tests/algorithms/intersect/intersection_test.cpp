#include "intersection.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "projection_reference.h"
#include "small_models.h"
#include "wavy_patch.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Vector = zVec<double>;

/// A patch that stands upright on the flat one: line m goes from (x[m], y[m], 1) down to (x[m], y[m], -1).
Patch curtain(const std::vector<double>& x, const std::vector<double>& y, const std::vector<double>& heights) {
    Patch patch;
    for (const double z : heights) {
        PointList section;
        for (std::size_t m = 0; m < x.size(); ++m) {
            section.push_back({x[m], y[m], z});
        }
        patch.push_back(section);
    }
    return patch;
}

const std::vector<double> downwards = {1, -1};

PiercingPoints pierce(const PatchList& patches, PiercingFailure expected = PiercingFailure::None) {
    PiercingPoints piercing;
    EXPECT_EQ(findPiercingPoints(patches, {0}, piercing, {}).failure, expected);
    return piercing;
}

/// Pierces patch 1 by the lines of patch 0 and places the points.
std::int32_t place(PatchList& patches, double tolerance = 0.0005) {
    PatchList working;
    const std::int32_t lost = placePiercingPoints(patches, {true, false}, pierce(patches), tolerance, working, {});
    EXPECT_EQ(working, patches);
    return lost;
}

bool hasPoint(const Patch& patch, const Vector& p) {
    return std::any_of(patch.begin(), patch.end(), [&p](const PointList& section) {
        return std::find(section.begin(), section.end(), p) != section.end();
    });
}

} // namespace

TEST(PiercingPoints, AreWhereEachLinePiercesFirst) {
    const PatchList patches = {curtain({0.3, 1.6}, {0.2, 1.7}, {3, 2, 1, -1, -2}), flatPatch(3, 4)};
    const PiercingPoints found = pierce(patches);
    EXPECT_THAT(found.places, ElementsAre(Vector(0.3, 0.2, 0), Vector(1.6, 1.7, 0)));
    EXPECT_THAT(found.before, ElementsAre(Vector(0.3, 0.2, 1), Vector(1.6, 1.7, 1)));
    EXPECT_THAT(found.after, ElementsAre(Vector(0.3, 0.2, -1), Vector(1.6, 1.7, -1)));
}

TEST(PiercingPoints, CountTheEndOfALine) {
    const PatchList patches = {curtain({0.3}, {0.2}, {2, 1, 0}), flatPatch(3, 4)};
    EXPECT_THAT(pierce(patches).places, ElementsAre(Vector(0.3, 0.2, 0)));
}

TEST(PiercingPoints, AreNotLookedForBeyondTheLine) {
    const PatchList patches = {curtain({0.3, 0.4, 5}, {0.2, 0.2, 0.2}, downwards), flatPatch(3, 4)};
    PiercingPoints found;
    const PiercingOutcome outcome = findPiercingPoints(patches, {0}, found, {});
    EXPECT_EQ(outcome.failure, PiercingFailure::NotFound);
    EXPECT_EQ(outcome.line, 2);
    EXPECT_EQ(outcome.patch, 0);
    EXPECT_EQ(found.places.size(), 2U);
    pierce({curtain({0.3}, {0.2}, {3, 2, 1}), flatPatch(3, 4)}, PiercingFailure::NotFound);
}

TEST(PiercingPoints, SkipSectionsAtTheSamePlace) {
    const PatchList patches = {curtain({0.3}, {0.2}, {2, 2, 1, 1, -1}), flatPatch(3, 4)};
    EXPECT_THAT(pierce(patches).before, ElementsAre(Vector(0.3, 0.2, 1)));
}

TEST(PiercingPoints, FailWhereALineOnlyRepeatsAPoint) {
    pierce({curtain({0.3}, {0.2}, {1, 1, 1}), flatPatch(3, 4)}, PiercingFailure::DoublePoint);
    pierce({curtain({0.3}, {0.2}, {2, 1, 1}), flatPatch(3, 4)}, PiercingFailure::DoublePoint);
    pierce({curtain({0.3}, {0.2}, {1}), flatPatch(3, 4)}, PiercingFailure::DoublePoint);
}

TEST(PiercingPoints, OfRaggedPatchesAreThoseOfCompleteLines) {
    PatchList patches = {curtain({0.3, 0.6, 0.9}, {0.2, 0.2, 0.2}, downwards), flatPatch(3, 4)};
    patches[0][1].resize(1);
    EXPECT_EQ(pierce(patches).places.size(), 1U);
    patches[0][1].clear();
    EXPECT_THAT(pierce(patches).places, IsEmpty());
    patches[0].clear();
    EXPECT_THAT(pierce(patches).places, IsEmpty());
}

TEST(Placing, OnAGridPointInsertsNothing) {
    PatchList patches = {curtain({1, 2.0000001}, {1, 1}, downwards), flatPatch(3, 4)};
    EXPECT_EQ(place(patches), 0);
    Patch expected = flatPatch(3, 4);
    expected[1][2].x = 2.0000001;
    EXPECT_EQ(patches[1], expected);
}

TEST(Placing, OnAnEdgeAcrossSectionsInsertsASection) {
    PatchList patches = {curtain({2}, {1.25}, downwards), flatPatch(3, 4)};
    EXPECT_EQ(place(patches), 0);
    ASSERT_EQ(patches[1].size(), 4U);
    EXPECT_THAT(patches[1][2],
                ElementsAre(Vector(0, 1.25, 0), Vector(1, 1.25, 0), Vector(2, 1.25, 0), Vector(3, 1.25, 0)));
}

TEST(Placing, OnAnEdgeAlongASectionInsertsAPointInEverySection) {
    PatchList patches = {curtain({1.25}, {1}, downwards), flatPatch(3, 4)};
    EXPECT_EQ(place(patches), 0);
    ASSERT_EQ(patches[1].size(), 3U);
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(patches[1][n].size(), 5U);
        EXPECT_EQ(patches[1][n][2], Vector(1.25, static_cast<double>(n), 0));
    }
}

TEST(Placing, InsideACellInsertsASectionAndALine) {
    PatchList patches = {curtain({1.25}, {1.75}, downwards), flatPatch(3, 4)};
    EXPECT_EQ(place(patches), 0);
    ASSERT_EQ(patches[1].size(), 4U);
    for (const PointList& section : patches[1]) {
        EXPECT_EQ(section.size(), 5U);
    }
    EXPECT_EQ(patches[1][2][2], Vector(1.25, 1.75, 0));
    EXPECT_EQ(patches[1][2][0], Vector(0, 1.75, 0));
    EXPECT_EQ(patches[1][0][2], Vector(1.25, 0, 0));
}

TEST(Placing, OfSeveralPointsInOneCellKeepsThemAll) {
    const std::vector<double> x = {1.25, 1.5, 1.625, 1.25};
    const std::vector<double> y = {1.75, 1.25, 1.5, 1.5};
    PatchList patches = {curtain(x, y, downwards), flatPatch(3, 4)};
    EXPECT_EQ(place(patches), 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        EXPECT_TRUE(hasPoint(patches[1], {x[i], y[i], 0})) << i;
    }
    EXPECT_EQ(regularityOf(patches), Regularity::Regular);
}

// Sections that are inserted for points nearly along a section cross in a cell that is not flat: the section of one may
// lie a cell beside the point. Each point has one all the same, and none has two.
TEST(Placing, EveryPointHasASectionOfItsOwn) {
    Patch wall;
    for (int i = 0; i < 6; ++i) {
        PointList section;
        for (int j = 0; j < 3; ++j) {
            const double y = -3 + 1.2 * i;
            const double z = -3.0 + 3 * j;
            section.push_back({0.15 * y * y + 0.05 * y * z, y, z});
        }
        wall.push_back(section);
    }
    const std::vector<double> y = {-1.2502975865883064, -1.2310264228799626, -1.239987559151877, -1.264052909771986};
    const std::vector<double> z = {-1.3, -0.43333333333333335, 0.43333333333333335, 1.3};
    Patch lines;
    for (const double x : {-4.0, -1.0, 1.5, 5.0}) {
        PointList section;
        for (std::size_t m = 0; m < y.size(); ++m) {
            section.push_back({x, y[m], z[m]});
        }
        lines.push_back(section);
    }
    PatchList patches = {lines, wall};
    const PiercingPoints found = pierce(patches);
    ASSERT_EQ(found.places.size(), 4U);
    EXPECT_EQ(place(patches), 0);
    for (const PointList& section : patches[1]) {
        EXPECT_LE(std::count_if(section.begin(), section.end(),
                                [&](const Vector& point) {
                                    return std::find(found.places.begin(), found.places.end(), point) !=
                                           found.places.end();
                                }),
                  1);
    }
    for (const Vector& p : found.places) {
        EXPECT_TRUE(hasPoint(patches[1], p));
    }
}

TEST(Placing, PutsEveryPointOfATwistedGridExactly) {
    Patch target = wavy(6, 7, 0);
    target[2][3] = target[2][3] + Vector(0.3, -0.2, 0);
    target[4][2] = target[4][2] + Vector(-0.3, 0.3, 0.1);
    std::vector<double> x;
    std::vector<double> y;
    for (int i = 0; i < 40; ++i) {
        x.push_back(3 + 2.2 * std::cos(0.157 * i));
        y.push_back(2.5 + 1.9 * std::sin(0.157 * i));
    }
    PatchList patches = {curtain(x, y, downwards), target};
    const PiercingPoints found = pierce(patches);
    EXPECT_EQ(place(patches), 0);
    for (const Vector& p : found.places) {
        EXPECT_TRUE(hasPoint(patches[1], p));
    }
    EXPECT_EQ(regularityOf(patches), Regularity::Regular);
}

TEST(Placing, CountsCellsThatAreNotFound) {
    PatchList patches = {flatPatch(2, 2), flatPatch(3, 4)};
    const PiercingPoints nowhere = {{{50, 50, 50}}, {{50, 50, 51}}, {{50, 50, 49}}};
    PatchList working;
    EXPECT_EQ(placePiercingPoints(patches, {true, false}, nowhere, 0.0005, working, {}), 2);
    EXPECT_EQ(patches[1], flatPatch(3, 4));
}

TEST(Placing, LeavesMarkedPatchesAlone) {
    PatchList patches = {curtain({1}, {1}, {1, 0, -1}), flatPatch(3, 4)};
    const Patch before = patches[0];
    place(patches);
    EXPECT_EQ(patches[0], before);
}

TEST(Placing, TellsProgressThatNeverFalls) {
    const PatchList patches = {curtain({0.3, 0.6, 0.9}, {0.2, 0.2, 0.2}, downwards), flatPatch(3, 4)};
    std::vector<double> told;
    const auto listen = [&told](double f) { told.push_back(f); };
    PiercingPoints found;
    findPiercingPoints(patches, {0}, found, listen);
    ASSERT_FALSE(told.empty());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.back(), 1.0);
    told.clear();
    PatchList copy = patches;
    PatchList working;
    placePiercingPoints(copy, {true, false}, found, 0.0005, working, listen);
    EXPECT_FALSE(told.empty());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_LE(told.back(), 1.0);
}

TEST(PiercingPoints, AreThoseOfAScanOfEveryCell) {
    for (int round = 0; round < 30; ++round) {
        const double turn = 0.1 * round;
        PatchList patches = {curtain({1.3, 2.1, 3.3}, {1.1 + turn / 3, 1.9, 2.3}, {2, 1, 0.3, -0.4, -2}),
                             wavy(6, 7, 0.1), wavy(6, 7, -0.1)};
        PiercingPoints found;
        ASSERT_EQ(findPiercingPoints(patches, {0}, found, {}).failure, PiercingFailure::None);
        for (std::size_t i = 0; i < found.places.size(); ++i) {
            const auto plain = reference::findCell(patches, {0}, found.before[i], found.after[i]);
            ASSERT_TRUE(plain.has_value());
            EXPECT_EQ(found.places[i], plain->hit);
        }
    }
}

} // namespace velmora::test

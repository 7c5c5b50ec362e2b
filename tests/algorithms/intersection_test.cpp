#include <cmath>
#include <numbers>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cell_search.h"
#include "intersection.h"
#include "joint_curve.h"
#include "projection_reference.h"
#include "segment_tests.h"
#include "small_models.h"

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

/// Points near a grid's points, edges and cells, and others.
Vector anyPlace(const Patch& patch, std::mt19937& random) {
    std::uniform_real_distribution<double> part(0, 1);
    const std::size_t n = random() % (patch.size() - 1);
    const std::size_t m = random() % (patch[n].size() - 1);
    const Vector& a = patch[n][m];
    const double s = random() % 3 == 0 ? 0 : part(random);
    const double t = random() % 3 == 0 ? 0 : part(random);
    const double off = random() % 2 == 0 ? 0 : 3e-4 * (part(random) - 0.5);
    return a + (patch[n + 1][m] - a) * s + (patch[n][m + 1] - a) * t + Vector(off, -off, off);
}

Patch wavy(std::size_t sections, std::size_t points, double shift) {
    Patch patch;
    for (std::size_t n = 0; n < sections; ++n) {
        PointList section;
        for (std::size_t m = 0; m < points; ++m) {
            const auto x = static_cast<double>(m);
            const auto y = static_cast<double>(n);
            section.push_back({x, y, shift + 0.2 * std::sin(x + 0.7 * y)});
        }
        patch.push_back(section);
    }
    return patch;
}

bool sameAddress(const CellAddress& a, const reference::Found& b) {
    return a.K == static_cast<std::int32_t>(b.k) && a.N == static_cast<std::int32_t>(b.n) &&
           a.M == static_cast<std::int32_t>(b.m);
}

} // namespace

// ---- Points and segments --------------------------------------------------------------------------------------------

TEST(SamePoint, MeasuresByTheLargestCoordinate) {
    EXPECT_TRUE(samePoint(Vector{100, 0, 0}, Vector{100, 0.00999, 0}, 1e-4));
    EXPECT_FALSE(samePoint(Vector{100, 0, 0}, Vector{100, 0.01001, 0}, 1e-4));
    EXPECT_TRUE(samePoint(Vector{0, 0, 0}, Vector{0, 0, 0}, 1e-10));
    EXPECT_FALSE(samePoint(Vector{0, 0, 0}, Vector{1e-20, 0, 0}, 0.5));
    const double none = std::nan("");
    EXPECT_FALSE(samePoint(Vector{none, 0, 0}, Vector{none, 0, 0}, 1));
}

TEST(LineDistance, IsThatFromTheInfiniteLine) {
    EXPECT_DOUBLE_EQ(lineDistance({0, 0, 0}, {2, 0, 0}, {17, 3, 4}), 5);
    EXPECT_DOUBLE_EQ(lineDistance({1, 1, 1}, {1, 1, 1 + 1e-9}, {1, 4, 5}), 5);
}

TEST(PointOnSegment, IsOnWithinAPartOfTheLength) {
    const Vector a(0, 0, 0);
    const Vector b(10, 0, 0);
    const SegmentPlace on = pointOnSegment(a, b, {4, 0.0000099, 0}, 1e-5);
    EXPECT_EQ(on.kind, SegmentPlace::On);
    EXPECT_NEAR(on.t, 0.4, 1e-11);
    EXPECT_EQ(pointOnSegment(a, b, {4, 0.000101, 0}, 1e-5).kind, SegmentPlace::Off);
    EXPECT_EQ(pointOnSegment(a, b, {10.1, 0, 0}, 1e-5).kind, SegmentPlace::Off);
    EXPECT_EQ(pointOnSegment(a, b, {-0.1, 0, 0}, 1e-5).kind, SegmentPlace::Off);
}

TEST(PointOnSegment, LetsProductsUpToNearZeroThrough) {
    // Of the flat direction y rounding leaves 9e-5: its square is below 1e-8.
    EXPECT_EQ(pointOnSegment({0, 0, 0}, {1, 0, 0}, {0.5, 9e-5, 0}, 0.001).kind, SegmentPlace::On);
    EXPECT_EQ(pointOnSegment({0, 0, 0}, {1, 0, 0}, {0.5, 1.1e-4, 0}, 0.001).kind, SegmentPlace::Off);
}

TEST(PointOnSegment, IsCoincidentAtTheBeginAndOnNoLength) {
    EXPECT_EQ(pointOnSegment({1, 1, 1}, {1, 1, 1 + 1e-9}, {5, 5, 5}, 1).kind, SegmentPlace::Coincident);
    EXPECT_EQ(pointOnSegment({0, 0, 0}, {1, 0, 0}, {5e-9, 0, 0}, 0.001).kind, SegmentPlace::Coincident);
    const SegmentPlace end = pointOnSegment({0, 0, 0}, {1, 0, 0}, {1, 0, 0}, 0.001);
    EXPECT_EQ(end.kind, SegmentPlace::On);
    EXPECT_EQ(end.t, 1);
}

TEST(LiesBetween, AcceptsTheEndsAndWhatIsBetweenThem) {
    EXPECT_TRUE(liesBetween({0, 0, -1}, {0, 0, 1}, {0, 0, -1}));
    EXPECT_TRUE(liesBetween({0, 0, 0.3}, {0, 0, 1}, {0, 0, -1}));
    EXPECT_FALSE(liesBetween({0, 0, 1.01}, {0, 0, 1}, {0, 0, -1}));
}

// ---- Finding the piercing points ------------------------------------------------------------------------------------

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

// ---- Placing --------------------------------------------------------------------------------------------------------

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
    EXPECT_EQ(told.size(), 3U);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    told.clear();
    PatchList copy = patches;
    PatchList working;
    placePiercingPoints(copy, {true, false}, found, 0.0005, working, listen);
    EXPECT_FALSE(told.empty());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_LE(told.back(), 1.0);
}

// ---- The searches against plain scans -------------------------------------------------------------------------------

TEST(GrowingGrid, FindsWhatAScanOfEverythingFinds) {
    std::mt19937 random(77);
    for (int round = 0; round < 60; ++round) {
        const double size = round % 3 == 0 ? 1e-3 : 1;
        PatchList patches = {wavy(4, 4, 0), wavy(5, 6, 0.1), flatPatch(4, 4), {{{0, 0, 0}, {1, 1, 1}}}, {}};
        for (Patch& patch : patches) {
            for (PointList& section : patch) {
                for (Vector& p : section) {
                    p = p * size + Vector(round % 2, 0, 0);
                }
            }
        }
        patches[1][2][3] = patches[1][2][2];
        const std::vector<std::int32_t> block = {0};
        GrowingGrid grid(patches, {true, false, false, false, false});
        const double tolerances[] = {1e-10, 0.0005, 0.6};
        for (int step = 0; step < 25; ++step) {
            const std::size_t k = 1 + random() % 2;
            const Vector p = anyPlace(grid.patches()[k], random);
            const double tolerance = tolerances[random() % 3];
            const auto point = grid.pointAt(p, tolerance);
            const auto plainPoint = reference::findPoint(grid.patches(), block, p, tolerance);
            ASSERT_EQ(point.has_value(), plainPoint.has_value());
            ASSERT_TRUE(!point || sameAddress(*point, *plainPoint));
            for (const bool across : {true, false}) {
                const auto edge = across ? grid.edgeAcross(p, tolerance) : grid.edgeAlong(p, tolerance);
                const auto plainEdge = reference::findEdge(grid.patches(), block, p, tolerance, across);
                ASSERT_EQ(edge.has_value(), plainEdge.has_value()) << round << " " << step;
                ASSERT_TRUE(!edge || (sameAddress(edge->begin, plainEdge->first) && edge->t == plainEdge->second));
            }
            const Vector to = anyPlace(grid.patches()[3 - k], random) - Vector(0, 0, 0.3 * size);
            const auto cell = grid.pierced(p, to);
            const auto plainCell = reference::findCell(grid.patches(), block, p, to);
            ASSERT_EQ(cell.has_value(), plainCell.has_value()) << round << " " << step;
            ASSERT_TRUE(!cell || (sameAddress(cell->cell, *plainCell) && cell->place == plainCell->hit));
            const auto still = CellTree(grid.patches(), {true, false, false, false, false}).pierced(p, to);
            ASSERT_EQ(still.has_value(), cell.has_value());
            ASSERT_TRUE(!still || still->place == cell->place);
            const auto n = static_cast<std::int32_t>(random() % (grid.patches()[k].size() - 1));
            const auto K = static_cast<std::int32_t>(k);
            if (step % 5 == 1) {
                PointList middle = grid.patches()[k][static_cast<std::size_t>(n)];
                grid.insertSection(K, n, middle);
            } else if (step % 5 == 3) {
                PointList line;
                for (const PointList& section : grid.patches()[k]) {
                    line.push_back((section[0] + section[1]) * 0.5);
                }
                grid.insertLine(K, 0, line);
                grid.setPoint({K, n, 1}, p);
            }
        }
    }
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

// ---- What stays -----------------------------------------------------------------------------------------------------

TEST(JointSections, AreThoseWithAPointOfTheJoint) {
    Patch patch = flatPatch(4, 3);
    keepJointSections(patch, JointPoints({{1 + 9e-9, 1, 0}, {2, 3, 9e-9}, {0, 2, 1.1e-8}}));
    ASSERT_EQ(patch.size(), 2U);
    EXPECT_EQ(patch[0][0].y, 1);
    EXPECT_EQ(patch[1][0].y, 3);
    keepJointSections(patch, JointPoints({}));
    EXPECT_THAT(patch, IsEmpty());
}

TEST(Trimming, KeepsOneSideOfTheFirstPointOfTheJoint) {
    const JointPoints joint({{1, 0, 0}, {2, 0, 0}});
    Patch before = flatPatch(2, 4);
    trimSections(before, joint, true);
    EXPECT_THAT(before[0], ElementsAre(Vector(0, 0, 0), Vector(1, 0, 0)));
    EXPECT_EQ(before[1].size(), 4U);
    Patch behind = flatPatch(2, 4);
    trimSections(behind, joint, false);
    EXPECT_THAT(behind[0], ElementsAre(Vector(1, 0, 0), Vector(2, 0, 0), Vector(3, 0, 0)));
}

TEST(Snapping, MovesTheBeginOfTheFirstEdgeThatTheJointIsOn) {
    Patch patch = flatPatch(1, 4);
    snapSections(patch, JointPoints({{2.25, 0, 0}, {1.5, 0.0001, 0}}), 0.0005);
    // The way to the point beside the edge is a little longer: the root of 0.5^2 + 0.0001^2.
    EXPECT_NEAR(patch[0][1].x, 1.5 + 1e-8, 1e-12);
    patch[0][1] = {1, 0, 0};
    EXPECT_EQ(patch, flatPatch(1, 4));
}

TEST(Snapping, LeavesASectionThatHasAPointOfTheJoint) {
    Patch patch = flatPatch(1, 4);
    snapSections(patch, JointPoints({{1, 0, 0}, {2.5, 0, 0}}), 0.0005);
    EXPECT_EQ(patch, flatPatch(1, 4));
}

TEST(Respacing, GivesEverySectionTheCount) {
    Patch patch = {{{0, 0, 0}, {3, 0, 0}}, {{5, 5, 5}}, {}, {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {3, 0, 0}}};
    respaceSections(patch, 4);
    EXPECT_THAT(patch[0], ElementsAre(Vector(0, 0, 0), Vector(1, 0, 0), Vector(2, 0, 0), Vector(3, 0, 0)));
    EXPECT_THAT(patch[1], ElementsAre(Vector(5, 5, 5), Vector(5, 5, 5), Vector(5, 5, 5), Vector(5, 5, 5)));
    EXPECT_THAT(patch[2], IsEmpty());
    ASSERT_EQ(patch[3].size(), 4U);
    EXPECT_DOUBLE_EQ(patch[3][1].x, 1);
}

} // namespace velmora::test

#include "patch_quality.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cell_folds.h"
#include "inspected_models.h"

namespace velmora::test {

namespace {

using testing::DoubleEq;
using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

PatchQuality qualityOf(const Patch& patch) {
    const ModelFaces model = modelFaces({patch}, {});
    return patchQuality(patch, 0, model, foldedCells(model, EdgeTable(model.points.count(), model.faces)));
}

/// Section and point of a place, from 0; {-1, -1} for none.
std::pair<int, int> at(const std::optional<PatchPlace>& place) {
    return place ? std::pair(place->section, place->point) : std::pair(-1, -1);
}

using Place = std::pair<int, int>;
constexpr Place nowhere{-1, -1};

/// A flat patch of 3 by 4 with the points of its sections at 0, 1, 4, 5, and its sections at 0, 2, 8.
Patch stretched() {
    Patch patch = flatPatch(3, 4);
    const double x[] = {0, 1, 4, 5};
    const double y[] = {0, 2, 8};
    for (std::size_t n = 0; n < 3; ++n) {
        for (std::size_t m = 0; m < 4; ++m) {
            patch[n][m] = {x[m], y[n], 0};
        }
    }
    return patch;
}

} // namespace

TEST(PatchQuality, AFlatGridOfSquares) {
    const PatchQuality quality = qualityOf(flatPatch(3, 4));
    EXPECT_EQ(quality.area, 6.0);
    EXPECT_THAT(quality.smallestStep.value, Optional(1.0));
    EXPECT_EQ(at(quality.smallestStep.at), Place(0, 0));
    EXPECT_THAT(quality.largestStep.value, Optional(1.0));
    EXPECT_EQ(at(quality.largestStep.at), Place(0, 0));
    EXPECT_THAT(quality.growth.value, Optional(1.0));
    EXPECT_EQ(at(quality.growth.at), Place(0, 1));
    EXPECT_THAT(quality.aspect.value, Optional(1.0));
    EXPECT_THAT(quality.skew.value, Optional(0.0));
    EXPECT_THAT(quality.warp.value, Optional(0.0));
    EXPECT_EQ(at(quality.aspect.at), Place(0, 0));
    EXPECT_EQ(at(quality.skew.at), Place(0, 0));
    EXPECT_EQ(at(quality.warp.at), Place(0, 0));
    EXPECT_EQ(quality.repeatedPoints.count, 0);
    EXPECT_EQ(quality.collapsedCells.count, 0);
    EXPECT_EQ(quality.foldedCells.count, 0);
    EXPECT_EQ(at(quality.foldedCells.at), nowhere);
}

TEST(PatchQuality, StepsAreTakenAlongSectionsAndLines) {
    const PatchQuality quality = qualityOf(stretched());
    EXPECT_THAT(quality.smallestStep.value, Optional(1.0));
    EXPECT_EQ(at(quality.smallestStep.at), Place(0, 0));
    EXPECT_THAT(quality.largestStep.value, Optional(6.0)); // between sections 1 and 2, first along line 0
    EXPECT_EQ(at(quality.largestStep.at), Place(1, 0));
    EXPECT_EQ(quality.area, 40.0);
}

TEST(PatchQuality, GrowthStandsAtTheMiddleOfThreePoints) {
    // Both the steps 1, 3 of the sections and 2, 6 of the lines grow by 3: sections come first.
    const PatchQuality quality = qualityOf(stretched());
    EXPECT_THAT(quality.growth.value, Optional(3.0));
    EXPECT_EQ(at(quality.growth.at), Place(0, 1));
    Patch steeper = stretched();
    for (zVec<double>& point : steeper[2]) {
        point.y = 10; // 2, 8 along the lines
    }
    EXPECT_THAT(qualityOf(steeper).growth.value, Optional(4.0));
    EXPECT_EQ(at(qualityOf(steeper).growth.at), Place(1, 0));
}

TEST(PatchQuality, OfEqualStepsOfLinesTheFirstLineCounts) {
    // The step of 2 along lines 1 and 2: line 1 comes first, though line 2 has it in an earlier section.
    Patch patch = flatPatch(4, 3, 0.0);
    for (PointList& section : patch) {
        for (zVec<double>& point : section) {
            point.x *= 0.5;
        }
    }
    patch[0][2].z = std::sqrt(3.0); // 0-1 of line 2: 2 long
    patch[3][1].z = std::sqrt(3.0); // 2-3 of line 1: 2 long
    const PatchQuality quality = qualityOf(patch);
    EXPECT_THAT(quality.largestStep.value, Optional(DoubleEq(2.0)));
    EXPECT_EQ(at(quality.largestStep.at), Place(2, 1));
}

TEST(PatchQuality, AStepOfZeroIsTheSmallestAndNotAGrowth) {
    Patch patch = {{{0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {3, 0, 0}}};
    const PatchQuality quality = qualityOf(patch);
    EXPECT_THAT(quality.smallestStep.value, Optional(0.0));
    EXPECT_FALSE(std::signbit(*quality.smallestStep.value));
    EXPECT_EQ(at(quality.smallestStep.at), Place(0, 1));
    EXPECT_THAT(quality.growth.value, Optional(1.0));
    EXPECT_EQ(at(quality.growth.at), nowhere);
    EXPECT_EQ(quality.repeatedPoints.count, 1);
    EXPECT_EQ(at(quality.repeatedPoints.at), Place(0, 2));
}

TEST(PatchQuality, WithoutStepsAndCellsThereIsNoValue) {
    for (const Patch& patch : {Patch{}, Patch{{{1, 2, 3}}}, Patch{{}, {}}}) {
        const PatchQuality quality = qualityOf(patch);
        EXPECT_EQ(quality.area, 0.0);
        EXPECT_THAT(quality.smallestStep.value, Eq(std::nullopt));
        EXPECT_THAT(quality.largestStep.value, Eq(std::nullopt));
        EXPECT_THAT(quality.growth.value, Optional(1.0));
        EXPECT_THAT(quality.aspect.value, Eq(std::nullopt));
        EXPECT_THAT(quality.skew.value, Eq(std::nullopt));
        EXPECT_THAT(quality.warp.value, Eq(std::nullopt));
        EXPECT_EQ(at(quality.smallestStep.at), nowhere);
        EXPECT_EQ(at(quality.aspect.at), nowhere);
    }
}

TEST(PatchQuality, SectionsOfDifferentLengthsHaveStepsAlongSectionsOnly) {
    // Section 1 stands 100 away and has a point less: no lines, no cells.
    const Patch patch = {{{0, 0, 0}, {1, 0, 0}, {3, 0, 0}}, {{0, 100, 0}, {5, 100, 0}}};
    const PatchQuality quality = qualityOf(patch);
    EXPECT_THAT(quality.largestStep.value, Optional(5.0));
    EXPECT_EQ(at(quality.largestStep.at), Place(1, 0));
    EXPECT_THAT(quality.growth.value, Optional(2.0));
    EXPECT_THAT(quality.aspect.value, Eq(std::nullopt));
    EXPECT_EQ(quality.area, 0.0);
}

TEST(PatchQuality, OneSectionOrOnePointOfEachIsACurve) {
    const PatchQuality section = qualityOf({{{0, 0, 0}, {2, 0, 0}, {3, 0, 0}}});
    EXPECT_THAT(section.growth.value, Optional(2.0));
    EXPECT_EQ(at(section.growth.at), Place(0, 1));
    const PatchQuality line = qualityOf({{{0, 0, 0}}, {{2, 0, 0}}, {{2, 5, 0}}});
    EXPECT_THAT(line.growth.value, Optional(2.5));
    EXPECT_EQ(at(line.growth.at), Place(1, 0));
    EXPECT_THAT(line.skew.value, Eq(std::nullopt));
}

TEST(PatchQuality, AspectIsLongestByShortestEdge) {
    Patch patch = flatPatch(2, 3);
    patch[0][2].x = patch[1][2].x = 5; // the second cell is 4 by 1
    const PatchQuality quality = qualityOf(patch);
    EXPECT_THAT(quality.aspect.value, Optional(4.0));
    EXPECT_EQ(at(quality.aspect.at), Place(0, 1));
}

TEST(PatchQuality, EdgesOfLengthZeroAreLeftOutOfTheAspect) {
    // A triangle of the sides 3, 4, 5 with a side of 0.
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {0, 0, 0}, {3, 0, 0}, {0, 4, 0})).aspect.value,
                Optional(DoubleEq(5.0 / 3.0)));
    // To and fro between two points: no edges at all.
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {1, 0, 0}, {0, 0, 0}, {1, 0, 0})).aspect.value, Eq(std::nullopt));
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {1, 0, 0})).skew.value, Eq(std::nullopt));
}

TEST(PatchQuality, SkewIsTheLargestDeviationFromARightAngle) {
    // A rhombus with angles of 45 and 135 degrees: both deviate by 45.
    const double s = std::sqrt(0.5);
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {1, 0, 0}, {1 + s, s, 0}, {s, s, 0})).skew.value,
                Optional(testing::DoubleNear(0.5, 1e-15)));
    // The triangle of a collapsed side has angles left at c and d alone: 36.87 and 53.13 degrees, which the edges 3, 4
    // and 5 tell; c has the cosine 3/5, d 4/5.
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {0, 0, 0}, {3, 0, 0}, {0, 4, 0})).skew.value,
                Optional(DoubleEq(1.0 - std::acos(0.8) / std::acos(0.0))));
}

TEST(PatchQuality, AnAngleOfZeroOrAHalfTurnIsASkewOfOne) {
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0})).skew.value, Optional(1.0));
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {0, 1, 0})).skew.value, Optional(1.0));
}

TEST(PatchQuality, WarpIsTheAngleOfTheTwoTriangles) {
    // d is lifted over its place (0, 1, 0): a, b, c stay in the plane, and a, c, d turns about the diagonal a c.
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 1})).warp.value,
                Optional(DoubleEq(std::atan(std::sqrt(2.0)) * 180.0 / std::acos(-1.0))));
    // d over the diagonal's middle: a right angle.
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0.5, 0.5, 1})).warp.value, Optional(90.0));
    // d laid on b: half a turn.
    const PatchQuality turned = qualityOf(oneCell({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 0, 0}));
    EXPECT_THAT(turned.warp.value, Optional(180.0));
    EXPECT_EQ(turned.foldedCells.count, 1);
}

TEST(PatchQuality, ATriangleWithoutAnAreaHasNoWarp) {
    EXPECT_THAT(qualityOf(oneCell({0, 0, 0}, {0, 0, 0}, {3, 0, 0}, {0, 4, 0})).warp.value, Eq(std::nullopt));
}

TEST(PatchQuality, TheWorstCellIsNamedByItsCornerA) {
    Patch patch = flatPatch(4, 4);
    patch[2][2].z = 0.5; // corner c of cell (1, 1), b of (1, 2), d of (2, 1) and a of (2, 2)
    const PatchQuality quality = qualityOf(patch);
    // Of (1, 1) both triangles turn, their normals being (0.5, 0, -1) and (0, 0.5, -1), and of (2, 2) likewise; of
    // (1, 2) only one does, to (-0.5, 0.5, -1), whose cosine 1 / sqrt(1.5) is larger than 0.8.
    EXPECT_THAT(quality.warp.value, Optional(DoubleEq(std::acos(0.8) * 180.0 / std::acos(-1.0))));
    EXPECT_EQ(at(quality.warp.at), Place(1, 1));
}

TEST(PatchQuality, RepeatedPointsCountOnce) {
    // (1, 1) repeats its neighbours in section and line; (2, 1) only the one in its line.
    Patch patch = flatPatch(3, 3);
    patch[1][1] = patch[1][0] = patch[0][1];
    patch[2][1] = patch[1][1];
    const PatchQuality quality = qualityOf(patch);
    EXPECT_EQ(quality.repeatedPoints.count, 2);
    EXPECT_EQ(at(quality.repeatedPoints.at), Place(1, 1));
}

TEST(PatchQuality, RepeatedPointsOfSectionsComeFirst) {
    Patch patch = flatPatch(3, 3);
    patch[1][0] = patch[0][0]; // in line 0
    patch[2][2] = patch[2][1]; // in section 2
    const PatchQuality quality = qualityOf(patch);
    EXPECT_EQ(quality.repeatedPoints.count, 2);
    EXPECT_EQ(at(quality.repeatedPoints.at), Place(2, 2));
}

TEST(PatchQuality, CollapsedCellsHaveNoArea) {
    Patch patch = flatPatch(3, 4);
    patch[1][2] = {2, 0, 0};
    patch[1][3] = {3, 0, 0}; // cell (0, 2) lies on a line
    const PatchQuality quality = qualityOf(patch);
    EXPECT_EQ(quality.collapsedCells.count, 1);
    EXPECT_EQ(at(quality.collapsedCells.at), Place(0, 2));
    EXPECT_EQ(qualityOf(oneCell({0, 0, 0}, {0, 0, 0}, {3, 0, 0}, {0, 4, 0})).collapsedCells.count, 0);
}

TEST(PatchQuality, WhatIsNoNumberIsPassedOver) {
    Patch patch = flatPatch(2, 4);
    patch[0][0].x = std::numeric_limits<double>::quiet_NaN();
    const PatchQuality quality = qualityOf(patch);
    EXPECT_THAT(quality.largestStep.value, Optional(1.0));
    EXPECT_EQ(at(quality.largestStep.at), Place(0, 1));
    EXPECT_THAT(quality.warp.value, Optional(0.0));
    EXPECT_EQ(at(quality.warp.at), Place(0, 1));
}

// ---- Value by value -------------------------------------------------------------------------------------------------

std::vector<double> valuesOf(GridValue kind, const Patch& patch) {
    const Patch other = flatPatch(2, 2);
    return gridValues(kind, patch, 1, modelFaces({other, patch}, {}));
}

TEST(GridValues, EachCellHasItsOwn) {
    // Cells of 1, 3 and 1 by 2, then by 6.
    EXPECT_THAT(valuesOf(GridValue::Aspect, stretched()), ElementsAre(2.0, 1.5, 2.0, 6.0, 2.0, 6.0));
    EXPECT_THAT(valuesOf(GridValue::Skew, stretched()), Each(0.0));
    // The upper corner leans over by as much as the cell is high: angles of 90, 135, 90 and 45 degrees.
    Patch leaning = flatPatch(2, 3);
    leaning[1][2].x = 3;
    EXPECT_THAT(valuesOf(GridValue::Skew, leaning), ElementsAre(0.0, DoubleNear(0.5, 1e-15)));
    // One corner is lifted out of the plane of the others: normals (0, 0, 1) and (1, -1, 1) over their length.
    Patch lifted = flatPatch(2, 3);
    lifted[0][2].z = 1;
    const double degrees = std::acos(1.0 / std::sqrt(3.0)) * 180.0 / std::numbers::pi;
    EXPECT_THAT(valuesOf(GridValue::Warp, lifted), ElementsAre(0.0, DoubleNear(degrees, 1e-12)));
}

TEST(GridValues, ACellWithoutAValueIsNoNumber) {
    Patch patch = flatPatch(2, 3);
    patch[0][2] = patch[1][2] = {1, 0, 0}; // with (1, 0) the second cell has two points only
    for (const GridValue kind : {GridValue::Aspect, GridValue::Skew, GridValue::Warp}) {
        const auto values = valuesOf(kind, patch);
        ASSERT_THAT(values, SizeIs(2));
        EXPECT_FALSE(std::isnan(values[0]));
        EXPECT_TRUE(std::isnan(values[1]));
    }
    EXPECT_THAT(valuesOf(GridValue::Aspect, {{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}}}), IsEmpty()) << "no grid, no cells";
}

TEST(GridValues, GrowthIsTheLargerOneOfSectionAndLine) {
    // Along sections 1, 3, 1 (growth 3 at both inner points), along lines 2, 6 (3 at the inner section).
    EXPECT_THAT(valuesOf(GridValue::Growth, stretched()), ElementsAre(1, 3, 3, 1, 3, 3, 3, 3, 1, 3, 3, 1));
    Patch steeper = stretched();
    for (zVec<double>& point : steeper[2]) {
        point.y = 10; // 2, 8 along the lines
    }
    EXPECT_THAT(valuesOf(GridValue::Growth, steeper), ElementsAre(1, 3, 3, 1, 4, 4, 4, 4, 1, 3, 3, 1));
    EXPECT_THAT(valuesOf(GridValue::Growth, {{{0, 0, 0}, {1, 0, 0}, {3, 0, 0}}, {{0, 1, 0}, {1, 1, 0}}}),
                ElementsAre(1, 2, 1, 1, 1))
        << "lines are of grids alone";
}

} // namespace velmora::test

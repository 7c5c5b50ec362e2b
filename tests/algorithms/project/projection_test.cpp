#include "projection.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "projection_reference.h"
#include "random_numbers.h"
#include "small_zones.h"
#include "target_mesh.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Vector = zVec<double>;

/// The cells of a patch as a zone.
std::unique_ptr<zBlock_fe> zoneOf(const Patch& patch, const std::string& title) {
    std::vector<Vector> nodes;
    std::vector<std::int32_t> corners;
    const int points = lineCount(patch);
    for (int n = 0; n < countOf(patch); ++n) {
        for (int m = 0; m < points; ++m) {
            nodes.push_back(patch[static_cast<std::size_t>(n)][static_cast<std::size_t>(m)]);
            if (n > 0 && m > 0) {
                const int d = n * points + m;
                corners.insert(corners.end(), {d - points - 1, d - points, d - 1, d - points, d, d - 1});
            }
        }
    }
    return triangleZone(title, nodes, corners);
}

/// Projects patch 0 on the other ones as the command does; gives the points that missed.
PointList project(PatchList& patches, int* misses = nullptr) {
    std::vector<bool> mask(patches.size(), false);
    mask[0] = true;
    const TriangleTree target(CellMesh(patches, mask).takeMesh());
    PointList missed;
    int calls = 0;
    projectPatches(patches, {0}, target, nearestCellHit, missed, [&calls] { ++calls; }, {});
    if (misses != nullptr) {
        *misses = calls;
    }
    return missed;
}

} // namespace

TEST(GridDirection, IsTheProductOfBothStepsOfLengthOne) {
    Patch patch = flatPatch(3, 3);
    patch[1][2].z = 1;
    // Inside: steps (0, 1, 0) across and (1, 0, 1) along: (1, 0, -1).
    const auto direction = gridDirection(patch, 1, 1);
    ASSERT_TRUE(direction.has_value());
    EXPECT_DOUBLE_EQ(direction->x, std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(direction->z, -std::sqrt(0.5));
    // Last section, last point: both steps from the one before, (0, 1, -1) x (1, 0, 0).
    const auto corner = gridDirection(patch, 2, 2);
    ASSERT_TRUE(corner.has_value());
    EXPECT_DOUBLE_EQ(corner->y, -std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(corner->z, -std::sqrt(0.5));
}

TEST(GridDirection, IsNoneWithOneSectionOrOnePoint) {
    EXPECT_FALSE(gridDirection(flatPatch(1, 3), 0, 1).has_value());
    EXPECT_FALSE(gridDirection(flatPatch(3, 1), 1, 0).has_value());
    Patch ragged = flatPatch(3, 3);
    ragged[0].resize(2);
    ragged[2].resize(2);
    EXPECT_FALSE(gridDirection(ragged, 1, 2).has_value());
}

TEST(Projection, MovesEachPointToTheNearestHitInFrontOrBehind) {
    PatchList patches = {flatPatch(2, 2, 2), flatPatch(2, 2, 5), flatPatch(2, 2, -0.5)};
    EXPECT_THAT(project(patches), IsEmpty());
    EXPECT_EQ(patches[0], flatPatch(2, 2, -0.5));
}

TEST(Projection, KeepsTheFirstOfTwoPatchesAtTheSameDistance) {
    for (const double first : {-1.0, 1.0}) {
        PatchList patches = {flatPatch(2, 2), flatPatch(2, 2, first), flatPatch(2, 2, -first)};
        project(patches);
        EXPECT_EQ(patches[0], flatPatch(2, 2, first));
    }
}

TEST(Projection, LeavesWhatMissesWhereItIsAndListsIt) {
    Patch target = flatPatch(2, 3, 1);
    PatchList patches = {flatPatch(2, 4), target};
    int misses = 0;
    const PointList missed = project(patches, &misses);
    EXPECT_THAT(missed, ElementsAre(Vector(3, 0, 0), Vector(3, 1, 0)));
    EXPECT_EQ(misses, 1);
    EXPECT_EQ(patches[0][0][3], Vector(3, 0, 0));
    EXPECT_EQ(patches[0][0][2], Vector(2, 0, 1));
    EXPECT_EQ(patches[1], target);
}

TEST(Projection, TakesTheFirstHitOfAllWhenNoneIsNear) {
    PatchList patches = {flatPatch(2, 2), flatPatch(2, 2, 3e8), flatPatch(2, 2, -2e8)};
    project(patches);
    EXPECT_EQ(patches[0][0][0].z, 3e8);
}

TEST(Projection, TakesDirectionsFromThePatchAsItWas) {
    // Moved points would tilt the directions of their neighbours.
    PatchList patches = {flatPatch(3, 3), flatPatch(3, 3, 1)};
    patches[1][1][1].z = 2;
    project(patches);
    for (const PointList& section : patches[0]) {
        for (const Vector& p : section) {
            EXPECT_EQ(p.x, std::round(p.x));
            EXPECT_EQ(p.y, std::round(p.y));
        }
    }
}

TEST(Projection, SkipsPointsOfOneSectionOrOnePoint) {
    PatchList patches = {flatPatch(1, 3), flatPatch(3, 3, 1)};
    EXPECT_THAT(project(patches), IsEmpty());
    EXPECT_EQ(patches[0], flatPatch(1, 3));
    patches[0] = flatPatch(3, 1);
    EXPECT_THAT(project(patches), IsEmpty());
    EXPECT_EQ(patches[0], flatPatch(3, 1));
}

TEST(Projection, OfAPointWithTheSameNeighboursMisses) {
    PatchList patches = {{{{1, 1, 0}, {1, 1, 0}}, {{1, 1, 0}, {1, 1, 0}}}, flatPatch(3, 3, 1)};
    EXPECT_EQ(project(patches).size(), 4U);
    EXPECT_EQ(patches[0][1][1], Vector(1, 1, 0));
}

TEST(Projection, PassesOverNumbersOfNoPatch) {
    PatchList patches = {flatPatch(2, 2)};
    const TriangleTree target{TriangleMesh()};
    PointList missed;
    projectPatches(patches, {-1, 4}, target, nearestCellHit, missed, [] {}, {});
    EXPECT_THAT(missed, IsEmpty());
}

TEST(Projection, TellsProgressThatNeverFalls) {
    PatchList patches = {flatPatch(30, 40), flatPatch(30, 40, 1)};
    const TriangleTree target(CellMesh(patches, {true, false}).takeMesh());
    PointList missed;
    std::vector<double> told;
    projectPatches(
        patches, {0}, target, nearestCellHit, missed, [] {}, [&told](double f) { told.push_back(f); });
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.size(), 1200U) << "of a model of few points, at each of them";
    EXPECT_EQ(told.back(), 1.0);
}

TEST(Projection, IsThatOfTestingEveryTriangle) {
    for (int round = 0; round < 60; ++round) {
        const double shake = pick(2) == 0 ? 0.0 : 0.05;
        PatchList patches = {wave(6, 7, 0, shake), wave(7, 6, number(-1, 1), shake), flatPatch(5, 5, number(-1, 1)),
                             wave(4, 4, 0.5, shake)};
        PatchList plain = patches;
        const std::vector<std::int32_t> block =
            pick(2) == 0 ? std::vector<std::int32_t>{0} : std::vector<std::int32_t>{3, 0};
        std::vector<bool> mask(4, false);
        for (const std::int32_t k : block) {
            mask[static_cast<std::size_t>(k)] = true;
        }
        const TriangleTree target(CellMesh(patches, mask).takeMesh());
        PointList missed;
        projectPatches(patches, block, target, nearestCellHit, missed, [] {}, {});
        ASSERT_EQ(missed, reference::projectToPatches(plain, block)) << round;
        ASSERT_EQ(patches, plain) << round;
    }
}

TEST(ProjectionToElements, KeepsTheLastOfTwoAtTheSameDistance) {
    for (const double last : {-1.0, 1.0}) {
        PatchList patches = {flatPatch(2, 2)};
        zRegion_fe region;
        region.blocks.push_back(zoneOf(flatPatch(2, 2, -last), "first"));
        region.blocks.push_back(zoneOf(flatPatch(2, 2, last), "last"));
        const TriangleTree target(zoneMesh(region, {false, false}));
        PointList missed;
        projectPatches(patches, {0}, target, nearestElementHit, missed, [] {}, {});
        EXPECT_EQ(patches[0], flatPatch(2, 2, last));
    }
}

TEST(ProjectionToElements, IsThatOfTestingEveryTriangle) {
    for (int round = 0; round < 60; ++round) {
        const double shake = pick(2) == 0 ? 0.0 : 0.05;
        PatchList patches = {wave(6, 7, 0, shake), wave(4, 4, 0.5, shake)};
        zRegion_fe region;
        region.blocks.push_back(zoneOf(wave(6, 6, number(-1, 1), shake), "a"));
        region.blocks.push_back(zoneOf(flatPatch(4, 5, number(-1, 1)), "b"));
        PatchList plain = patches;
        const TriangleTree target(zoneMesh(region, {false, false}));
        PointList missed;
        projectPatches(patches, {0, 1}, target, nearestElementHit, missed, [] {}, {});
        ASSERT_EQ(missed, reference::projectToZones(plain, {0, 1}, region)) << round;
        ASSERT_EQ(patches, plain) << round;
    }
}

TEST(NearestHit, OfCellsLiesNearerThanAHundredMillion) {
    const auto chosen = [](double far, double less) {
        return nearestCellHit({0, 0, 0}, {{0, {far, 0, 0}}, {2, {less, 0, 0}}}).x;
    };
    EXPECT_EQ(chosen(2e8, 99999999), 99999999);
    EXPECT_EQ(chosen(2e8, 1e8), 2e8);
    EXPECT_EQ(chosen(3, 2), 2);
    EXPECT_EQ(chosen(2, 3), 2);
}

TEST(NearestHit, OfElementsLiesWithinTenThousandMillion) {
    const auto chosen = [](double far, double less) {
        return nearestElementHit({0, 0, 0}, {{0, {far, 0, 0}}, {1, {less, 0, 0}}}).x;
    };
    EXPECT_EQ(chosen(2e10, 1e10), 1e10);
    EXPECT_EQ(chosen(2e10, 1.0001e10), 2e10);
    EXPECT_EQ(chosen(2, 3), 2);
    EXPECT_EQ(chosen(2, -2), -2); // of equal ones the last
}

TEST(ProjectZones, MovesNodesOfTwoElementsAtLeast) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("own", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {0, 1, 2, 1, 3, 2}));
    region.blocks.push_back(zoneOf(flatPatch(3, 3, 2), "target"));
    projectZones(region, {0}, {});
    EXPECT_EQ(nodeOf(region, 0, 0), Vector(0, 0, 0));
    EXPECT_EQ(nodeOf(region, 0, 1), Vector(1, 0, 2));
    EXPECT_EQ(nodeOf(region, 0, 2), Vector(0, 1, 2));
    EXPECT_EQ(nodeOf(region, 0, 3), Vector(1, 1, 0));
}

TEST(ProjectZones, IgnoresAHitAtTheNodeItself) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(flatPatch(3, 3), "own"));
    region.blocks.push_back(zoneOf(flatPatch(3, 3, 5e-7), "touches"));
    region.blocks.push_back(zoneOf(flatPatch(3, 3, -4), "target"));
    projectZones(region, {0}, {});
    EXPECT_EQ(nodeOf(region, 0, 4), Vector(1, 1, -4));
}

TEST(ProjectZones, TakesAHitAMillionthAwayForAnotherPlace) {
    for (const double height : {0.99e-6, 1.01e-6}) {
        zRegion_fe region;
        region.blocks.push_back(zoneOf(flatPatch(3, 3), "own"));
        region.blocks.push_back(zoneOf(flatPatch(3, 3, height), "target"));
        projectZones(region, {0}, {});
        EXPECT_NEAR(nodeOf(region, 0, 4).z, height < 1e-6 ? 0 : height, 1e-12);
    }
}

TEST(ProjectZones, KeepsTheFirstOfTwoAtTheSameDistance) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(flatPatch(3, 3), "own"));
    region.blocks.push_back(zoneOf(flatPatch(3, 3, 1), "first"));
    region.blocks.push_back(zoneOf(flatPatch(3, 3, -1), "last"));
    projectZones(region, {0}, {});
    EXPECT_EQ(nodeOf(region, 0, 4), Vector(1, 1, 1));
}

TEST(ProjectZones, DoesNothingWithoutOthersOrChosenOnesOrCoordinates) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(flatPatch(3, 3), "own"));
    region.blocks.push_back(zoneOf(flatPatch(3, 3, 1), "target"));
    projectZones(region, {0, 1}, {});
    projectZones(region, {}, {});
    projectZones(region, {7, -1}, {});
    EXPECT_EQ(nodeOf(region, 0, 4), Vector(1, 1, 0));
    region.blocks[0]->variables[0]->name = "u";
    projectZones(region, {1}, {});
    EXPECT_EQ(nodeOf(region, 1, 4), Vector(1, 1, 1));
}

TEST(ProjectZones, IsThatOfTestingEveryTriangle) {
    for (int round = 0; round < 40; ++round) {
        zRegion_fe region;
        const double shake = pick(2) == 0 ? 0.0 : 0.05;
        for (const double height : {0.0, number(-1, 1), number(-1, 1), 0.4}) {
            region.blocks.push_back(zoneOf(wave(5, 5, height, shake), "z"));
        }
        zRegion_fe plain;
        copyRegion(region, plain);
        projectZones(region, {2, 0}, {});
        reference::projectZones(plain, {2, 0});
        for (int zone = 0; zone < 4; ++zone) {
            for (int node = 0; node < 25; ++node) {
                ASSERT_EQ(nodeOf(region, zone, node), nodeOf(plain, zone, node)) << round;
            }
        }
    }
}

} // namespace velmora::test

#include "compare.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspected_models.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

NearestTree treeOf(const PatchList& patches, const zRegion_fe& region = {}) {
    return NearestTree(surfaceTriangles(patches, region, std::vector<bool>(patches.size() + region.blocks.size())));
}

std::vector<int> at(const Comparison& comparison) {
    if (!comparison.at) {
        return {};
    }
    return {comparison.at->part, comparison.at->section, comparison.at->point};
}

} // namespace

TEST(Compare, APatchAgainstAFlatOne) {
    // Points over the square from 0 to 3: heights 1, 2 and -4, and one beside it by 3 and below by 4.
    const PatchList points = {{{{1, 1, 1}, {2, 2, 2}}, {{1.5, 0.5, -4}, {6, 1, -4}}}};
    const Comparison result = comparePatches(points, {true}, treeOf({flatPatch(4, 4)}));
    EXPECT_THAT(result.values, ElementsAre(1.0, 2.0, 4.0, 5.0));
    EXPECT_EQ(result.largest, 5.0);
    EXPECT_EQ(result.mean, 3.0);
    EXPECT_DOUBLE_EQ(result.rms, std::sqrt(46.0 / 4.0));
    EXPECT_THAT(at(result), ElementsAre(0, 1, 1));
}

TEST(Compare, OnlyWhatIsChosenIsCompared) {
    const PatchList points = {flatPatch(2, 2, 7), flatPatch(2, 2, 1), flatPatch(2, 2, 3)};
    const Comparison result = comparePatches(points, {false, true, true}, treeOf({flatPatch(2, 2)}));
    EXPECT_THAT(result.values, ElementsAre(1.0, 1.0, 1.0, 1.0, 3.0, 3.0, 3.0, 3.0));
    EXPECT_EQ(result.mean, 2.0);
    EXPECT_THAT(at(result), ElementsAre(2, 0, 0)) << "the first of equals";
    EXPECT_THAT(comparePatches(points, {false, false, false}, treeOf({flatPatch(2, 2)})).values, IsEmpty());
    EXPECT_THAT(at(comparePatches(points, {false, false, false}, treeOf({flatPatch(2, 2)}))), IsEmpty());
}

TEST(Compare, ZonesByTheirNodes) {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0, 1.0));
    region.blocks.push_back(oneTriangle(0, 2.0));
    const Comparison result = compareZones(region, {true, true}, treeOf({flatPatch(2, 2)}));
    EXPECT_THAT(result.values, ElementsAre(1.0, 1.0, 1.0, 2.0, 2.0, 2.0));
    EXPECT_THAT(at(result), ElementsAre(1, -1, 0));
    EXPECT_THAT(compareZones(region, {true, false}, treeOf({flatPatch(2, 2)})).values, ElementsAre(1.0, 1.0, 1.0));
}

TEST(Compare, AZoneWithoutCoordinatesHasNoPoints) {
    zRegion_fe region;
    region.blocks.push_back(std::make_unique<zBlock_fe>(3, 4, 1));
    EXPECT_THAT(compareZones(region, {true}, treeOf({flatPatch(2, 2)})).values, IsEmpty());
}

TEST(Compare, CellsAreTheirTwoTriangles) {
    // The cell's triangles meet along the diagonal from a to c, which lies at z = 0; b and d are lifted to 1. In the
    // middle the surface is at 0; along the other diagonal it would be at 1.
    const Patch cell = oneCell({0, 0, 0}, {1, 0, 1}, {1, 1, 0}, {0, 1, 1});
    const PatchList points = {{{{0.5, 0.5, 0}}}};
    EXPECT_NEAR(comparePatches(points, {true}, treeOf({cell})).largest, 0.0, 1e-16);
}

TEST(SurfaceTriangles, PatchesWithCellsAndZonesThatAreNotLeft) {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0));
    region.blocks.push_back(oneTriangle(5));
    EXPECT_EQ(surfaceTriangles({}, region, {false, false}).triangleCount(), 2);
    const TriangleMesh second = surfaceTriangles({}, region, {true, false});
    ASSERT_EQ(second.triangleCount(), 1);
    EXPECT_EQ(second.corner(0, 0)[0], 5.0);
    const PatchList patches = {flatPatch(2, 2), flatPatch(2, 3, 1), flatPatch(1, 9)};
    EXPECT_EQ(surfaceTriangles(patches, {}, {false, false, false}).triangleCount(), 6);
    const TriangleMesh rest = surfaceTriangles(patches, {}, {true, false, false});
    ASSERT_EQ(rest.triangleCount(), 4);
    EXPECT_EQ(rest.corner(0, 0)[2], 1.0);
}

TEST(Compare, IsTheSameWhateverTheNumberOfThreads) {
    Patch wavy = flatPatch(70, 60);
    for (std::size_t n = 0; n < wavy.size(); ++n) {
        for (std::size_t m = 0; m < wavy[n].size(); ++m) {
            wavy[n][m].z = std::sin(0.7 * static_cast<double>(n)) + std::cos(1.3 * static_cast<double>(m));
        }
    }
    zRegion_fe region;
    for (int i = 0; i < 3; ++i) {
        region.blocks.push_back(oneTriangle(i, 0.3 * i));
    }
    const NearestTree surface = treeOf({flatPatch(5, 5)});
    const auto compared = [&](const char* threads) {
        ::setenv("VELMORA_THREADS", threads, 1);
        const Comparison patches = comparePatches({wavy, flatPatch(2, 2, 9), wavy}, {true, false, true}, surface);
        const Comparison zones = compareZones(region, {true, true, true}, surface);
        ::unsetenv("VELMORA_THREADS");
        std::vector<double> all = patches.values;
        all.insert(all.end(), {patches.mean, patches.rms, patches.largest, zones.mean, zones.rms, zones.largest});
        for (const Comparison* const comparison : {&patches, &zones}) {
            for (const int number : at(*comparison)) {
                all.push_back(number);
            }
        }
        return all;
    };
    const std::vector<double> alone = compared("1");
    EXPECT_EQ(alone.size(), 2U * 70 * 60 + 6 + 6);
    for (const char* const threads : {"2", "7", "64"}) {
        EXPECT_EQ(compared(threads), alone) << threads << " threads";
    }
}

} // namespace velmora::test

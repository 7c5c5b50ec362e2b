#include "target_mesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "small_models.h"
#include "small_zones.h"

namespace velmora::test {

TEST(CellMesh, NamesTheCellOfEachTriangle) {
    const PatchList patches = {flatPatch(2, 2), flatPatch(3, 3), flatPatch(1, 4), flatPatch(2, 3)};
    const CellMesh cells(patches, {false, true, false, false});
    const CellAddress last = cells.cellOf(5);
    EXPECT_EQ(cells.cellOf(1).K, 0);
    EXPECT_EQ(last.K, 3);
    EXPECT_EQ(last.N, 0);
    EXPECT_EQ(last.M, 1);
}

TEST(CellMesh, HasNoCellWhereARaggedSectionHasNoPoint) {
    PatchList patches = {flatPatch(3, 4)};
    patches[0][1].resize(2);
    EXPECT_EQ(CellMesh(patches, {false}).takeMesh().triangleCount(), 2 * 2);
}

TEST(ZoneMesh, LeavesOutElementsWithoutACorner) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("z", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-2e9, 0, 0}}, {0, 1, 2, 0, 1, 3}));
    region.blocks.push_back(oneTriangle(5));
    EXPECT_EQ(zoneMesh(region, {false, false}).triangleCount(), 2);
    EXPECT_EQ(zoneMesh(region, {true, false}).triangleCount(), 1);
}

} // namespace velmora::test

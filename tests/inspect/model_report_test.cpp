#include "model_report.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspected_models.h"

namespace velmora::test {

namespace {

using testing::DoubleEq;
using testing::Optional;

} // namespace

TEST(ModelReport, AnEmptyModelHasNoBoxAndNoVolume) {
    const ModelReport report = modelReport({}, {}, 1.0);
    EXPECT_FALSE(report.box);
    EXPECT_FALSE(report.body.volume);
    EXPECT_EQ(report.points + report.cells + report.nodes + report.triangles + report.sections, 0);
    EXPECT_EQ(report.area, 0.0);
    EXPECT_FALSE(modelReport({{}, {{}, {}}}, {}, 1.0).box) << "no point";
}

TEST(ModelReport, CountsOfPatches) {
    Patch uneven = flatPatch(3, 3, 5);
    uneven[2].pop_back();
    const ModelReport report = modelReport({flatPatch(3, 4), uneven}, {}, 1.0);
    EXPECT_EQ(report.patches.size(), 2U);
    EXPECT_EQ(report.sections, 6);
    EXPECT_EQ(report.points, 12 + 8);
    EXPECT_EQ(report.cells, 6);
    EXPECT_EQ(report.area, 6.0);
    EXPECT_EQ(report.patches[0].area, 6.0);
    EXPECT_EQ(report.patches[1].area, 0.0);
    EXPECT_EQ(report.nodes, 0);
}

TEST(ModelReport, TheBoxHoldsPointsThatNoCellUses) {
    const ModelReport patches = modelReport({flatPatch(2, 2), {{{-7, 3, 1}}}}, {}, 1.0);
    ASSERT_TRUE(patches.box);
    EXPECT_EQ((*patches.box)[0], Vector(-7, 0, 0));
    EXPECT_EQ((*patches.box)[1], Vector(1, 3, 1));
    const ModelReport zones =
        modelReport({}, triangleRegion({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 9}}, {0, 1, 2}), 1);
    EXPECT_EQ((*zones.box)[1], Vector(1, 1, 9));
}

TEST(ModelReport, ZonesHaveTheirOwnCountsAndAreas) {
    zRegion_fe region;
    region.blocks.push_back(
        triangleZone("plate", {{0, 0, 0}, {4, 0, 0}, {0, 3, 0}, {9, 9, 9}, {8, 0, 0}}, {0, 1, 2, 0, 1, 4, 1, 1, 2}));
    region.blocks.push_back(oneTriangle(0, 5, "tip"));
    const ModelReport report = modelReport({}, region, 1.0);
    ASSERT_EQ(report.zones.size(), 2U);
    EXPECT_EQ(report.zones[0].title, "plate");
    EXPECT_EQ(report.zones[0].nodes, 5);
    EXPECT_EQ(report.zones[0].triangles, 3);
    EXPECT_EQ(report.zones[0].area, 6.0);
    EXPECT_EQ(report.zones[0].degenerate, 2) << "three points on a line, and a repeated node";
    EXPECT_EQ(report.zones[1].title, "tip");
    EXPECT_EQ(report.zones[1].degenerate, 0);
    EXPECT_EQ(report.nodes, 8);
    EXPECT_EQ(report.triangles, 4);
    EXPECT_EQ(report.area, 6.5);
    EXPECT_EQ(report.body.components, 2);
}

TEST(ModelReport, ABodyFarFromTheOriginHasItsVolume) {
    const ModelReport report =
        modelReport({}, triangleRegion(boxCorners(2, 3, 4, {1e6, -1e6, 1e6}), boxTriangles()), 1.0);
    EXPECT_THAT(report.body.volume, Optional(DoubleEq(24.0))) << "summed about the centre of the box";
    EXPECT_DOUBLE_EQ(report.area, 52.0);
}

TEST(ModelReport, GapsReachAThousandthOfTheRadius) {
    const PatchList patches = {flatPatch(3, 3), flatPatchAt(3, 3, {2.0625, 0, 0})};
    EXPECT_EQ(modelReport(patches, {}, 62.0).gaps.size(), 0U);
    const ModelReport report = modelReport(patches, {}, 63.0);
    ASSERT_EQ(report.gaps.size(), 1U);
    EXPECT_EQ(report.gaps[0].patch, 0);
    EXPECT_EQ(report.gaps[0].other, 1);
    EXPECT_EQ(report.gaps[0].largest, 0.0625);
}

} // namespace velmora::test

// Files that others made, and own ones with the habits of other programs.

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tecplot_tools.h"

namespace velmora {
namespace {

using test::errorText;
using test::TecplotOutcome;

TecplotOutcome readData(const std::string& name) {
    return test::readTecplot(std::filesystem::path(VELMORA_TEST_DATA) / name);
}

std::vector<std::string> titlesOf(const zRegion& region) {
    std::vector<std::string> titles;
    for (const auto& zone : region.blocks) {
        titles.push_back(zone->title);
    }
    return titles;
}

std::vector<std::vector<int>> shapesOf(const zRegion& region) {
    std::vector<std::vector<int>> shapes;
    for (const auto& zone : region.blocks) {
        shapes.push_back({zone->imax, zone->jmax, zone->kmax});
    }
    return shapes;
}

// Least and greatest x, y, z of all zones.
template <class Region>
std::vector<double> boxOf(const Region& region) {
    const double infinity = std::numeric_limits<double>::infinity();
    std::vector<double> box = {infinity, infinity, infinity, -infinity, -infinity, -infinity};
    for (const auto& zone : region.blocks) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            for (const double value : zone->variables[axis]->data) {
                box[axis] = std::min(box[axis], value);
                box[axis + 3] = std::max(box[axis + 3], value);
            }
        }
    }
    return box;
}

void expectBox(const std::vector<double>& box, const std::vector<double>& expected) {
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_NEAR(box[i], expected[i], 5e-6 * std::max(1.0, std::abs(expected[i]))) << i;
    }
}

TEST(TecplotRealFiles, WingBodyInBlockPacking) {
    const TecplotOutcome outcome = readData("m100_wingbody_block.dat");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(outcome.structured.title, "ARA M100 wing-body reference surface");
    EXPECT_EQ(shapesOf(outcome.structured), (std::vector<std::vector<int>>{{69, 81, 1}, {82, 35, 1}, {82, 34, 1}}));
    expectBox(boxOf(outcome.structured), {0, -0.905914, -0.0994888, 6, 0, 0.0994888});
}

TEST(TecplotRealFiles, WingInPointPacking) {
    const TecplotOutcome outcome = readData("wing717_point.dat");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(titlesOf(outcome.structured),
              (std::vector<std::string>{"surf 1", "surf 2", "surf 3", "surf 4", "surf 5"}));
    EXPECT_EQ(shapesOf(outcome.structured),
              (std::vector<std::vector<int>>{{73, 73, 1}, {9, 73, 1}, {73, 73, 1}, {9, 73, 1}, {9, 73, 1}}));
    expectBox(boxOf(outcome.structured), {0.000359375, -0.295685, 0, 9.00318, 0.314718, 14.0437});
}

TEST(TecplotRealFiles, OrderedZoneWithOtherVariables) {
    const TecplotOutcome outcome = readData("half_cylinder.dat");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(shapesOf(outcome.structured), (std::vector<std::vector<int>>{{4, 7, 1}}));
    EXPECT_EQ(outcome.structured.blocks[0]->variables.size(), 3U);
    expectBox(boxOf(outcome.structured), {-2, 0, 0, 2, 2, 1.5});
}

TEST(TecplotRealFiles, ZonesWithoutKAreKeptWithoutPointsAndRecordsBehindArePassedOver) {
    const TecplotOutcome outcome = readData("plates_and_geometries.dat");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(titlesOf(outcome.structured), (std::vector<std::string>{"Lower", "Upper"}));
    EXPECT_EQ(shapesOf(outcome.structured), (std::vector<std::vector<int>>{{3, 3, 0}, {3, 3, 0}}));
    EXPECT_TRUE(outcome.structured.blocks[0]->variables.at(0)->data.empty());
}

TEST(TecplotRealFiles, VolumeZoneWithBlankLinesInItsData) {
    const TecplotOutcome outcome = readData("volume_block.dat");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(shapesOf(outcome.structured), (std::vector<std::vector<int>>{{3, 4, 3}}));
    EXPECT_EQ(outcome.structured.blocks[0]->variables.at(2)->data.back(), 111.5);
}

TEST(TecplotRealFiles, ZonesBetweenComments) {
    const TecplotOutcome outcome = readData("split_volume.dat");
    ASSERT_EQ(errorText(outcome), "");
    ASSERT_EQ(outcome.structured.blocks.size(), 24U);
    std::int64_t points = 0;
    for (std::size_t zone = 0; zone < 24; ++zone) {
        EXPECT_EQ(outcome.structured.blocks[zone]->title, "ZONE " + std::to_string(zone));
        points += outcome.structured.blocks[zone]->total;
    }
    EXPECT_EQ(points, 9 * 13 * 17);
    EXPECT_EQ(shapesOf(outcome.structured).front(), (std::vector<int>{4, 4, 4}));
    EXPECT_EQ(shapesOf(outcome.structured).back(), (std::vector<int>{5, 5, 5}));
    expectBox(boxOf(outcome.structured), {0, 0, 0, 1, 1, 1});
}

TEST(TecplotRealFiles, Triangles) {
    const TecplotOutcome outcome = readData("coloured_ring.dat");
    ASSERT_EQ(errorText(outcome), "");
    ASSERT_EQ(outcome.unstructured.blocks.size(), 1U);
    EXPECT_EQ(outcome.unstructured.blocks[0]->nodeCount, 64);
    EXPECT_EQ(outcome.unstructured.blocks[0]->elementCount, 128);
    EXPECT_EQ(outcome.unstructured.blocks[0]->variables.size(), 3U);
    EXPECT_TRUE(consistent(*outcome.unstructured.blocks[0]));
    expectBox(boxOf(outcome.unstructured), {-4, -4, -1, 4, 4, 1});
}

TEST(TecplotRealFiles, TetrahedraAreSkipped) {
    const TecplotOutcome outcome = readData("tetrahedra.dat");
    EXPECT_EQ(errorText(outcome), "");
    EXPECT_TRUE(outcome.structured.blocks.empty());
    EXPECT_TRUE(outcome.unstructured.blocks.empty());
}

TEST(TecplotRealFiles, UnquotedNamesAreRefused) {
    EXPECT_EQ(errorText(readData("unquoted_panels.dat")), test::headerReport(1, "zone", "VARIABLES"));
}

// The zone holds fewer numbers than nodes by variables; the second ZONE, in line 10 from TITLE, is no number.
TEST(TecplotRealFiles, CellCentredVariablesLackNumbers) {
    EXPECT_EQ(errorText(readData("cell_centred.dat")), test::dataReport(2, "PATCH", 10));
}

TEST(TecplotRealFiles, AHeaderThatEndsWithACountIsRefused) {
    const TecplotOutcome outcome = readData("nemoh_cylinder.dat");
    EXPECT_EQ(errorText(outcome), test::headerReport(2, "normales", "I"));
    ASSERT_EQ(outcome.unstructured.blocks.size(), 1U);
    EXPECT_EQ(outcome.unstructured.blocks[0]->elementCount, 1008);
}

TEST(TecplotRealFiles, QuadrilateralsBecomeTriangles) {
    const TecplotOutcome outcome = readData("nemoh_cylinder_zone1.dat");
    ASSERT_EQ(errorText(outcome), "");
    ASSERT_EQ(outcome.unstructured.blocks.size(), 1U);
    const zBlock_fe& zone = *outcome.unstructured.blocks[0];
    EXPECT_EQ(zone.title, "zone");
    EXPECT_EQ(zone.nodeCount, 2016);
    EXPECT_EQ(zone.elementCount, 1008);
    EXPECT_EQ(zone.variables.size(), 3U);
    EXPECT_TRUE(consistent(zone));
    expectBox(boxOf(outcome.unstructured), {-0.35, 0, -0.63, 0.35, 0.35, 0});
}

TEST(TecplotRealFiles, AFileWithoutVariablesGivesAZoneWithoutFields) {
    const TecplotOutcome outcome = readData("wamit_cyl_pan.dat");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(titlesOf(outcome.structured), (std::vector<std::string>{"BODY PANEL"}));
    EXPECT_EQ(shapesOf(outcome.structured), (std::vector<std::vector<int>>{{5376, 1344, 0}}));
    EXPECT_TRUE(outcome.structured.blocks[0]->variables.empty());
}

} // namespace
} // namespace velmora

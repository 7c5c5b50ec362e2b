#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interchange.h"
#include "stl_reference.h"
#include "triangle_tools.h"
#include "vrml_reference.h"
#include "zSTLReader.h"
#include "zVRMLReader.h"

namespace velmora {
namespace {

using testing::ElementsAre;

/// A file of the test data, or the wing that stands with the examples.
std::string dataFile(const std::string& name) {
    const char* const folder = name == "c172_wing.stl" ? VELMORA_EXAMPLES : VELMORA_TEST_DATA;
    return std::string(folder) + '/' + name;
}

// Title, nodes, triangles of each zone of a file that must be read without a message.
std::vector<std::tuple<std::string, int, int>> zonesOf(const std::string& name, int droppedNodes = 0) {
    const test::CapturedErrors errors;
    zRegion structured;
    zRegion_fe region;
    EXPECT_TRUE(
        readGeometry(dataFile(name), false, structured, region, [](const std::string& text) { FAIL() << text; }));
    EXPECT_TRUE(structured.blocks.empty());
    EXPECT_EQ(test::occurrences(errors.text(), "Parsing Error: ..."), droppedNodes) << name;
    std::vector<std::tuple<std::string, int, int>> zones;
    for (const auto& zone : region.blocks) {
        EXPECT_TRUE(test::isTriangleZone(*zone));
        zones.emplace_back(zone->title, zone->nodeCount, zone->elementCount);
    }
    return zones;
}

using Zone = std::tuple<std::string, int, int>;

TEST(RealStlFiles, GiveTheirSolids) {
    EXPECT_THAT(zonesOf("iea15_blade.stl"), ElementsAre(Zone("OpenSCAD_Model", 65190, 21730)));
    EXPECT_THAT(zonesOf("c172_wing.stl"), ElementsAre(Zone("Visualization", 10830, 3610)));
    EXPECT_THAT(zonesOf("multibody.stl"), ElementsAre(Zone("bodyB", 36, 12), Zone("bodyA", 60, 20)));
    EXPECT_THAT(zonesOf("pro2stl_cube.stl"), ElementsAre(Zone("PRO2STL", 36, 12)));
    EXPECT_THAT(zonesOf("spider_ascii.stl"), ElementsAre(Zone("NoName_1", 4104, 1368)));
}

// From facet 287 on its words are capitals: that facet is damaged, the next one is not seen.
TEST(RealStlFiles, WordsInCapitalsAreNotKnown) {
    EXPECT_THAT(zonesOf("half_donut.stl"), ElementsAre(Zone("HalfDonut.stl", 858, 286)));
}

TEST(RealStlFiles, AMissingNameCostsAFacetOrASolid) {
    EXPECT_THAT(zonesOf("propeller_upper.stl"), ElementsAre(Zone("facet", 1563, 521)));
    EXPECT_THAT(zonesOf("triangle_with_two_solids.stl"), ElementsAre(Zone("testTriangle_1", 3, 1)));
}

TEST(RealStlFiles, EmptyAndBinaryOnesGiveNothing) {
    EXPECT_TRUE(zonesOf("empty.stl").empty());
    EXPECT_TRUE(zonesOf("binary_unit_cube.stl").empty());
}

TEST(RealVrmlFiles, GiveTheirFaceSets) {
    EXPECT_THAT(zonesOf("many_corners.wrl"), ElementsAre(Zone("Zone_1", 73, 10 + 2 * 60 + 12)));
    const std::vector<Zone> tank = zonesOf("tank.wrl");
    ASSERT_EQ(tank.size(), 42U);
    int nodes = 0;
    int triangles = 0;
    for (std::size_t k = 0; k < tank.size(); ++k) {
        EXPECT_EQ(std::get<0>(tank[k]), "Zone_" + std::to_string(k + 1));
        nodes += std::get<1>(tank[k]);
        triangles += std::get<2>(tank[k]);
    }
    EXPECT_EQ(nodes, 1614);
    EXPECT_EQ(triangles, 2956);
}

TEST(RealVrmlFiles, NodesOutsideTheGrammarAreDropped) {
    EXPECT_TRUE(zonesOf("block.wrl", 14).empty());
    EXPECT_TRUE(zonesOf("comma_points.wrl", 1).empty());
    EXPECT_TRUE(zonesOf("named_coordinates.wrl", 31).empty());
    EXPECT_TRUE(zonesOf("vrml1_indexedfaceset.wrl", 6).empty());
}

TEST(RealVrmlFiles, APartWithoutTheFirstLineIsRefused) {
    zRegion structured;
    zRegion_fe region;
    std::string shown;
    EXPECT_FALSE(readGeometry(dataFile("pa10_base_no_header.wrl"), false, structured, region,
                              [&shown](const std::string& text) { shown = text; }));
    EXPECT_THAT(shown, testing::StartsWith("\n--- Error Message ---\n\nParsing Error: Is not a valid VRML file\n\nIn "
                                           "file:\n'zVRMLReader'\n\nLine No "));
    EXPECT_TRUE(region.blocks.empty());
}

TEST(RealFiles, AreReadAsByAStream) {
    const test::CapturedErrors silence;
    for (const char* const name :
         {"c172_wing.stl", "multibody.stl", "pro2stl_cube.stl", "half_donut.stl", "empty.stl", "propeller_upper.stl",
          "triangle_with_two_solids.stl", "spider_ascii.stl", "binary_unit_cube.stl", "iea15_blade.stl"}) {
        for (const std::size_t blockSize : {std::size_t{61}, TextStream::defaultBlockSize}) {
            zRegion_fe region;
            EXPECT_EQ(test::readWith<zSTLReader>(dataFile(name), region, blockSize), "");
            EXPECT_TRUE(test::sameZones(region, reference::readStl(dataFile(name)))) << name;
        }
    }
    for (const char* const name : {"many_corners.wrl", "tank.wrl", "block.wrl", "comma_points.wrl",
                                   "named_coordinates.wrl", "vrml1_indexedfaceset.wrl", "pa10_base_no_header.wrl"}) {
        for (const std::size_t blockSize : {std::size_t{61}, TextStream::defaultBlockSize}) {
            zRegion_fe region;
            const reference::TriangleFile expected = reference::readVrml(dataFile(name));
            EXPECT_EQ(test::readWith<zVRMLReader>(dataFile(name), region, blockSize), expected.error) << name;
            EXPECT_TRUE(test::sameZones(region, expected)) << name;
        }
    }
}

// Triangles of two equal corners are not written.
TEST(RealStlFiles, ComeBackWithoutTheirDegenerateTriangles) {
    const test::TemporaryFolder folder;
    zRegion_fe region;
    zSTLReader().read(dataFile("spider_ascii.stl"), region);
    zSTLReader writer;
    writer.write(folder / "again.stl", region);
    EXPECT_GE(writer.skippedFacets(), 56);
    zRegion_fe again;
    zSTLReader().read(folder / "again.stl", again);
    ASSERT_EQ(again.blocks.size(), 1U);
    EXPECT_EQ(again.blocks[0]->elementCount, 1368 - writer.skippedFacets());
}

TEST(RealVrmlFiles, ComeBackZoneByZone) {
    const test::TemporaryFolder folder;
    zRegion_fe region;
    zVRMLReader().read(dataFile("tank.wrl"), region);
    zVRMLReader().write(folder / "again.wrl", region);
    zRegion_fe again;
    zVRMLReader().read(folder / "again.wrl", again);
    ASSERT_EQ(again.blocks.size(), region.blocks.size());
    for (std::size_t k = 0; k < again.blocks.size(); ++k) {
        EXPECT_EQ(test::trianglesOf(*again.blocks[k]), test::trianglesOf(*region.blocks[k]));
        EXPECT_EQ(again.blocks[k]->nodeCount, region.blocks[k]->nodeCount);
    }
}

} // namespace
} // namespace velmora

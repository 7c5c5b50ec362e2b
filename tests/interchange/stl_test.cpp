#include "zSTLReader.h"

#include <array>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FileSizeLimit.h"
#include "triangle_tools.h"

namespace velmora {
namespace {

using testing::ElementsAre;

using Point = reference::Point;
using Corners = std::array<std::int64_t, 3>;

std::string vertex(const Point& point) {
    return "vertex " + std::to_string(point[0]) + ' ' + std::to_string(point[1]) + ' ' + std::to_string(point[2]) +
           '\n';
}

std::string facet(const std::vector<Point>& points) {
    std::string text = "facet normal 0 0 0\nouter loop\n";
    for (const Point& point : points) {
        text += vertex(point);
    }
    return text + "endloop\nendfacet\n";
}

const std::string triangle = facet({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});

class Stl : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    std::filesystem::path file(std::string_view text) const { return test::writeFileText(folder_ / "in.stl", text); }

    zRegion_fe read(std::string_view text) const {
        zRegion_fe region;
        EXPECT_EQ(test::readWith<zSTLReader>(file(text), region), "");
        for (const auto& zone : region.blocks) {
            EXPECT_TRUE(test::isTriangleZone(*zone));
        }
        return region;
    }

    std::string write(const zRegion_fe& region) const {
        zSTLReader().write(folder_ / "out.stl", region);
        return test::fileText(folder_ / "out.stl");
    }
};

// Nodes (x, y, z) and triangles as a zone.
std::unique_ptr<zBlock_fe> zoneOf(const std::vector<Point>& nodes, const std::vector<std::array<int, 3>>& triangles,
                                  const std::string& title = "part") {
    const auto elements = static_cast<std::int32_t>(triangles.size());
    auto zone = std::make_unique<zBlock_fe>(static_cast<std::int32_t>(nodes.size()), 4 * elements, elements);
    zone->title = title;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        zArray<double>* const values = zone->addVariable(std::string(1, static_cast<char>('x' + axis)));
        for (std::size_t node = 0; node < nodes.size(); ++node) {
            values->data[node] = nodes[node][axis];
        }
    }
    for (std::size_t element = 0; element < triangles.size(); ++element) {
        std::copy(triangles[element].begin(), triangles[element].end(),
                  zone->connectivity.begin() + static_cast<std::ptrdiff_t>(4 * element));
    }
    return zone;
}

TEST_F(Stl, ASolidIsAZoneWithThreeNodesAFacet) {
    const zRegion_fe region = read("solid part\n" + triangle + triangle + "endsolid part\n");
    ASSERT_EQ(region.blocks.size(), 1U);
    EXPECT_EQ(region.blocks[0]->title, "part");
    EXPECT_THAT(test::trianglesOf(*region.blocks[0]), ElementsAre(Corners{0, 1, 2}, Corners{3, 4, 5}));
    EXPECT_EQ(test::nodesOf(*region.blocks[0])[4], (Point{1, 0, 0}));
}

TEST_F(Stl, ZonesGoBehindThoseOfTheRegion) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf({}, {}, "old"));
    zSTLReader reader;
    reader.read(file("solid a " + triangle + "endsolid a solid b " + triangle + "endsolid b"), region);
    reader.read(file("solid c " + triangle), region);
    EXPECT_THAT(test::titlesOf(region), ElementsAre("old", "a", "b", "c"));
    EXPECT_EQ(region.blocks[3]->nodeCount, 3);
}

TEST_F(Stl, TheNameIsOneWordAndTheRestIsPassedOver) {
    EXPECT_THAT(test::titlesOf(read("solid my part\n" + triangle + "endsolid my part\n")), ElementsAre("my"));
}

TEST_F(Stl, ASolidWithoutANameLosesItsFirstFacet) {
    const zRegion_fe region = read("solid\n" + triangle + triangle + "endsolid x\n");
    ASSERT_THAT(test::titlesOf(region), ElementsAre("facet"));
    EXPECT_EQ(region.blocks[0]->elementCount, 1);
}

TEST_F(Stl, AnEndWithoutANameSwallowsTheNextSolid) {
    const std::string solids = "solid a\n" + triangle + "endsolid\nsolid b\n" + triangle + "endsolid b\n";
    EXPECT_THAT(test::titlesOf(read(solids)), ElementsAre("a"));
}

TEST_F(Stl, WordsBeforeTheSolidArePassedOver) {
    EXPECT_THAT(test::titlesOf(read("Solid SOLID x solids solid a\n" + triangle)), ElementsAre("a"));
}

TEST_F(Stl, AFacetOfFourVerticesIsTwoTriangles) {
    const zRegion_fe region = read("solid a " + facet({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}) + triangle);
    ASSERT_EQ(region.blocks.size(), 1U);
    EXPECT_EQ(region.blocks[0]->nodeCount, 7);
    EXPECT_THAT(test::trianglesOf(*region.blocks[0]),
                ElementsAre(Corners{0, 1, 2}, Corners{0, 2, 3}, Corners{4, 5, 6}));
}

TEST_F(Stl, AFacetOfTwoVerticesIsNothing) {
    const zRegion_fe region = read("solid a " + facet({{5, 5, 5}, {6, 6, 6}}) + triangle);
    ASSERT_EQ(region.blocks.size(), 1U);
    EXPECT_EQ(region.blocks[0]->nodeCount, 3);
    EXPECT_EQ(read("solid a " + facet({{5, 5, 5}, {6, 6, 6}})).blocks.size(), 0U);
}

TEST_F(Stl, ABadNumberLosesItsFacetOnly) {
    const std::string bad = "facet normal 0 0 0 outer loop vertex 0 0 0 vertex 1 oops 0 vertex 0 1 0 endloop endfacet ";
    const zRegion_fe region = read("solid a " + triangle + bad + triangle + "endsolid a");
    ASSERT_EQ(region.blocks.size(), 1U);
    EXPECT_EQ(region.blocks[0]->elementCount, 2);
}

TEST_F(Stl, ABadNormalLosesItsFacetOnly) {
    const std::string bad =
        "facet normal nan nan nan outer loop vertex 0 0 0 vertex 1 0 0 vertex 0 1 0 endloop endfacet ";
    const zRegion_fe region = read("solid a " + bad + triangle + "endsolid a");
    ASSERT_EQ(region.blocks.size(), 1U);
    EXPECT_EQ(region.blocks[0]->elementCount, 1);
}

TEST_F(Stl, ANumberTooLargeLosesItsFacet) {
    EXPECT_TRUE(read("solid a facet normal 0 0 0 outer loop vertex 1e999 0 0 vertex 1 0 0 vertex 0 1 0 endloop")
                    .blocks.empty());
}

TEST_F(Stl, WordsBetweenTheNumbersAreNotLookedAt) {
    const zRegion_fe region =
        read("solid a facet n 0 0 0 o l a 0 0 0 b 1 0 0 c 0 1 0 endloop z " + triangle + "endsolid a");
    ASSERT_EQ(region.blocks.size(), 1U);
    EXPECT_EQ(region.blocks[0]->elementCount, 2);
}

TEST_F(Stl, ASolidThatTheFileCutsOffKeepsItsWholeFacets) {
    const zRegion_fe region = read("solid a\n" + triangle + "facet normal 0 0 0 outer loop vertex 0 0 0 vertex 1");
    ASSERT_EQ(region.blocks.size(), 1U);
    EXPECT_EQ(region.blocks[0]->elementCount, 1);
}

TEST_F(Stl, AFileWithoutASolidGivesNothing) {
    EXPECT_TRUE(read("").blocks.empty());
    EXPECT_TRUE(read("  \n").blocks.empty());
    EXPECT_TRUE(read(triangle).blocks.empty());
    EXPECT_TRUE(read("solid").blocks.empty());
    EXPECT_TRUE(read("solid a endsolid a").blocks.empty());
    EXPECT_TRUE(read(std::string("solid binary\0\x80\x01\0\0\0 and so on", 28)).blocks.empty());
}

TEST_F(Stl, AFileThatCannotBeOpenedIsAFileErrorOfTheReader) {
    zRegion_fe region;
    try {
        zSTLReader().read(folder_ / "missing.stl", region);
        FAIL() << "no error";
    } catch (const FileError& error) {
        EXPECT_EQ(error.message(), "\n--- Error Message ---\n\nFile Error: ...\n\nIn file:\n'zSTLReader'\n\nLine No " +
                                       std::to_string(error.line()));
    }
    EXPECT_THROW(zSTLReader().read(folder_.path(), region), FileError);
}

TEST_F(Stl, MillionsOfDamagedFacetsEnd) {
    std::string text = "solid a ";
    for (int i = 0; i < 300000; ++i) {
        text += "facet x ";
    }
    EXPECT_TRUE(read(text).blocks.empty());
}

// (c - a) x (b - a) = (0, 1, 0) x (1, 0, 0) = (0, 0, -1): against the right-hand rule.
TEST_F(Stl, AFacetIsWrittenWithTheNormalAgainstTheRightHandRule) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf({{0, 0, 0}, {2, 0, 0}, {0, 0.5, 0}}, {{0, 1, 2}}));
    EXPECT_EQ(write(region), "solid part\n"
                             "  facet normal 0 0 -1\n"
                             "    outer loop\n"
                             "      vertex 0 0 0\n"
                             "      vertex 2 0 0\n"
                             "      vertex 0 0.5 0\n"
                             "    endloop\n"
                             "  endfacet\n"
                             "endsolid part\n");
}

TEST_F(Stl, NumbersAreWrittenWithSixSignificantDigits) {
    zRegion_fe region;
    region.blocks.push_back(
        zoneOf({{1234567.0, 0.000012345678, -0.0}, {1e-300, 1.0 / 3.0, 7}, {1, 2, 3}}, {{0, 1, 2}}));
    const std::string text = write(region);
    EXPECT_THAT(text, testing::HasSubstr("      vertex 1.23457e+06 1.23457e-05 -0\n"));
    EXPECT_THAT(text, testing::HasSubstr("      vertex 1e-300 0.333333 7\n"));
}

TEST_F(Stl, ATriangleWithTwoEqualCornersIsNotWritten) {
    zRegion_fe region;
    region.blocks.push_back(
        zoneOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}}, {{0, 1, 2}, {0, 1, 3}, {1, 1, 2}, {2, 0, 1}}));
    zSTLReader writer;
    writer.write(folder_ / "out.stl", region);
    EXPECT_EQ(writer.skippedFacets(), 2);
    zRegion_fe again;
    zSTLReader().read(folder_ / "out.stl", again);
    ASSERT_EQ(again.blocks.size(), 1U);
    EXPECT_EQ(again.blocks[0]->elementCount, 2);
}

TEST_F(Stl, EveryZoneIsASolidAlsoAnEmptyOne) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf({}, {}, "first one"));
    region.blocks.push_back(zoneOf({}, {}, ""));
    EXPECT_EQ(write(region), "solid first one\nendsolid first one\nsolid Zone_2\nendsolid Zone_2\n");
    EXPECT_EQ(write(zRegion_fe()), "");
}

TEST_F(Stl, ANameIsWrittenSoThatItTakesNoFacetWithIt) {
    zRegion_fe region;
    for (const char* const name : {"", " \t", "facet", "facet left", "left facet", "left solid", "a endsolid b",
                                   "solid", "facets", "vertex vertex"}) {
        region.blocks.push_back(zoneOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}, name));
    }
    const zRegion_fe again = read(write(region));
    std::vector<std::string> names;
    for (const auto& zone : again.blocks) {
        EXPECT_EQ(zone->elementCount, 1) << zone->title;
        names.push_back(zone->title);
    }
    EXPECT_THAT(names,
                ElementsAre("Zone_1", "Zone_2", "facet_", "facet_", "left", "left", "a", "solid", "facets", "vertex"));
}

TEST_F(Stl, TheFirstThreeFieldsAreTheCoordinates) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {{0, 1, 2}}));
    region.blocks[0]->variables[0]->name = "p";
    region.blocks[0]->addVariable("x");
    EXPECT_THAT(write(region), testing::HasSubstr("      vertex 1 0 0\n      vertex 0 1 0\n      vertex 0 0 1\n"));
}

TEST_F(Stl, ElementsOfNodesThatAreNotThereAreLeftOut) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 3}, {-1, 1, 2}, {0, 1, 2}}));
    region.blocks[0]->elementCount = 5;
    EXPECT_EQ(test::occurrences(write(region), "endfacet"), 1);
    region.blocks[0]->variables[1]->data.clear();
    EXPECT_EQ(test::occurrences(write(region), "endfacet"), 0);
    region.blocks[0]->variables.clear();
    EXPECT_EQ(write(region), "solid part\nendsolid part\n");
}

TEST_F(Stl, WritingRenamesNoZone) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}));
    write(region);
    EXPECT_THAT(test::titlesOf(region), ElementsAre("part"));
}

// A cube with edges of 1: corner bits x, y, z from the number of the node.
TEST_F(Stl, ACubeComesBackAsTwelveTrianglesOf36Nodes) {
    std::vector<Point> nodes;
    for (int corner = 0; corner < 8; ++corner) {
        nodes.push_back(
            {static_cast<double>(corner & 1), static_cast<double>(corner >> 1 & 1), static_cast<double>(corner >> 2)});
    }
    zRegion_fe region;
    region.blocks.push_back(zoneOf(nodes,
                                   {{0, 1, 2},
                                    {1, 3, 2},
                                    {4, 6, 5},
                                    {5, 6, 7},
                                    {0, 4, 1},
                                    {1, 4, 5},
                                    {2, 3, 6},
                                    {3, 7, 6},
                                    {0, 2, 4},
                                    {2, 6, 4},
                                    {1, 5, 3},
                                    {3, 5, 7}},
                                   "cube"));
    const zRegion_fe again = read(write(region));
    ASSERT_THAT(test::titlesOf(again), ElementsAre("cube"));
    EXPECT_EQ(again.blocks[0]->nodeCount, 36);
    EXPECT_EQ(again.blocks[0]->elementCount, 12);
    const std::vector<Point> soup = test::nodesOf(*again.blocks[0]);
    for (std::size_t element = 0; element < 12; ++element) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            EXPECT_EQ(soup[3 * element + corner],
                      nodes[static_cast<std::size_t>(region.blocks[0]->connectivity[4 * element + corner])]);
        }
    }
    EXPECT_EQ(write(again), test::fileText(folder_ / "in.stl"));
}

TEST_F(Stl, AFileThatCannotBeWrittenIsAFileError) {
    EXPECT_THROW(zSTLReader().write(folder_ / "no" / "out.stl", zRegion_fe()), FileError);
    EXPECT_THROW(zSTLReader().write(folder_.path(), zRegion_fe()), FileError);
}

TEST_F(Stl, AFullDiskIsAFileError) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}));
    const test::FileSizeLimit full(0);
    EXPECT_THROW(zSTLReader().write(folder_ / "full.stl", region), FileError);
}

} // namespace
} // namespace velmora

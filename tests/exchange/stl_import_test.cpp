#include "stl_import.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Imported read(const std::string& text, const ImportOptions& options = {}) {
    return importText(importStl, text, options);
}

const Corners first = {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}};
const Corners second = {{{0, 0, 1}, {2, 0, 1}, {0, 2, 1}}};
const std::string firstFacet =
    "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n";
const std::string secondFacet =
    "facet normal 0 0 1\nouter loop\nvertex 0 0 1\nvertex 2 0 1\nvertex 0 2 1\nendloop\nendfacet\n";

// A binary file: a header of 80 bytes, the count, and the facets with normal 0 and these attributes.
std::string binary(std::uint32_t count, const std::vector<Corners>& facets, std::string header = "part 7",
                   std::uint16_t attributes = 0) {
    header.resize(80, '\0');
    Bytes bytes;
    bytes.addText(header).add(count);
    for (const Corners& corners : facets) {
        bytes.addAll<float>({0, 0, 0});
        for (const auto& corner : corners) {
            bytes.addAll<float>({corner[0], corner[1], corner[2]});
        }
        bytes.add(attributes);
    }
    return bytes.text;
}

TEST(StlImport, ATextSolidIsAZoneOfThreePointsAFacet) {
    const Imported file = read("solid two parts\n" + firstFacet + secondFacet + "endsolid two parts\n");
    EXPECT_EQ(file.record.format, "stl-text");
    EXPECT_TRUE(file.record.complete);
    EXPECT_TRUE(file.record.lossless);
    EXPECT_THAT(titlesOf(file.model), ElementsAre("two parts"));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(first, second));
    EXPECT_EQ(file.model.region.blocks[0]->nodeCount, 6);
    EXPECT_EQ(file.record.found, (Counts{{"facets", 2}, {"solids", 1}, {"triangles", 2}}));
    EXPECT_EQ(file.record.kept, file.record.found);
}

/// One solid "a" of the first facet.
void expectFirstFacet(const std::string& text) {
    const Imported file = read(text);
    EXPECT_THAT(cornersOf(file.model), ElementsAre(first)) << text;
    EXPECT_TRUE(file.record.complete) << text;
    EXPECT_THAT(titlesOf(file.model), ElementsAre("a"));
}

TEST(StlImport, EverySpellingOfTheKeywordsIsTaken) {
    const std::string body = "vertex 0 0 0 vertex 1 0 0 vertex 0 1 0 ";
    for (const std::string& text :
         std::vector<std::string>{"SOLID a\nFACET NORMAL 0 0 1\nOUTER LOOP\nVERTEX 0 0 0\nVERTEX 1 0 0\nVERTEX 0 1 "
                                  "0\nENDLOOP\nENDFACET\nENDSOLID a\n",
                                  "  Solid a\r\n Facet Normal 0 0 1\r\n Outer Loop\r\n Vertex 0 0 0\r\n Vertex 1 0 "
                                  "0\r\n Vertex 0 1 0\r\n EndLoop\r\n "
                                  "EndFacet\r\nEndSolid\r\n",
                                  "solid a\rfacet normal 0 0 1\router loop\rvertex 0 0 0\rvertex 1 0 0\rvertex 0 1 "
                                  "0\rendloop\rendfacet\rendsolid"}) {
        expectFirstFacet(text);
    }
    for (const std::string& text : std::vector<std::string>{
             "solid a facet normal 0 0 1 outer loop " + body + "endloop endfacet endsolid a",
             "solid a\nfacet normal 0 0 1 outerloop " + body + "end loop end facet end solid a\n",
             "solid a\nfacet " + body + "endfacet\nendsolid\n",
             "solid a\nfacet normal nan nan nan outer loop " + body + "endloop endfacet endsolid a\n",
             "solid a\nfacet normal 1.#QNAN 0 x outer loop vertex 0.0,0D0,0e0 vertex +1. 0 0 " +
                 std::string("vertex 0 1.0E+00 0 endloop endfacet\nendsolid")}) {
        expectFirstFacet(text);
    }
}

TEST(StlImport, ASolidWithoutANameLosesNoFacet) {
    const Imported file = read("solid\n" + firstFacet + "endsolid\nsolid\n" + secondFacet + "endsolid\n");
    EXPECT_THAT(titlesOf(file.model), ElementsAre("", ""));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(first, second));
    EXPECT_TRUE(file.record.complete);
}

TEST(StlImport, SolidsOnOneLineAreToldApart) {
    const std::string facet = "facet normal 0 0 1 outer loop vertex 0 0 0 vertex 1 0 0 vertex 0 1 0 endloop endfacet ";
    const Imported file = read("solid a " + facet + "endsolid a solid b " + facet + "endsolid b");
    EXPECT_THAT(titlesOf(file.model), ElementsAre("a", "b"));
    EXPECT_TRUE(file.record.complete);
}

TEST(StlImport, TheNextSolidEndsOneThatWasNotClosed) {
    const Imported file = read("solid a\n" + firstFacet + "solid b\n" + secondFacet + "endsolid b\n");
    EXPECT_THAT(titlesOf(file.model), ElementsAre("a", "b"));
    EXPECT_TRUE(file.record.complete);
}

TEST(StlImport, AFileThatEndsInAFacetKeepsTheWholeOnes) {
    const Imported file = read("solid a\n" + firstFacet + secondFacet.substr(0, secondFacet.size() - 20));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(first));
    EXPECT_FALSE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_EQ(found(file, "facets"), 2);
    EXPECT_EQ(kept(file, "facets"), 1);
    EXPECT_THAT(file.record.reasons,
                ElementsAre("The file ends before its last solid does", "Facets that are damaged: 1"));
}

TEST(StlImport, AFacetOfFourCornersIsTwoTriangles) {
    const Imported file = read("solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\n"
                               "vertex 0 1 0\nendloop\nendfacet\nendsolid a\n");
    EXPECT_THAT(cornersOf(file.model),
                ElementsAre(Corners{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}}, Corners{{{0, 0, 0}, {1, 1, 0}, {0, 1, 0}}}));
    EXPECT_EQ(file.model.region.blocks[0]->nodeCount, 6);
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Facets of more than three corners, made triangles: 1"});
}

TEST(StlImport, FacetsOfFewerThanThreeCornersAreDamaged) {
    for (const char* const body :
         {"", "vertex 0 0 0 ", "vertex 0 0 0 vertex 1 0 0 ", "vertex 0 0 0 vertex 1 0 0 vertex 0 y 0 "}) {
        const Imported file = read("solid a\nfacet normal 0 0 1 outer loop " + std::string(body) +
                                   "endloop endfacet\n" + firstFacet + "endsolid\n");
        EXPECT_THAT(cornersOf(file.model), ElementsAre(first)) << body;
        EXPECT_FALSE(file.record.complete);
        EXPECT_EQ(found(file, "facets"), 2);
        EXPECT_EQ(kept(file, "facets"), 1);
    }
}

TEST(StlImport, CoordinatesThatAreNotFiniteStayOut) {
    for (const char* const bad : {"nan", "inf", "1e999", "-1e999"}) {
        const Imported file = read("solid a\nfacet normal 0 0 1 outer loop vertex 0 0 " + std::string(bad) +
                                   " vertex 1 0 0 vertex 0 1 0 endloop endfacet\n" + firstFacet + "endsolid\n");
        EXPECT_THAT(cornersOf(file.model), ElementsAre(first)) << bad;
        EXPECT_EQ(file.record.reasons, std::vector<std::string>{"Facets with coordinates that are not finite: 1"});
    }
}

TEST(StlImport, CoordinatesThatTheScaleMakesInfiniteStayOut) {
    ImportOptions options;
    options.scale = 1e308;
    const Corners small = {{{0, 0, 0}, {1e308, 0, 0}, {0, 1e308, 0}}};
    const std::string large =
        "facet normal 0 0 1 outer loop vertex 0 0 0 vertex 10 0 0 vertex 0 1 0 endloop endfacet\n";
    for (const std::string& text :
         {"solid a\n" + large + firstFacet + "endsolid\n", binary(2, {{{{0, 0, 0}, {10, 0, 0}, {0, 1, 0}}}, first})}) {
        const Imported file = read(text, options);
        EXPECT_THAT(cornersOf(file.model), ElementsAre(small));
        EXPECT_EQ(kept(file, "facets"), 1);
        EXPECT_EQ(file.record.reasons, std::vector<std::string>{"Facets with coordinates that are not finite: 1"});
    }
}

TEST(StlImport, DegenerateFacetsAreKeptAndTold) {
    const Imported file = read("solid a\nfacet normal 0 0 0 outer loop vertex 0 0 0 vertex 1 1 1 vertex 2 2 2 endloop "
                               "endfacet\nendsolid\n");
    EXPECT_EQ(kept(file, "triangles"), 1);
    EXPECT_TRUE(file.record.complete);
    EXPECT_TRUE(file.record.lossless);
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Degenerate triangles: 1"});
}

// Four corners at three places: the two triangles share an edge. -0 is not 0, to the bit.
TEST(StlImport, EqualPointsMergeOnlyWhenAsked) {
    const std::string text = "solid a\nfacet outer loop vertex 0 0 0 vertex 1 0 0 vertex 0 1 0 endloop endfacet\n"
                             "facet outer loop vertex 1 0 0 vertex -0 0 0 vertex 0 1 0 endloop endfacet\nendsolid\n";
    ImportOptions merge;
    merge.merge = true;
    const Imported file = read(text, merge);
    EXPECT_EQ(file.model.region.blocks[0]->nodeCount, 4);
    EXPECT_THAT(trianglesOf(*file.model.region.blocks[0]),
                ElementsAre(std::array<std::int32_t, 3>{0, 1, 2}, std::array<std::int32_t, 3>{1, 3, 2}));
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Points merged: 2"});
    EXPECT_FALSE(file.record.lossless);
    EXPECT_EQ(read(text).model.region.blocks[0]->nodeCount, 6);
}

TEST(StlImport, TheScaleIsThatOfEveryCoordinate) {
    ImportOptions options;
    options.scale = 0.001;
    const Imported file =
        read("solid a\nfacet outer loop vertex 1 2 3 vertex 4 5 6 vertex 7 8 10 endloop endfacet\nendsolid\n", options);
    EXPECT_THAT(cornersOf(file.model), ElementsAre(Corners{{{1 * 0.001, 2 * 0.001, 3 * 0.001},
                                                            {4 * 0.001, 5 * 0.001, 6 * 0.001},
                                                            {7 * 0.001, 8 * 0.001, 10 * 0.001}}}));
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Coordinates scaled"});
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
}

TEST(StlImport, ABinaryFileIsOneZoneTitledByItsHeader) {
    const Imported file = read(binary(2, {first, second}));
    EXPECT_EQ(file.record.format, "stl-binary");
    EXPECT_THAT(titlesOf(file.model), ElementsAre("part 7"));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(first, second));
    EXPECT_TRUE(file.record.complete);
    EXPECT_TRUE(file.record.lossless);
    EXPECT_EQ(file.record.kept, (Counts{{"facets", 2}, {"solids", 1}, {"triangles", 2}}));
}

TEST(StlImport, ABinaryFileMayBeginWithSolid) {
    const Imported file = read(binary(1, {first}, "solid body"));
    EXPECT_EQ(file.record.format, "stl-binary");
    EXPECT_THAT(titlesOf(file.model), ElementsAre("body"));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(first));
}

TEST(StlImport, TheSizeDecidesWhenTheCountIsWrong) {
    for (const std::uint32_t count : {0U, 1U, 3U, 0xFFFFFFFFU}) {
        const Imported file = read(binary(count, {first, second}));
        EXPECT_THAT(cornersOf(file.model), ElementsAre(first, second)) << count;
        EXPECT_TRUE(file.record.complete);
        EXPECT_EQ(file.record.changed,
                  std::vector<std::string>{"Count of facets by the size: 2 instead of " + std::to_string(count)});
    }
}

TEST(StlImport, ABinaryFileCutInAFacetKeepsTheWholeOnes) {
    const std::string text = binary(2, {first, second});
    for (const std::size_t size : {text.size() - 1, text.size() - 49}) {
        const Imported file = read(text.substr(0, size));
        EXPECT_THAT(cornersOf(file.model), ElementsAre(first));
        EXPECT_FALSE(file.record.complete);
        EXPECT_EQ(found(file, "facets"), 2);
        EXPECT_EQ(kept(file, "facets"), 1);
    }
}

TEST(StlImport, BinarySolidsOneBehindTheOtherAreZones) {
    const std::string two = binary(1, {first}, "hull") + binary(2, {second, first}, "keel");
    const Imported file = read(two);
    EXPECT_THAT(test::titlesOf(file.model), ElementsAre("hull", "keel"));
    EXPECT_THAT(test::cornersOf(file.model), ElementsAre(first, second, first));
    EXPECT_TRUE(file.record.complete);
    EXPECT_TRUE(file.record.lossless);
    EXPECT_EQ(file.record.found, (Counts{{"facets", 3}, {"solids", 2}, {"triangles", 3}}));
    EXPECT_EQ(file.record.kept, file.record.found);
    // Counts that do not lead to the end of the file tell of one solid, and of something behind it.
    const Imported more = read(two + "abc");
    EXPECT_THAT(test::titlesOf(more.model), ElementsAre("hull"));
    EXPECT_FALSE(more.record.complete);
}

TEST(StlImport, BytesBehindTheLastFacetAreToldAndNoGeometry) {
    const Imported file = read(binary(1, {first}) + "abc");
    EXPECT_THAT(cornersOf(file.model), ElementsAre(first));
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_THAT(file.record.reasons, ElementsAre("Bytes behind the last facet: 3"));
}

TEST(StlImport, ABinaryFacetThatIsNotFiniteStaysOut) {
    Corners bad = second;
    bad[1][2] = std::numeric_limits<double>::quiet_NaN();
    const Imported file = read(binary(2, {bad, first}));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(first));
    EXPECT_FALSE(file.record.complete);
    EXPECT_THAT(file.record.reasons, ElementsAre("Facets with coordinates that are not finite: 1"));
}

TEST(StlImport, AttributesOfFacetsAreToldAsLost) {
    const Imported file = read(binary(1, {first}, "x", 0x8001));
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_THAT(file.record.reasons, ElementsAre("The attributes of facets (colours) are not kept"));
}

TEST(StlImport, TextWithAControlByteInItStaysText) {
    const std::string solid = "solid a\n" + firstFacet + "endsolid a\n";
    std::string late = solid;
    while (late.size() < 8000) {
        late += solid;
    }
    for (const std::string& text : {solid + solid + std::string(1, '\0'),
                                    "solid a\x01"
                                    "b\n" +
                                        firstFacet + "endsolid a\n",
                                    late + '\a'}) {
        const Imported file = read(text);
        EXPECT_EQ(file.record.format, "stl-text");
        EXPECT_TRUE(file.record.complete);
        ASSERT_FALSE(file.model.region.blocks.empty());
        EXPECT_EQ(cornersOf(file.model).front(), first);
    }
}

// A count that does not fit, and numbers such as a program or a picture has, whatever the size is.
TEST(StlImport, BytesOfAnotherKindAreNoFacets) {
    std::uint32_t state = 12345;
    for (std::size_t size = 84; size < 6000; size += 37) {
        std::string bytes;
        while (bytes.size() < size) {
            state = state * 1664525U + 1013904223U;
            bytes += static_cast<char>(state >> 24U);
        }
        const Imported file = read(bytes);
        EXPECT_TRUE(file.model.empty()) << size;
        EXPECT_TRUE(size < 84 + 50 || !file.record.complete) << size;
    }
    const std::string solid = "solid a\n" + firstFacet + "endsolid a\n";
    std::string wide;
    for (const char letter : solid + solid + solid) {
        wide += letter;
        wide += '\0';
    }
    EXPECT_TRUE(read("\xFF\xFE" + wide).model.empty());
    EXPECT_FALSE(read("\xFF\xFE" + wide).record.complete);
}

TEST(StlImport, WhatIsNoStlFileGivesNothing) {
    for (const std::string& text : std::vector<std::string>{std::string("x"), std::string("hello world"),
                                                            std::string("\0\0\0", 3), std::string(90, '\x01')}) {
        const Imported file = read(text);
        EXPECT_TRUE(file.model.empty());
        EXPECT_FALSE(file.record.complete);
    }
}

TEST(StlImport, AnEmptyFileAndAnEmptySolidAreWholeAndGiveNothing) {
    for (const char* const text : {"", "solid none\nendsolid none\n"}) {
        const Imported file = read(text);
        EXPECT_TRUE(file.model.empty());
        EXPECT_TRUE(file.record.complete);
        EXPECT_THAT(file.record.reasons, IsEmpty());
        EXPECT_EQ(kept(file, "facets"), 0);
    }
    const Imported file = read(binary(0, {}));
    EXPECT_TRUE(file.model.empty());
    EXPECT_TRUE(file.record.complete);
}

} // namespace
} // namespace velmora::test

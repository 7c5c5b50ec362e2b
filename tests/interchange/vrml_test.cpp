#include "zVRMLReader.h"

#include <array>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FileSizeLimit.h"
#include "triangle_tools.h"

namespace velmora {
namespace {

using testing::ElementsAre;

using Corners = std::array<std::int64_t, 3>;
using Point = reference::Point;

const std::string header = "#VRML V2.0 utf8\n";
const std::string points = "coord Coordinate { point [ 0 0 0 1 0 0 1 1 0 0 1 0 ] } ";
const std::string faces = "coordIndex [ 0 1 2 -1 ] ";

std::string node(const std::string& fields) {
    return "Shape { geometry IndexedFaceSet { " + fields + "} }\n";
}

class Vrml : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    std::filesystem::path file(std::string_view text) const { return test::writeFileText(folder_ / "in.wrl", text); }

    // The error, or an empty text; what is written to the error stream goes to `complaints_`.
    std::string read(std::string_view text) {
        const test::CapturedErrors errors;
        region_ = zRegion_fe();
        const std::string error = test::readWith<zVRMLReader>(file(text), region_);
        complaints_ = errors.text();
        for (const auto& zone : region_.blocks) {
            EXPECT_TRUE(test::isTriangleZone(*zone));
        }
        return error;
    }

    // How many nodes of the text were dropped with a text on the error stream; the read itself must succeed.
    int dropped(const std::string& nodes) {
        EXPECT_EQ(read(header + nodes), "");
        return test::occurrences(
            complaints_, "\n--- Error Message ---\n\nParsing Error: ...\n\nIn file:\n'zVRMLReader'\n\nLine No ");
    }

    zRegion_fe region_;
    std::string complaints_;
};

TEST_F(Vrml, ANodeIsAZoneOfItsPointsAndFaces) {
    EXPECT_EQ(dropped(node(points + faces)), 0);
    ASSERT_THAT(test::titlesOf(region_), ElementsAre("Zone_1"));
    EXPECT_THAT(test::nodesOf(*region_.blocks[0]),
                ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{1, 1, 0}, Point{0, 1, 0}));
    EXPECT_THAT(test::trianglesOf(*region_.blocks[0]), ElementsAre(Corners{0, 1, 2}));
    EXPECT_EQ(complaints_, "");
}

TEST_F(Vrml, FieldsStandInAnyOrder) {
    EXPECT_EQ(dropped(node(faces + points)), 0);
    EXPECT_EQ(region_.blocks.size(), 1U);
}

TEST_F(Vrml, ZonesGoBehindThoseOfTheRegionAndCountFromOne) {
    zRegion_fe region;
    region.blocks.push_back(std::make_unique<zBlock_fe>(0, 0, 0));
    zVRMLReader reader;
    reader.read(file(header + node(points + faces)), region);
    reader.read(file(header + node(points + faces)), region);
    EXPECT_THAT(test::titlesOf(region), ElementsAre("", "Zone_1", "Zone_1"));
}

TEST_F(Vrml, BothVersionsAndEitherCaseAreAccepted) {
    for (const char* const line : {"#VRML V2.0 utf8\n", "#vrml v2.0 utf8\n", "#VRML V1.0 ascii\n", "#VRML V2.0 \n",
                                   "#VRML V2.0 utf8 CosmoWorlds V1.0\r\n", "#VRML V02.14 x\n"}) {
        EXPECT_EQ(read(line + node(points + faces)), "") << line;
        EXPECT_EQ(region_.blocks.size(), 1U) << line;
    }
}

TEST_F(Vrml, AnotherVersionIsUnsupported) {
    for (const char* const line : {"#VRML V3.0 utf8\n", "#VRML V0.0 utf8\n", "#VRML V20.0 utf8\n"}) {
        EXPECT_EQ(read(line + node(points + faces)), "File Error: Unsupported version of VRML file") << line;
        EXPECT_TRUE(region_.blocks.empty());
    }
}

TEST_F(Vrml, AVersionBeyondAllNumbersIsAValueErrorAtOnce) {
    EXPECT_EQ(read("#VRML V" + std::string(2'000'000, '9') + ".0 utf8\n"), "Value Error: ...");
}

TEST_F(Vrml, AnotherFirstLineIsNotValid) {
    for (const char* const line :
         {"", "\n", "#VRML V2.0\n", "#VRML V2.0utf8\n", "VRML V2.0 utf8\n", " #VRML V2.0 utf8\n", "#VRML 2.0 utf8\n",
          "#VRML V2. utf8\n", "#VRML V.0 utf8\n", "#VRML V2 utf8\n"}) {
        EXPECT_EQ(read(line + node(points + faces)), "Parsing Error: Is not a valid VRML file") << line;
    }
    EXPECT_EQ(read(""), "Parsing Error: Is not a valid VRML file");
}

TEST_F(Vrml, AVersionBeyondAnIntegerIsAValueError) {
    EXPECT_EQ(read("#VRML V99999999999.0 utf8\n"), "Value Error: ...");
}

TEST_F(Vrml, AnEndlessFirstLineEnds) {
    EXPECT_EQ(read("#VRML V2.0 " + std::string(1000000, 'x') + '\n' + node(points + faces)), "");
    EXPECT_EQ(region_.blocks.size(), 1U);
    EXPECT_NE(read("#VRML V" + std::string(200000, '2') + '\n'), "");
    EXPECT_NE(read("#VRML V" + std::string(200000, '2') + " x\n"), "");
}

TEST_F(Vrml, AFileOfTheHeaderAloneGivesNothing) {
    EXPECT_EQ(read("#VRML V2.0 utf8"), "");
    EXPECT_EQ(read(header), "");
    EXPECT_EQ(read(header + "Shape { geometry Sphere { } }"), "");
    EXPECT_TRUE(region_.blocks.empty());
}

TEST_F(Vrml, WordsBeforeTheNodeArePassedOver) {
    EXPECT_EQ(dropped("DEF I Shape { geometry DEF Iris IndexedFaceSet { " + points + faces + "} }\n"), 0);
    EXPECT_EQ(region_.blocks.size(), 1U);
}

TEST_F(Vrml, TheNodesWordMayEndAnotherButNotGoOn) {
    EXPECT_EQ(dropped("xIndexedFaceSet{" + points + faces + "}"), 0);
    EXPECT_THAT(test::titlesOf(region_), ElementsAre("Zone_1"));
    EXPECT_EQ(dropped("IndexedFaceSets{" + points + faces + "}"), 0);
    EXPECT_TRUE(region_.blocks.empty());
    EXPECT_EQ(dropped("IIndexedFaceSet{" + points + faces + "}"), 0);
    EXPECT_TRUE(region_.blocks.empty());
}

TEST_F(Vrml, BracketsNeedNoSpaceAround) {
    EXPECT_EQ(dropped("IndexedFaceSet{coord Coordinate{point[0 0 0 1 0 0 0 1 0]}coordIndex[0 1 2]}"), 0);
    EXPECT_EQ(region_.blocks.size(), 1U);
}

TEST_F(Vrml, CommasInThePointListDropTheNode) {
    EXPECT_EQ(dropped(node("coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0 ] } " + faces) + node(points + faces)), 1);
    EXPECT_THAT(test::titlesOf(region_), ElementsAre("Zone_2"));
}

TEST_F(Vrml, CommasInTheIndexListDropTheNode) {
    EXPECT_EQ(dropped(node(points + "coordIndex [ 0, 1, 2, -1 ] ")), 1);
    EXPECT_TRUE(region_.blocks.empty());
}

TEST_F(Vrml, DroppedAndEmptyNodesAreCounted) {
    EXPECT_EQ(dropped(node(points) + node(faces) + node("5 ") + node(points + faces)), 1);
    EXPECT_THAT(test::titlesOf(region_), ElementsAre("Zone_4"));
}

TEST_F(Vrml, APolygonIsAFanFromItsWidestCorner) {
    const std::string kite = "coord Coordinate { point [ 0 0 0 3 0 0 1 1 0 0 3 0 ] } ";
    EXPECT_EQ(dropped(node(kite + "coordIndex [ 0 1 2 3 -1 ] ")), 0);
    EXPECT_THAT(test::trianglesOf(*region_.blocks.at(0)), ElementsAre(Corners{2, 3, 0}, Corners{2, 0, 1}));
}

TEST_F(Vrml, TheLastPolygonNeedsNoEndMark) {
    EXPECT_EQ(dropped(node(points + "coordIndex [ 0 1 2 -1 0 2 3 ] ")), 0);
    EXPECT_THAT(test::trianglesOf(*region_.blocks.at(0)), ElementsAre(Corners{0, 1, 2}, Corners{0, 2, 3}));
}

TEST_F(Vrml, AnIncompletePointIsNotTaken) {
    EXPECT_EQ(dropped(node("coord Coordinate { point [ 0 0 0 1 0 0 0 1 0 7 7 ] } " + faces)), 0);
    EXPECT_EQ(region_.blocks.at(0)->nodeCount, 3);
}

TEST_F(Vrml, AnEndMarkBehindAnEndMarkIsACorner) {
    EXPECT_EQ(read(header + node(points + "coordIndex [ 0 1 2 -1 -1 0 1 2 -1 ] ")), "Value Error: ...");
}

TEST_F(Vrml, AFaceOfTooFewCornersEndsTheRead) {
    EXPECT_EQ(read(header + node(points + faces) + node(points + "coordIndex [ 0 1 -1 ] ")), "Algorithm Error: ...");
    EXPECT_EQ(region_.blocks.size(), 1U);
}

TEST_F(Vrml, AFaceOfAPointThatIsNotThereEndsTheRead) {
    EXPECT_EQ(read(header + node(points + "coordIndex [ 0 1 4 -1 ] ")), "Value Error: ...");
    EXPECT_EQ(read(header + node(points + "coordIndex [ 0 1 2 -5 ] ")), "Value Error: ...");
    EXPECT_TRUE(region_.blocks.empty());
}

TEST_F(Vrml, FieldsOfEveryKindAreSkipped) {
    for (const char* const field : {"color NULL", "solid FALSE", "ccw TRUE", "creaseAngle 0.5", "creaseAngle -.5e1x",
                                    "colorIndex [ 1 [ 2 ] 3 ]", "other ( a ( b ) c )", "more { a { } b }",
                                    "color Color { color [ 1 0 0 ] }", "list Name [ ]", "list Name ( )"}) {
        EXPECT_EQ(dropped(node(points + field + ' ' + faces)), 0) << field;
        EXPECT_EQ(region_.blocks.size(), 1U) << field;
    }
}

TEST_F(Vrml, FieldsOfNoKnownKindDropTheNode) {
    for (const char* const field : {"color DEF a Color { }", "color \"text\"", "color , ", "color Color 5", "color ]",
                                    "color 1e999", "co1or NULL", "color Color }", "coord DEF a-b Coordinate { }"}) {
        EXPECT_EQ(dropped(node(points + faces + field + ' ') + node(points + faces)), 1) << field;
        EXPECT_THAT(test::titlesOf(region_), ElementsAre("Zone_2")) << field;
    }
}

TEST_F(Vrml, BracketsInStringsDoNotCount) {
    for (const char* const field :
         {R"(text [ "]" ])", R"(text [ "\"]" ])", R"(text { "}" "{" })", R"(text [ "\\" ])"}) {
        EXPECT_EQ(dropped(node(std::string(field) + ' ' + points + faces)), 0) << field;
        EXPECT_EQ(region_.blocks.size(), 1U) << field;
    }
}

TEST_F(Vrml, ALongSkippedFieldIsSkippedWhole) {
    std::string numbers;
    for (int i = 0; i < 5000; ++i) {
        numbers += "[ 0.5 \"]\" ] ";
    }
    EXPECT_EQ(dropped(node("color [ " + numbers + " ] " + points + faces)), 0);
    EXPECT_EQ(region_.blocks.size(), 1U);
}

TEST_F(Vrml, AnEndWithinASkippedFieldIsAnIoError) {
    for (const char* const field : {"color [ 1 2", "color Color { [ ] ", "text [ \"]", "text [ \"\\"}) {
        EXPECT_EQ(read(header + node(points + faces) + "IndexedFaceSet { " + field),
                  "Input-Output Error: Unexpected EOF: find_appropriate_close_brace():")
            << field;
        EXPECT_EQ(region_.blocks.size(), 1U);
    }
}

TEST_F(Vrml, TheEndOfTheFileAnywhereElseEndsTheReadInSilence) {
    for (const char* const start : {"I", "IndexedFaceSet", "IndexedFaceSet {", "IndexedFaceSet { coordIndex [ 0 1 2",
                                    "IndexedFaceSet { coord Coordinate { point [ 0 0 0 1", "IndexedFaceSet { coord"}) {
        EXPECT_EQ(read(header + node(points + faces) + start), "") << start;
        EXPECT_EQ(region_.blocks.size(), 1U);
        EXPECT_EQ(complaints_, "");
    }
}

TEST_F(Vrml, ANodeThatEndsWithTheFileIsWhole) {
    EXPECT_EQ(dropped("IndexedFaceSet { " + points + faces + "}"), 0);
    EXPECT_EQ(region_.blocks.size(), 1U);
}

TEST_F(Vrml, AReferenceToACoordinateNodeIsPassedOver) {
    // The name behind USE is then taken for a field.
    EXPECT_EQ(dropped(node("coord USE name TRUE " + points + faces)), 0);
    EXPECT_EQ(region_.blocks.size(), 1U);
}

TEST_F(Vrml, SeveralListsOfANodeAreTakenTogether) {
    EXPECT_EQ(dropped(node(points + faces + "coordIndex [ 0 2 3 ] ")), 0);
    EXPECT_EQ(region_.blocks.at(0)->elementCount, 2);
}

TEST_F(Vrml, AFileThatCannotBeOpenedIsAFileErrorOfTheReader) {
    zRegion_fe region;
    try {
        zVRMLReader().read(folder_ / "missing.wrl", region);
        FAIL() << "no error";
    } catch (const FileError& error) {
        EXPECT_EQ(error.text(), "...");
        EXPECT_EQ(error.file(), "zVRMLReader");
    }
    EXPECT_THROW(zVRMLReader().read(folder_.path(), region), FileError);
}

// Four points, two triangles, and a further field that is not written.
zRegion_fe squareRegion() {
    zRegion_fe region;
    region.title = "my title";
    auto zone = std::make_unique<zBlock_fe>(4, 8, 2);
    zone->title = "part";
    zone->addVariable("p");
    zone->addVariable("Z")->data = {0, 0, 0, 1.0 / 3.0};
    zone->addVariable("y")->data = {0, 0, 1, 1};
    zone->addVariable("x")->data = {0, 1234567, 1, 0};
    zone->connectivity = {0, 1, 2, -1, 0, 2, 3, -1};
    region.blocks.push_back(std::move(zone));
    return region;
}

const std::string squareText = "#VRML V2.0 utf8\n"
                               "WorldInfo {\n"
                               "  info \"VRML97: The Virtual Reality Modeling Language International Standard "
                               "ISO/IEC 14772\"\n"
                               "  title \"my title\"\n"
                               "}\n"
                               "Shape {\n"
                               "  appearance Appearance {\n"
                               "    material Material {}\n"
                               "  }\n"
                               "  geometry IndexedFaceSet {\n"
                               "    coord Coordinate {\n"
                               "      point [\n"
                               "0 0 0\n"
                               "1.23457e+06 0 0\n"
                               "1 1 0\n"
                               "0 1 0.333333\n"
                               "      ]\n"
                               "    }\n"
                               "    coordIndex [\n"
                               "0 1 2 -1\n"
                               "0 2 3 -1\n"
                               "    ]\n"
                               "  }\n"
                               "}\n";

TEST_F(Vrml, AZoneIsWrittenAsAShape) {
    zVRMLReader().write(folder_ / "out.wrl", squareRegion());
    EXPECT_EQ(test::fileText(folder_ / "out.wrl"), squareText);
}

TEST_F(Vrml, WhatIsWrittenReadsBack) {
    EXPECT_EQ(read(squareText), "");
    ASSERT_THAT(test::titlesOf(region_), ElementsAre("Zone_1"));
    EXPECT_THAT(test::trianglesOf(*region_.blocks[0]), ElementsAre(Corners{0, 1, 2}, Corners{0, 2, 3}));
    EXPECT_EQ(test::nodesOf(*region_.blocks[0])[3], (Point{0, 1, 0.333333}));
    region_.title = "my title";
    zVRMLReader().write(folder_ / "out.wrl", region_);
    EXPECT_EQ(test::fileText(folder_ / "out.wrl"), squareText);
}

TEST_F(Vrml, ZonesWithoutFieldsAreNotWritten) {
    zRegion_fe region = squareRegion();
    region.blocks[0]->variables.clear();
    zVRMLReader().write(folder_ / "out.wrl", region);
    EXPECT_EQ(test::occurrences(test::fileText(folder_ / "out.wrl"), "Shape"), 0);
}

TEST_F(Vrml, ElementsOfNodesThatAreNotThereAreLeftOut) {
    zRegion_fe region = squareRegion();
    region.blocks[0]->connectivity[1] = 4;
    region.blocks[0]->elementCount = 9;
    zVRMLReader().write(folder_ / "out.wrl", region);
    const std::string text = test::fileText(folder_ / "out.wrl");
    EXPECT_THAT(text, testing::HasSubstr("coordIndex [\n0 2 3 -1\n    ]\n"));
    region.blocks[0]->variables[2]->data.clear();
    zVRMLReader().write(folder_ / "out.wrl", region);
    EXPECT_EQ(test::occurrences(test::fileText(folder_ / "out.wrl"), "Shape"), 0);
}

TEST_F(Vrml, WritingRenamesNoZone) {
    const zRegion_fe region = squareRegion();
    const std::vector<std::string> before = test::titlesOf(region);
    zVRMLReader().write(folder_ / "out.wrl", region);
    EXPECT_EQ(test::titlesOf(region), before);
}

TEST_F(Vrml, AFileThatCannotBeWrittenIsAFileError) {
    EXPECT_THROW(zVRMLReader().write(folder_ / "no" / "out.wrl", squareRegion()), FileError);
    const test::FileSizeLimit full(0);
    EXPECT_THROW(zVRMLReader().write(folder_ / "full.wrl", squareRegion()), FileError);
}

} // namespace
} // namespace velmora

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FailingReads.h"
#include "TextStream.h"
#include "interchange.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string vertices = "outer loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\n";
const std::string facet = "facet normal 0 0 1\n" + vertices + "endfacet\n";
const std::string vrmlHead = "#VRML V2.0 utf8\n";
const std::string faces = "geometry IndexedFaceSet {\n coord Coordinate { point [ 0 0 0 1 0 0 0 1 0 ] }\n"
                          " coordIndex [ 0 1 2 -1 ]\n}\n";
const std::string datHead = "TITLE = \"t\"\nVARIABLES = \"x\" \"y\" \"z\"\n";
const std::string gridZone = "ZONE I=2, J=2, K=1, F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n";
const std::string triangleZone = "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n";

/// What the facade tells of a file of that text.
class ZoneRecord : public testing::Test {
protected:
    FileRead read(const std::string& name, const std::string& text) {
        test::writeFileText(folder_ / name, text);
        return read(name);
    }
    FileRead read(const std::string& name) {
        zRegion structured;
        zRegion_fe unstructured;
        FileRead record;
        told_.clear();
        read_ = readGeometry(
            folder_ / name, false, structured, unstructured, [this](const std::string& told) { told_ += told; }, {},
            &record);
        return record;
    }

    test::TemporaryFolder folder_;
    bool read_ = false;
    std::string told_;
};

testing::AssertionResult nothingLost(const FileRead& record) {
    if (record.complete && record.lossless && record.reasons.empty() && record.changed.empty() &&
        record.found == record.kept) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(record.reasons)
                                       << testing::PrintToString(record.changed);
}

TEST_F(ZoneRecord, AWholeFileOfEachKindLosesNothing) {
    const FileRead stl = read("a.stl", "solid a\n" + facet + facet + "endsolid a\nsolid b\n" + facet + "endsolid b\n");
    EXPECT_TRUE(nothingLost(stl));
    EXPECT_EQ(stl.kept, (Counts{{"facets", 3}, {"solids", 2}}));
    EXPECT_EQ(stl.format, "stl");
    const FileRead wrl = read("a.wrl", vrmlHead + "Shape {\n" + faces + "}\nShape {\n" + faces + "}\n");
    EXPECT_TRUE(nothingLost(wrl));
    EXPECT_EQ(wrl.kept, (Counts{{"faceSets", 2}}));
    const FileRead grid = read("a.dat", datHead + gridZone);
    EXPECT_TRUE(nothingLost(grid));
    EXPECT_EQ(grid.kept, (Counts{{"zones", 1}, {"points", 4}, {"variables", 3}}));
    const FileRead triangles = read("a.dat", datHead + triangleZone + triangleZone);
    EXPECT_TRUE(nothingLost(triangles));
    EXPECT_EQ(triangles.kept, (Counts{{"zones", 2}, {"points", 6}, {"variables", 3}}));
    EXPECT_EQ(triangles.bytes, test::fileText(folder_ / "a.dat").size());
}

TEST_F(ZoneRecord, AnEmptyStlOrDatHoldsNothingAndLosesNothing) {
    EXPECT_TRUE(nothingLost(read("a.stl", "")));
    EXPECT_TRUE(nothingLost(read("a.dat", "")));
}

TEST_F(ZoneRecord, WhatTheWritersMakeLosesNothing) {
    zRegion structured;
    zRegion_fe region;
    ASSERT_TRUE(readGeometry(test::writeFileText(folder_ / "a.dat", datHead + triangleZone), false, structured, region,
                             [](const std::string&) {}));
    for (const char* name : {"b.stl", "b.wrl", "b.dat"}) {
        WriteOutcome outcome;
        ASSERT_TRUE(writeGeometry(
            folder_ / name, 16, {}, region, [](const std::string&) {}, {}, &outcome));
        EXPECT_TRUE(outcome.written);
        EXPECT_EQ(outcome.record.bytes, test::fileText(folder_ / name).size());
        const FileRead again = read(name);
        EXPECT_TRUE(nothingLost(again)) << name;
        EXPECT_EQ(again.kept, outcome.record.counts) << name;
        EXPECT_EQ(again.format, outcome.record.format);
    }
}

// ---- STL ------------------------------------------------------------------------------------------------------------

TEST_F(ZoneRecord, TheFirstFacetOfASolidWithoutANameIsToldAsLost) {
    const FileRead record = read("a.stl", "solid\n" + facet + facet + "endsolid\n");
    EXPECT_EQ(record.found, (Counts{{"facets", 2}, {"solids", 1}}));
    EXPECT_EQ(record.kept, (Counts{{"facets", 1}, {"solids", 1}}));
    EXPECT_FALSE(record.complete);
    EXPECT_THAT(record.reasons,
                ElementsAre("Facets in the file: 2, kept: 1 (the first facet of a solid without a name)"));
}

TEST_F(ZoneRecord, ASolidBehindAnEndWithoutANameIsToldAsLost) {
    const FileRead record = read("a.stl", "solid a\n" + facet + "endsolid\nsolid b\n" + facet + facet + "endsolid b\n");
    EXPECT_EQ(record.found, (Counts{{"facets", 3}, {"solids", 2}}));
    EXPECT_EQ(record.kept, (Counts{{"facets", 1}, {"solids", 1}}));
    EXPECT_THAT(record.reasons,
                ElementsAre("Facets in the file: 3, kept: 1 (2 behind the end of a solid without a name)"));
}

TEST_F(ZoneRecord, DamagedAndNarrowFacetsAreTold) {
    const FileRead record = read(
        "a.stl", "solid a\n" + facet + "facet normal nan nan nan\n" + vertices + "endfacet\n" +
                     "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nendloop\nendfacet\nendsolid a\n");
    EXPECT_EQ(record.found, (Counts{{"facets", 3}, {"solids", 1}}));
    EXPECT_EQ(record.kept, (Counts{{"facets", 1}, {"solids", 1}}));
    EXPECT_THAT(record.reasons, ElementsAre("Facets in the file: 3, kept: 1 (1 damaged, the first at line 9)",
                                            "Facets in the file: 3, kept: 1 (1 of fewer than three corners)"));
}

TEST_F(ZoneRecord, CornersBehindADamagedWordAreToldAsLost) {
    std::string damaged = facet;
    damaged[0] = 'F';
    const FileRead record = read("a.stl", "solid a\n" + facet + damaged + facet + "endsolid a\n");
    EXPECT_FALSE(record.complete);
    EXPECT_EQ(countOf(record.kept, "facets"), 2);
    EXPECT_THAT(record.reasons, ElementsAre("Corners that stand in no facet: 3, the first at line 11"));
}

TEST_F(ZoneRecord, AFileThatEndsBeforeItsLastSolidDoesIsToldAsCut) {
    const std::string whole = "solid a\n" + facet + facet + "endsolid a\n";
    for (const std::string& cut : {"solid a\n" + facet, "solid a\n" + facet + "fac", whole + "solid b\n" + facet,
                                   whole + "solid", "solid a\n" + facet + "endsoli"}) {
        const FileRead record = read("a.stl", cut);
        EXPECT_FALSE(record.complete) << cut;
        EXPECT_THAT(record.reasons, ElementsAre("The file ends before its last solid does")) << cut;
    }
    EXPECT_TRUE(nothingLost(read("a.stl", whole)));
    EXPECT_TRUE(nothingLost(read("a.stl", "solid a\n" + facet + "endsolid")));
}

TEST_F(ZoneRecord, AFacetBehindOneWithoutItsEndIsToldAsLost) {
    const std::string endless = facet.substr(0, facet.rfind("endfacet"));
    const FileRead record = read("a.stl", "solid a\n" + endless + facet + facet + "endsolid a\n");
    EXPECT_EQ(record.found, (Counts{{"facets", 3}, {"solids", 1}}));
    EXPECT_EQ(record.kept, (Counts{{"facets", 2}, {"solids", 1}}));
    EXPECT_FALSE(record.complete);
    EXPECT_THAT(record.reasons, ElementsAre("Facets in the file: 3, kept: 2 (1 behind a facet without its end)"));
}

TEST_F(ZoneRecord, NumbersThatBelongToNoZoneAreToldAsLost) {
    const FileRead record = read("a.dat", datHead + "0 0 0\n1 0 0\n0 5 0\n" + gridZone);
    EXPECT_FALSE(record.complete);
    EXPECT_THAT(record.reasons, ElementsAre("Numbers that belong to no zone are not read, from line 3 on"));
    EXPECT_EQ(countOf(record.kept, "zones"), 1);
}

TEST_F(ZoneRecord, HeaderValuesThatNoModelKeepsAreTold) {
    const FileRead record =
        read("a.dat", "TITLE = \"t\"\nVARIABLES = \"x\" \"y\" \"z\"\nDATASETAUXDATA foo = \"bar\"\n"
                      "ZONE STRANDID=1, SOLUTIONTIME=2.5, I=2, J=2, K=1, F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
    EXPECT_TRUE(record.complete);
    EXPECT_FALSE(record.lossless);
    EXPECT_THAT(record.reasons,
                ElementsAre("Values of headers that are not kept: DATASETAUXDATA, SOLUTIONTIME, STRANDID"));
}

TEST_F(ZoneRecord, RecordsOfTextAndColourInAHeaderAreDetails) {
    const std::string zoneText = "I=2, J=2, K=1, F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n";
    const FileRead text = read("a.dat", datHead + "TEXT X=1 Y=2 T=\"note\"\nZONE " + zoneText);
    EXPECT_FALSE(text.lossless);
    EXPECT_THAT(text.reasons, testing::Contains("Values of headers that are not kept: TEXT"));
    const FileRead colour = read("a.dat", datHead + "ZONE C=RED, " + zoneText);
    EXPECT_TRUE(colour.complete);
    EXPECT_FALSE(colour.lossless);
    EXPECT_THAT(colour.reasons, ElementsAre("Values of headers that are not kept: C"));
}

TEST_F(ZoneRecord, ABinaryFileThatSaysSolidIsOneSolid) {
    std::string bytes = "solid a";
    bytes.resize(80, '\0');
    bytes += std::string("\1\0\0\0", 4) + std::string(50, '\0');
    EXPECT_EQ(countOf(read("a.stl", bytes).found, "solids"), 1);
}

TEST_F(ZoneRecord, DegenerateAndWideFacetsAreKeptAndTold) {
    const FileRead record =
        read("a.stl", "solid a\nfacet normal 0 0 0\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 2 0 0\nendloop\n"
                      "endfacet\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\n"
                      "vertex 0 1 0\nendloop\nendfacet\nendsolid a\n");
    EXPECT_EQ(record.found, record.kept);
    EXPECT_TRUE(record.complete);
    EXPECT_FALSE(record.lossless);
    EXPECT_THAT(record.changed,
                ElementsAre("Facets of more than three corners: 1, made triangles", "Degenerate triangles: 1"));
}

TEST_F(ZoneRecord, ABinaryStlIsToldAsOne) {
    std::string text(84 + 2 * 50, '\0');
    text.replace(0, 12, "solid binary");
    text[80] = 2;
    const FileRead record = read("a.stl", text);
    EXPECT_FALSE(record.complete);
    EXPECT_FALSE(record.keptAnything());
    EXPECT_EQ(countOf(record.found, "facets"), 2);
    EXPECT_THAT(record.reasons,
                ElementsAre(HasSubstr("Facets in the file: 2, kept: 0 (a binary STL file: Open reads text")));
}

TEST_F(ZoneRecord, ANameOfSeveralWordsIsToldAsCut) {
    const FileRead record = read("a.stl", "solid left wing\n" + facet + "endsolid left wing\n");
    EXPECT_TRUE(record.complete);
    EXPECT_FALSE(record.lossless);
    EXPECT_THAT(record.reasons, ElementsAre("Names of solids of which only the first word is kept: 1"));
}

TEST_F(ZoneRecord, OfANameThatIsLongerThanAnyTheBeginningIsKeptAndThatIsTold) {
    const std::string name(TextStream::longestWord + 1, 'n');
    const FileRead record = read("a.stl", "solid " + name + '\n' + facet + "endsolid " + name + '\n');
    EXPECT_TRUE(record.complete);
    EXPECT_FALSE(record.lossless);
    EXPECT_EQ(countOf(record.kept, "facets"), 1);
    EXPECT_THAT(record.reasons, ElementsAre("Names of solids of which only the first 4194304 characters are kept: 1"));
}

TEST_F(ZoneRecord, WhatStandsBehindALongWordOfASceneIsStillUnderstood) {
    const std::string longText(TextStream::longestWord, 'x');
    // The quote that closes the text belongs to its last word.
    EXPECT_THAT(read("a.wrl", vrmlHead + "WorldInfo { info \"I" + longText + "\" }\nTransform { translation 1 0 0 " +
                                  "children Shape {\n" + faces + "} }\n")
                    .reasons,
                ElementsAre("Records that move, turn or scale face sets and are not followed: 1"));
    EXPECT_TRUE(nothingLost(read("a.wrl", "#VRML V2.0 utf8 " + longText + '\n' + faces)));
    // The name of the face set within a longer word is none.
    EXPECT_EQ(countOf(read("a.wrl", vrmlHead + "DEF I" + longText + faces.substr(9) + faces).found, "faceSets"), 1);
    // A number that is not held whole may move what it stands for.
    EXPECT_THAT(read("a.wrl", vrmlHead + "Transform { translation 0 0 0." + std::string(100000, '0') +
                                  "1 children Shape {\n" + faces + "} }\n")
                    .reasons,
                ElementsAre("Records that move, turn or scale face sets and are not followed: 1"));
}

TEST_F(ZoneRecord, AFaceSetWithAWordThatIsLongerThanAnyIsNotUnderstood) {
    const std::string longText(TextStream::longestWord + 1, 'x');
    const FileRead record = read("a.wrl", vrmlHead + "geometry IndexedFaceSet { " + longText + " 1 }\n" + faces);
    EXPECT_EQ(countOf(record.kept, "faceSets"), 1);
    EXPECT_THAT(record.reasons, ElementsAre("Face sets: 2, kept: 1 (not understood, the first in line 2)"));
}

TEST_F(ZoneRecord, AFileWithoutASolidIsTold) {
    EXPECT_THAT(read("a.stl", "nothing\n").reasons, ElementsAre("No solid stands in the file"));
}

// ---- VRML -----------------------------------------------------------------------------------------------------------

TEST_F(ZoneRecord, FaceSetsWithCommasBetweenTheirNumbersAreToldAsLost) {
    const std::string commas = "geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0 ] }\n"
                               " coordIndex [ 0, 1, 2, -1 ] }\n";
    const FileRead all = read("a.wrl", vrmlHead + commas + commas);
    EXPECT_EQ(all.found, (Counts{{"faceSets", 2}}));
    EXPECT_EQ(all.kept, (Counts{{"faceSets", 0}}));
    EXPECT_THAT(all.reasons, ElementsAre("Face sets: 2, kept: 0 (commas between numbers)"));
    EXPECT_FALSE(read("a.wrl", vrmlHead + faces + commas).complete);
}

TEST_F(ZoneRecord, FaceSetsThatGiveNoZoneAreToldByTheirReasons) {
    const FileRead record =
        read("a.wrl", vrmlHead + faces + "geometry IndexedFaceSet { coord DEF P Coordinate { point [ 0 0 0 ] } }\n" +
                          "geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0 ] } coordIndex [ ] }\n" +
                          "geometry IndexedFaceSet { coordIndex [ 0 1 2 -1 ] }\ngeometry IndexedFaceSet { coord");
    EXPECT_EQ(record.found, (Counts{{"faceSets", 5}}));
    EXPECT_EQ(record.kept, (Counts{{"faceSets", 1}}));
    EXPECT_THAT(record.reasons, ElementsAre("Face sets: 5, kept: 1 (no faces; no points; points by DEF or USE; "
                                            "the file ends within it)"));
}

TEST_F(ZoneRecord, ATransformThatMovesSomethingIsToldAndOneThatDoesNotIsNot) {
    EXPECT_TRUE(nothingLost(read("a.wrl", vrmlHead + "Transform { translation 0 0 0 scale 1 1 1 rotation 0 0 1 0\n" +
                                              "children [ Shape {" + faces + "} ] }\n")));
    for (const char* field : {"translation 0 0 5", "scale 1 1 2", "rotation 0 0 1 1.5", "translation 1,0,0"}) {
        const FileRead record =
            read("a.wrl", vrmlHead + "Transform { " + field + " children [ Shape {" + faces + "} ] }\n");
        EXPECT_FALSE(record.complete) << field;
        EXPECT_THAT(record.reasons, ElementsAre("Records that move, turn or scale face sets and are not followed: 1"));
    }
    EXPECT_TRUE(
        nothingLost(read("a.wrl", vrmlHead + "# translation 0 0 5\nWorldInfo { info \"scale 2 2 2\" }\n" + faces)));
}

TEST_F(ZoneRecord, ColoursNamesAndOtherShapesAreTold) {
    const FileRead coloured =
        read("a.wrl", vrmlHead + "Shape { appearance Appearance { material DEF M Material { diffuseColor 1 0 0 } }\n" +
                          faces + "}\nShape { appearance Appearance { material USE M }\n" + faces + "}\n");
    EXPECT_TRUE(coloured.complete);
    EXPECT_FALSE(coloured.lossless);
    EXPECT_THAT(coloured.reasons,
                ElementsAre("Records of colours that are not kept: 1", "Names of nodes that are not kept: 1"));
    const FileRead scene = read("a.wrl", vrmlHead + "Viewpoint { position 0 0 9 }\nDirectionalLight { }\n" + faces);
    EXPECT_TRUE(scene.complete);
    EXPECT_THAT(scene.reasons, ElementsAre("Views, lights and backgrounds that are not kept: 2"));
    const FileRead shapes = read("a.wrl", vrmlHead + "Shape { geometry Box { size 1 1 1 } }\n" + faces +
                                              "Shape { geometry Text { string \"abc\" } }\nShape { geometry "
                                              "IndexedLineSet { } }\nUSE B\nInline { url \"b.wrl\" }\n");
    EXPECT_FALSE(shapes.complete);
    EXPECT_THAT(shapes.reasons, ElementsAre("Shapes that stand again by USE and are not read: 1",
                                            "Parts of the scene in other files, which are not read: 1",
                                            "Shapes other than face sets are not read: Box, IndexedLineSet, Text"));
}

TEST_F(ZoneRecord, NodesThatChooseLinkOrMakeShapesAreTold) {
    const std::string shape = "Shape {" + faces + "}";
    for (const auto& [text, name] : std::vector<std::pair<std::string, std::string>>{
             {"Switch { whichChoice -1 choice [ " + shape + " ] }\n", "Switch"},
             {"LOD { level [ " + shape + shape + " ] }\n", "LOD"},
             {"Anchor { url \"a\" children " + shape + " }\n", "Anchor"},
             {"Billboard { children " + shape + " }\n", "Billboard"}}) {
        const FileRead record = read("a.wrl", vrmlHead + text);
        EXPECT_TRUE(record.complete) << text;
        EXPECT_FALSE(record.lossless) << text;
        EXPECT_THAT(record.reasons,
                    ElementsAre("Nodes that are not followed; the shapes in them are read as they stand: " + name))
            << text;
    }
    const FileRead prototype = read("a.wrl", vrmlHead + "PROTO P [] { " + shape + " }\nP {}\nP {}\n" + shape);
    EXPECT_FALSE(prototype.complete);
    EXPECT_THAT(prototype.reasons, ElementsAre("Prototypes, of which what is made by them is not read: 1"));
}

TEST_F(ZoneRecord, ATitleOfTheSceneIsTold) {
    const std::string shape = "Shape {" + faces + "}";
    for (const char* const title : {"title \"wing\"", "info \"a\\\\\" title \"Inlet\"", "title\"w\""}) {
        EXPECT_THAT(read("a.wrl", vrmlHead + "WorldInfo { " + title + " }\n" + shape).reasons,
                    ElementsAre("The title of the scene is not kept"))
            << title;
    }
    for (const char* const none : {"title \"\"", "info \"title \\\"wing\\\"\"", "# title \"wing\"\n"}) {
        EXPECT_TRUE(nothingLost(read("a.wrl", vrmlHead + "WorldInfo { " + none + " }\n" + shape))) << none;
    }
}

TEST_F(ZoneRecord, TheTitleThatTheWriterWroteComesBack) {
    zRegion structured;
    zRegion_fe region;
    ASSERT_TRUE(readGeometry(test::writeFileText(folder_ / "a.dat", datHead + triangleZone), false, structured, region,
                             [](const std::string&) {}));
    region.title = "wing, left";
    ASSERT_TRUE(writeGeometry(folder_ / "b.wrl", 16, {}, region, [](const std::string&) {}));
    zRegion_fe again;
    FileRead record;
    ASSERT_TRUE(readGeometry(
        folder_ / "b.wrl", false, structured, again, [](const std::string&) {}, {}, &record));
    EXPECT_EQ(again.title, "wing, left");
    EXPECT_TRUE(nothingLost(record)) << testing::PrintToString(record.reasons);
}

TEST_F(ZoneRecord, TheTitleOfASceneOfOthersIsNotThatOfTheModel) {
    zRegion structured;
    zRegion_fe region;
    const std::string text = vrmlHead + "WorldInfo { info \"Gravity: on\" title \"A pyramid\" }\nShape {" + faces + "}";
    ASSERT_TRUE(readGeometry(test::writeFileText(folder_ / "a.wrl", text), false, structured, region,
                             [](const std::string&) {}));
    EXPECT_EQ(region.title, "");
}

TEST_F(ZoneRecord, ShapesOfKindsThatNobodyKnowsAreTold) {
    const std::string shape = "Shape {" + faces + "}\n";
    for (const char* const geometry : {"NurbsSurface", "DEF N NurbsSurface", "IndexedTriangleSet", "IndexedFaceSe"}) {
        const std::string text = std::string("Shape { geometry ") + geometry + " { index [ 0 1 2 ] } }\n";
        const FileRead record = read("a.wrl", vrmlHead + shape + text + shape);
        EXPECT_FALSE(record.complete) << geometry;
        const std::string name = std::string_view(geometry).starts_with("DEF") ? "NurbsSurface" : geometry;
        EXPECT_THAT(record.reasons, Contains("Shapes other than face sets are not read: " + name));
    }
    EXPECT_TRUE(nothingLost(read("a.wrl", vrmlHead + shape + "Shape { geometry NULL }\n" + shape)));
}

TEST_F(ZoneRecord, CoordinatesThatAreNotThreeForEachPointAreTold) {
    for (const char* const numbers : {"0 0 0 1 0 0 0 1 0 7", "0 0 0 0 1 0 0 0 1 0 7"}) {
        const FileRead record = read("a.wrl", vrmlHead + "geometry IndexedFaceSet { coord Coordinate { point [ " +
                                                  numbers + " ] } coordIndex [ 0 1 2 -1 ] }\n" + faces);
        EXPECT_FALSE(record.complete) << numbers;
        EXPECT_EQ(record.kept, (Counts{{"faceSets", 2}}));
        EXPECT_THAT(record.reasons, ElementsAre("Face sets whose numbers are not three for each point: 1")) << numbers;
    }
}

TEST_F(ZoneRecord, ASolidThatBeginsWithinAnotherOneIsTold) {
    const FileRead record = read("a.stl", "solid a\n" + facet + "solid b\n" + facet + "endsolid b\n");
    EXPECT_TRUE(record.complete);
    EXPECT_FALSE(record.lossless);
    EXPECT_EQ(record.found, (Counts{{"facets", 2}, {"solids", 2}}));
    EXPECT_EQ(record.kept, (Counts{{"facets", 2}, {"solids", 1}}));
    EXPECT_THAT(record.reasons, ElementsAre("Solids that begin before the end of another, and became part of it: 1"));
}

TEST_F(ZoneRecord, TheFaceThatEndsTheReadingOfASceneIsTold) {
    for (const auto& [indices, reason] : std::vector<std::pair<std::string, std::string>>{
             {"0 1 2 -1 0 1 7 -1", "Face set 2, face 2: there is no point 7"},
             {"0 1 -1", "Face set 2, face 1: fewer than three corners"}}) {
        const FileRead record =
            read("a.wrl", vrmlHead + faces + "geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0 1 0 0 0 1 0 " +
                              "] } coordIndex [ " + indices + " ] }\n");
        EXPECT_FALSE(record.complete);
        EXPECT_THAT(record.reasons, Contains(reason));
    }
}

TEST_F(ZoneRecord, ASceneWithoutFaceSetsIsToldSo) {
    EXPECT_THAT(read("a.wrl", vrmlHead).reasons, ElementsAre("No face set stands in the file"));
}

TEST_F(ZoneRecord, QuadrilateralsThatBecomeTrianglesAreTold) {
    const FileRead record =
        read("a.wrl", vrmlHead + "geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0 1 0 0 1 1 0 0 1 0 ] }\n"
                                 " coordIndex [ 0 1 2 3 -1 0 1 2 -1 ] }\n");
    EXPECT_TRUE(record.complete);
    EXPECT_FALSE(record.lossless);
    EXPECT_THAT(record.changed, ElementsAre("Faces of more than three corners: 1, made triangles"));
}

TEST_F(ZoneRecord, FacetsInCapitalLettersAreFoundAndNotKept) {
    const std::string capitals = "FACET NORMAL 0 0 1\nOUTER LOOP\nVERTEX 0 0 0\nVERTEX 1 0 0\nVERTEX 0 1 0\n"
                                 "ENDLOOP\nENDFACET\n";
    for (const char* solid : {"solid a\n", "SOLID a\n"}) {
        const FileRead record = read("a.stl", solid + capitals + capitals + "ENDSOLID a\n");
        EXPECT_EQ(record.found, (Counts{{"facets", 2}, {"solids", 1}})) << solid;
        EXPECT_EQ(record.kept, (Counts{{"facets", 0}, {"solids", 0}})) << solid;
        EXPECT_FALSE(record.complete) << solid;
        EXPECT_THAT(record.reasons,
                    ElementsAre("Facets in the file: 2, kept: 0 (2 in capital letters: Open reads small ones, Import "
                                "reads both)"))
            << solid;
    }
    const FileRead mixed = read("a.stl", "solid a\n" + facet + capitals + "endsolid a\n");
    EXPECT_EQ(mixed.found, (Counts{{"facets", 2}, {"solids", 1}}));
    EXPECT_EQ(mixed.kept, (Counts{{"facets", 1}, {"solids", 1}}));
    EXPECT_FALSE(mixed.complete);
}

/// A solid of the binary form whose facets are all 0.
std::string binarySolid(int facets, int told) {
    std::string text(84 + 50 * static_cast<std::size_t>(facets), '\0');
    text[80] = static_cast<char>(told);
    return text;
}

TEST_F(ZoneRecord, AllSolidsOfABinaryFileAreFound) {
    const FileRead two = read("a.stl", binarySolid(2, 2) + binarySolid(3, 3));
    EXPECT_EQ(two.found, (Counts{{"facets", 5}, {"solids", 2}}));
    EXPECT_EQ(read("a.stl", binarySolid(7, 7)).found, (Counts{{"facets", 7}, {"solids", 1}}));
    // A wrong count: the size tells.
    EXPECT_EQ(read("a.stl", binarySolid(7, 9)).found, (Counts{{"facets", 7}, {"solids", 1}}));
    EXPECT_EQ(read("a.stl", binarySolid(7, 3)).found, (Counts{{"facets", 7}, {"solids", 1}}));
    EXPECT_EQ(read("a.stl", binarySolid(0, 0)).found, (Counts{{"facets", 0}, {"solids", 1}}));
}

TEST_F(ZoneRecord, AnErrorThatEndsTheReadingIsTheReasonAndKeepsNothing) {
    const FileRead record = read("a.wrl", vrmlHead + faces +
                                              "geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0 ] }\n"
                                              " coordIndex [ 0 1 -1 ] }\n");
    EXPECT_FALSE(read_);
    EXPECT_FALSE(record.complete);
    EXPECT_FALSE(record.keptAnything());
    EXPECT_EQ(countOf(record.found, "faceSets"), 2);
    EXPECT_THAT(record.reasons, ElementsAre("Face set 2, face 1: there is no point 1",
                                            "Value Error: what stands there cannot be read"));
    EXPECT_EQ(record.path, folder_ / "a.wrl");
}

// ---- Tecplot --------------------------------------------------------------------------------------------------------

TEST_F(ZoneRecord, OnlyTheFirstLayerOfAVolumeIsASurface) {
    const std::string volume = "ZONE I=2, J=2, K=2, F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n0 0 1\n1 0 1\n0 1 1\n1 1 1\n";
    const FileRead record = read("a.dat", datHead + volume + volume);
    EXPECT_FALSE(record.complete);
    EXPECT_EQ(record.found, (Counts{{"zones", 2}, {"points", 16}, {"variables", 3}}));
    EXPECT_EQ(record.kept, (Counts{{"zones", 2}, {"points", 8}, {"variables", 3}}));
    EXPECT_THAT(record.reasons, ElementsAre("Zones: 2, only the first layer of each is a surface"));
    EXPECT_THAT(read("a.dat", datHead + volume + gridZone).reasons,
                ElementsAre("Zones: 2, only the first layer of 1 is a surface"));
}

TEST_F(ZoneRecord, AZoneWithoutKIsToldAndItsNumbersWithTheirLine) {
    const FileRead record =
        read("a.dat", datHead + gridZone + "ZONE I=2, J=2, F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n" + gridZone);
    EXPECT_EQ(record.found, (Counts{{"zones", 3}, {"points", 12}, {"variables", 3}}));
    EXPECT_EQ(record.kept, (Counts{{"zones", 2}, {"points", 8}, {"variables", 3}}));
    EXPECT_THAT(record.reasons, ElementsAre("Zone 2: more numbers than its header tells of, from line 9 on",
                                            "Zones: 3, 1 without K= in their header are not read"));
}

TEST_F(ZoneRecord, NarrowZonesVolumesAndSmallLettersAreTold) {
    EXPECT_THAT(read("a.dat", datHead + gridZone + "ZONE I=3, J=1, K=1, F=POINT\n0 0 0\n1 0 0\n2 0 0\n").reasons,
                ElementsAre("Zones: 2, 1 less than 2 points wide are no surface"));
    EXPECT_THAT(read("a.dat", datHead + triangleZone +
                                  "ZONE N=4, E=1, F=FEPOINT, ET=TETRAHEDRON\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 2 3 4\n")
                    .reasons,
                ElementsAre("Zones: 2, 1 of lines or volumes are no surface"));
    const FileRead small =
        read("a.dat", datHead + gridZone + "zone I=2, J=2, K=1, F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
    EXPECT_FALSE(small.complete);
    EXPECT_THAT(small.reasons, ElementsAre("A zone in small letters is not read, in line 8"));
    EXPECT_THAT(read("a.dat", "only text\n").reasons, ElementsAre("No zone stands in the file"));
}

TEST_F(ZoneRecord, VariablesTitlesAndQuadrilateralsAreDetails) {
    const FileRead record =
        read("a.dat", "VARIABLES = \"x\" \"y\" \"z\" \"p\" \"q\"\nZONE T=\"wing\" I=2, J=2, K=1, F=POINT\n"
                      "0 0 0 1 1\n1 0 0 1 1\n0 1 0 1 1\n1 1 0 1 1\n");
    EXPECT_TRUE(record.complete);
    EXPECT_FALSE(record.lossless);
    EXPECT_THAT(record.reasons,
                ElementsAre("Variables: 5, only x, y and z are kept", "Titles of zones that patches do not have: 1"));
    const FileRead quads =
        read("a.dat", datHead + "ZONE N=4, E=1, F=FEPOINT, ET=QUADRILATERAL\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n1 2 3 4\n");
    EXPECT_TRUE(quads.complete);
    EXPECT_THAT(quads.changed, ElementsAre("Quadrilaterals: 1, made triangles"));
    const FileRead mixed = read("a.dat", datHead + gridZone + triangleZone);
    EXPECT_TRUE(mixed.complete);
    EXPECT_THAT(mixed.changed, ElementsAre("Grids beside zones of triangles are made triangles"));
}

TEST_F(ZoneRecord, ANumberOfADamagedZoneIsTheReason) {
    const FileRead record = read("a.dat", datHead + "ZONE I=2, J=2, K=1, F=POINT\n0 0 0\n1 0 x\n0 1 0\n1 1 0\n");
    EXPECT_FALSE(read_);
    EXPECT_THAT(record.reasons, ElementsAre(HasSubstr("invalid data")));
    EXPECT_THAT(record.reasons, Not(testing::Contains(HasSubstr("\n"))));
    EXPECT_EQ(record.found, (Counts{{"zones", 1}, {"points", 0}, {"variables", 3}}));
    EXPECT_FALSE(record.keptAnything());
}

// Of the points of a zone that cannot be read its header alone tells, and it may tell anything.
TEST_F(ZoneRecord, AHeaderBeyondAllBoundsCountsItsZoneAndNoPoints) {
    for (const char* counts : {"I=100000, J=100000, K=1", "I=99999999999, J=2, K=1", "I=-2, J=2, K=1"}) {
        const FileRead record =
            read("a.dat", datHead + gridZone + "ZONE " + counts + ", F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
        EXPECT_EQ(countOf(record.found, "zones"), 2) << counts;
        EXPECT_EQ(countOf(record.found, "variables"), 3) << counts;
        EXPECT_EQ(countOf(record.found, "points"), 4) << counts;
        EXPECT_FALSE(record.complete) << counts;
        EXPECT_FALSE(record.reasons.empty()) << counts;
    }
}

// ---- The disk -------------------------------------------------------------------------------------------------------

TEST_F(ZoneRecord, AReadErrorIsAnErrorInEveryFormatAndNotTheEndOfTheFile) {
    const std::string solid = "solid a\n" + facet + "endsolid a\n";
    const std::string scene = vrmlHead + faces;
    const std::string zone = datHead + gridZone;
    for (const auto& [name, text] : {std::pair("a.stl", solid), std::pair("a.wrl", scene), std::pair("a.dat", zone)}) {
        test::writeFileText(folder_ / name, text + text);
        const test::FailingReads broken(static_cast<std::int64_t>(text.size()));
        const FileRead record = read(name);
        EXPECT_FALSE(read_) << name;
        EXPECT_THAT(told_, HasSubstr("The system could not read the file behind line")) << name;
        EXPECT_FALSE(record.complete) << name;
        EXPECT_FALSE(record.keptAnything()) << name;
    }
}

TEST_F(ZoneRecord, WhatMayBeLeftOfAZonesHeaderIsGeometryAndAKnownRecordIsNot) {
    const std::string rest = gridZone.substr(4); // without "ZONE"
    for (const char* const word : {"ZON", "ZO\x01NE", "XZONE,", "\"s\","}) {
        const FileRead record = read("a.dat", datHead + gridZone + word + rest);
        EXPECT_FALSE(record.complete) << word;
        EXPECT_THAT(record.reasons, Contains("What stands between zones is not read, in line 8")) << word;
    }
    for (const char* const known : {"TEXT X=1, T=\"a\"\n", "GEOMETRY X=1\n", "DATASETAUXDATA a=\"b\"\n"}) {
        const FileRead record = read("a.dat", datHead + gridZone + known + gridZone);
        EXPECT_TRUE(record.complete) << known;
        EXPECT_FALSE(record.lossless) << known;
        EXPECT_EQ(countOf(record.kept, "zones"), 2) << known;
    }
    EXPECT_TRUE(nothingLost(read("a.dat", datHead + gridZone + "# a remark\n" + gridZone + " \n")));
}

TEST_F(ZoneRecord, AFileThatCannotBeOpenedHasNoRecord) {
    EXPECT_TRUE(read("none.stl").path.empty());
    EXPECT_FALSE(read_);
}

} // namespace
} // namespace velmora

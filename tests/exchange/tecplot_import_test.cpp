#include "tecplot_import.h"

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

Imported read(const std::string& text, const ImportOptions& options = {}) {
    return importText(importTecplot, text, options);
}

ImportOptions withVolumes() {
    ImportOptions options;
    options.volumeFaces = true;
    return options;
}

const std::string rows = "0 0 0\n1 0 0\n0 1 0\n1 1 5\n";
const std::vector<std::vector<Point>> grid = {{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {1, 1, 5}}};

TEST(TecplotImport, AnOrderedZoneIsAPatchHoweverItIsWritten) {
    for (const std::string& text : std::vector<std::string>{
             "TITLE = \"t\"\nVARIABLES = \"X\" \"Y\" \"Z\"\nZONE T=\"a\", I=2, J=2, K=1, F=POINT\n" + rows,
             "variables = x, y, z\nzone i=2 j=2 f=point\n" + rows,
             "VARIABLES=X Y Z\nZONE\nI = 2\nJ = 2\nZONETYPE=Ordered\nDATAPACKING=Point\nDT=(SINGLE SINGLE SINGLE)\n" +
                 rows,
             "# made\nVARIABLES = \"X\"\n\"Y\"\n\"Z\"\n# zone\nZONE J=2,I=2\n" + rows, "ZONE I=2, J=2\n" + rows,
             "VARIABLES = X,Y,Z\r\nZONE I=2, J=2, K=1\r\n0,0,0\r\n1,0,0 # second\r\n\r\n0,1,0\r\n1,1,5\r\n",
             "Variables='X [m]','Y [m]','Z [m]'\nZone SOLUTIONTIME=0.5, STRANDID=1, I=2, AUXDATA Part=\"one\", J=2, "
             "F=POINT\n" +
                 rows,
             std::string("VARIABLES=X,Y,Z\nZONE I=2,J=2,F=BLOCK\n0 1 0 1\n0 0 1 1\n3*0.0 5\n"),
             std::string("VARIABLES=X,Y,Z\nZONE DATAPACKING=BLOCK,I=2,J=2\n0 1 0 1 2*0 2*1 3*0.0 5\n"),
             std::string("ZONE F=BLOCK I=2,J=2\n0 1 0 1\n0 0 1 1\n0 0 0 5\n")}) {
        const Imported file = read(text);
        ASSERT_THAT(file.model.patches, SizeIs(1)) << text;
        EXPECT_EQ(sectionsOf(file.model.patches[0]), grid) << text;
        EXPECT_TRUE(file.record.complete) << text;
        EXPECT_EQ(file.record.format, "tecplot");
        EXPECT_EQ(found(file, "zones"), 1);
        EXPECT_EQ(kept(file, "zones"), 1);
        EXPECT_EQ(kept(file, "variables"), 3);
        EXPECT_EQ(kept(file, "points"), 4);
    }
}

TEST(TecplotImport, ValuesOfHeadersThatNoModelKeepsAreTold) {
    const Imported file = read("VARIABLES = X Y Z\nDATASETAUXDATA a=\"b\"\nZONE I=2, J=2, C=RED, SolutionTime=3, "
                               "F=POINT, DT=(SINGLE SINGLE SINGLE)\n" +
                               rows);
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_THAT(file.record.reasons,
                ElementsAre("Values of headers that are not kept: C, DATASETAUXDATA, SOLUTIONTIME"));
    EXPECT_TRUE(read("VARIABLES = X Y Z\nZONE I=2, J=2, F=POINT, DT=(SINGLE SINGLE SINGLE)\n" + rows).record.lossless);
}

TEST(TecplotImport, NumbersWithoutAZoneAreALineOfPoints) {
    const Imported file = read("VARIABLES = X Y Z\n" + rows);
    ASSERT_THAT(file.model.patches, SizeIs(1));
    EXPECT_EQ(sectionsOf(file.model.patches[0]),
              (std::vector<std::vector<Point>>{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 5}}}));
}

TEST(TecplotImport, OtherVariablesAndTitlesOfGridsAreToldAsLost) {
    const Imported file = read("VARIABLES = P Z Y X\nZONE T=a I=2, J=2\n9 0 0 0\n9 0 0 1\n9 0 1 0\n9 5 1 1\n");
    EXPECT_EQ(sectionsOf(file.model.patches.at(0)), grid);
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_THAT(file.record.reasons, ElementsAre("Variables that are not kept: 1", "Titles of grids are not kept"));
}

TEST(TecplotImport, WithoutNamesOfCoordinatesTheFirstThreeAreTaken) {
    const Imported file = read("VARIABLES = a b c d\nZONE I=2, J=2\n0 0 0 9\n1 0 0 9\n0 1 0 9\n1 1 5 9\n");
    EXPECT_EQ(sectionsOf(file.model.patches.at(0)), grid);
    EXPECT_THAT(file.record.changed, ElementsAre("No variables X and Y: the first three are taken for coordinates"));
}

TEST(TecplotImport, WithoutZTheGridIsFlat) {
    const Imported file = read("VARIABLES = X Y\nZONE I=2, J=2\n0 0 1 0 0 1 1 1\n");
    EXPECT_EQ(sectionsOf(file.model.patches.at(0)),
              (std::vector<std::vector<Point>>{{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {1, 1, 0}}}));
    EXPECT_THAT(file.record.changed, ElementsAre("No variable Z: 0 is taken for it"));
}

const Corners lower = {{{0, 0, 0}, {1, 0, 0}, {1, 1, 5}}};

TEST(TecplotImport, TrianglesAreReadHoweverTheyAreWritten) {
    for (const std::string& text : std::vector<std::string>{
             "VARIABLES=X,Y,Z\nZONE T=\"part\", N=4, E=1, F=FEPOINT, ET=TRIANGLE\n" + rows + "1 2 4\n",
             "VARIABLES=X,Y,Z\nZONE T=\"part\" NODES=4, ELEMENTS=1, DATAPACKING=POINT, ZONETYPE=FETRIANGLE\n" + rows +
                 "1 2 4\n",
             "ZONE T=\"part\", I=4, J=1, F=FEPOINT\n" + rows + "1 2 4\n",
             std::string(
                 "VARIABLES=X,Y,Z\nZONE T=part N=4,E=1,ZONETYPE=FETRIANGLE,F=FEBLOCK\n0 1 0 1 0 0 1 1 0 0 0 5\n1 "
                 "2 4\n")}) {
        const Imported file = read(text);
        EXPECT_THAT(cornersOf(file.model), ElementsAre(lower)) << text;
        EXPECT_THAT(titlesOf(file.model), ElementsAre("part"));
        EXPECT_TRUE(file.record.complete) << text;
        EXPECT_EQ(kept(file, "triangles"), 1);
    }
}

TEST(TecplotImport, AQuadrilateralGivesTwoTrianglesAndOneWithARepeatedCornerOne) {
    const Imported file = read(
        "VARIABLES=X,Y,Z\nZONE N=4, E=2, F=FEPOINT, ET=QUADRILATERAL\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n1 2 3 4\n1 2 3 3\n");
    EXPECT_THAT(trianglesOf(*file.model.region.blocks.at(0)),
                ElementsAre(std::array<std::int32_t, 3>{0, 1, 2}, std::array<std::int32_t, 3>{0, 2, 3},
                            std::array<std::int32_t, 3>{0, 1, 2}));
    EXPECT_THAT(file.record.changed, ElementsAre("Polygons that became triangles: 1"));
    EXPECT_FALSE(file.record.lossless);
}

TEST(TecplotImport, WithoutATypeTheFirstElementTellsHowManyCornersThereAre) {
    EXPECT_EQ(kept(read("ZONE N=4, E=1, F=FEPOINT\n" + rows + "1 2 4 3\n"), "triangles"), 2);
    EXPECT_EQ(kept(read("ZONE N=4, E=2, F=FEPOINT\n" + rows + "1 2 4\n1 4 3\n"), "triangles"), 2);
}

TEST(TecplotImport, ZonesOfTrianglesKeepTheValuesOfTheirNodes) {
    const Imported file =
        read("VARIABLES=X,Y,Z,P,Q\nZONE N=3, E=1, ET=TRIANGLE, F=FEBLOCK, VARLOCATION=([5]=CELLCENTERED)\n"
             "0 1 0\n0 0 1\n0 0 0\n7 8 9\n4\n1 2 3\n");
    const zBlock_fe& zone = *file.model.region.blocks.at(0);
    ASSERT_EQ(zone.variables.size(), 4U);
    EXPECT_EQ(zone.variables[3]->name, "P");
    EXPECT_THAT(zone.variables[3]->data, ElementsAre(7, 8, 9));
    EXPECT_THAT(file.record.reasons,
                ElementsAre("Variables at cell centres are skipped: 1", "Variables that are not kept: 1"));
    EXPECT_EQ(found(file, "variables"), 5);
    EXPECT_EQ(kept(file, "variables"), 4);
}

TEST(TecplotImport, CellValuesOfGridsAreSkipped) {
    // 3 by 2 points have 2 cells.
    for (const char* const location :
         {"([4]=CELLCENTERED)", "([4-4]=CellCentered,[1-3]=NODAL)", "(NODAL,NODAL,NODAL,CELLCENTERED)"}) {
        const Imported file =
            read("VARIABLES=X,Y,Z,P\nZONE I=3, J=2, F=BLOCK, VARLOCATION=" + std::string(location) +
                 "\n0 1 2 0 1 2\n0 0 0 1 1 1\n0 0 0 0 0 0\n44 55\nZONE I=2 J=1 F=POINT\n1 1 1 1\n2 2 2 2\n");
        EXPECT_THAT(file.model.patches, SizeIs(2)) << location;
        EXPECT_TRUE(file.record.complete) << location;
        EXPECT_THAT(file.record.reasons, Contains("Variables at cell centres are skipped: 1"));
    }
}

TEST(TecplotImport, ValuesAndElementsAreSharedBetweenZones) {
    const std::string first = "VARIABLES=X,Y,Z\nZONE T=a, N=4, E=1, F=FEPOINT, ET=TRIANGLE\n" + rows + "1 2 4\n";
    for (const std::string& second : std::vector<std::string>{
             "ZONE T=b, N=4, E=1, F=FEBLOCK, ET=TRIANGLE, VARSHARELIST=([1,2]=1), CONNECTIVITYSHAREZONE=1\n9 9 9 9\n",
             "ZONE T=b, N=4, E=1, F=FEPOINT, ET=TRIANGLE, VARSHARELIST=([1-2]=1)\n9 9 9 9\n1 2 4\n",
             "ZONE T=b, N=4, E=1, F=FEPOINT, ET=TRIANGLE, D=(1,2,FECONNECT)\n9 9 9 9\n"}) {
        const Imported file = read(first + second);
        EXPECT_THAT(cornersOf(file.model), ElementsAre(lower, Corners{{{0, 0, 9}, {1, 0, 9}, {1, 1, 9}}})) << second;
        EXPECT_TRUE(file.record.complete);
    }
}

TEST(TecplotImport, SharingFromNowhereLosesTheZone) {
    const Imported file = read("VARIABLES=X,Y,Z\nZONE I=2, J=2\n" + rows +
                               "ZONE I=2, J=2, VARSHARELIST=([1-3]=7)\nZONE I=3, J=1, VARSHARELIST=([1-3]=1)\n");
    EXPECT_THAT(file.model.patches, SizeIs(1));
    EXPECT_THAT(file.record.reasons, ElementsAre("Zones without whole coordinates: 2"));
    EXPECT_EQ(found(file, "zones"), 3);
}

TEST(TecplotImport, APassiveVariableHasNoNumbers) {
    const Imported file = read("VARIABLES=X,Y,Z,P\nZONE I=2, J=2, F=POINT, PASSIVEVARLIST=[4]\n" + rows);
    EXPECT_EQ(sectionsOf(file.model.patches.at(0)), grid);
    EXPECT_TRUE(file.record.complete);
}

// Two tetrahedra that share the face 2 3 4: six outer faces, each looking away from the node that is not in it.
TEST(TecplotImport, TetrahedraGiveTheirOuterFaces) {
    const std::string text = "VARIABLES=X,Y,Z\nZONE N=5, E=2, F=FEPOINT, ET=TETRAHEDRON\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 "
                             "1 1\n1 2 3 4\n2 5 3 4\n";
    const Imported without = read(text);
    EXPECT_TRUE(without.model.empty());
    EXPECT_THAT(without.record.reasons, ElementsAre("Volume zones, whose faces were not asked for: 1"));
    const Imported file = read(text, withVolumes());
    EXPECT_EQ(kept(file, "triangles"), 6);
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless) << "the inside is gone";
    EXPECT_THAT(file.record.changed, ElementsAre("Volumes of which only the outer faces are kept: 1"));
    const zVec<double> inside(0.4, 0.4, 0.4);
    for (const Corners& c : cornersOf(file.model)) {
        EXPECT_GT(dot(normalOf(c), vectorOf(c[0]) - inside), 0.0);
    }
}

// Two cubes side by side: 10 outer faces, 20 triangles, of the area 10 and looking outwards.
TEST(TecplotImport, BricksGiveTheirOuterFaces) {
    std::string text = "VARIABLES=X,Y,Z\nZONE N=12, E=2, F=FEPOINT, ET=BRICK\n";
    for (int i = 0; i < 12; ++i) {
        text += std::to_string(i % 3) + ' ' + std::to_string(i / 3 % 2) + ' ' + std::to_string(i / 6) + '\n';
    }
    const Imported file = read(text + "1 2 5 4 7 8 11 10\n2 3 6 5 8 9 12 11\n", withVolumes());
    EXPECT_EQ(kept(file, "faces"), 10);
    EXPECT_EQ(kept(file, "triangles"), 20);
    const zVec<double> inside(1.0, 0.5, 0.5);
    double area = 0.0;
    for (const Corners& c : cornersOf(file.model)) {
        EXPECT_GT(dot(normalOf(c), vectorOf(c[0]) - inside), 0.0);
        area += areaOf(c);
    }
    EXPECT_DOUBLE_EQ(area, 10.0);
}

TEST(TecplotImport, AnOrderedVolumeGivesSixPatches) {
    const std::string text =
        "VARIABLES=X,Y,Z\nZONE I=2, J=2, K=2, F=BLOCK\n0 1 0 1 0 1 0 1\n0 0 1 1 0 0 1 1\n0 0 0 0 1 1 1 1\n";
    EXPECT_TRUE(read(text).model.empty());
    EXPECT_THAT(read(text, withVolumes()).model.patches, SizeIs(6));
}

TEST(TecplotImport, AFileOfGridsAndTrianglesBecomesTriangles) {
    const Imported file = read("VARIABLES=X,Y,Z\nZONE T=grid, I=2, J=2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\nZONE T=fe, N=3, "
                               "E=1, F=FEPOINT, ET=TRIANGLE\n"
                               "0 0 0\n1 0 0\n0 1 0\n1 2 3\nZONE T=line I=2\n0 0 0\n1 1 1\n");
    EXPECT_THAT(titlesOf(file.model), ElementsAre("grid", "fe"));
    EXPECT_THAT(file.model.patches, IsEmpty());
    // The window's front of the grid is +z, and so is the outside of its triangles.
    for (const Corners& c : cornersOf(file.model)) {
        EXPECT_GT(normalOf(c).z, 0.0);
    }
    EXPECT_FALSE(file.record.complete);
    EXPECT_THAT(file.record.reasons, ElementsAre("Zones of lines, which have no surface: 1"));
}

TEST(TecplotImport, TheScaleAppliesOnceToGridsAndTriangles) {
    ImportOptions options;
    options.scale = 2.0;
    const Imported file = read("VARIABLES=X,Y,Z\nZONE I=2, J=2\n" + rows +
                                   "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n",
                               options);
    EXPECT_THAT(nodesOf(*file.model.region.blocks.at(0)),
                ElementsAre(Point{0, 0, 0}, Point{2, 0, 0}, Point{0, 2, 0}, Point{2, 2, 10}));
    EXPECT_THAT(nodesOf(*file.model.region.blocks.at(1)), ElementsAre(Point{0, 0, 0}, Point{2, 0, 0}, Point{0, 2, 0}));
    EXPECT_THAT(file.record.changed, UnorderedElementsAre("Coordinates scaled", "Grids that became triangles: 1"));
    EXPECT_FALSE(file.record.lossless) << "a save has no grid";
}

TEST(TecplotImport, TextAndGeometryRecordsArePassedOver) {
    const Imported file =
        read("VARIABLES=X,Y,Z\nTEXT X=5, Y=5, T=\"a ZONE in I=9 text\", C=RED\nZONE I=2, J=2\n" + rows +
             "GEOMETRY X=0, Y=0, T=LINE3D, F=POINT\n1\n2\n0 0 0\n1 1 1\nCUSTOMLABELS \"one\" \"two\"\nDATASETAUXDATA "
             "a=\"b\"\n"
             "ZONE I=2, J=2\n" +
             rows);
    EXPECT_THAT(file.model.patches, SizeIs(2));
    EXPECT_TRUE(file.record.complete);
    EXPECT_THAT(file.record.reasons, ElementsAre("Text and geometry records are passed over: 2",
                                                 "Values of headers that are not kept: CUSTOMLABELS, DATASETAUXDATA"));
}

TEST(TecplotImport, AZoneThatIsCutLosesWhatIsNotWhole) {
    const Imported grids = read("VARIABLES=X,Y,Z\nZONE I=2, J=2\n" + rows + "ZONE I=2, J=2\n0 0 0\n1 0 0\n0 1");
    EXPECT_THAT(grids.model.patches, SizeIs(1));
    EXPECT_FALSE(grids.record.complete);
    EXPECT_THAT(grids.record.reasons,
                ElementsAre("Zones without whole coordinates: 1", "Zones whose numbers end early: 1"));
    const Imported elements =
        read("VARIABLES=X,Y,Z\nZONE N=4, E=3, F=FEPOINT, ET=TRIANGLE\n" + rows + "1 2 4\n1 4 3\n1 2");
    EXPECT_EQ(kept(elements, "triangles"), 2);
    EXPECT_THAT(elements.record.reasons, Contains("Elements that the file does not have: 1"));
    // The coordinates of a zone by blocks are whole before its other variables are.
    const Imported blocks = read("VARIABLES=X,Y,Z,P\nZONE I=2, J=2, F=BLOCK\n0 1 0 1\n0 0 1 1\n0 0 0 5\n1 2");
    EXPECT_EQ(sectionsOf(blocks.model.patches.at(0)), grid);
    EXPECT_FALSE(blocks.record.complete);
}

TEST(TecplotImport, WrongNodesLoseTheirElementAlone) {
    for (const char* const element : {"1 2 5", "0 1 2", "-2147483648 1 2", "1 2 99999999999"}) {
        const Imported file = read("VARIABLES=X,Y,Z\nZONE N=4, E=2, F=FEPOINT, ET=TRIANGLE\n" + rows + element +
                                   "\n1 2 4\n"
                                   "ZONE N=4, E=1, F=FEPOINT, ET=TRIANGLE\n" +
                                   rows + "1 2 4\n");
        EXPECT_EQ(kept(file, "triangles"), 2) << element;
        EXPECT_THAT(file.record.reasons, ElementsAre("Faces with points that are not there: 1"));
    }
    const Imported volume = read(
        "VARIABLES=X,Y,Z\nZONE N=4, E=2, F=FEPOINT, ET=TETRAHEDRON\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 2 3 4\n1 2 3 9\n",
        withVolumes());
    EXPECT_EQ(kept(volume, "triangles"), 4);
    EXPECT_THAT(volume.record.reasons, ElementsAre("Elements with nodes that are not there: 1"));
}

TEST(TecplotImport, CoordinatesThatAreNotFiniteStayOut) {
    const Imported file = read("VARIABLES=X,Y,Z\nZONE I=2, J=2\n0 0 0\nnan 0 0\n0 1 0\n1 1 5\nZONE I=2, J=2\n" + rows);
    EXPECT_THAT(file.model.patches, SizeIs(1));
    EXPECT_THAT(file.record.reasons, ElementsAre("Grids with coordinates that are not finite: 1"));
}

TEST(TecplotImport, CountsThatTheFileDoesNotHaveAskForNoMemory) {
    for (const char* const zone : {"ZONE I=2147483647, J=2147483647\n", "ZONE I=65536, J=65536, K=65536\n",
                                   "ZONE N=99999999999, E=1, F=FEPOINT\n", "ZONE N=-5, E=1, F=FEPOINT\n",
                                   "ZONE I=0, J=5\n", "ZONE N=2147483647, E=2147483647, ET=BRICK, F=FEPOINT\n",
                                   "ZONE I=2000000000, J=1, F=BLOCK\n2000000000*0.0 2000000000*0.0\n"}) {
        const Imported file = read("VARIABLES=X,Y,Z\n" + std::string(zone) + "0 0 0\n", withVolumes());
        EXPECT_TRUE(file.model.empty()) << zone;
        EXPECT_FALSE(file.record.complete) << zone;
    }
}

// A hundred thousand zones that share one of ten thousand points would fill the memory.
TEST(TecplotImport, SharingHasALimit) {
    std::string text = "VARIABLES=X,Y,Z\nZONE I=100, J=100, F=BLOCK\n";
    text += "10000*1 10000*2 10000*3\n";
    for (int zone = 0; zone < 20'000; ++zone) {
        text += "ZONE I=100, J=100, VARSHARELIST=([1-3]=1)\n";
    }
    const Imported file = read(text);
    EXPECT_GT(file.model.patches.size(), 100U);
    EXPECT_LT(file.model.patches.size(), 2000U);
    EXPECT_FALSE(file.record.complete);
}

TEST(TecplotImport, ABinaryFileIsToldAsOne) {
    for (const char* const head : {"#!TDV112\1", "#!SZPLT"}) {
        const Imported file = read(std::string(head) + std::string(3, '\0'));
        EXPECT_TRUE(file.model.empty());
        EXPECT_FALSE(file.record.complete);
        EXPECT_THAT(file.record.reasons, ElementsAre("This is a binary Tecplot file, which is not read"));
    }
}

TEST(TecplotImport, WhatIsNoTecplotFileGivesNothing) {
    for (const char* const text :
         {"x", "hello world", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n", "TITLE = \"only a title\"\n", "VARIABLES = X Y Z\n",
          "ZONE", "VARIABLES =\nZONE\n", "VARIABLES = \"X", "ZONE T=\"", "ZONE DT=(",
          "ZONE VARLOCATION=([,]=[-]\n1 2 3", "ZONE VARSHARELIST=([0],[3-1],[1-99999999999]=1) I=2\n"}) {
        const Imported file = read(text);
        EXPECT_FALSE(file.record.complete && !file.model.empty() && file.record.lossless &&
                     file.record.changed.empty() && found(file, "zones") == 0)
            << text;
        EXPECT_EQ(file.model.region.blocks.size(), 0U) << text;
    }
    EXPECT_TRUE(read("").record.complete);
    EXPECT_THAT(read("").record.reasons, IsEmpty());
    EXPECT_FALSE(read("hello world").record.complete);
}

} // namespace
} // namespace velmora::test

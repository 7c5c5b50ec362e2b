// Whole files: what the reader takes from them, drops and refuses.

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tecplot_tools.h"

namespace velmora {
namespace {

using test::dataReport;
using test::errorText;
using test::fieldNames;
using test::headerReport;
using test::readTecplotText;
using test::TecplotOutcome;
using Names = std::vector<std::string>;
using Values = std::vector<double>;
using Entries = std::vector<std::int32_t>;

const std::string xyz = "VARIABLES = \"x\" \"y\" \"z\"\n";
const std::string fourPoints = "0 0 0\n1 0 0\n0 1 0\n1 1 0.5\n";
const std::string square = xyz + "ZONE I=2, J=2, K=1, F=POINT\n" + fourPoints;

Values valuesOf(const ZoneVariables& variables, const std::string& name) {
    const zArray<double>* const array = variableNamed(variables, name);
    return array == nullptr ? Values{-999.0} : array->data;
}

TEST(TecplotRead, AFileThatCannotBeOpenedRaisesAFileErrorWithoutText) {
    const test::TemporaryFolder folder;
    const TecplotOutcome outcome = test::readTecplot(folder / "none.dat");
    EXPECT_EQ(errorText(outcome), "File Error: ...");
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->message(), "\n--- Error Message ---\n\nFile Error: ...\n\nIn file:\n'zTecplotReader'"
                                        "\n\nLine No " +
                                            std::to_string(outcome.error->line()));
}

TEST(TecplotRead, AnEmptyFileGivesNothing) {
    for (const char* const text : {"", "\n", "# comment", "1 2 3\n", "word", "\"", "["}) {
        const TecplotOutcome outcome = readTecplotText(text);
        EXPECT_EQ(errorText(outcome), "") << text;
        EXPECT_TRUE(outcome.structured.blocks.empty());
        EXPECT_TRUE(outcome.unstructured.blocks.empty());
    }
}

TEST(TecplotRead, AFileWithVariablesOnlyGivesTwoEmptyRegionsWithoutTitle) {
    const TecplotOutcome outcome = readTecplotText("TITLE = \"t\"\n" + xyz);
    EXPECT_EQ(errorText(outcome), "");
    EXPECT_TRUE(outcome.structured.blocks.empty());
    EXPECT_TRUE(outcome.unstructured.blocks.empty());
    EXPECT_EQ(outcome.structured.title + outcome.unstructured.title, "");
}

TEST(TecplotRead, AnOrderedZoneInPointPacking) {
    const TecplotOutcome outcome = readTecplotText("TITLE = \"t\"\n" + square);
    ASSERT_EQ(errorText(outcome), "");
    ASSERT_EQ(outcome.structured.blocks.size(), 1U);
    const zBlock& zone = *outcome.structured.blocks[0];
    EXPECT_EQ(outcome.structured.title, "t");
    EXPECT_EQ(zone.title, "zone");
    EXPECT_EQ((Entries{zone.imax, zone.jmax, zone.kmax, zone.total}), (Entries{2, 2, 1, 4}));
    EXPECT_EQ(fieldNames(zone), (Names{"x", "y", "z"}));
    EXPECT_EQ(valuesOf(zone.variables, "x"), (Values{0, 1, 0, 1}));
    EXPECT_EQ(valuesOf(zone.variables, "y"), (Values{0, 0, 1, 1}));
    EXPECT_EQ(valuesOf(zone.variables, "z"), (Values{0, 0, 0, 0.5}));
    const zArray<double>& x = *zone.variables[0];
    EXPECT_EQ((Entries{x.ni, x.nj, x.nk, x.si, x.sj, x.sk, x.size}), (Entries{2, 2, 1, 1, 2, 4, 4}));
}

TEST(TecplotRead, BlockPackingIsTheDefault) {
    const TecplotOutcome outcome = readTecplotText(xyz + "ZONE I=2 J=2 K=1 T=\"b\"\n0 1 2 3\n4 5 6 7\n8 9 10 11");
    ASSERT_EQ(errorText(outcome), "");
    const zBlock& zone = *outcome.structured.blocks.at(0);
    EXPECT_EQ(zone.title, "b");
    EXPECT_EQ(valuesOf(zone.variables, "x"), (Values{0, 1, 2, 3}));
    EXPECT_EQ(valuesOf(zone.variables, "y"), (Values{4, 5, 6, 7}));
    EXPECT_EQ(valuesOf(zone.variables, "z"), (Values{8, 9, 10, 11}));
}

TEST(TecplotRead, AFileWithoutTitleIsUntitled) {
    EXPECT_EQ(readTecplotText(square).structured.title, "Untitled");
}

TEST(TecplotRead, CoordinatesStandFirstWhateverTheirOrderInTheFile) {
    const std::string text = "VARIABLES = \"p\" \"Y\" \"X\" \"q\" \"z\"\nZONE I=2 J=2 K=1 F=POINT\n"
                             "1 2 3 4 5\n6 7 8 9 10\n11 12 13 14 15\n16 17 18 19 20\n";
    const TecplotOutcome coordinates = readTecplotText(text);
    EXPECT_EQ(fieldNames(*coordinates.structured.blocks.at(0)), (Names{"X", "Y", "z"}));
    EXPECT_EQ(valuesOf(coordinates.structured.blocks[0]->variables, "x"), (Values{3, 8, 13, 18}));
    const TecplotOutcome all = readTecplotText(text, false);
    EXPECT_EQ(fieldNames(*all.structured.blocks.at(0)), (Names{"X", "Y", "z", "p", "q"}));
    EXPECT_EQ(valuesOf(all.structured.blocks[0]->variables, "q"), (Values{4, 9, 14, 19}));
}

TEST(TecplotRead, OfTwoVariablesOfOneNameTheLastGivesTheValuesAndTheZoneItsTitle) {
    for (const char* const zone : {"ZONE T=\"a\" I=2 J=2 K=1 F=POINT\n0 1 2 3\n4 5 6 7\n8 9 10 11\n12 13 14 15\n",
                                   "ZONE T=\"a\" I=2 J=2 K=1 F=BLOCK\n0 4 8 12 1 5 9 13 2 6 10 14 3 7 11 15\n"}) {
        const TecplotOutcome outcome = readTecplotText("VARIABLES = \"x\" \"Y\" \"Z\" \"X\"\n" + std::string(zone));
        ASSERT_EQ(errorText(outcome), "");
        const zBlock& read = *outcome.structured.blocks.at(0);
        EXPECT_EQ(read.title, "X") << "the field was found when it was to be added again";
        EXPECT_EQ(fieldNames(read), (Names{"x", "Y", "Z"}));
        EXPECT_EQ(valuesOf(read.variables, "x"), (Values{3, 7, 11, 15}));
    }
}

TEST(TecplotRead, PassiveVariablesHaveNoNumbersAndAreZero) {
    const TecplotOutcome outcome =
        readTecplotText("VARIABLES=\"x\" \"y\" \"z\" \"p\" \"q\" \"r\" \"s\"\nZONE I=2 J=2 K=1"
                        " PASSIVEVARLIST=[2,4-6] F=POINT\n1 2 3\n4 5 6\n7 8 9\n10 11 12\n",
                        false);
    ASSERT_EQ(errorText(outcome), "");
    const ZoneVariables& variables = outcome.structured.blocks.at(0)->variables;
    EXPECT_EQ(valuesOf(variables, "x"), (Values{1, 4, 7, 10}));
    EXPECT_EQ(valuesOf(variables, "y"), (Values{0, 0, 0, 0}));
    EXPECT_EQ(valuesOf(variables, "z"), (Values{2, 5, 8, 11}));
    EXPECT_EQ(valuesOf(variables, "r"), (Values{0, 0, 0, 0}));
    EXPECT_EQ(valuesOf(variables, "s"), (Values{3, 6, 9, 12}));
}

TEST(TecplotRead, AZoneWithoutKHasNoPointsAndItsNumbersArePassedOver) {
    const TecplotOutcome outcome =
        readTecplotText(xyz + "ZONE I=3, J=4\n" + fourPoints + "ZONE T=\"b\" I=2, J=2, K=1, F=POINT\n" + fourPoints);
    ASSERT_EQ(errorText(outcome), "");
    ASSERT_EQ(outcome.structured.blocks.size(), 2U);
    const zBlock& zone = *outcome.structured.blocks[0];
    EXPECT_EQ((Entries{zone.imax, zone.jmax, zone.kmax, zone.total}), (Entries{3, 4, 0, 0}));
    EXPECT_EQ(fieldNames(zone), (Names{"x", "y", "z"}));
    EXPECT_TRUE(zone.variables[0]->data.empty());
    EXPECT_EQ(outcome.structured.blocks[1]->title, "b");
}

TEST(TecplotRead, AZoneOfOneRowIsDroppedAndTheRestGoesOn) {
    for (const char* const row : {"I=4 J=1 K=1", "I=1 J=4 K=1", "I=1 J=1 K=4"}) {
        const TecplotOutcome outcome = readTecplotText(xyz + "ZONE " + row + " F=POINT\n" + fourPoints +
                                                       "ZONE I=2 J=2 K=1 F=POINT\n" + fourPoints);
        EXPECT_EQ(errorText(outcome), "") << row;
        EXPECT_EQ(outcome.structured.blocks.size(), 1U) << row;
    }
}

TEST(TecplotRead, NodesAndElementsWithoutTypeMakeAnOrderedZoneThatIsDropped) {
    const TecplotOutcome outcome = readTecplotText(xyz + "ZONE N=4, E=1, F=FEPOINT\n" + fourPoints + "1 2 3 4\n");
    EXPECT_EQ(errorText(outcome), "");
    EXPECT_TRUE(outcome.structured.blocks.empty());
    EXPECT_TRUE(outcome.unstructured.blocks.empty());
}

TEST(TecplotRead, TrianglesCountFromOneInTheFileAndFromZeroInTheZone) {
    for (const char* const zone :
         {"F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0.5\n1 2 3\n3 2 4\n", "\n0 1 0 1 0 0 1 1 0 0 0 .5\n1 2 3 3 2 4"}) {
        const TecplotOutcome outcome =
            readTecplotText("TITLE=\"t\" " + xyz + "ZONE T=\"f\" N=4, E=2, ZONETYPE=FETRIANGLE " + zone);
        ASSERT_EQ(errorText(outcome), "");
        EXPECT_EQ(outcome.unstructured.title, "t");
        EXPECT_EQ(outcome.structured.title, "");
        const zBlock_fe& read = *outcome.unstructured.blocks.at(0);
        EXPECT_EQ(read.title, "f");
        EXPECT_EQ((Entries{read.nodeCount, read.elementCount, read.connectivitySize}), (Entries{4, 2, 8}));
        EXPECT_EQ(read.connectivity, (Entries{0, 1, 2, -1, 2, 1, 3, -1}));
        EXPECT_EQ(fieldNames(read), (Names{"x", "y", "z"}));
        EXPECT_EQ(valuesOf(read.variables, "x"), (Values{0, 1, 0, 1}));
        EXPECT_EQ(valuesOf(read.variables, "z"), (Values{0, 0, 0, 0.5}));
        EXPECT_EQ((Entries{read.variables[0]->ni, read.variables[0]->nj, read.variables[0]->nk}), (Entries{4, 1, 1}));
        EXPECT_TRUE(consistent(read));
    }
}

TEST(TecplotRead, AQuadrilateralBecomesTwoTrianglesWithEndMarks) {
    const TecplotOutcome outcome =
        readTecplotText(xyz + "ZONE N=4 E=1 ET=QUADRILATERAL F=FEPOINT\n" + fourPoints + "1 2 4 3");
    ASSERT_EQ(errorText(outcome), "");
    const zBlock_fe& zone = *outcome.unstructured.blocks.at(0);
    EXPECT_EQ((Entries{zone.elementCount, zone.connectivitySize}), (Entries{2, 8}));
    EXPECT_EQ(zone.connectivity, (Entries{0, 1, 3, -1, 3, 2, 0, -1}));
}

TEST(TecplotRead, AZoneOfNodesWithoutElementsIsKept) {
    const TecplotOutcome outcome = readTecplotText(xyz + "ZONE N=1 ET=TRIANGLE F=POINT\n1 2 3");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(outcome.unstructured.blocks.at(0)->nodeCount, 1);
    EXPECT_EQ(outcome.unstructured.blocks[0]->elementCount, 0);
}

TEST(TecplotRead, OtherElementsAreSkippedWithAllTheirNumbers) {
    struct Kind {
        const char* type;
        int corners;
    };
    for (const Kind& kind : {Kind{"FELINESEG", 2}, Kind{"TETRAHEDRON", 4}, Kind{"FEBRICK", 8}}) {
        for (const char* const packing : {"POINT", "BLOCK"}) {
            std::string corners;
            for (int element = 0; element < 3; ++element) {
                for (int corner = 0; corner < kind.corners; ++corner) {
                    corners += "1 ";
                }
            }
            const std::string header =
                xyz + "ZONE N=4 E=3 PASSIVEVARLIST=[2] F=" + packing + " ET=" + kind.type + "\n1 2 3 4 5 6 7 8\n";
            const TecplotOutcome good =
                readTecplotText(header + corners + "\nZONE T=\"b\" I=2 J=2 K=1 F=POINT\n" + fourPoints);
            EXPECT_EQ(errorText(good), "") << kind.type;
            ASSERT_EQ(good.structured.blocks.size(), 1U) << kind.type;
            EXPECT_EQ(good.structured.blocks[0]->title, "b");
            EXPECT_TRUE(good.unstructured.blocks.empty());
            corners.resize(corners.size() - 2);
            EXPECT_EQ(errorText(readTecplotText(header + corners + "ZONE")), dataReport(2, "zone", 4)) << kind.type;
        }
    }
}

TEST(TecplotRead, ALowerCaseZoneStartsTheFirstZoneOnly) {
    const std::string zone = "I=2 J=2 K=1 F=POINT\n" + fourPoints;
    const TecplotOutcome outcome = readTecplotText(xyz + "zone " + zone + "zone " + zone + "Zone " + zone);
    EXPECT_EQ(errorText(outcome), "");
    EXPECT_EQ(outcome.structured.blocks.size(), 2U);
}

TEST(TecplotRead, AZoneWordWithACommaIsPassedOver) {
    const std::string zone = "I=2 J=2 K=1 F=POINT\n" + fourPoints;
    EXPECT_EQ(readTecplotText(xyz + "ZONE, " + zone + "ZONE, " + zone).structured.blocks.size(), 1U);
}

TEST(TecplotRead, RecordsBetweenZonesArePassedOver) {
    const TecplotOutcome outcome =
        readTecplotText(square + "GEOMETRY X=0, T=LINE3D, AZ=3 ZN=1\n1 2 3\nTEXT T=\"Zebra\"\n" +
                        "ZONE T=\"b\" I=2 J=2 K=1 F=POINT\n" + fourPoints);
    EXPECT_EQ(errorText(outcome), "");
    EXPECT_EQ(outcome.structured.blocks.size(), 2U);
}

TEST(TecplotRead, NumbersBeforeTheFileHeaderArePassedOver) {
    const TecplotOutcome outcome = readTecplotText("1 2 3\n4\n" + square);
    EXPECT_EQ(errorText(outcome), "");
    EXPECT_EQ(outcome.structured.blocks.size(), 1U);
}

TEST(TecplotRead, ZonesOfBothKindsAllBecomeTriangles) {
    const TecplotOutcome outcome = readTecplotText(
        "TITLE=\"t\"\n" + square + "ZONE T=\"f\" N=3 E=1 ET=TRIANGLE F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_TRUE(outcome.structured.blocks.empty());
    ASSERT_EQ(outcome.unstructured.blocks.size(), 2U);
    EXPECT_EQ(outcome.unstructured.title, "t");
    EXPECT_EQ(outcome.unstructured.blocks[0]->title, "f");
    EXPECT_EQ(outcome.unstructured.blocks[1]->title, "Patch___0");
    EXPECT_EQ(outcome.unstructured.blocks[1]->connectivity, (Entries{0, 1, 2, -1, 2, 1, 3, -1}));
}

TEST(TecplotRead, ZonesAreAppendedToWhatTheRegionsHold) {
    const test::TemporaryFolder folder;
    const auto path = test::writeFileText(folder / "a.dat", square);
    zRegion structured;
    zRegion_fe unstructured;
    zTecplotReader().read(path, structured, unstructured);
    zTecplotReader().read(path, structured, unstructured);
    EXPECT_EQ(structured.blocks.size(), 2U);
    unstructured.blocks.push_back(std::make_unique<zBlock_fe>(0, 0, 0));
    zTecplotReader().read(path, structured, unstructured);
    EXPECT_TRUE(structured.blocks.empty());
    EXPECT_EQ(unstructured.blocks.size(), 4U);
}

TEST(TecplotRead, AReaderStartsCleanWithEveryFile) {
    const test::TemporaryFolder folder;
    const auto named = test::writeFileText(folder / "a.dat", "TITLE=\"t\" " + square);
    const auto bare = test::writeFileText(folder / "b.dat", "ZONE I=2 J=2 T=\"b\"");
    zTecplotReader reader;
    zRegion first;
    zRegion second;
    zRegion_fe none;
    reader.read(named, first, none);
    reader.read(bare, second, none);
    EXPECT_EQ(second.title, "Untitled");
    EXPECT_TRUE(second.blocks.at(0)->variables.empty());
}

TEST(TecplotRead, WithoutVariablesAnOrderedZoneHasNoFields) {
    const TecplotOutcome outcome = readTecplotText("ZONE T=\"P\", I=5, J=4, F=FEPOINT\n1 2 3\n4 5 6\n");
    ASSERT_EQ(errorText(outcome), "");
    const zBlock& zone = *outcome.structured.blocks.at(0);
    EXPECT_EQ((Entries{zone.imax, zone.jmax, zone.kmax, zone.total}), (Entries{5, 4, 0, 0}));
    EXPECT_TRUE(zone.variables.empty());
}

TEST(TecplotRead, WithoutVariablesATriangleZoneLacksItsCoordinates) {
    const TecplotOutcome outcome = readTecplotText("ZONE N=3 E=1 ET=TRIANGLE\n1 2 3\n");
    EXPECT_EQ(errorText(outcome), "Parsing Error: missing coordinate(s):  'x' 'y' 'z'");
}

TEST(TecplotRead, APointWithoutNumbersAtTheEndOfTheFileIsAnErrorInPointPackingOnly) {
    EXPECT_EQ(errorText(readTecplotText("ZONE I=2 J=2 K=1 F=POINT")), dataReport(2, "zone", 1));
    const TecplotOutcome block = readTecplotText("ZONE I=2 J=2 K=1 F=BLOCK");
    EXPECT_EQ(errorText(block), "");
    EXPECT_EQ(block.structured.blocks.size(), 1U);
}

TEST(TecplotRead, ACommaInTheDataIsRefusedWithItsLine) {
    EXPECT_EQ(errorText(readTecplotText(xyz + "ZONE T=\"a\" I=2 J=2 K=1 F=POINT\n0 0 0\n1 0, 0\n")),
              dataReport(2, "a", 4));
}

TEST(TecplotRead, WordsForNumbersThatAreNoneAreRefused) {
    for (const char* const word : {"nan", "inf", "-inf", "1e999", "1e", "x", "."}) {
        const std::string text = xyz + "ZONE I=2 J=2 K=1 F=POINT\n0 0 0\n1 0 " + word + "\n0 1 0\n1 1 0\n";
        EXPECT_EQ(errorText(readTecplotText(text)), dataReport(2, "zone", 4)) << word;
    }
}

TEST(TecplotRead, LinesCountFromTheFirstWordOfTheHeaderToTheNumberThatFailed) {
    const std::string header = "ZONE I=2 J=2 K=1 F=POINT\n";
    EXPECT_EQ(errorText(readTecplotText("\n\n#c\n" + xyz + header + "0 0 0\n\n\n1 x")), dataReport(2, "zone", 6));
    EXPECT_EQ(errorText(readTecplotText(square + "\n\n" + header + "0 0 0\nZONE")), dataReport(3, "zone", 3));
    EXPECT_EQ(errorText(readTecplotText(xyz + header + "0 0 0")), dataReport(2, "zone", 3));
    EXPECT_EQ(errorText(readTecplotText(xyz + header + "0 0 0\n")), dataReport(2, "zone", 4)) << "the end of the file";
}

TEST(TecplotRead, LinesCountFromTheLastLeftOverNumber) {
    const std::string text = "1 2\n3 4\n" + xyz + "ZONE I=2 J=2 K=1 F=POINT\n0 0 0\n1 x";
    EXPECT_EQ(errorText(readTecplotText(text)), dataReport(2, "zone", 5)) << "the line of the 4 is the first";
}

TEST(TecplotRead, TheHeaderReportOfASecondZoneSaysTwoAndItsDataReportThree) {
    EXPECT_EQ(errorText(readTecplotText(square + "ZONE T=\"w\" ET=X\n1 2 3\n")), headerReport(2, "w", "ET"));
    EXPECT_EQ(errorText(readTecplotText(square + "ZONE T=\"w\" I=2 J=2 K=1 F=POINT\nx")), dataReport(3, "w", 2));
}

TEST(TecplotRead, ZonesBeforeAnErrorStayInTheRegions) {
    const TecplotOutcome outcome = readTecplotText(square + "ZONE ET=X\n1 2 3\n");
    EXPECT_NE(errorText(outcome), "");
    EXPECT_EQ(outcome.structured.blocks.size(), 1U);
    EXPECT_EQ(outcome.structured.title, "") << "the title comes last";
}

TEST(TecplotRead, AnErrorNamesTheReaderAndAPlace) {
    for (const std::string& text :
         {xyz + "ZONE ET=X", xyz + "ZONE I=2 J=2 K=1\n1 2 x", std::string("VARIABLES=\"x\"")}) {
        const TecplotOutcome outcome = readTecplotText(text);
        ASSERT_TRUE(outcome.error);
        EXPECT_EQ(outcome.error->file(), "zTecplotReader");
        EXPECT_GT(outcome.error->line(), 0);
    }
}

TEST(TecplotRead, CountsWithoutRoomIn32BitsAreRefused) {
    for (const char* const counts :
         {"I=50000 J=50000 K=1", "I=2147483647 J=2147483647 K=2147483647", "I=2 J=2 K=2147483647",
          "ET=TRIANGLE N=1 E=536870912", "ET=QUADRILATERAL N=1 E=268435456"}) {
        EXPECT_EQ(errorText(readTecplotText(xyz + "ZONE " + counts + " F=POINT\n1 2 3\n")), dataReport(2, "zone", 3))
            << counts;
    }
}

TEST(TecplotRead, HugeExtentsWithoutPointsAreKept) {
    const TecplotOutcome outcome = readTecplotText(xyz + "ZONE I=2147483647 J=2147483647 F=POINT\n1 2 3\n");
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(outcome.structured.blocks.at(0)->total, 0);
}

// With memory by the header's word these would take gigabytes; the file ends them after a few numbers.
TEST(TecplotRead, CountsTakeNoMemoryBeforeTheirNumbers) {
    for (const char* const counts : {"I=46340 J=46340 K=1", "ET=TRIANGLE N=2147483647 E=3",
                                     "ET=TRIANGLE N=1 E=536870911", "ET=BRICK N=2147483647 E=2147483647"}) {
        for (const char* const packing : {"POINT", "BLOCK"}) {
            const TecplotOutcome outcome = readTecplotText(xyz + "ZONE " + counts + " F=" + packing + "\n1 2 3\n");
            EXPECT_EQ(errorText(outcome), dataReport(2, "zone", 4)) << counts;
        }
    }
}

TEST(TecplotRead, AZoneWithoutAnyNumbersIsLimitedInSize) {
    const std::string passive = xyz + "ZONE PASSIVEVARLIST=[1-3] F=POINT K=1 ";
    const TecplotOutcome small = readTecplotText(passive + "I=100 J=100 C=RED\n1 2 3\n");
    ASSERT_EQ(errorText(small), "");
    EXPECT_EQ(valuesOf(small.structured.blocks.at(0)->variables, "z"), Values(10000));
    EXPECT_EQ(errorText(readTecplotText(passive + "I=40000 J=40000 C=RED\n1 2 3\n")), dataReport(2, "zone", 3));
}

TEST(TecplotRead, ElementsOnNodesThatDoNotExistAreRefused) {
    for (const char* const element : {"1 2 5", "0 1 2", "-1 1 2", "1 -2147483648 2", "2147483647 1 2"}) {
        const std::string text = xyz + "ZONE N=4 E=2 ET=TRIANGLE F=POINT\n" + fourPoints + "1 2 3\n" + element + "\n";
        EXPECT_EQ(errorText(readTecplotText(text)), dataReport(2, "zone", 8)) << element;
    }
}

TEST(TecplotRead, CornersThatAreNoIntegersAreRefused) {
    for (const char* const element : {"1 2", "1 2 x", "1 2.5 3", "1 2 99999999999"}) {
        const std::string text = xyz + "ZONE N=4 E=2 ET=TRIANGLE F=POINT\n" + fourPoints + "1 2 3\n" + element;
        EXPECT_EQ(errorText(readTecplotText(text)), dataReport(2, "zone", 8)) << element;
    }
}

TEST(TecplotRead, AHeaderThatEndsWithANumberLosesItToTheData) {
    EXPECT_EQ(errorText(readTecplotText(xyz + "ZONE F=POINT, J=2, K=1, I= 2\n" + fourPoints)),
              headerReport(1, "zone", "I"));
}

TEST(TecplotRead, AQuoteOpenedInATokenBehindANumberRunsToTheNextQuote) {
    // The check at "2" takes `T="a`, so the quote behind b opens a text that hides the rest up to the next quote.
    const TecplotOutcome outcome = readTecplotText(xyz + "ZONE I=2 T=\"a b\" J=2 K=1 F=POINT\n" + fourPoints);
    EXPECT_EQ(errorText(outcome), dataReport(2, "a b", 7));
}

TEST(TecplotRead, AHeaderWithoutEndOfMegabytesIsReadInTime) {
    std::string text = xyz + "ZONE ";
    while (text.size() < 1'000'000) {
        text += "1 a 2 3 \"b\" [4 5 6] # c\n";
    }
    EXPECT_EQ(errorText(readTecplotText(text)), "");
    EXPECT_EQ(errorText(readTecplotText(std::string(2'000'000, 'Z'))), "");
}

} // namespace
} // namespace velmora

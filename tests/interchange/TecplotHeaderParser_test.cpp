// Keywords and values, every one of them, and the errors of each.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TecplotHeaderParser.h"
#include "tecplot_tools.h"

namespace velmora {
namespace {

using Indices = std::vector<std::int32_t>;
using Names = std::vector<std::string>;

TecplotHeader parsed(const std::string& text) {
    TecplotHeader header;
    TecplotHeaderParser(header).parse(text);
    return header;
}

TecplotZoneHeader zoneOf(const std::string& text) {
    return parsed("VARIABLES = \"x\" \"y\" \"z\" \"p\" \"q\" \"r\" \"s\"\nZONE " + text).zone;
}

std::string errorIn(const std::string& text) {
    const auto error = test::errorOf([&text] { parsed(text); });
    return error ? error->name() + ": " + error->text() : std::string();
}

std::string errorInZone(const std::string& text) {
    return errorIn("VARIABLES = \"x\" \"y\" \"z\" \"p\" \"q\" \"r\" \"s\"\nZONE " + text);
}

TEST(TecplotFileHeader, DefaultsHoldWithoutAnyKeyword) {
    const TecplotHeader header = parsed("nothing at all");
    EXPECT_EQ(header.title, "Untitled");
    EXPECT_TRUE(header.variables.empty());
    EXPECT_EQ(header.zoneNumber, 1);
    EXPECT_FALSE(header.fileHeaderRead);
}

TEST(TecplotFileHeader, TitleAndVariablesStandInEitherOrderAndInAnyCase) {
    for (const char* const text :
         {"TITLE = \"a b\"\nVARIABLES = \"x\" \"y\" \"z\"\n", "variables=\"x\",\"y\",\"z\"\ntItLe=\"a b\"",
          "Variables\t=\"x\",\"y\" \"z\" Title =\"a b\""}) {
        const TecplotHeader header = parsed(text);
        EXPECT_EQ(header.title, "a b") << text;
        EXPECT_EQ(header.variables, (Names{"x", "y", "z"})) << text;
    }
}

TEST(TecplotFileHeader, ATitleMayBeEmpty) {
    EXPECT_EQ(parsed("TITLE = \"\"").title, "");
}

TEST(TecplotFileHeader, ATitleWithoutQuotesIsRefused) {
    EXPECT_EQ(errorIn("TITLE = a\n"), test::headerReport(1, "zone", "TITLE"));
    EXPECT_EQ(errorIn("Title = \"a\nb\""), test::headerReport(1, "zone", "Title"));
}

TEST(TecplotFileHeader, NamesMayHoldSlashesTildesParenthesesAndHyphens) {
    EXPECT_EQ(parsed("VARIABLES = \"X\" \"Y\" \"Z\" \"rho/~(a-b)_1\"").variables.back(), "rho/~(a-b)_1");
}

TEST(TecplotFileHeader, UnquotedNamesAreRefused) {
    EXPECT_EQ(errorIn("VARIABLES = X Y Z"), test::headerReport(1, "zone", "VARIABLES"));
    EXPECT_EQ(errorIn("variables = X, \"Y\""), test::headerReport(1, "zone", "variables"));
}

TEST(TecplotFileHeader, ANameWithABlankIsRefused) {
    EXPECT_EQ(errorIn("VARIABLES = \"X m\" \"Y\" \"Z\""), test::headerReport(1, "zone", "VARIABLES"));
}

TEST(TecplotFileHeader, ANameWithABlankBehindOthersEndsTheList) {
    EXPECT_EQ(parsed("VARIABLES = \"X\" \"Y\" \"Z\" \"V x\" \"W\"").variables, (Names{"X", "Y", "Z"}));
}

TEST(TecplotFileHeader, EveryMissingCoordinateIsNamedInOrder) {
    EXPECT_EQ(errorIn("VARIABLES = \"x\" \"y\""), "Parsing Error: missing coordinate(s):  'z'");
    EXPECT_EQ(errorIn("VARIABLES = \"Y\""), "Parsing Error: missing coordinate(s):  'x' 'z'");
    EXPECT_EQ(errorIn("VARIABLES = \"xx\""), "Parsing Error: missing coordinate(s):  'x' 'y' 'z'");
}

TEST(TecplotFileHeader, CoordinatesAreFoundAnywhereAndTheLastOfANameCounts) {
    const TecplotHeader header = parsed("VARIABLES = \"p\" \"Z\" \"x\" \"y\" \"X\"");
    EXPECT_EQ(header.coordinates, (std::array<std::size_t, 3>{4, 3, 1}));
    EXPECT_EQ(header.firstOfName, (std::vector<std::size_t>{0, 1, 2, 3, 2}));
}

TEST(TecplotFileHeader, AWordBehindFiletypeEndsIt) {
    const TecplotHeader header = parsed("TITLE=\"a\" FILETYPE = FULL VARIABLES = \"x\" \"y\" \"z\"\nZONE T=\"b\"");
    EXPECT_EQ(header.title, "a");
    EXPECT_TRUE(header.variables.empty());
    EXPECT_EQ(header.zone.title, "b");
}

TEST(TecplotFileHeader, AValueIsSearchedForAlsoFurtherOn) {
    EXPECT_EQ(parsed("TITLE and then TITLE = \"a\"").title, "a");
    EXPECT_EQ(errorIn("TITLE and then title = \"a\""), test::headerReport(1, "zone", "TITLE"));
}

TEST(TecplotFileHeader, AWordBeforeItIsPassedOver) {
    EXPECT_EQ(parsed("hello 10 TITLE = \"a\"").title, "a");
}

TEST(TecplotFileHeader, ASecondTitleBehindAnotherWordIsPassedOver) {
    EXPECT_EQ(parsed("TITLE = \"a\" word TITLE = \"b\" TITLE ").title, "a");
}

TEST(TecplotFileHeader, SeveralListsOfVariablesAreJoined) {
    EXPECT_EQ(parsed("VARIABLES=\"x\" \"y\" \"z\" VARIABLES = \"p\"").variables, (Names{"x", "y", "z", "p"}));
}

TEST(TecplotFileHeader, ItIsReadOnce) {
    TecplotHeader header;
    TecplotHeaderParser parser(header);
    EXPECT_FALSE(parser.parse("TITLE = \"a\""));
    EXPECT_TRUE(parser.parse("TITLE = \"b\" VARIABLES = \"x\" ZONE"));
    EXPECT_EQ(header.title, "a");
    EXPECT_TRUE(header.variables.empty());
}

TEST(TecplotZoneHeader, WithoutValuesAllIsZero) {
    const TecplotZoneHeader zone = zoneOf("");
    EXPECT_EQ(zone.title, "zone");
    EXPECT_EQ(zone.type, TecplotZoneType::Ordered);
    EXPECT_EQ(zone.packing, TecplotPacking::Block);
    EXPECT_EQ((Indices{zone.i, zone.j, zone.k, zone.nodes, zone.elements}), (Indices{0, 0, 0, 0, 0}));
    EXPECT_EQ(zone.activeVariables, (Indices{0, 1, 2, 3, 4, 5, 6}));
}

TEST(TecplotZoneHeader, NothingCarriesOverFromTheZoneBefore) {
    TecplotHeader header;
    TecplotHeaderParser parser(header);
    parser.parse("VARIABLES=\"x\" \"y\" \"z\" ZONE T=\"a\" I=1 J=2 K=3 N=4 E=5 F=POINT ET=BRICK PASSIVEVARLIST=[2]");
    EXPECT_EQ(header.zone.activeVariables, (Indices{0, 2}));
    parser.parse("ZONE");
    EXPECT_EQ(header.zone.title, "zone");
    EXPECT_EQ(header.zone.type, TecplotZoneType::Ordered);
    EXPECT_EQ(header.zone.packing, TecplotPacking::Block);
    EXPECT_EQ(header.zone.k + header.zone.i + header.zone.j + header.zone.nodes + header.zone.elements, 0);
    EXPECT_EQ(header.zone.activeVariables, (Indices{0, 1, 2}));
}

TEST(TecplotZoneHeader, KeywordsStandInAnyOrderWithOrWithoutCommas) {
    for (const char* const text : {"I = 10 J = 20 k=3", "K=3,I=10,J=20", "J\n=\n20,I=10 , K=3"}) {
        const TecplotZoneHeader zone = zoneOf(text);
        EXPECT_EQ((Indices{zone.i, zone.j, zone.k}), (Indices{10, 20, 3})) << text;
    }
}

TEST(TecplotZoneHeader, CountsHaveALongAndAShortKeyword) {
    EXPECT_EQ(zoneOf("NODES=7").nodes, 7);
    EXPECT_EQ(zoneOf("n=7").nodes, 7);
    EXPECT_EQ(zoneOf("Elements=8").elements, 8);
    EXPECT_EQ(zoneOf("E=8").elements, 8);
}

TEST(TecplotZoneHeader, EveryZoneTypeHasItsWords) {
    const std::vector<std::pair<std::string, TecplotZoneType>> words = {
        {"ORDERED", TecplotZoneType::Ordered},
        {"FELINESEG", TecplotZoneType::LineSegments},
        {"LINESEG", TecplotZoneType::LineSegments},
        {"FETRIANGLE", TecplotZoneType::Triangles},
        {"TRIANGLE", TecplotZoneType::Triangles},
        {"FEQUADRILATERAL", TecplotZoneType::Quadrilaterals},
        {"quadrilateral", TecplotZoneType::Quadrilaterals},
        {"FETETRAHEDRON", TecplotZoneType::Tetrahedra},
        {"Tetrahedron", TecplotZoneType::Tetrahedra},
        {"FEBRICK", TecplotZoneType::Bricks},
        {"BRICK", TecplotZoneType::Bricks}};
    for (const auto& [word, type] : words) {
        EXPECT_EQ(zoneOf("ET=" + word).type, type) << word;
        EXPECT_EQ(zoneOf("zonetype = " + word).type, type) << word;
    }
}

TEST(TecplotZoneHeader, AnUnknownZoneTypeIsRefused) {
    EXPECT_EQ(errorInZone("ET=FEPOLYGON"), test::headerReport(1, "zone", "ET"));
    EXPECT_EQ(errorInZone("T=\"a\" ZoneType=FEORDERED"), test::headerReport(1, "a", "ZoneType"));
    EXPECT_EQ(errorInZone("ET=3"), test::headerReport(1, "zone", "ET"));
}

TEST(TecplotZoneHeader, PackingHasFourWords) {
    EXPECT_EQ(zoneOf("F=POINT F=BLOCK").packing, TecplotPacking::Block);
    EXPECT_EQ(zoneOf("F=POINT DATAPACKING=FEBLOCK").packing, TecplotPacking::Block);
    EXPECT_EQ(zoneOf("datapacking = point").packing, TecplotPacking::Point);
    EXPECT_EQ(zoneOf("f=FEPOINT").packing, TecplotPacking::Point);
}

TEST(TecplotZoneHeader, AnUnknownPackingIsReportedWithItsValueInCapitals) {
    EXPECT_EQ(errorInZone("f=Sphere"), test::headerReport(1, "zone", "f SPHERE"));
    EXPECT_EQ(errorInZone("DATAPACKING=1"), test::headerReport(1, "zone", "DATAPACKING"));
}

TEST(TecplotZoneHeader, ATitleIsQuotedAndNotEmpty) {
    EXPECT_EQ(zoneOf("T = \"a ZONE I=3 b\"").title, "a ZONE I=3 b");
    EXPECT_EQ(zoneOf("T = \"a ZONE I=3 b\"").i, 0) << "a title hides the keywords in it";
    EXPECT_EQ(errorInZone("T=\"\""), test::headerReport(1, "zone", "T"));
    EXPECT_EQ(errorInZone("T=a"), test::headerReport(1, "zone", "T"));
}

TEST(TecplotZoneHeader, AnIntegerMustBeOne) {
    EXPECT_EQ(errorInZone("I=-5"), test::headerReport(1, "zone", "I"));
    EXPECT_EQ(errorInZone("T=\"b\" J=x"), test::headerReport(1, "b", "J"));
    EXPECT_EQ(errorInZone("Nodes"), test::headerReport(1, "zone", "Nodes"));
    EXPECT_EQ(errorInZone("E=5x"), test::headerReport(1, "zone", "E"));
    EXPECT_EQ(zoneOf("I=2147483647").i, 2147483647);
}

TEST(TecplotZoneHeader, AnIntegerBeyond32BitsIsAValueErrorWithoutReport) {
    EXPECT_EQ(errorInZone("I=2147483648"), "Value Error: ...");
}

TEST(TecplotZoneHeader, AKeywordWithoutItsValueTakesThatOfTheNextPlaceWithTheSameLetters) {
    const TecplotZoneHeader zone = zoneOf("I J=4 KI=5 K=2");
    EXPECT_EQ(zone.i, 5) << "found within the word KI, behind which the search goes on";
    EXPECT_EQ(zone.j, 0);
    EXPECT_EQ(zone.k, 2);
}

TEST(TecplotZoneHeader, OtherWordsHaveNoEffect) {
    const TecplotZoneHeader zone =
        zoneOf("DT=(SINGLE SINGLE) STRANDID=1 VARLOCATION=([4-5]=CELLCENTERED) SOLUTIONTIME=2 C=RED I=3 ZONE J=4");
    EXPECT_EQ((Indices{zone.i, zone.j}), (Indices{3, 4})) << "a second ZONE in one header is a word like these";
}

TEST(TecplotZoneHeader, WordsOfLettersAndDigitsAreNone) {
    EXPECT_EQ(zoneOf("I1=5 I_=6 9I=7 J=2").i, 0);
}

TEST(TecplotPassiveVariables, NumbersAndRangesAreTakenOut) {
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[2,4-6]").activeVariables, (Indices{0, 2, 6}));
    EXPECT_EQ(zoneOf("PassiveVarList = [ 2 4 - 6 ]").activeVariables, (Indices{0, 2, 6}));
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[7 1]").activeVariables, (Indices{1, 2, 3, 4, 5}));
}

TEST(TecplotPassiveVariables, ALineFeedSeparatesToo) {
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[\n  2,\n3 ]").activeVariables, (Indices{0, 3, 4, 5, 6}));
}

TEST(TecplotPassiveVariables, ARangeBeginsBehindTheLastNumberThatStoodByItself) {
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[2-4-6]").activeVariables, (Indices{0, 6}));
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[2,-4]").activeVariables, (Indices{0, 4, 5, 6}));
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[2--4]").activeVariables, (Indices{0, 4, 5, 6}));
}

TEST(TecplotPassiveVariables, ARangeDownwardsTakesItsFirstNumberOnly) {
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[6-4]").activeVariables, (Indices{0, 1, 2, 3, 4, 6}));
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[6-4,1]").activeVariables, (Indices{1, 2, 3, 4, 6}));
}

TEST(TecplotPassiveVariables, SeparatorsInFrontAreSearchedOver) {
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[-3]").activeVariables, (Indices{0, 1, 3, 4, 5, 6}));
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[,3,]").activeVariables, (Indices{0, 1, 3, 4, 5, 6}));
}

TEST(TecplotPassiveVariables, TwoListsAddUp) {
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[1] PASSIVEVARLIST=[3]").activeVariables, (Indices{1, 3, 4, 5, 6}));
}

TEST(TecplotPassiveVariables, ANumberWithoutVariableIsRefused) {
    EXPECT_EQ(errorInZone("PASSIVEVARLIST=[8]"), test::headerReport(1, "zone", "PASSIVEVARLIST"));
    EXPECT_EQ(errorInZone("PASSIVEVARLIST=[6-8]"), test::headerReport(1, "zone", "PASSIVEVARLIST"));
    EXPECT_EQ(errorInZone("PASSIVEVARLIST=[0]"), test::headerReport(1, "zone", "PASSIVEVARLIST"));
    EXPECT_EQ(errorIn("ZONE PASSIVEVARLIST=[1]"), test::headerReport(1, "zone", "PASSIVEVARLIST"));
    EXPECT_EQ(errorInZone("PASSIVEVARLIST=[99999999999]"), "Value Error: ...");
}

TEST(TecplotPassiveVariables, AListMustHoldNumbersAndEndWithOne) {
    for (const char* const list : {"[]", "[ ]", "[,]", "[3-]", "[x]", "3", "(3)", "[3"}) {
        EXPECT_EQ(errorInZone(std::string("PASSIVEVARLIST=") + list), test::headerReport(1, "zone", "PASSIVEVARLIST"))
            << list;
    }
}

TEST(TecplotHeaderReport, TheZoneNumberIsThatOfTheZoneUnderWay) {
    TecplotHeader header;
    header.zoneNumber = 4;
    TecplotHeaderParser parser(header);
    const auto error = test::errorOf([&parser] { parser.parse("ZONE t=\"w\" et=1"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->text(), "at the header of the zone\nZone No: 4\nZone Title: w\nKeyword: et");
    EXPECT_EQ(error->file(), "zTecplotReader");
    EXPECT_GT(error->line(), 0);
}

// The cost of a long text must grow with its length. The time limit of the test program tells.
TEST(TecplotHeaderCost, HostileTextsTakeTimeInProportion) {
    constexpr std::size_t length = 100'000;
    const std::string blanks(length, ' ');
    const auto repeated = [](std::string_view piece) {
        std::string text;
        while (text.size() < length) {
            text += piece;
        }
        return text;
    };
    EXPECT_EQ(errorInZone("PASSIVEVARLIST=[" + blanks + "x]"), test::headerReport(1, "zone", "PASSIVEVARLIST"));
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[" + blanks + "1]").activeVariables.size(), 6U);
    EXPECT_EQ(zoneOf("PASSIVEVARLIST=[" + repeated("1-7,") + "1]").activeVariables.size(), 0U);
    EXPECT_EQ(errorInZone("I" + blanks), test::headerReport(1, "zone", "I"));
    EXPECT_EQ(errorInZone("I=" + repeated("9") + "x"), test::headerReport(1, "zone", "I"));
    EXPECT_EQ(errorInZone("ET=" + repeated("a") + "_"), test::headerReport(1, "zone", "ET"));
    EXPECT_EQ(errorInZone("T=\"" + repeated("a")), test::headerReport(1, "zone", "T"));
    EXPECT_EQ(errorInZone(repeated("T=\"\n")), test::headerReport(1, "zone", "T"));
    EXPECT_EQ(zoneOf(repeated("a") + "1").i, 0);
    EXPECT_EQ(zoneOf(repeated("a[\"")).i, 0);
    EXPECT_EQ(zoneOf(repeated("I=7,")).i, 7);
    EXPECT_EQ(errorIn("VARIABLES=" + repeated("\"")), test::headerReport(1, "zone", "VARIABLES"));
}

} // namespace
} // namespace velmora

#include "field_file.h"

#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FileSizeLimit.h"
#include "field_reference.h"
#include "format_test_tools.h"
#include "temporary_folder.h"
#include "thinning.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr FormatFaultKind body = FormatFaultKind::Body;
constexpr FormatFaultKind header = FormatFaultKind::Header;
constexpr FormatFaultKind variables = FormatFaultKind::Variables;

const std::string noFields = "TITLE\nVARIABLES=\"x\",\"y\",\"z\"\n";
const std::string oneField = "TITLE\nVARIABLES=\"x\",\"y\",\"z\",\"p\"\n";
const std::string threeFields = "TITLE = \"wing\"\nVARIABLES=\"x\",\"y\",\"z\",\"p\",\"q\",\"r\"\n";

class FieldReaderTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;
    FieldReadResult result_;

    void read(std::string_view text) { result_ = readFieldFile(test::writeFileText(folder_ / "a.dat", text)); }

    void expectLoaded() const {
        EXPECT_TRUE(result_.opened);
        EXPECT_TRUE(result_.loaded);
        EXPECT_THAT(result_.faults, IsEmpty());
    }
    void expectModel(const PatchList& patches, const PatchList& fields) const {
        expectLoaded();
        EXPECT_TRUE(test::sameModel(result_.patches, patches));
        EXPECT_TRUE(test::sameModel(result_.fieldPatches, fields));
    }
    void expectFault(FormatFault fault) const {
        EXPECT_TRUE(result_.opened);
        EXPECT_FALSE(result_.loaded);
        EXPECT_THAT(result_.faults, ElementsAre(fault));
        EXPECT_THAT(result_.patches, IsEmpty());
        EXPECT_THAT(result_.fieldPatches, IsEmpty());
    }
    // The one patch has these counts of sections and of points.
    void expectShape(std::size_t sections, std::size_t points) const {
        expectLoaded();
        EXPECT_THAT(test::shapeOf(result_.patches), ElementsAre(testing::Pair(sections, points)));
        EXPECT_THAT(test::shapeOf(result_.fieldPatches), ElementsAre(testing::Pair(sections, points)));
    }

    void compareWithPlainReader(std::string_view text) {
        read(text);
        reference::FieldReader plain;
        plain.read(folder_ / "a.dat");
        ASSERT_TRUE(test::sameModel(result_.patches, plain.patches));
        ASSERT_TRUE(test::sameModel(result_.fieldPatches, plain.fieldPatches));
        ASSERT_EQ(result_.faults.empty() ? std::string() : fieldMessage(result_.faults[0]), plain.message);
        ASSERT_EQ(result_.loaded, plain.message.empty());
        ASSERT_EQ(result_.titleLine, plain.titleLine);
        ASSERT_EQ(result_.variablesLine, plain.variablesLine);
        ASSERT_EQ(result_.fieldCount, plain.fieldCount);
    }
};

TEST(FieldMessages, TheTextsAreExact) {
    EXPECT_EQ(fieldMessage({FormatFaultKind::CannotOpen, 0, 1}), "It is impossible to open selected file");
    EXPECT_EQ(fieldMessage({variables, 0, 1}), "Your 'dat' file contains wrong number of variables");
    EXPECT_EQ(fieldMessage({header, 4, 1}), "Header of APT file is wrong. Compartment N= 4");
    EXPECT_EQ(fieldMessage({body, 17, 1}), "Body of APT file is wrong. Compartment N= 17");
}

TEST_F(FieldReaderTest, ZonesBecomePatchesAndTheirFunctionsASecondModelOfTheSameShape) {
    read(threeFields + "ZONE  T=\"ZONE_0\",I=2,J=1,K=1,F= POINT\n1 2 3 4 5 6\n7 8 9 -1 -2.5 -3e1\n"
                       "ZONE  T=\"ZONE_1\",I=1,J=2,K=1,F= POINT\n1 1 1 2 2 2\n3 3 3 4 4 4\n");
    expectModel({{{{1, 2, 3}, {7, 8, 9}}}, {{{1, 1, 1}}, {{3, 3, 3}}}},
                {{{{4, 5, 6}, {-1, -2.5, -30}}}, {{{2, 2, 2}}, {{4, 4, 4}}}});
    EXPECT_EQ(result_.titleLine, "TITLE = \"wing\"");
    EXPECT_EQ(result_.variablesLine, "VARIABLES=\"x\",\"y\",\"z\",\"p\",\"q\",\"r\"");
    EXPECT_EQ(result_.fieldCount, 3);
    EXPECT_FALSE(result_.textBehind);
}

TEST_F(FieldReaderTest, AFileThatCannotBeOpenedIsToldSo) {
    for (const auto& path : {folder_ / "missing.dat", folder_.path()}) {
        result_ = readFieldFile(path);
        EXPECT_FALSE(result_.opened);
        EXPECT_FALSE(result_.loaded);
        EXPECT_THAT(result_.faults, ElementsAre(FormatFault{FormatFaultKind::CannotOpen, 0, 1}));
    }
}

TEST_F(FieldReaderTest, WithThreeVariablesNothingBehindZIsRead) {
    read(noFields + "I=2,J=1\n1 2 3\n4 5 6\n");
    EXPECT_EQ(result_.fieldCount, 0);
    expectModel({{{{1, 2, 3}, {4, 5, 6}}}}, {{{{0, 0, 0}, {0, 0, 0}}}});
}

TEST_F(FieldReaderTest, TheMissingFunctionValuesAreZero) {
    read(oneField + "I=1,J=1\n1 2 3 4\n");
    EXPECT_EQ(result_.fieldCount, 1);
    expectModel({{{{1, 2, 3}}}}, {{{{4, 0, 0}}}});
    read("t\n\"x\"\"y\"\"z\"\"p\"\"q\"\nI=1,J=1\n1 2 3 4 5\n");
    EXPECT_EQ(result_.fieldCount, 2);
    expectModel({{{{1, 2, 3}}}}, {{{{4, 5, 0}}}});
}

TEST_F(FieldReaderTest, TheQuotesMustBeEvenInNumberAndSixToTwelve) {
    for (std::size_t quotes = 0; quotes <= 16; ++quotes) {
        read("t\nVARIABLES = " + std::string(quotes, '"') + "\n");
        if (quotes == 6 || quotes == 8 || quotes == 10 || quotes == 12) {
            expectLoaded();
            EXPECT_EQ(result_.fieldCount, static_cast<std::int32_t>(quotes) / 2 - 3);
        } else {
            expectFault({variables, 0, 1});
        }
    }
}

TEST_F(FieldReaderTest, QuotesOfTheTitleLineAndBehindANulDoNotCount) {
    read("\"a\"\nx\"\"\"\"\n");
    expectFault({variables, 0, 1});
    using namespace std::string_view_literals;
    read("a\0b\nx\"\"\"\"\"\"\0\"\"\nI=1,J=1\n1 2 3\n"sv);
    expectModel({{{{1, 2, 3}}}}, {{{{0, 0, 0}}}});
    EXPECT_EQ(result_.titleLine, "a");
    EXPECT_EQ(result_.variablesLine, "x\"\"\"\"\"\"");
}

TEST_F(FieldReaderTest, AFileWithoutAVariablesLineIsRefused) {
    for (const char* const text : {"", "\n", "TITLE", "TITLE\n", "TITLE\n\n"}) {
        read(text);
        expectFault({variables, 0, 1});
    }
}

TEST_F(FieldReaderTest, AFileWithoutZonesIsLoadedWithoutPatches) {
    for (const std::string& text : {noFields, noFields + "\n", noFields.substr(0, noFields.size() - 1)}) {
        read(text);
        expectModel({}, {});
    }
}

TEST_F(FieldReaderTest, TheTitleMayBeEmptyAndHave254Characters) {
    const std::string rest = noFields.substr(5) + "I=1,J=1\n1 2 3\n";
    read(rest);
    expectShape(1, 1);
    EXPECT_EQ(result_.titleLine, "");
    read(std::string(254, 't') + rest);
    expectShape(1, 1);
    EXPECT_EQ(result_.titleLine, std::string(254, 't'));
    read(std::string(255, 't') + rest);
    expectFault({variables, 0, 1});
    EXPECT_EQ(result_.titleLine, std::string(254, 't')) << "what a failed stream left in the buffer";
    EXPECT_EQ(result_.variablesLine, "");
}

TEST_F(FieldReaderTest, BehindAVariablesLineOfMoreThan254CharactersNothingIsRead) {
    const std::string line = "\"x\"\"y\"\"z\"" + std::string(245, ' ');
    const std::string zone = "\nI=1,J=1\n1 2 3\n";
    read("t\n" + line + zone);
    expectShape(1, 1);
    EXPECT_EQ(result_.variablesLine, line);
    EXPECT_FALSE(result_.textBehind);
    read("t\n" + line + "\"" + zone);
    expectModel({}, {});
    EXPECT_EQ(result_.variablesLine, line);
    EXPECT_TRUE(result_.textBehind);
}

TEST_F(FieldReaderTest, AnEmptyLineForAHeaderIsTheEnd) {
    read(noFields + "I=1,J=1\n1 2 3\n\nI=1,J=1\n4 5 6\n");
    expectShape(1, 1);
    EXPECT_TRUE(result_.textBehind);
    read(noFields + "I=1,J=1\n1 2 3\n\n \n");
    expectShape(1, 1);
    EXPECT_FALSE(result_.textBehind);
}

TEST_F(FieldReaderTest, ALineThatOnlyLooksEmptyIsAHeaderFault) {
    for (const char* const line : {" \n", "\r\n", "\t\n"}) {
        read(noFields + "I=1,J=1\n1 2 3\n" + line);
        expectFault({header, 2, 1});
    }
}

TEST_F(FieldReaderTest, TheLastPointNeedsNoLineFeed) {
    read(noFields + "I=1,J=2\n1 2 3\n4 5 6");
    expectShape(2, 1);
}

TEST_F(FieldReaderTest, ACountThatIsLongerThanWhatIsReadOfItIsTold) {
    const std::string limit = ": a count is a whole number of at most 99999";
    for (const auto& [counts, reason] : {std::pair("I=100000,J=1", "Zone 1: I=100000 is read as 10000"),
                                         std::pair("J=1, I=2.5", "Zone 1: I=2.5 is read as 2"),
                                         std::pair("I=1,J=1e9 ,K=1", "Zone 1: J=1e9 is read as 1"),
                                         std::pair("I=1,J=     2147483648", "Zone 1: no counts")}) {
        read(noFields + counts + "\n1 2 3\n");
        ASSERT_FALSE(result_.record.reasons.empty()) << counts;
        EXPECT_THAT(result_.record.reasons[0], testing::StartsWith(reason));
        EXPECT_FALSE(result_.record.complete);
    }
    read(noFields + "I=2147483648,J=1\n1 2 3\n");
    EXPECT_EQ(result_.record.reasons[0], "Zone 1: I=2147483648 is read as 21474" + limit);
    for (const char* const whole : {"I=1,J=1", "I=+1,J=001", "I= 1 J=1 K=1", "I=1J=1", "J=1,I=1"}) {
        read(noFields + whole + "\n1 2 3\n");
        expectShape(1, 1);
        EXPECT_THAT(result_.record.reasons, IsEmpty()) << whole;
        EXPECT_TRUE(result_.record.complete);
    }
}

TEST_F(FieldReaderTest, TheRestOfAZonesLastLineIsLeftOut) {
    read(noFields + "I=1,J=1\n1 2 3 I=9,J=9 x\nI=1,J=1\n4 5 6\n");
    expectModel({{{{1, 2, 3}}}, {{{4, 5, 6}}}}, {{{{0, 0, 0}}}, {{{0, 0, 0}}}});
}

TEST_F(FieldReaderTest, ARestOfMoreThan254CharactersIsTheEnd) {
    const std::string zone = "I=1,J=1\n1 2 3";
    read(noFields + zone + std::string(254, ' ') + "\n" + zone);
    EXPECT_EQ(result_.patches.size(), 2U);
    read(noFields + zone + std::string(255, ' ') + "\n" + zone);
    expectShape(1, 1);
    EXPECT_TRUE(result_.textBehind);
}

TEST_F(FieldReaderTest, LineBreaksBetweenTheNumbersAreFree) {
    read(oneField + "I=2,J=1\r\n1 2\r\n3\n\n4 5 6 7 8\r\n");
    expectModel({{{{1, 2, 3}, {5, 6, 7}}}}, {{{{4, 0, 0}, {8, 0, 0}}}});
}

TEST_F(FieldReaderTest, CountsAreIntegersOfFiveCharactersBeforeAComma) {
    const auto pointsOf = [this](const std::string& count) {
        // As many points as the text can ask for, so that only the count says how many are taken.
        read(noFields + "I=" + count + ",J=1\n1 1 1\n2 2 2\n3 3 3\n");
        return result_.loaded ? std::to_string(result_.patches.at(0).at(0).size()) : fieldMessage(result_.faults.at(0));
    };
    const std::string noHeader = "Header of APT file is wrong. Compartment N= 1";
    for (const char* const two : {"2", " 2", "    2", "+2", "00002", "000020", "000029", "2.9", "2x", "2 3", "\t2"}) {
        read(noFields + "I=" + two + ",J=1\n1 1 1\n2 2 2\n");
        expectShape(1, 2);
    }
    for (const char* const none : {"", "x", "     2", "-", "+-2", "- 2", ".5", ",2", "-1", "-1.5", "-0001", "\"2\""}) {
        EXPECT_EQ(pointsOf(none), noHeader) << none;
    }
}

TEST_F(FieldReaderTest, ACountOfSixDigitsIsReadAsItsFirstFive) {
    std::string points;
    for (int i = 0; i < 12345; ++i) {
        points += "1 2 3\n";
    }
    read(noFields + "I=123456,J=1\n" + points);
    expectShape(1, 12345);
    read(noFields + "J=123456,I=1\n" + points);
    expectShape(12345, 1);
}

TEST_F(FieldReaderTest, TheFirstPlaceOfAKeyCounts) {
    read(noFields + "ZONE T=\"I=1,J=2\",I=7,J=7\n1 1 1\n2 2 2\n");
    expectShape(2, 1);
    read(noFields + "ZONE JI=1 J=2 K=1\n1 1 1\n2 2 2\n");
    expectShape(2, 1);
}

TEST_F(FieldReaderTest, AHeaderWithoutACountIsAFault) {
    for (const char* const line : {"ZONE", "I=1", "J=1", "i=1,j=1", "I =1,J =1", "1 2 3", "I=1,J"}) {
        read(noFields + line + "\n1 2 3\n");
        expectFault({header, 1, 1});
    }
}

TEST_F(FieldReaderTest, AFaultInALaterZoneLeavesNoPatchAtAll) {
    const std::string good = oneField + "I=1,J=1\n1 2 3 4\n";
    read(good + "I=1\n1 2 3 4\n");
    expectFault({header, 2, 1});
    for (const char* const bad : {"", "x", "1 2 3", "1 2 3 x", "1 nan 3 4", "1 2 3 1e999", "1 2 3 -"}) {
        read(good + good.substr(oneField.size()) + "I=1,J=1\n" + bad);
        expectFault({body, 3, 1});
    }
    EXPECT_EQ(result_.fieldCount, 1);
    EXPECT_EQ(result_.titleLine, "TITLE");
}

TEST_F(FieldReaderTest, AHeaderOnTheLastLineWithoutLineFeedIsABodyFault) {
    read(noFields + "I=1,J=1");
    expectFault({body, 1, 1});
}

TEST_F(FieldReaderTest, AHeaderOfMoreThan254CharactersIsABodyFault) {
    const std::string line = "I=1,J=1";
    read(noFields + line + std::string(247, ' ') + "\n1 2 3\n");
    expectShape(1, 1);
    read(noFields + line + std::string(248, ' ') + "\n1 2 3\n");
    expectFault({body, 1, 1});
    read(noFields + std::string(253, ' ') + line + "\n1 2 3\n");
    expectFault({header, 1, 1});
}

TEST_F(FieldReaderTest, ZonesWithoutPointsAreEmptyPatchesAndTheNextHeaderFollows) {
    read(noFields + "I=0,J=0\nI=0,J=2\nI=3,J=0\nI=-5,J=-7\nI=2,J=-3\nI=-2,J=1\nI=1,J=1\n1 2 3\n");
    expectModel({{}, {{}, {}}, {}, {}, {}, {{}}, {{{1, 2, 3}}}}, {{}, {{}, {}}, {}, {}, {}, {{}}, {{{0, 0, 0}}}});
}

TEST_F(FieldReaderTest, HugeCountsWithoutThePointsTakeNoMemory) {
    read(noFields + "I=99999,J=99999\n1 2 3\n");
    expectFault({body, 1, 1});
    read(noFields + "I=1,J=99999\n1 2 3\n");
    expectFault({body, 1, 1});
}

TEST_F(FieldReaderTest, MoreBareSectionsThanTheLimitAreAHeaderFault) {
    // The second zone comes to the limit of 100,000 and the third goes beyond it.
    read(noFields + "I=0,J=99999\nI=0,J=1\nI=-1000,J=1\n");
    expectFault({header, 3, 1});
}

TEST_F(FieldReaderTest, PointsAreNeitherThinnedNorCut) {
    // More than the points at which an .apt file is thinned.
    std::string text = noFields + "I=450,J=450\n";
    for (int i = 0; i < 450 * 450; ++i) {
        text += "1 2 3\n";
    }
    read(text);
    expectShape(450, 450);
    EXPECT_EQ(pointTotal(result_.patches), 202'500);
}

const std::string goodFile =
    "TITLE = \"a\"\nVARIABLES = \"x\",\"y\",\"z\",\"p\"\nZONE  T=\"ZONE_0\",I=2,J=2,K=1,F= POINT\n"
    "1 2 3 4\n5 6 7 8\n.5 1. 1e1 -2\n0 0 0 0 rest\nI=0,J=1\nZONE I=1,J=3\n1 1 1 1\n2 2 2 2\n3 3 3 3\n";

TEST_F(FieldReaderTest, AFileCutAtAnyByteGivesWhatThePlainReaderGives) {
    for (std::size_t size = 0; size <= goodFile.size(); ++size) {
        SCOPED_TRACE(size);
        compareWithPlainReader(std::string_view(goodFile).substr(0, size));
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(FieldReaderTest, AFileWithAnyByteChangedGivesWhatThePlainReaderGives) {
    for (const char wrong : {'x', ' ', '\n', '"', '-', '.', ',', '9', '\0'}) {
        for (std::size_t place = 0; place < goodFile.size(); ++place) {
            SCOPED_TRACE(std::string("byte ") + std::to_string(place) + " is " + wrong);
            std::string text = goodFile;
            text[place] = wrong;
            compareWithPlainReader(text);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_F(FieldReaderTest, RandomFilesGiveWhatThePlainReaderGives) {
    std::mt19937 random(3);
    const std::vector<std::string> pieces{"I=1,J=1\n",
                                          "I=2,J=1\n",
                                          "I=1,J=0\n",
                                          "I=0,J=2\n",
                                          "I=-1,J=1\n",
                                          "1 2 3\n",
                                          "4 5 6\n",
                                          "7 8 9\n",
                                          "1 2 3 4 5\n",
                                          "\n",
                                          "x\n",
                                          " ",
                                          "I= 1",
                                          "J=1 ",
                                          "ZONE ",
                                          "1",
                                          std::string(253, ' '),
                                          "I=00001,J=1,K=1\n"};
    for (int round = 0; round < 5000; ++round) {
        std::string text = random() % 2 == 0 ? noFields : oneField;
        for (std::size_t left = random() % 12; left > 0; --left) {
            text += pieces[random() % pieces.size()];
        }
        SCOPED_TRACE(text);
        compareWithPlainReader(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

class FieldWriterTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    std::string written(const PatchList& patches, const PatchList& field, std::int32_t fieldCount, int precision = 1) {
        EXPECT_TRUE(writeFieldFile(folder_ / "a.dat", patches, field, fieldCount, "t", "v", precision));
        return test::fileText(folder_ / "a.dat");
    }
};

TEST_F(FieldWriterTest, EveryByteOfTheFileIsDetermined) {
    const PatchList patches{{{{1.0, -0.5, 0.1}, {2, 2, 2}, {3, 3, 3}}, {{4, 4, 4}, {5, 5, 5}, {6, 6, 6}}},
                            {{{7, 7, 7}}}};
    const PatchList field{{{{0.25, 9, 9}, {-2, 9, 9}, {-3, 9, 9}}, {{-4, 9, 9}, {-5, 9, 9}, {-6, 9, 9}}},
                          {{{-7, 9, 9}}}};
    ASSERT_TRUE(writeFieldFile(folder_ / "a.dat", patches, field, 1, "TITLE = \"a\"", "VARIABLES = \"x\"", 16));
    EXPECT_EQ(test::fileText(folder_ / "a.dat"),
              "TITLE = \"a\"\n"
              "VARIABLES = \"x\"\n"
              "ZONE  T=\"ZONE_0\",I=3,J=2,K=1,F= POINT\n"
              "1.0000000000000000e+00 -5.0000000000000000e-01 1.0000000000000001e-01 2.5000000000000000e-01\n"
              "2.0000000000000000e+00 2.0000000000000000e+00 2.0000000000000000e+00 -2.0000000000000000e+00\n"
              "3.0000000000000000e+00 3.0000000000000000e+00 3.0000000000000000e+00 -3.0000000000000000e+00\n"
              "4.0000000000000000e+00 4.0000000000000000e+00 4.0000000000000000e+00 -4.0000000000000000e+00\n"
              "5.0000000000000000e+00 5.0000000000000000e+00 5.0000000000000000e+00 -5.0000000000000000e+00\n"
              "6.0000000000000000e+00 6.0000000000000000e+00 6.0000000000000000e+00 -6.0000000000000000e+00\n"
              "ZONE  T=\"ZONE_1\",I=1,J=1,K=1,F= POINT\n"
              "7.0000000000000000e+00 7.0000000000000000e+00 7.0000000000000000e+00 -7.0000000000000000e+00\n");
}

TEST_F(FieldWriterTest, AsManyValuesAsToldAreWrittenXFirst) {
    const PatchList patches{{{{1, 2, 3}}}};
    const PatchList field{{{{4, 5, 6}}}};
    const std::string head = "t\nv\nZONE  T=\"ZONE_0\",I=1,J=1,K=1,F= POINT\n1.0e+00 2.0e+00 3.0e+00";
    EXPECT_EQ(written(patches, field, 0), head + "\n");
    EXPECT_EQ(written(patches, field, 1), head + " 4.0e+00\n");
    EXPECT_EQ(written(patches, field, 2), head + " 4.0e+00 5.0e+00\n");
    EXPECT_EQ(written(patches, field, 3), head + " 4.0e+00 5.0e+00 6.0e+00\n");
}

TEST_F(FieldWriterTest, ACountOutsideOfZeroToThreeIsCutToIt) {
    const PatchList patches{{{{1, 2, 3}}}};
    const PatchList field{{{{4, 5, 6}}}};
    EXPECT_EQ(written(patches, field, -7), written(patches, field, 0));
    EXPECT_EQ(written(patches, field, std::numeric_limits<std::int32_t>::min()), written(patches, field, 0));
    EXPECT_EQ(written(patches, field, 4), written(patches, field, 3));
    EXPECT_EQ(written(patches, field, std::numeric_limits<std::int32_t>::max()), written(patches, field, 3));
}

TEST_F(FieldWriterTest, PointsWithoutFunctionValuesGetZeros) {
    const PatchList patches{{{{1, 1, 1}, {2, 2, 2}}, {{3, 3, 3}, {4, 4, 4}}}, {{{5, 5, 5}}}};
    const PatchList complete{{{{7, 8, 9}, {0, 0, 0}}, {{0, 0, 0}, {0, 0, 0}}}, {{{0, 0, 0}}}};
    EXPECT_EQ(written(patches, {{{{7, 8, 9}}}}, 3), written(patches, complete, 3));
    EXPECT_EQ(written(patches, {{{{7, 8, 9}}, {}}, {}}, 3), written(patches, complete, 3));
    EXPECT_EQ(written(patches, {}, 3), written(patches, {{{{}, {}}, {{}, {}}}, {{{}}}}, 3));
}

TEST_F(FieldWriterTest, FunctionValuesWithoutAPointAreLeftOut) {
    const PatchList patches{{{{1, 1, 1}}}};
    const PatchList larger{{{{7, 8, 9}, {6, 6, 6}}, {{5, 5, 5}}}, {{{4, 4, 4}}}};
    EXPECT_EQ(written(patches, larger, 3), written(patches, {{{{7, 8, 9}}}}, 3));
}

TEST_F(FieldWriterTest, ASectionShorterThanTheFirstIsRefusedAndTheOldFileStays) {
    test::writeFileText(folder_ / "a.dat", "old");
    EXPECT_FALSE(writeFieldFile(folder_ / "a.dat", {{{{1, 1, 1}, {2, 2, 2}}, {{3, 3, 3}}}}, {}, 1, "t", "v", 16));
    EXPECT_EQ(test::fileText(folder_ / "a.dat"), "old");
    EXPECT_THAT(folder_.names(), ElementsAre("a.dat"));
}

TEST_F(FieldWriterTest, OfALongerSectionTheSurplusPointsAreLeftOut) {
    EXPECT_EQ(written({{{{1, 1, 1}}, {{2, 2, 2}, {3, 3, 3}}}}, {}, 0), written({{{{1, 1, 1}}, {{2, 2, 2}}}}, {}, 0));
}

TEST_F(FieldWriterTest, AModelWithoutPatchesIsTheTwoLines) {
    EXPECT_EQ(written({}, {}, 3), "t\nv\n");
}

TEST_F(FieldWriterTest, WhatIsWrittenIsReadAgain) {
    std::mt19937_64 random(11);
    const auto number = [&random] { return static_cast<double>(random()) / 3e18 - 3.0; };
    PatchList patches{{}, {{}, {}}};
    PatchList field = patches;
    for (std::size_t k = 0; k < 3; ++k) {
        patches.emplace_back(4);
        field.emplace_back(4);
        for (std::size_t n = 0; n < 4; ++n) {
            for (std::size_t m = 0; m < 3 + k; ++m) {
                patches.back()[n].emplace_back(number(), number(), number());
                field.back()[n].emplace_back(number(), number(), number());
            }
        }
    }
    const std::string variablesLine = "VARIABLES = \"x\",\"y\",\"z\",\"p\",\"q\",\"r\"";
    ASSERT_TRUE(writeFieldFile(folder_ / "a.dat", patches, field, 3, "TITLE = \"w\"", variablesLine, 16));
    const FieldReadResult again = readFieldFile(folder_ / "a.dat");
    EXPECT_TRUE(again.loaded);
    EXPECT_FALSE(again.textBehind);
    EXPECT_TRUE(test::sameModel(again.patches, patches));
    EXPECT_TRUE(test::sameModel(again.fieldPatches, field));
    EXPECT_EQ(again.titleLine, "TITLE = \"w\"");
    EXPECT_EQ(again.variablesLine, variablesLine);
    EXPECT_EQ(again.fieldCount, 3);
}

TEST_F(FieldWriterTest, TitlesOfZonesThatASaveWouldNotWriteAreALoss) {
    const auto record = [this](const std::string& title) {
        const std::string zone = "ZONE T=\"" + title + "\", I=2, J=1, F=POINT\n0 0 0\n1 0 0\n";
        return readFieldFile(
                   test::writeFileText(folder_ / "a.dat", "TITLE = \"t\"\nVARIABLES = \"x\",\"y\",\"z\"\n" + zone))
            .record;
    };
    EXPECT_TRUE(record("ZONE_0").lossless);
    EXPECT_FALSE(record("wing").lossless);
    EXPECT_THAT(record("wing").reasons, testing::ElementsAre("Titles of zones that patches do not have: 1"));
}

TEST_F(FieldReaderTest, ZonesWhoseNumbersStandInAnotherOrderAreReadByPointsAndTold) {
    const auto recordOf = [this](const std::string& entries) {
        read(oneField + "ZONE I=2, J=1" + entries + "\n0 1 2 3\n4 5 6 7\n");
        expectModel({{{{0, 1, 2}, {4, 5, 6}}}}, {{{{3, 0, 0}, {7, 0, 0}}}});
        return result_.record;
    };
    for (const auto& [entries, word] :
         std::vector<std::pair<std::string, std::string>>{{", F=BLOCK", "BLOCK"},
                                                          {", f = block", "BLOCK"},
                                                          {" DATAPACKING=BLOCK", "BLOCK"},
                                                          {", F=FEPOINT", "FEPOINT"},
                                                          {", F=POINT, VARSHARELIST=([1]=1)", "VARSHARELIST"},
                                                          {", PASSIVEVARLIST=[4]", "PASSIVEVARLIST"},
                                                          {", VARLOCATION=([4]=CELLCENTERED)", "VARLOCATION"},
                                                          {", K=2", "K"},
                                                          {", ZONETYPE=FETRIANGLE", "ZONETYPE"},
                                                          {", T=\"ZONE_0, F=POINT\", F=BLOCK", "BLOCK"}}) {
        const FileRead record = recordOf(entries);
        EXPECT_FALSE(record.complete) << entries;
        EXPECT_THAT(record.reasons, ElementsAre("Zones whose headers tell another order of numbers, read point after "
                                                "point all the same (" +
                                                word + "): 1"))
            << entries;
    }
    for (const char* const entries :
         {"", ", K=1,F= POINT", ", T=\"ZONE_0 F=BLOCK\"", ", DATAPACKING=POINT, ZONETYPE=Ordered",
          ", VARLOCATION=([1-4]=NODAL)", ", DT=(SINGLE SINGLE SINGLE SINGLE)"}) {
        EXPECT_TRUE(recordOf(entries).lossless) << entries;
    }
}

TEST_F(FieldReaderTest, TheSameOfSeveralZonesAndOfOneThatCannotBeReadIsToldOnce) {
    const std::string zone = "ZONE I=1, J=1, F=BLOCK\n0 1 2 3\n";
    read(oneField + zone + zone + "ZONE I=1, J=1, PASSIVEVARLIST=[4]\n0 1 2 3\n");
    EXPECT_THAT(result_.record.reasons, ElementsAre("Zones whose headers tell another order of numbers, read point "
                                                    "after point all the same (BLOCK, PASSIVEVARLIST): 3"));
    read(oneField + "ZONE I=1, J=1, PASSIVEVARLIST=[4]\n0 1 2\n");
    EXPECT_FALSE(result_.loaded);
    EXPECT_THAT(result_.record.reasons,
                ElementsAre(testing::StartsWith("Zone 1: no point"), testing::HasSubstr("(PASSIVEVARLIST): 1")));
}

TEST_F(FieldReaderTest, NamesByWhichTheFirstThreeNumbersAreNotXYAndZAreTold) {
    const auto recordOf = [this](const std::string& names) {
        read("TITLE\nVARIABLES=" + names + "\nI=1,J=1\n1 2 3 4\n");
        expectModel({{{{1, 2, 3}}}}, {{{{4, 0, 0}}}});
        return result_.record;
    };
    for (const char* const names : {R"("Z","Y","X","CP")", R"("X","CP","Y","Z")", R"("CP","X","Y","Z")",
                                    R"("A","B","C","D")", R"("X1","Y","Z","CP")"}) {
        const FileRead record = recordOf(names);
        EXPECT_FALSE(record.complete) << names;
        EXPECT_THAT(record.reasons, ElementsAre(testing::StartsWith("Line 2 does not name x, y and z first"))) << names;
    }
    for (const char* const names : {R"("X","Y","Z","CP")", R"("x" "y" "z" "p")", R"("X [m]", " y_m", "z/c", "X")",
                                    R"("CoordinateX","CoordinateY","CoordinateZ","P")"}) {
        EXPECT_TRUE(recordOf(names).lossless) << names;
    }
}

TEST_F(FieldReaderTest, ValuesOfHeadersThatASaveWouldNotWriteAreALoss) {
    read(noFields + "ZONE T=\"ZONE_0\", C=RED, SOLUTIONTIME=3, I=1, J=1, AUXDATA Part=\"b\"\n1 2 3\n");
    expectModel({{{{1, 2, 3}}}}, {{{{0, 0, 0}}}});
    EXPECT_TRUE(result_.record.complete);
    EXPECT_FALSE(result_.record.lossless);
    EXPECT_THAT(result_.record.reasons, ElementsAre("Values of headers that are not kept: C, PART, SOLUTIONTIME"));
}

TEST_F(FieldReaderTest, AFileWithoutZonesIsToldSo) {
    read(noFields);
    EXPECT_THAT(result_.record.reasons, ElementsAre("No zone stands in the file"));
}

TEST_F(FieldWriterTest, WhatCannotBeWrittenIsToldAndLeavesNothing) {
    const PatchList patches{{{{1, 2, 3}}}};
    EXPECT_FALSE(writeFieldFile(folder_ / "missing/a.dat", patches, {}, 0, "t", "v", 16));
    EXPECT_FALSE(writeFieldFile(folder_.path(), patches, {}, 0, "t", "v", 16));
    const test::FileSizeLimit full(0);
    EXPECT_FALSE(writeFieldFile(folder_ / "full", patches, {}, 0, "t", "v", 16));
    EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST_F(FieldWriterTest, WhatCouldNotBeReadAgainIsRefusedBeforeTheFileIsTouched) {
    test::writeFileText(folder_ / "a.dat", "old");
    const PatchList tooLong{{PointList(100000)}};
    const WriteOutcome refused = writeFieldFile(folder_ / "a.dat", tooLong, {}, 0, "t", "v", 16);
    EXPECT_FALSE(refused.written);
    EXPECT_EQ(refused.problem,
              "Patch 1 has 100000 points in a direction: a header of a field file tells no more than 99999");
    EXPECT_FALSE(writeFieldFile(folder_ / "a.dat", {Patch(100000, PointList(1))}, {}, 0, "t", "v", 16));
    const PatchList field{{{{1, std::numeric_limits<double>::infinity(), 3}}}};
    EXPECT_EQ(writeFieldFile(folder_ / "a.dat", {{{{1, 2, 3}}}}, field, 3, "t", "v", 16).problem,
              "Patch 1, section 1, point 1 of the field: the number is not finite, and could not be read again");
    EXPECT_EQ(test::fileText(folder_ / "a.dat"), "old");
    EXPECT_TRUE(writeFieldFile(folder_ / "a.dat", {{PointList(99999)}}, {}, 0, "t", "\"x\" \"y\" \"z\"", 1));
    EXPECT_EQ(countOf(readFieldFile(folder_ / "a.dat").record.kept, "points"), 99999);
}

} // namespace
} // namespace velmora

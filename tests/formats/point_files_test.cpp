#include "point_files.h"

#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FileSizeLimit.h"
#include "format_test_tools.h"
#include "stream_numbers.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

using testing::IsEmpty;

class PointFileTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    PointFileResult readPoints(std::string_view text) const {
        return readPointFile(test::writeFileText(folder_ / "a.ext", text));
    }
    void expectPoints(std::string_view text, const PointList& expected) const {
        const PointFileResult result = readPoints(text);
        EXPECT_TRUE(result.opened);
        EXPECT_TRUE(test::sameModel({{result.points}}, {{expected}})) << text;
    }

    void compareWithPlainReader(std::string_view text) const {
        const PointFileResult result = readPoints(text);
        std::ifstream stream(folder_ / "a.ext");
        PointList expected;
        for (double x, y, z; reference::take(stream, x) && reference::take(stream, y) && reference::take(stream, z);) {
            expected.emplace_back(x, y, z);
        }
        ASSERT_TRUE(result.opened);
        ASSERT_TRUE(test::sameModel({{result.points}}, {{expected}}));
    }
};

TEST_F(PointFileTest, EveryThreeNumbersAreAPoint) {
    expectPoints("1 2 3\n-4.5 .5 6e-1\n+7 8. 9E2\n", {{1, 2, 3}, {-4.5, 0.5, 0.6}, {7, 8, 900}});
}

TEST_F(PointFileTest, LineBreaksAreFreeAndTheLastLineNeedsNone) {
    expectPoints("1\n2\t3 4\r\n5\n\n6", {{1, 2, 3}, {4, 5, 6}});
}

TEST_F(PointFileTest, AnIncompleteLastPointIsLeftOut) {
    expectPoints("1 2 3\n4 5\n", {{1, 2, 3}});
    expectPoints("1 2 3\n4", {{1, 2, 3}});
    expectPoints("4 5", {});
}

TEST_F(PointFileTest, TheFirstTokenThatIsNoNumberEndsTheReading) {
    for (const char* const bad : {"x 5 6", "4 # 6", "4 5 nan", "4 5 1e999", "4 5 inf", "4,5 6", "1e 5 6", "4 5 -"}) {
        expectPoints("1 2 3\n" + std::string(bad) + "\n7 8 9\n", {{1, 2, 3}});
    }
}

TEST_F(PointFileTest, TokensAreCutWhereAStreamCutsThem) {
    expectPoints("1.5.25-3\n", {{1.5, 0.25, -3}});
    expectPoints("1 2 3x 4 5 6\n", {{1, 2, 3}});
    expectPoints("1e-400 -1e-400 0\n", {{0.0, -0.0, 0.0}});
}

TEST_F(PointFileTest, AnEmptyFileIsOpenedAndHasNoPoints) {
    expectPoints("", {});
    expectPoints(" \n\n", {});
    expectPoints(std::string_view("\0\0\0", 3), {});
}

TEST_F(PointFileTest, AFileThatCannotBeOpenedIsToldSo) {
    for (const auto& path : {folder_ / "missing.ext", folder_.path()}) {
        const PointFileResult result = readPointFile(path);
        EXPECT_FALSE(result.opened);
        EXPECT_THAT(result.points, IsEmpty());
    }
}

TEST_F(PointFileTest, RandomFilesGiveWhatAStreamReads) {
    std::mt19937 random(5);
    const std::vector<std::string> pieces{"1",    " ",     "\n",    "2.5",  "-3e4 ", "1e",  ".", "-", "+.5",
                                          "1e+ ", "1e309", "1 2 3", "\r\n", "x",     "0x1", ",", " "};
    for (int round = 0; round < 4000; ++round) {
        std::string text;
        for (std::size_t left = random() % 25; left > 0; --left) {
            text += pieces[random() % 10 == 0 ? random() % pieces.size() : random() % 5];
        }
        SCOPED_TRACE(text);
        compareWithPlainReader(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(PointFileTest, EveryByteOfAWrittenLineIsDetermined) {
    const PointList line{{1.0, -0.5, 0.1}, {0.0, -0.0, 1024.0}};
    ASSERT_TRUE(writeLineBuffer(folder_ / "a.ext", line, 16));
    EXPECT_EQ(test::fileText(folder_ / "a.ext"),
              "1.0000000000000000e+00 -5.0000000000000000e-01 1.0000000000000001e-01\n"
              "0.0000000000000000e+00 -0.0000000000000000e+00 1.0240000000000000e+03\n");
    ASSERT_TRUE(writeLineBuffer(folder_ / "a.ext", line, 2));
    EXPECT_EQ(test::fileText(folder_ / "a.ext"), "1.00e+00 -5.00e-01 1.00e-01\n0.00e+00 -0.00e+00 1.02e+03\n");
}

TEST_F(PointFileTest, AWrittenLineIsReadAgainToTheLastBit) {
    std::mt19937_64 random(9);
    PointList line;
    for (int i = 0; i < 500; ++i) {
        line.emplace_back(1.0 / static_cast<double>(random()), static_cast<double>(random()) / 3.0, 5e-324);
    }
    ASSERT_TRUE(writeLineBuffer(folder_ / "a.ext", line, 16));
    EXPECT_TRUE(test::sameModel({{readPointFile(folder_ / "a.ext").points}}, {{line}}));
}

TEST_F(PointFileTest, AnEmptyLineIsAnEmptyFile) {
    ASSERT_TRUE(writeLineBuffer(folder_ / "a.ext", {}, 16));
    EXPECT_EQ(test::fileText(folder_ / "a.ext"), "");
}

TEST_F(PointFileTest, ALineThatCannotBeWrittenIsToldAndLeavesNothing) {
    const PointList line{{1, 2, 3}};
    EXPECT_FALSE(writeLineBuffer(folder_ / "missing/a.ext", line, 16));
    EXPECT_FALSE(writeLineBuffer(folder_.path(), line, 16));
    const test::FileSizeLimit full(0);
    EXPECT_FALSE(writeLineBuffer(folder_ / "full", line, 16));
    EXPECT_THAT(folder_.names(), IsEmpty());
}

const std::string sevenLines = "1 2 3 4 5 6 7\n\nany text\n4\n5\n6\n7\n";

class SftTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    void expectShifts(std::string_view text, const PointList& points, const PointList& targets) const {
        const SftResult result = readSft(test::writeFileText(folder_ / "a.sft", text));
        EXPECT_TRUE(result.opened);
        EXPECT_TRUE(test::sameModel({{result.points}}, {{points}})) << text;
        EXPECT_TRUE(test::sameModel({{result.targets}}, {{targets}})) << text;
    }
};

TEST_F(SftTest, BehindSevenLinesEverySevenNumbersAreAPointAndItsShift) {
    expectShifts(sevenLines + "1 2 3 0.5 -1 0 99\n4 5 6\n1 1\n1 7\n", {{1, 2, 3}, {4, 5, 6}}, {{1.5, 1, 3}, {5, 6, 7}});
}

TEST_F(SftTest, TheLastRecordNeedsNoLineFeed) {
    expectShifts(sevenLines + "1 2 3 4 5 6 7\n1 2 3 10 20 30 7", {{1, 2, 3}, {1, 2, 3}}, {{5, 7, 9}, {11, 22, 33}});
}

TEST_F(SftTest, AnIncompleteRecordIsLeftOut) {
    for (const char* const tail :
         {"1", "1 2 3", "1 2 3 4 5 6", "1 2 3 4 5 6\n", "1 2 3 4 5 6 x", "1 2 3 4 5 6 1e999"}) {
        expectShifts(sevenLines + "1 2 3 1 1 1 0\n" + tail, {{1, 2, 3}}, {{2, 3, 4}});
    }
}

TEST_F(SftTest, TheFirstTokenThatIsNoNumberEndsTheReading) {
    expectShifts(sevenLines + "1 2 3 1 1 1 0\n1 2 z 1 1 1 0\n1 2 3 1 1 1 0\n", {{1, 2, 3}}, {{2, 3, 4}});
}

TEST_F(SftTest, FewerThanSevenLinesAreOpenedWithoutShifts) {
    expectShifts("", {}, {});
    expectShifts("\n\n\n", {}, {});
    expectShifts("1 2 3 4 5 6 7\n1 2 3 4 5 6 7\n", {}, {});
    expectShifts("1\n2\n3\n4\n5\n6\n1 2 3 4 5 6 7", {}, {});
    expectShifts(sevenLines, {}, {});
}

TEST_F(SftTest, HeaderLinesMayBeOfAnyLength) {
    const std::string longLine(100'000, 'x');
    expectShifts(longLine + "\n\n\n\n\n\n" + longLine + "\n1 2 3 1 1 1 0\n", {{1, 2, 3}}, {{2, 3, 4}});
}

TEST_F(SftTest, AFileThatCannotBeOpenedIsToldSo) {
    for (const auto& path : {folder_ / "missing.sft", folder_.path()}) {
        const SftResult result = readSft(path);
        EXPECT_FALSE(result.opened);
        EXPECT_THAT(result.points, IsEmpty());
        EXPECT_THAT(result.targets, IsEmpty());
    }
}

} // namespace
} // namespace velmora

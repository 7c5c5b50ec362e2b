#include "skl.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FileSizeLimit.h"
#include "format_test_tools.h"
#include "skl_reference.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr FormatFaultKind body = FormatFaultKind::Body;
constexpr FormatFaultKind header = FormatFaultKind::Header;

class SklReaderTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;
    PatchList patches_;
    SklReadResult result_;

    void read(std::string_view text) {
        patches_.clear();
        readBehind(text);
    }
    void readBehind(std::string_view text) {
        result_ = readSkl(test::writeFileText(folder_ / "a.skl", text), patches_);
    }

    void expectQuietEnd() const {
        EXPECT_TRUE(result_.opened);
        EXPECT_TRUE(result_.endReached);
        EXPECT_THAT(result_.faults, IsEmpty());
    }
    void expectFault(FormatFault fault) const {
        EXPECT_TRUE(result_.opened);
        EXPECT_FALSE(result_.endReached);
        EXPECT_THAT(result_.faults, ElementsAre(fault));
    }

    void compareWithPlainReader(std::string_view text) {
        read(text);
        PatchList expected;
        const std::vector<std::string> messages = reference::readSkl(folder_ / "a.skl", expected);
        ASSERT_TRUE(test::sameModel(patches_, expected));
        std::vector<std::string> given;
        for (const FormatFault& fault : result_.faults) {
            given.push_back(sklMessage(fault));
        }
        ASSERT_EQ(given, messages);
        ASSERT_EQ(result_.endReached, messages.empty());
        ASSERT_EQ(result_.pointsRead, pointTotal(expected));
    }
};

TEST(SklMessages, TheTextsAreExactWithTheirMisprint) {
    EXPECT_EQ(sklMessage({header, 2, 1}), "Line header of SLK file is wrong. Compartment N= 2");
    EXPECT_EQ(sklMessage({body, 7, 1}), "Body of SLK file is wrong. Compartment N= 7");
    EXPECT_EQ(sklMessage({FormatFaultKind::CannotOpen, 0, 1}), "It is impossible to open selected file");
}

const std::string goodFile = "2\n3\n1 2 3\n4 5 6\n7.5 8 9\n1\n-1 -2 -3e0\n0\n1\n0\n3\n1\n1 1 1\n2\n1 2 3\n.5 5. 0\n0\n";
const PatchList goodModel{
    {{{1, 2, 3}, {4, 5, 6}, {7.5, 8, 9}}, {{-1, -2, -3}}}, {}, {{}}, {{{1, 1, 1}}, {{1, 2, 3}, {0.5, 5, 0}}, {}}};

TEST_F(SklReaderTest, SectionsMayDifferInLength) {
    read(goodFile);
    expectQuietEnd();
    EXPECT_TRUE(test::sameModel(patches_, goodModel));
    EXPECT_EQ(result_.pointsRead, 7);
}

TEST_F(SklReaderTest, LineBreaksAreFree) {
    std::string text = goodFile;
    std::replace(text.begin(), text.end(), '\n', ' ');
    read(text);
    expectQuietEnd();
    EXPECT_TRUE(test::sameModel(patches_, goodModel));
    std::replace(text.begin(), text.end(), ' ', '\n');
    read(text);
    EXPECT_TRUE(test::sameModel(patches_, goodModel));
    read("1 1" + std::string(1000, ' ') + "1 2 3");
    EXPECT_TRUE(test::sameModel(patches_, {{{{1, 2, 3}}}}));
}

TEST_F(SklReaderTest, AFileThatCannotBeOpenedChangesNothing) {
    patches_ = goodModel;
    for (const auto& path : {folder_ / "missing.skl", folder_.path()}) {
        result_ = readSkl(path, patches_);
        EXPECT_FALSE(result_.opened);
        EXPECT_FALSE(result_.endReached);
        EXPECT_THAT(result_.faults, ElementsAre(FormatFault{FormatFaultKind::CannotOpen, 0, 1}));
        EXPECT_TRUE(test::sameModel(patches_, goodModel));
    }
}

TEST_F(SklReaderTest, AnEmptyFileEndsQuietlyWithoutPatches) {
    for (const char* const text : {"", "\n", " \r\n"}) {
        read(text);
        expectQuietEnd();
        EXPECT_TRUE(patches_.empty());
    }
}

TEST_F(SklReaderTest, PatchesArePushedBehindThoseThatAreThere) {
    patches_ = {test::numberedPatch(2, 2, 5)};
    readBehind("1\n1\n1 2 3\n");
    EXPECT_TRUE(test::sameModel(patches_, {test::numberedPatch(2, 2, 5), {{{1, 2, 3}}}}));
    EXPECT_EQ(result_.pointsRead, 1);
}

TEST_F(SklReaderTest, WhereASectionCountShouldStandAnythingElseEndsTheFile) {
    for (const char* const tail : {"end", ".5", "-", "99999999999", "x 1 1 2 3"}) {
        read("1\n1\n1 2 3\n" + std::string(tail));
        expectQuietEnd();
        EXPECT_EQ(patches_.size(), 1U) << tail;
    }
}

TEST_F(SklReaderTest, CountsBelowZeroAreEmpty) {
    read("-3\n2\n-1\n-2147483648\n1\n0\n");
    expectQuietEnd();
    EXPECT_TRUE(test::sameModel(patches_, {{}, {{}, {}}, {{}}}));
}

TEST_F(SklReaderTest, APointCountThatCannotBeReadDropsItsCompartment) {
    for (const char* const bad : {"", "x", ".5", "99999999999 1 2 3"}) {
        read("1\n1\n1 2 3\n2\n1\n4 5 6\n" + std::string(bad));
        expectFault({header, 2, 1});
        EXPECT_TRUE(test::sameModel(patches_, {{{{1, 2, 3}}}})) << bad;
        EXPECT_EQ(result_.pointsRead, 1);
    }
}

TEST_F(SklReaderTest, APointThatCannotBeReadDropsItsCompartment) {
    for (const char* const bad : {"", "x", "4 5", "4 5 nan", "4 5 1e999", "4 5 1e"}) {
        read("1\n1\n1 2 3\n2\n1\n4 5 6\n1\n" + std::string(bad));
        expectFault({body, 2, 1});
        EXPECT_TRUE(test::sameModel(patches_, {{{{1, 2, 3}}}})) << bad;
    }
}

TEST_F(SklReaderTest, HugeCountsWithoutThePointsTakeNoMemory) {
    read("2147483647\n1\n1 2 3\n");
    expectFault({header, 1, 1});
    read("1\n2147483647\n1 2 3\n");
    expectFault({body, 1, 1});
    EXPECT_TRUE(patches_.empty());
}

TEST_F(SklReaderTest, AFileCutAtAnyByteGivesWhatThePlainReaderGives) {
    for (std::size_t size = 0; size <= goodFile.size(); ++size) {
        SCOPED_TRACE(size);
        compareWithPlainReader(std::string_view(goodFile).substr(0, size));
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(SklReaderTest, AFileWithAnyByteChangedGivesWhatThePlainReaderGives) {
    for (const char wrong : {'x', ' ', '-', '.', '9', '\0'}) {
        for (std::size_t place = 0; place < goodFile.size(); ++place) {
            SCOPED_TRACE(place);
            std::string text = goodFile;
            text[place] = wrong;
            compareWithPlainReader(text);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_F(SklReaderTest, RandomFilesGiveWhatThePlainReaderGives) {
    std::mt19937 random(1);
    const std::vector<std::string> pieces{"1\n",       "1\n",       "2\n", "0\n", "-1\n",         "1 2 3\n",
                                          "4.5 5 6\n", "7 8e1 9\n", "x\n", " ",   "99999999999\n"};
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (std::size_t left = random() % 15; left > 0; --left) {
            text += pieces[random() % pieces.size()];
        }
        SCOPED_TRACE(text);
        compareWithPlainReader(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(SklReaderTest, ALargeModelIsReadWhole) {
    // More than the points to which an .apt file would be cut, in sections that it would thin.
    std::string section = "603\n";
    for (int m = 0; m < 603; ++m) {
        section += "1 2 3\n";
    }
    std::string text = "4001\n";
    for (int n = 0; n < 4001; ++n) {
        text += section;
    }
    read(text);
    expectQuietEnd();
    EXPECT_EQ(result_.pointsRead, 2'412'603);
    EXPECT_EQ(test::shapeOf(patches_), (std::vector<std::pair<std::size_t, std::size_t>>{{4001, 603}}));
}

TEST(SklWriter, EveryByteOfTheFileIsDetermined) {
    const test::TemporaryFolder folder;
    const PatchList patches{{{{1.0, -0.5, 0.1}, {0.0, -0.0, 1024.0}}, {{3.0, 4.0, 5.0}}}, {}, {{}, {{6.0, 7.0, 8.0}}}};
    ASSERT_TRUE(writeSkl(folder / "a.skl", patches, 16));
    EXPECT_EQ(test::fileText(folder / "a.skl"),
              "2\n"
              "2\n"
              "1.0000000000000000e+00 -5.0000000000000000e-01 1.0000000000000001e-01\n"
              "0.0000000000000000e+00 -0.0000000000000000e+00 1.0240000000000000e+03\n"
              "1\n"
              "3.0000000000000000e+00 4.0000000000000000e+00 5.0000000000000000e+00\n"
              "0\n"
              "2\n"
              "0\n"
              "1\n"
              "6.0000000000000000e+00 7.0000000000000000e+00 8.0000000000000000e+00\n");
}

TEST(SklWriter, AModelWithoutPatchesIsAnEmptyFile) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeSkl(folder / "a.skl", {}, 16));
    EXPECT_EQ(test::fileText(folder / "a.skl"), "");
}

TEST(SklWriter, WhatIsWrittenIsReadAgain) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeSkl(folder / "a.skl", goodModel, 16));
    PatchList again;
    EXPECT_TRUE(readSkl(folder / "a.skl", again).endReached);
    EXPECT_TRUE(test::sameModel(again, goodModel));
}

TEST(SklWriter, ABlockIsWrittenInTheOrderOfItsSelection) {
    const test::TemporaryFolder folder;
    constexpr std::array<std::int32_t, 6> selection{3, -1, 1, 4, -2147483647, 0};
    ASSERT_TRUE(writeSklBlock(folder / "a.skl", goodModel, selection, 16));
    PatchList again;
    readSkl(folder / "a.skl", again);
    EXPECT_TRUE(test::sameModel(again, {goodModel[3], goodModel[1], goodModel[0]}));
}

TEST(SklWriter, ThePrecisionIsTheNumberOfDigitsBehindThePoint) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeSklBlock(folder / "a.skl", {{{{1.0, -2.5, 1.0 / 3.0}}}}, std::array<std::int32_t, 1>{0}, 3));
    EXPECT_EQ(test::fileText(folder / "a.skl"), "1\n1\n1.000e+00 -2.500e+00 3.333e-01\n");
}

TEST(SklWriter, WhatCannotBeWrittenIsToldAndLeavesTheOldFile) {
    const test::TemporaryFolder folder;
    EXPECT_FALSE(writeSkl(folder / "missing/a.skl", goodModel, 16));
    EXPECT_FALSE(writeSkl(folder.path(), goodModel, 16));
    const test::FileSizeLimit full(0);
    EXPECT_FALSE(writeSkl(folder / "full", goodModel, 16));
    EXPECT_FALSE(writeSklBlock(folder / "full", goodModel, std::array<std::int32_t, 1>{0}, 16));
    EXPECT_THAT(folder.names(), IsEmpty());
}

} // namespace
} // namespace velmora

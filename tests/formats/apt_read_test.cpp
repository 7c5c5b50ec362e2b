#include <numeric>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apt.h"
#include "format_test_tools.h"
#include "temporary_folder.h"
#include "thinning.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr FormatFaultKind body = FormatFaultKind::Body;
constexpr FormatFaultKind header = FormatFaultKind::Header;

class AptReaderTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;
    PatchList patches_;
    AptReadResult result_;

    void read(std::string_view text) {
        patches_.clear();
        readBehind(text);
    }
    void readBehind(std::string_view text) {
        result_ = readApt(test::writeFileText(folder_ / "a.apt", text), patches_);
    }

    void expectQuietEnd() const {
        EXPECT_TRUE(result_.opened);
        EXPECT_TRUE(result_.firstPassEnded);
        EXPECT_TRUE(result_.endReached);
        EXPECT_THAT(result_.faults, IsEmpty());
    }
    void expectFaults(const std::vector<FormatFault>& faults) const {
        EXPECT_TRUE(result_.opened);
        EXPECT_FALSE(result_.endReached);
        EXPECT_THAT(result_.faults, testing::ElementsAreArray(faults));
    }
};

TEST(AptMessages, TheTextsAreExact) {
    EXPECT_EQ(aptMessage({body, 3, 1}), "Body of APT file is wrong. Compartment N= 3");
    EXPECT_EQ(aptMessage({header, 12, 2}), "Header of APT file is wrong. Compartment N= 12");
    EXPECT_EQ(aptMessage({FormatFaultKind::CannotOpen, 0, 1}), "It is impossible to open selected file");
    EXPECT_EQ(cannotSaveMessage, "It is impossible to save current file");
}

TEST_F(AptReaderTest, CompartmentsBecomePatchesOfSectionsOfPoints) {
    read("2 3\n1 2 3\n4 5 6\n7 8 9\n-1 -2 -3\n.5 5. 1e1\n+1 1E-1 0\n1 1\n0.25 0 0\n");
    expectQuietEnd();
    const PatchList expected{{{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {{-1, -2, -3}, {0.5, 5, 10}, {1, 0.1, 0}}},
                             {{{0.25, 0, 0}}}};
    EXPECT_TRUE(test::sameModel(patches_, expected));
    EXPECT_EQ(result_.pointsInFile, 7);
    EXPECT_EQ(result_.pointsKept, 7);
    EXPECT_FALSE(result_.thinned);
    EXPECT_FALSE(result_.cutAtLimit);
}

TEST_F(AptReaderTest, AFileThatCannotBeOpenedChangesNothing) {
    patches_ = {test::numberedPatch(1, 1)};
    for (const auto& path : {folder_ / "missing.apt", folder_.path()}) {
        result_ = readApt(path, patches_);
        EXPECT_FALSE(result_.opened);
        EXPECT_FALSE(result_.endReached);
        EXPECT_THAT(result_.faults, ElementsAre(FormatFault{FormatFaultKind::CannotOpen, 0, 1}));
        EXPECT_EQ(patches_.size(), 1U);
    }
}

TEST_F(AptReaderTest, AnEmptyFileEndsQuietlyWithoutPatches) {
    for (const char* const text : {"", "\n", " \t\r\n\n"}) {
        read(text);
        expectQuietEnd();
        EXPECT_TRUE(patches_.empty());
        EXPECT_EQ(result_.pointsInFile, 0);
    }
}

TEST_F(AptReaderTest, PatchesArePushedBehindThoseThatAreThere) {
    patches_ = {test::numberedPatch(2, 2, 5)};
    readBehind(test::numberedApt(3, 2, 7));
    expectQuietEnd();
    EXPECT_TRUE(test::sameModel(patches_, {test::numberedPatch(2, 2, 5), test::numberedPatch(3, 2, 7)}));
    EXPECT_EQ(result_.pointsKept, 6);
}

TEST_F(AptReaderTest, TheLastLineNeedsNoLineFeed) {
    read("1 2\n1 2 3\n4 5 6");
    expectQuietEnd();
    EXPECT_EQ(pointTotal(patches_), 2);
}

TEST_F(AptReaderTest, CarriageReturnsAreWhiteSpace) {
    read("1 2\r\n1 2 3\r\n4 5 6\r\n");
    expectQuietEnd();
    EXPECT_TRUE(test::sameModel(patches_, {{{{1, 2, 3}, {4, 5, 6}}}}));
}

TEST_F(AptReaderTest, TextBehindTheLastCompartmentIsIgnored) {
    for (const char* const tail : {"end of data", "2", "2 ", "abc 3", "3 abc", "-", "2.5 3"}) {
        read("1 1\n1 2 3\n" + std::string(tail));
        expectQuietEnd();
        EXPECT_EQ(patches_.size(), 1U) << tail;
    }
}

TEST_F(AptReaderTest, AByteOrderMarkMakesTheFileEmpty) {
    read("\xEF\xBB\xBF"
         "1 1\n1 2 3\n");
    expectQuietEnd();
    EXPECT_TRUE(patches_.empty());
}

TEST_F(AptReaderTest, APointLineThatIsMissingIsABodyFaultOfTheFirstPass) {
    patches_ = {test::numberedPatch(1, 1)};
    readBehind("1 1\n1 2 3\n2 2\n1 2 3\n4 5 6\n7 8 9\n");
    expectFaults({{body, 2, 1}});
    EXPECT_FALSE(result_.firstPassEnded);
    EXPECT_EQ(patches_.size(), 1U) << "not even the good compartment is read";
    EXPECT_EQ(result_.pointsKept, 0);
}

TEST_F(AptReaderTest, TwoPointsOnALineAreABodyFault) {
    read("1 2\n1 2 3 4 5 6\n");
    expectFaults({{body, 1, 1}});
}

TEST_F(AptReaderTest, ABlankLineShiftsWhatIsTakenForAHeader) {
    // Two lines are counted, the blank one and the first point; then "4 5" is a header of twenty points.
    read("1 2\n\n1.5 2 3\n4 5 6\n");
    expectFaults({{body, 2, 1}});
}

TEST_F(AptReaderTest, AHeaderAloneOnTheLastLineIsABodyFaultOnlyIfItHasPoints) {
    read("1 1");
    expectFaults({{body, 1, 1}});
    read("0 5");
    expectQuietEnd();
    EXPECT_THAT(test::shapeOf(patches_), ElementsAre(Pair(0, 0)));
}

TEST_F(AptReaderTest, APointLineOf254CharactersIsTakenAndOneMoreIsABodyFault) {
    const std::string point = "1 2 3";
    read("1 2\n" + point + std::string(254 - point.size(), ' ') + "\n4 5 6\n");
    expectQuietEnd();
    EXPECT_EQ(pointTotal(patches_), 2);
    read("1 2\n" + point + std::string(255 - point.size(), ' ') + "\n4 5 6\n");
    expectFaults({{body, 1, 1}});
}

TEST_F(AptReaderTest, TheRestOfAHeaderLineMayHave254Characters) {
    read("1 1" + std::string(254, ' ') + "\n1 2 3\n");
    expectQuietEnd();
    EXPECT_EQ(pointTotal(patches_), 1);
    read("1 1" + std::string(255, ' ') + "\n1 2 3\n");
    expectFaults({{body, 1, 1}});
}

TEST_F(AptReaderTest, BehindATooLongHeaderLineWithoutPointsTheFirstPassEnds) {
    read("0 5" + std::string(255, ' ') + "\n2 1\n1 2 3\n4 5 6\n");
    expectQuietEnd();
    EXPECT_EQ(result_.pointsInFile, 0) << "the compartment behind it is not counted";
    EXPECT_THAT(test::shapeOf(patches_), ElementsAre(Pair(0, 0), Pair(2, 1))) << "but it is read";
}

TEST_F(AptReaderTest, WordsBehindAHeaderAreTakenForAPointInTheSecondPass) {
    read("1 1 wing\n1 2 3\n");
    expectFaults({{body, 1, 2}});
    EXPECT_TRUE(result_.firstPassEnded);
    EXPECT_TRUE(patches_.empty());
}

TEST_F(AptReaderTest, ABadPointDropsItsCompartmentAndThoseBeforeItStay) {
    for (const char* const bad : {"x 2 3", "1 2", "1 2 nan", "1 2 1e999", "1e 2 3", "1,5 2 3", "0x10 2 3"}) {
        read("1 1\n1 2 3\n2 1\n4 5 6\n" + std::string(bad) + "\n");
        expectFaults({{body, 2, 2}});
        EXPECT_TRUE(result_.firstPassEnded);
        EXPECT_TRUE(test::sameModel(patches_, {{{{1, 2, 3}}}})) << bad;
        EXPECT_EQ(result_.pointsKept, 1);
    }
}

TEST_F(AptReaderTest, APointCountOutOfRangeIsAHeaderFaultOfBothPasses) {
    for (const char* const bad : {"3 2147483648", "3 -2147483649", "3 99999999999999999999"}) {
        read("1 1\n1 2 3\n" + std::string(bad) + "\n4 5 6\n");
        expectFaults({{header, 2, 1}, {header, 2, 2}});
        EXPECT_FALSE(result_.firstPassEnded);
        EXPECT_EQ(result_.pointsInFile, 1);
        EXPECT_EQ(patches_.size(), 1U) << "the second pass is made all the same";
    }
}

TEST_F(AptReaderTest, TheSecondPassCanEndQuietlyBehindAHeaderFaultOfTheFirst) {
    // The first pass leaves out the words behind "0 0"; the second one takes "x" for the next header.
    read("0 0 x\n0 2147483648\n");
    EXPECT_THAT(result_.faults, ElementsAre(FormatFault{header, 2, 1}));
    EXPECT_FALSE(result_.firstPassEnded);
    EXPECT_TRUE(result_.endReached);
    EXPECT_EQ(patches_.size(), 1U);
}

TEST_F(AptReaderTest, BehindASectionCountOutOfRangeThePointCountIsUnreadAndTheFileEnds) {
    read("1 1\n1 2 3\n99999999999 3\n4 5 6\n");
    expectQuietEnd();
    EXPECT_EQ(patches_.size(), 1U);
}

TEST_F(AptReaderTest, ASectionCountOfMinusOneCountsAsUnreadWhenTheHeaderFails) {
    read("-1 99999999999\n");
    expectQuietEnd();
}

TEST_F(AptReaderTest, CountsOfZeroOrLessGiveEmptyPatches) {
    read("0 5\n-1 5\n0 0\n-2147483648 1\n3 0\n2 -7\n1 1\n1 2 3\n");
    expectQuietEnd();
    EXPECT_THAT(test::shapeOf(patches_),
                ElementsAre(Pair(0, 0), Pair(0, 0), Pair(0, 0), Pair(0, 0), Pair(3, 0), Pair(2, 0), Pair(1, 1)));
    EXPECT_EQ(result_.pointsInFile, 0 - 5 - 2147483648LL - 14 + 1 + 4294967296LL) << "it wraps around once";
    EXPECT_EQ(result_.pointsKept, 1);
}

TEST_F(AptReaderTest, APointLineBehindAHeaderWithoutSectionsIsReadAsAHeader) {
    read("0 5\n0.5 1 2\n");
    expectQuietEnd();
    EXPECT_THAT(test::shapeOf(patches_), ElementsAre(Pair(0, 0)));
    read("0 5\n1 1 2\n7 8 9\n");
    // "1 1" is a header, its line ends behind 2; the second pass takes 2 7 8 for the point and 9 for half a header.
    expectQuietEnd();
    EXPECT_TRUE(test::sameModel(patches_, {Patch{}, {{{2, 7, 8}}}}));
}

TEST_F(AptReaderTest, TwoNegativeCountsHaveLinesButNoSections) {
    // Twelve lines are counted; the second pass takes the same lines for headers of six empty patches.
    std::string text = "-3 -4\n";
    for (int line = 0; line < 12; ++line) {
        text += "0 0\n";
    }
    read(text);
    expectQuietEnd();
    EXPECT_EQ(result_.pointsInFile, 12);
    EXPECT_EQ(patches_.size(), 13U);
    read("-3 -4\n0 0\n");
    expectFaults({{body, 1, 1}});
}

TEST_F(AptReaderTest, AProductThatWrapsToZeroIsMissedByTheFirstPassOnly) {
    read("65536 65536\n0.5 1 2\n3 4 5\n");
    expectFaults({{body, 1, 2}});
    EXPECT_TRUE(result_.firstPassEnded);
    EXPECT_EQ(result_.pointsInFile, 0);
    EXPECT_TRUE(patches_.empty());
}

TEST_F(AptReaderTest, AProductThatWrapsBelowZeroThinsNothing) {
    read("66 66\n" + test::numberedApt(66, 66).substr(6) + "50000 50000\n");
    expectFaults({{body, 2, 2}});
    EXPECT_EQ(result_.pointsInFile, 4356 - 1794967296);
    EXPECT_TRUE(test::sameModel(patches_, {test::numberedPatch(66, 66)}));
}

TEST_F(AptReaderTest, HugeHeadersWithoutThePointsTakeNoMemory) {
    read("2147483647 2147483647\n1 2 3\n");
    expectFaults({{body, 1, 2}});
    EXPECT_EQ(result_.pointsInFile, 1) << "the product wraps to one";
    read("1 2147483647\n1 2 3\n");
    expectFaults({{body, 1, 1}});
}

TEST_F(AptReaderTest, MoreBareSectionsThanTheLimitAreAHeaderFaultOfTheSecondPass) {
    for (const char* const bad : {"2000000000 0", "100001 -3", "2147483647 -2147483648"}) {
        read("1 1\n1 2 3\n" + std::string(bad) + "\n");
        expectFaults({{header, 2, 2}});
        EXPECT_TRUE(result_.firstPassEnded);
        EXPECT_EQ(patches_.size(), 1U);
    }
    read("100000 0\n");
    expectQuietEnd();
    EXPECT_THAT(test::shapeOf(patches_), ElementsAre(Pair(100000, 0)));
}

TEST_F(AptReaderTest, BareSectionsOfAllHeadersCountTogether) {
    read("80000 0\n15000 0\n5000 0\n1 0\n");
    expectFaults({{header, 4, 2}});
    EXPECT_EQ(patches_.size(), 3U);
}

// The thinning goes by the lines of the whole file. So a first compartment that is looked at stands in front of one
// of empty lines, which brings the count to `total` and whose first point then cannot be read.
class AptThinningTest : public AptReaderTest {
protected:
    void readThinned(int sections, int points, int total) {
        const int filler = total - sections * points;
        read(test::numberedApt(sections, points) + "1 " + std::to_string(filler) + '\n' +
             std::string(static_cast<std::size_t>(filler), '\n'));
        EXPECT_EQ(result_.pointsInFile, total);
        expectFaults({{body, 2, 2}});
        ASSERT_EQ(patches_.size(), 1U);
    }

    void expectWhole(int sections, int points) const {
        EXPECT_TRUE(test::sameModel(patches_, {test::numberedPatch(sections, points)}));
        EXPECT_FALSE(result_.thinned);
    }

    // The section numbers, or those of the points of a section, as the coordinates tell them.
    std::vector<int> keptSections() const {
        std::vector<int> kept;
        for (const PointList& section : patches_[0]) {
            kept.push_back(static_cast<int>(section.front().x));
        }
        return kept;
    }
    std::vector<int> keptPoints(std::size_t section) const {
        std::vector<int> kept;
        for (const zVec<double>& point : patches_[0][section]) {
            kept.push_back(static_cast<int>(point.y));
        }
        return kept;
    }

    // first, first + step, ... below count, and the last element of all.
    static std::vector<int> everyAndLast(int first, int step, int count) {
        std::vector<int> expected;
        for (int i = first; i < count; i += step) {
            expected.push_back(i);
        }
        if (expected.back() != count - 1) {
            expected.push_back(count - 1);
        }
        return expected;
    }
};

TEST_F(AptThinningTest, AFileOf201000PointsIsReadWhole) {
    readThinned(66, 66, 201'000);
    expectWhole(66, 66);
}

TEST_F(AptThinningTest, AFileOf201001PointsKeepsEverySecond) {
    readThinned(66, 66, 201'001);
    EXPECT_TRUE(result_.thinned);
    EXPECT_EQ(keptSections(), everyAndLast(0, 2, 66));
    for (std::size_t n = 0; n < patches_[0].size(); ++n) {
        EXPECT_EQ(keptPoints(n), everyAndLast(0, 2, 66)) << "66 is even, so every section begins alike";
    }
    EXPECT_EQ(result_.pointsKept, 34 * 34);
}

TEST_F(AptThinningTest, WithAnOddCountThePhaseRunsOnIntoTheNextSection) {
    readThinned(3, 67, 201'001);
    EXPECT_EQ(keptPoints(0), everyAndLast(0, 2, 67));
    EXPECT_EQ(keptPoints(1), everyAndLast(1, 2, 67));
    EXPECT_EQ(keptPoints(2), everyAndLast(0, 2, 67));
    EXPECT_EQ(test::sectionSizes(patches_[0]), (std::vector<std::size_t>{34, 34, 34}));
}

TEST_F(AptThinningTest, SectionsLeftOutMoveThePointPhaseToo) {
    readThinned(66, 67, 201'001);
    EXPECT_EQ(keptSections(), everyAndLast(0, 2, 66));
    // Sections 0, 2, ... 64 begin after an even number of points, section 65 after an odd one.
    EXPECT_EQ(keptPoints(1), everyAndLast(0, 2, 67));
    EXPECT_EQ(keptPoints(33), everyAndLast(1, 2, 67));
}

TEST_F(AptThinningTest, UpTo65SectionsAllStay) {
    readThinned(65, 66, 201'001);
    EXPECT_EQ(keptSections(), everyAndLast(0, 1, 65));
    EXPECT_EQ(keptPoints(1), everyAndLast(0, 2, 66));
}

TEST_F(AptThinningTest, UpTo65PointsAllStay) {
    readThinned(66, 65, 201'001);
    EXPECT_EQ(keptSections(), everyAndLast(0, 2, 66));
    EXPECT_EQ(keptPoints(1), everyAndLast(0, 1, 65));
}

TEST_F(AptThinningTest, ThePhasesBeginAnewInEveryCompartment) {
    const std::string twice = test::numberedApt(67, 67) + test::numberedApt(67, 67);
    read(twice + "0 0\n1 200000\n" + std::string(200'000, '\n'));
    ASSERT_EQ(patches_.size(), 3U);
    EXPECT_TRUE(test::sameModel({patches_[0]}, {patches_[1]}));
    EXPECT_EQ(keptSections(), everyAndLast(0, 2, 67));
}

TEST_F(AptThinningTest, PeriodTwoHoldsUpTo8241000Points) {
    readThinned(70, 68, 8'241'000);
    EXPECT_EQ(keptSections(), everyAndLast(0, 2, 70));
}

TEST_F(AptThinningTest, PeriodThreeBeginsAt8241001Points) {
    readThinned(70, 68, 8'241'001);
    EXPECT_EQ(keptSections(), everyAndLast(0, 3, 70));
    // Section 3 begins behind 204 points, a multiple of three, and section 69 behind 69 times 68, another one.
    EXPECT_EQ(keptPoints(0), everyAndLast(0, 3, 68));
    EXPECT_EQ(keptPoints(1), everyAndLast(0, 3, 68));
    EXPECT_EQ(keptPoints(23), everyAndLast(0, 3, 68));
}

TEST_F(AptThinningTest, PeriodFourBeginsAt18291001Points) {
    readThinned(70, 67, 18'291'000);
    EXPECT_EQ(keptSections(), everyAndLast(0, 3, 70));
    readThinned(70, 67, 18'291'001);
    EXPECT_EQ(keptSections(), everyAndLast(0, 4, 70));
    // Section 4 begins behind 268 points, a multiple of four; section 69 behind 4623, three more than one.
    EXPECT_EQ(keptPoints(1), everyAndLast(0, 4, 67));
    EXPECT_EQ(keptPoints(18), everyAndLast(1, 4, 67));
}

class AptLimitTest : public AptReaderTest {
protected:
    static std::string halves(int compartments, int sections, int points) {
        const std::string head = std::to_string(sections) + ' ' + std::to_string(points) + '\n';
        std::string one = head;
        for (int i = 0; i < sections * points; ++i) {
            one += ".5 0 0\n";
        }
        std::string text;
        for (int k = 0; k < compartments; ++k) {
            text += one;
        }
        return text;
    }
};

TEST_F(AptLimitTest, TheCompartmentThatReachesTheLimitKeepsWhatItHasAndTheFileEnds) {
    // 570 compartments of 65 times 65 are 2,408,250 points; 58 sections more are 2,412,020.
    read(halves(572, 65, 65));
    expectQuietEnd();
    ASSERT_EQ(patches_.size(), 571U);
    EXPECT_EQ(patches_[569].size(), 65U);
    EXPECT_EQ(patches_[570].size(), 58U);
    EXPECT_EQ(result_.pointsInFile, 572 * 65 * 65);
    EXPECT_EQ(result_.pointsKept, 2'412'020);
    EXPECT_EQ(pointTotal(patches_), 2'412'020);
    EXPECT_TRUE(result_.cutAtLimit);
    EXPECT_FALSE(result_.thinned);
}

TEST_F(AptLimitTest, AFileOfExactlyTheLimitIsReadWhole) {
    read(halves(1005, 40, 60));
    expectQuietEnd();
    EXPECT_EQ(patches_.size(), 1005U);
    EXPECT_EQ(result_.pointsKept, keptPointLimit);
    EXPECT_FALSE(result_.cutAtLimit);
}

TEST_F(AptLimitTest, TheSectionThatReachesTheLimitExactlyIsTheLast) {
    read(halves(1004, 40, 60) + halves(1, 41, 60));
    expectQuietEnd();
    ASSERT_EQ(patches_.size(), 1005U);
    EXPECT_EQ(patches_.back().size(), 40U);
    EXPECT_EQ(result_.pointsKept, keptPointLimit);
    EXPECT_TRUE(result_.cutAtLimit);
}

TEST_F(AptLimitTest, BehindTheLimitACompartmentGetsItsFirstSectionOnly) {
    read(halves(1005, 40, 60) + halves(2, 3, 2));
    expectQuietEnd();
    ASSERT_EQ(patches_.size(), 1006U);
    EXPECT_EQ(test::sectionSizes(patches_.back()), (std::vector<std::size_t>{2}));
    EXPECT_EQ(result_.pointsKept, keptPointLimit + 2);
    EXPECT_TRUE(result_.cutAtLimit);
}

// Text behind the last patch makes the reader begin anew, in two passes.
constexpr const char* behind = "end of data\n";

TEST_F(AptReaderTest, WhatIsWantedWholeIsNotThinned) {
    for (const char* const tail : {"", behind}) {
        patches_.clear();
        // 211,600 points; as a model half of the sections, and of the points of each, would stay.
        const std::string text = test::numberedApt(460, 460) + tail;
        result_ = readApt(test::writeFileText(folder_ / "a.apt", text), patches_, {}, AptDetail::Whole);
        expectQuietEnd();
        EXPECT_TRUE(test::sameModel(patches_, {test::numberedPatch(460, 460)})) << tail;
        EXPECT_EQ(result_.pointsKept, 211'600);
        EXPECT_FALSE(result_.thinned);
        EXPECT_FALSE(result_.record.thinned);
        read(text);
        EXPECT_TRUE(result_.thinned);
    }
}

TEST_F(AptLimitTest, WhatIsWantedWholeHasNoLimit) {
    for (const char* const tail : {"", behind}) {
        patches_.clear();
        const std::string text = halves(572, 65, 65) + tail;
        result_ = readApt(test::writeFileText(folder_ / "a.apt", text), patches_, {}, AptDetail::Whole);
        expectQuietEnd();
        EXPECT_EQ(patches_.size(), 572U);
        EXPECT_EQ(pointTotal(patches_), 572 * 65 * 65) << tail;
        EXPECT_FALSE(result_.cutAtLimit);
    }
}

TEST_F(AptReaderTest, RealFilesHaveTheirPatches) {
    const std::filesystem::path data = VELMORA_TEST_DATA;
    result_ = readApt(data / "m100_wingbody.apt", patches_);
    expectQuietEnd();
    EXPECT_THAT(test::shapeOf(patches_), ElementsAre(Pair(81, 69), Pair(35, 82), Pair(34, 82)));
    EXPECT_EQ(result_.pointsKept, 11247);
    EXPECT_EQ(patches_[0][0][0], zVec<double>(0.0, -3.4096676e-16, 0.0));

    patches_.clear();
    result_ = readApt(data / "even_sphere.apt", patches_);
    expectQuietEnd();
    EXPECT_EQ(test::shapeOf(patches_), (std::vector<std::pair<std::size_t, std::size_t>>(6, {5, 5})));
    EXPECT_EQ(patches_[0][0][2], zVec<double>(-0.7066749879750713, -0.7075358830760348, -1.4616903155613796E-009));

    patches_.clear();
    result_ = readApt(data / "dome.apt", patches_);
    expectQuietEnd();
    ASSERT_EQ(patches_.size(), 31U);
    for (std::size_t k = 0; k < patches_.size(); ++k) {
        EXPECT_EQ(test::sectionSizes(patches_[k]), std::vector<std::size_t>(k + 3, 1));
    }
    EXPECT_EQ(patches_[15][0][0], zVec<double>(0.0, -1.6, 0.0));
    EXPECT_EQ(patches_[0][2][0], zVec<double>(-1.5, 0.556776436283, 0.0));
}

} // namespace
} // namespace velmora

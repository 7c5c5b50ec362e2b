#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FileSizeLimit.h"
#include "apt.h"
#include "format_test_tools.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

using testing::ElementsAre;

const PatchList small{{{{1.0, -0.5, 0.1}, {0.0, -0.0, 1024.0}}, {{3.0, 4.0, 5.0}, {6.0, 7.0, 8.0}}},
                      {{{9.0, 1e300, 5e-324}}}};

TEST(AptWriter, EveryByteOfTheFileIsDetermined) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeApt(folder / "a.apt", small, 16));
    EXPECT_EQ(test::fileText(folder / "a.apt"),
              "2 2\n"
              "1.0000000000000000e+00 -5.0000000000000000e-01 1.0000000000000001e-01\n"
              "0.0000000000000000e+00 -0.0000000000000000e+00 1.0240000000000000e+03\n"
              "3.0000000000000000e+00 4.0000000000000000e+00 5.0000000000000000e+00\n"
              "6.0000000000000000e+00 7.0000000000000000e+00 8.0000000000000000e+00\n"
              "1 1\n"
              "9.0000000000000000e+00 1.0000000000000001e+300 4.9406564584124654e-324\n");
}

TEST(AptWriter, ThePrecisionIsTheNumberOfDigitsBehindThePoint) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeApt(folder / "a.apt", {{{{1.0, -2.5, 1.0 / 3.0}}}}, 3));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "1 1\n1.000e+00 -2.500e+00 3.333e-01\n");
}

TEST(AptWriter, AModelWithoutPatchesIsAnEmptyFile) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeApt(folder / "a.apt", {}, 16));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "");
}

TEST(AptWriter, APatchWithoutSectionsAndSectionsWithoutPointsHaveOnlyAHeader) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeApt(folder / "a.apt", {Patch{}, Patch(3)}, 16));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "0 0\n3 0\n");
}

TEST(AptWriter, AShorterSectionIsRefusedBeforeTheFileIsTouched) {
    const test::TemporaryFolder folder;
    test::writeFileText(folder / "a.apt", "old");
    PatchList patches{test::numberedPatch(3, 4)};
    patches[0][1].pop_back();
    EXPECT_FALSE(writeApt(folder / "a.apt", patches, 16));
    EXPECT_FALSE(writeApt(folder / "b.apt", patches, 16));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a.apt"));
}

TEST(AptWriter, OfALongerSectionAsManyPointsAreWrittenAsTheFirstOneHas) {
    const test::TemporaryFolder folder;
    PatchList patches{test::numberedPatch(3, 2)};
    patches[0][1].emplace_back(9.0, 9.0, 9.0);
    ASSERT_TRUE(writeApt(folder / "a.apt", patches, 0));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "3 2\n0e+00 0e+00 0e+00\n0e+00 1e+00 0e+00\n1e+00 0e+00 0e+00\n"
                                                "1e+00 1e+00 0e+00\n2e+00 0e+00 0e+00\n2e+00 1e+00 0e+00\n");
}

TEST(AptWriter, ABlockIsWrittenInTheOrderOfItsSelection) {
    const test::TemporaryFolder folder;
    const PatchList patches{{{{0.0, 0.0, 0.0}}}, {{{1.0, 0.0, 0.0}}}, {{{2.0, 0.0, 0.0}}}};
    constexpr std::array<std::int32_t, 9> selection{2,       -1, 0, 3, 2, std::numeric_limits<std::int32_t>::min(),
                                                    1000000, -5, 1};
    ASSERT_TRUE(writeAptBlock(folder / "a.apt", patches, selection, 0));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "1 1\n2e+00 0e+00 0e+00\n1 1\n0e+00 0e+00 0e+00\n"
                                                "1 1\n2e+00 0e+00 0e+00\n1 1\n1e+00 0e+00 0e+00\n");
}

TEST(AptWriter, OnlyThePatchesOfTheBlockDecideWhetherItCanBeWritten) {
    const test::TemporaryFolder folder;
    PatchList patches{test::numberedPatch(2, 2), test::numberedPatch(2, 2)};
    patches[1][1].clear();
    EXPECT_TRUE(writeAptBlock(folder / "a.apt", patches, std::array<std::int32_t, 1>{0}, 16));
    EXPECT_FALSE(writeAptBlock(folder / "b.apt", patches, std::array<std::int32_t, 2>{0, 1}, 16));
    EXPECT_THAT(folder.names(), ElementsAre("a.apt"));
}

TEST(AptWriter, AnEmptySelectionIsAnEmptyFile) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeAptBlock(folder / "a.apt", small, {}, 16));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "");
}

TEST(AptWriter, WhatCannotBeWrittenIsToldAndLeavesTheOldFile) {
    const test::TemporaryFolder folder;
    EXPECT_FALSE(writeApt(folder / "missing/a.apt", small, 16));
    EXPECT_FALSE(writeApt(folder.path(), small, 16));
    const test::FileSizeLimit full(0);
    EXPECT_FALSE(writeApt(folder / "full", small, 16));
    EXPECT_FALSE(writeAptBlock(folder / "full", small, std::array<std::int32_t, 1>{0}, 16));
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(AptWriter, WhatIsWrittenIsReadAgainBitForBit) {
    using Limits = std::numeric_limits<double>;
    std::mt19937_64 random(3);
    const auto any = [&random] {
        double value = std::bit_cast<double>(random());
        while (value - value != 0.0) {
            value = std::bit_cast<double>(random());
        }
        return value;
    };
    PatchList patches{{{{-0.0, 0.0, Limits::denorm_min()}, {Limits::max(), Limits::lowest(), Limits::min()}},
                       {{-Limits::denorm_min(), 0.1, 1.0 / 3.0}, {2.2250738585072011e-308, 1e22, 1e23}}}};
    patches.emplace_back(40);
    for (PointList& section : patches.back()) {
        for (int m = 0; m < 50; ++m) {
            section.emplace_back(any(), any(), any());
        }
    }
    patches.emplace_back();
    patches.emplace_back(2);
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeApt(folder / "a.apt", patches, 16));
    PatchList again;
    const AptReadResult result = readApt(folder / "a.apt", again);
    EXPECT_TRUE(result.faults.empty());
    EXPECT_TRUE(test::sameModel(again, patches));
}

TEST(AptWriter, ANumberThatCouldNotBeReadAgainIsRefusedWithItsPlaceBeforeTheFileIsTouched) {
    const test::TemporaryFolder folder;
    test::writeFileText(folder / "a.apt", "old");
    PatchList patches{test::numberedPatch(2, 2), test::numberedPatch(2, 3)};
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        patches[1][1][2].y = bad;
        const WriteOutcome outcome = writeApt(folder / "a.apt", patches, 1);
        EXPECT_FALSE(outcome.written);
        EXPECT_EQ(outcome.problem,
                  "Patch 2, section 2, point 3: the number is not finite, and could not be read again");
        EXPECT_EQ(writeAptBlock(folder / "a.apt", patches, std::array<std::int32_t, 1>{1}, 1).problem, outcome.problem);
    }
    EXPECT_TRUE(writeAptBlock(folder / "b.apt", patches, std::array<std::int32_t, 1>{0}, 1));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "old");
}

TEST(AptWriter, TheOutcomeTellsWhatWasWritten) {
    const test::TemporaryFolder folder;
    const WriteOutcome outcome = writeApt(folder / "a.apt", {test::numberedPatch(2, 3), test::numberedPatch(4, 5)}, 1);
    EXPECT_TRUE(outcome.written);
    EXPECT_EQ(outcome.record.path, folder / "a.apt");
    EXPECT_EQ(outcome.record.bytes, test::fileText(folder / "a.apt").size());
    EXPECT_EQ(outcome.record.format, "apt");
    EXPECT_EQ(outcome.record.counts, (Counts{{"patches", 2}, {"points", 26}}));
}

} // namespace
} // namespace velmora

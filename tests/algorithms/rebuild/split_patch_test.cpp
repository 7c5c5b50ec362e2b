#include "split_patch.h"

#include "surface_samples.h"

namespace velmora::test {

TEST(SplitAtSection, LeavesTheCutInBothHalves) {
    const Patch whole = flatPatch(7, 4);
    PatchList list = {flatPatch(2, 2), whole, flatPatch(3, 3)};
    EXPECT_TRUE(splitAtSection(list, 1, 3));
    ASSERT_EQ(list.size(), 4U);
    EXPECT_EQ(list[0], flatPatch(2, 2));
    EXPECT_EQ(list[1], Patch(whole.begin(), whole.begin() + 4));
    EXPECT_EQ(list[2], Patch(whole.begin() + 3, whole.end())); // 4 and 7 - 3 sections
    EXPECT_EQ(list[3], flatPatch(3, 3));
}

TEST(SplitAtSection, OfSectionsOfDifferentLengthsKeepsThem) {
    Patch whole = flatPatch(3, 3);
    whole[1].resize(2);
    PatchList list = {whole};
    EXPECT_TRUE(splitAtSection(list, 0, 1));
    EXPECT_EQ(list, (PatchList{{whole[0], whole[1]}, {whole[1], whole[2]}}));
}

TEST(SplitAtLine, LeavesTheCutInBothHalves) {
    PatchList list = {flatPatch(2, 2), flatPatch(3, 6)};
    EXPECT_TRUE(splitAtLine(list, 1, 2));
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[1], flatPatch(3, 3));
    EXPECT_EQ(list[2], moved(flatPatch(3, 4), {2, 0, 0}));
}

TEST(SplitPatch, AtABorderOrOutsideDoesNothing) {
    const PatchList before = {flatPatch(4, 5)};
    PatchList list = before;
    for (const std::int32_t N : {-1, 0, 3, 4, 99}) {
        EXPECT_FALSE(splitAtSection(list, 0, N)) << N;
    }
    for (const std::int32_t L : {-1, 0, 4, 5, 99}) {
        EXPECT_FALSE(splitAtLine(list, 0, L)) << L;
    }
    for (const std::int32_t K : {-1, 1}) {
        EXPECT_FALSE(splitAtSection(list, K, 1));
        EXPECT_FALSE(splitAtLine(list, K, 1));
    }
    EXPECT_EQ(list, before);
}

TEST(SplitAtLine, OfSectionsOfDifferentLengthsDoesNothing) {
    Patch ragged = flatPatch(3, 5);
    ragged[1].resize(2);
    PatchList list = {ragged, {}};
    EXPECT_FALSE(splitAtLine(list, 0, 2));
    EXPECT_FALSE(splitAtLine(list, 1, 1));
    EXPECT_FALSE(splitAtSection(list, 1, 1));
    EXPECT_EQ(list[0], ragged);
}

} // namespace velmora::test

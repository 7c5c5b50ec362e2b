#include "merge_patches.h"

#include "surface_samples.h"

namespace velmora::test {

namespace {

MergeMembers membersOf(const PatchList& list, const std::vector<std::int32_t>& block) {
    return mergeMembers(list, block);
}

} // namespace

TEST(MergeMembers, TakeTheFirstAsBaseAndKeepTheOrder) {
    const PatchList list(4, flatPatch(2, 2));
    const MergeMembers members = membersOf(list, {2, 0, 3});
    EXPECT_EQ(members.base, 2);
    EXPECT_THAT(members.others, ElementsAre(0, 3));
}

TEST(MergeMembers, RepeatThePatchBeforeANegativeEntryAndPassOverWhatIsNoPatch) {
    const PatchList list(4, flatPatch(2, 2));
    EXPECT_THAT(membersOf(list, {2, 0, -1, 3, 9}).others, ElementsAre(0, 0, 3));
    EXPECT_EQ(membersOf(list, {}).base, -1);
    EXPECT_EQ(membersOf(list, {-1, 2}).base, -1);
    EXPECT_EQ(membersOf(list, {4, 2}).base, -1);
}

TEST(CanMerge, ComparesThePointsOfFirstSectionsOrTheNumbersOfSections) {
    const PatchList list = {flatPatch(2, 3), flatPatch(4, 3), flatPatch(2, 5)};
    EXPECT_TRUE(canMerge(list, {0, {1}}, false));
    EXPECT_FALSE(canMerge(list, {0, {1}}, true));
    EXPECT_FALSE(canMerge(list, {0, {1, 2}}, false));
    EXPECT_TRUE(canMerge(list, {0, {2}}, true));
}

TEST(MergeBySections, OfFiveAndFiveGivesNine) {
    for (const double height : {4.0, 7.0}) { // the first section of the second coincides, or does not
        PatchList list = {flatPatch(5, 4), moved(flatPatch(5, 4), {0, height, 0})};
        const Patch added = list[1];
        const MergeMembers members{0, {1}};
        appendSections(list, members, {});
        removeMerged(list, members);
        ASSERT_EQ(list.size(), 1U);
        ASSERT_EQ(list[0].size(), 9U);
        EXPECT_EQ(Patch(list[0].begin() + 5, list[0].end()), Patch(added.begin() + 1, added.end()));
    }
}

TEST(MergeBySections, FollowsTheOrderOfTheMembersNotOfThePatches) {
    PatchList list = {flatPatch(2, 3, 1), flatPatch(2, 3, 2), flatPatch(2, 3, 3), flatPatch(2, 3, 4)};
    const MergeMembers members{2, {3, 0}};
    appendSections(list, members, {});
    removeMerged(list, members);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0], flatPatch(2, 3, 2));
    std::vector<double> heights;
    for (const PointList& section : list[1]) {
        heights.push_back(section[0].z);
    }
    EXPECT_THAT(heights, ElementsAre(3, 3, 4, 1));
}

TEST(MergeBySections, WithMatchingTakesTheSpacingOfTheBasesLastSection) {
    Patch base = flatPatch(3, 5);
    base[2] = rowAt({0, 1, 4, 6, 8}, 2);
    PatchList list = {base, moved(flatPatch(3, 5), {0, 2, 0})};
    appendSections(list, {0, {1}}, {true, false});
    ASSERT_EQ(list[0].size(), 5U);
    for (const std::size_t s : {3U, 4U}) {
        EXPECT_THAT(along(list[0][s]), Pointwise(DoubleNear(1e-9), {0.0, 0.5, 2.0, 3.0, 4.0})) << s;
    }
}

TEST(MergeBySections, WithMatchingGoesAlongTheChordsWherePointsCoincide) {
    Patch base = flatPatch(2, 5);
    base[1] = rowAt({0, 1, 4, 6, 8}, 1);
    Patch added = {rowAt({0, 1, 2, 3, 4}, 1), rowAt({0, 0, 1, 2, 8}, 2)};
    PatchList list = {base, added};
    appendSections(list, {0, {1}}, {true, false});
    EXPECT_THAT(along(list[0][2]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 4.0, 6.0, 8.0}));
}

TEST(MergeBySections, OfThreePointsWithMatchingGetsEqualSteps) {
    PatchList list = {{rowAt({0, 1, 4}), rowAt({0, 1, 4}, 1)}, {rowAt({0, 3, 4}, 1), rowAt({0, 3, 4}, 2)}};
    appendSections(list, {0, {1}}, {true, false});
    EXPECT_THAT(along(list[0][2]), ElementsAre(0, 2, 4));
}

TEST(MergeBySections, WithMatchingToASectionOfNoLengthKeepsThePoints) {
    PatchList list = {{rowAt({0, 1, 2, 3}), rowAt({1, 1, 1, 1}, 1)}, {rowAt({0, 1, 2, 3}, 1), rowAt({0, 1, 2, 3}, 2)}};
    appendSections(list, {0, {1}}, {true, false});
    EXPECT_EQ(list[0][2], rowAt({0, 1, 2, 3}, 2));
}

TEST(MergeByLines, AppendsTheLinesSectionBySectionButTheFirst) {
    PatchList list = {flatPatch(3, 4), moved(flatPatch(3, 3), {3, 0, 0})};
    const MergeMembers members{0, {1}};
    appendLines(list, members, {});
    removeMerged(list, members);
    EXPECT_EQ(list, PatchList{flatPatch(3, 6)});
}

TEST(MergeByLines, KeepsTheFirstLineWhenTold) {
    PatchList list = {flatPatch(2, 2), moved(flatPatch(2, 2), {1, 0, 0})};
    appendLines(list, {0, {1}}, {false, true});
    EXPECT_THAT(along(list[0][1]), ElementsAre(0, 1, 1, 2));
}

TEST(MergeByLines, WithMatchingTakesTheSpacingOfTheBasesLastLine) {
    Patch base = flatPatch(5, 2);
    const double y[] = {0, 1, 4, 6, 8};
    for (std::size_t i = 0; i < 5; ++i) {
        base[i][1].y = y[i];
    }
    PatchList list = {base, moved(flatPatch(5, 2), {1, 0, 0})};
    appendLines(list, {0, {1}}, {true, false});
    std::vector<double> line;
    for (const PointList& section : list[0]) {
        ASSERT_EQ(section.size(), 3U);
        line.push_back(section[2].y);
    }
    EXPECT_THAT(line, Pointwise(DoubleNear(1e-9), {0.0, 0.5, 2.0, 3.0, 4.0}));
}

TEST(MergePatches, OfThePatchWithItselfEndsAndKeepsIt) {
    PatchList list = {flatPatch(3, 2)};
    const MergeMembers members = membersOf(list, {0, -1});
    appendSections(list, members, {true, false});
    removeMerged(list, members);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].size(), 5U);
}

} // namespace velmora::test

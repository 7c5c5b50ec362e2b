#include "patch_curves.h"

#include "surface_samples.h"

namespace velmora::test {

TEST(IsGrid, NeedsSectionsOfOneLengthWithPoints) {
    EXPECT_TRUE(isGrid(flatPatch(3, 4)));
    EXPECT_TRUE(isGrid(flatPatch(1, 1)));
    EXPECT_FALSE(isGrid({}));
    EXPECT_FALSE(isGrid({{}, {}}));
    EXPECT_FALSE(isGrid({rowAt({0, 1}), rowAt({0, 1, 2})}));
}

TEST(PatchCurve, IsASectionOrALine) {
    Patch patch = {rowAt({0, 1, 2}, 0), rowAt({0, 1, 2}, 5)};
    const PatchCurve section(patch, false, 1);
    const PatchCurve line(patch, true, 2);
    EXPECT_EQ(section.count(), 3);
    EXPECT_EQ(line.count(), 2);
    EXPECT_EQ(section[2], zVec<double>(2, 5, 0));
    EXPECT_EQ(line[0], zVec<double>(2, 0, 0));
    line[1] = {7, 8, 9};
    EXPECT_EQ(patch[1][2], zVec<double>(7, 8, 9));
}

TEST(PatchCurve, LawIsTheRunningLengthOfTheChords) {
    const Patch patch = {{{0, 0, 0}, {3, 4, 0}}, {{0, 0, 2}, {3, 4, 12}}, {{0, 0, 5}, {0, 0, 5}}};
    EXPECT_THAT(ConstPatchCurve(patch, false, 0).law(), ElementsAre(0, 5));
    EXPECT_THAT(ConstPatchCurve(patch, true, 0).law(), ElementsAre(0, 2, 5));
    EXPECT_THAT(ConstPatchCurve(patch, false, 2).law(), ElementsAre(0, 0));
}

TEST(PatchCurve, TakesBackWhatItGave) {
    Patch patch = {rowAt({0, 1, 4}), rowAt({9, 9, 9})};
    Respacer respacer;
    respacer.add({50, 0, 0}); // of a curve before
    const PatchCurve section(patch, false, 0);
    section.give(respacer);
    respacer.respace(false, 3, 1, 0);
    section.take(respacer);
    EXPECT_THAT(along(patch[0]), ElementsAre(0, 2, 4));
    EXPECT_EQ(patch[1], rowAt({9, 9, 9}));
}

} // namespace velmora::test

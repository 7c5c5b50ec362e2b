#include "regrid.h"

#include "surface_samples.h"

namespace velmora::test {

TEST(RegridLikeSection, GivesTheOthersItsSpacing) {
    const PointList followed = rowAt({0, 1, 2, 4});
    Patch patch = {rowAt({10, 12, 17, 18}), followed, rowAt({0, 1, 2, 3}, 6)};
    regridLikeSection(patch, 1);
    // A quarter, a half and the whole of the lengths 8 and 3.
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {10.0, 12.0, 14.0, 18.0}));
    EXPECT_EQ(patch[1], followed);
    EXPECT_THAT(along(patch[2]), Pointwise(DoubleNear(1e-12), {0.0, 0.75, 1.5, 3.0}));
}

TEST(RegridLikeSection, OfRepeatedPointsGoesAlongTheChords) {
    Patch patch = {rowAt({0, 1, 2, 4}), rowAt({0, 0, 2, 8})};
    regridLikeSection(patch, 0);
    EXPECT_THAT(along(patch[1]), Pointwise(DoubleNear(1e-12), {0.0, 2.0, 4.0, 8.0}));
}

TEST(RegridLikeSection, OfFewerThanFourPointsGivesEqualSteps) {
    Patch patch = {rowAt({0, 1, 4}), rowAt({0, 3, 4})};
    regridLikeSection(patch, 0);
    EXPECT_THAT(along(patch[1]), ElementsAre(0, 2, 4));
}

TEST(RegridLikeSection, LeavesSectionsOfAnotherCount) {
    Patch patch = {rowAt({0, 1, 2, 4}), rowAt({0, 3, 4}), {}};
    const Patch before = patch;
    regridLikeSection(patch, 0);
    EXPECT_EQ(patch, before);
}

TEST(RegridLikeSection, WithoutALengthSaysNothing) {
    Patch patch = {rowAt({3, 3, 3, 3}), rowAt({0, 1, 2, 4})};
    const Patch before = patch;
    regridLikeSection(patch, 0);
    EXPECT_EQ(patch, before);
}

TEST(RegridLikeLine, GivesTheOthersItsSpacing) {
    // Line 0 at x = 0, 1, 2, 4; line 1 at 0, 1, 3, 8.
    Patch patch = {rowAt({0, 0}), rowAt({1, 1}), rowAt({2, 3}), rowAt({4, 8})};
    regridLikeLine(patch, 0);
    const double expected[] = {0, 2, 4, 8};
    for (std::size_t n = 0; n < 4; ++n) {
        EXPECT_NEAR(patch[n][1].x, expected[n], 1e-12) << n;
    }
    EXPECT_EQ(patch[2][0].x, 2);
}

TEST(RegridLikeLine, LeavesLinesThatDoNotRunThroughThePatch) {
    Patch patch = {rowAt({0, 0, 0}), rowAt({1, 1, 1}), rowAt({2, 3, 3}), rowAt({4, 8})};
    regridLikeLine(patch, 0);
    EXPECT_NEAR(patch[1][1].x, 2, 1e-12);
    EXPECT_EQ(patch[1][2].x, 1);
    EXPECT_EQ(patch[2][2].x, 3);
}

} // namespace velmora::test

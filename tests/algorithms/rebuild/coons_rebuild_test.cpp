#include "coons_rebuild.h"

#include "patch_curves.h"
#include "patch_order.h"
#include "random_patches.h"
#include "surface_samples.h"

namespace velmora::test {

namespace {

Patch rebuilt(Patch patch) {
    coonsRebuild(patch);
    return patch;
}

bool isBorder(const Patch& patch, std::size_t n, std::size_t m) {
    return n == 0 || m == 0 || n + 1 == patch.size() || m + 1 == patch[n].size();
}

} // namespace

TEST(Coons, OfAFlatUniformPatchLeavesIt) {
    const Patch before = flatPatch(6, 5);
    const Patch after = rebuilt(before);
    for (std::size_t n = 0; n < 6; ++n) {
        EXPECT_THAT(along(after[n]), Pointwise(DoubleNear(1e-12), along(before[n])));
        EXPECT_THAT(along(after[n], &zVec<double>::y),
                    Pointwise(DoubleNear(1e-12), along(before[n], &zVec<double>::y)));
    }
}

TEST(Coons, KeepsTheBordersBitByBit) {
    samples::Source source(3);
    for (int round = 0; round < 50; ++round) {
        const Patch before = samples::randomPatch(source, source.whole(2, 8), source.whole(2, 8), true);
        const Patch after = rebuilt(before);
        for (std::size_t n = 0; n < before.size(); ++n) {
            for (std::size_t m = 0; m < before[n].size(); ++m) {
                EXPECT_TRUE(!isBorder(before, n, m) || after[n][m] == before[n][m]);
            }
        }
    }
}

TEST(Coons, BringsAWrinkledInsideBackToThePlaneOfItsBorders) {
    Patch patch = flatPatch(5, 7);
    for (std::size_t n = 1; n < 4; ++n) {
        for (std::size_t m = 1; m < 6; ++m) {
            patch[n][m].z = n % 2 == 0 ? 0.5 : -0.5;
            patch[n][m].x += 0.2;
        }
    }
    const Patch after = rebuilt(patch);
    for (std::size_t n = 0; n < 5; ++n) {
        EXPECT_THAT(along(after[n]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0}));
        EXPECT_THAT(along(after[n], &zVec<double>::z), testing::Each(DoubleNear(0, 1e-12)));
    }
}

TEST(Coons, GivesTheStraightBlendOfTwoCurvedBorders) {
    Patch patch = flatPatch(3, 3);
    patch[0][1].z = 1; // chords stay equal on both sides of it
    patch[2][1].z = 3;
    EXPECT_NEAR(rebuilt(patch)[1][1].z, 2.0, 1e-12);
}

TEST(Coons, CountsFromTheSecondPointOnABorderOfNoLength) {
    // A fan from one point; the right-hand side bulges by 1 at half its length.
    const Patch fan = {
        {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, {{-0.5, 1, 0}, {9, 9, 9}, {0.5, 1, 1}}, {{-1, 2, 0}, {0, 2, 0}, {1, 2, 0}}};
    // a = 0 and b = 1/2 at the middle, both sides at 1/2: u = 1/4. Counted from the first point it would be 1/2.
    const zVec<double> middle = rebuilt(fan)[1][1];
    EXPECT_NEAR(middle.x, 0.0, 1e-12);
    EXPECT_NEAR(middle.y, 1.0, 1e-12);
    EXPECT_NEAR(middle.z, 0.25, 1e-12);
}

TEST(Coons, CountsFromTheSecondSectionOnALineOfNoLength) {
    // The same fan with sections and lines exchanged: s0 = 0 and s1 = 1/2 at the middle.
    const Patch fan = {
        {{0, 0, 0}, {-0.5, 1, 0}, {-1, 2, 0}}, {{0, 0, 0}, {9, 9, 9}, {0, 2, 0}}, {{0, 0, 0}, {0.5, 1, 1}, {1, 2, 0}}};
    // The last section is the bulge: w = (0 + 1/2 * 1/2) / 1 = 1/4.
    const zVec<double> middle = rebuilt(fan)[1][1];
    EXPECT_NEAR(middle.z, 0.25, 1e-12);
}

TEST(Coons, OfAPatchGivenTheOtherWayRoundGivesTheMirrorResult) {
    samples::Source source(4);
    const Patch patch = samples::randomPatch(source, 6, 7, false);
    Patch turned = patch;
    reverseLines(turned);
    turned = rebuilt(turned);
    reverseLines(turned);
    const Patch straight = rebuilt(patch);
    const Patch exchanged = transposed(rebuilt(transposed(patch)));
    for (std::size_t n = 0; n < 6; ++n) {
        for (const auto axis : {&zVec<double>::x, &zVec<double>::y, &zVec<double>::z}) {
            EXPECT_THAT(along(turned[n], axis), Pointwise(DoubleNear(1e-9), along(straight[n], axis)));
        }
    }
    EXPECT_EQ(exchanged.size(), straight.size());
}

TEST(Coons, LeavesAPointWhoseParameterLinesDoNotCross) {
    // Along the first section all of the way lies behind the middle, along the last one all before it; on the lines the
    // same: both parameter lines are diagonals.
    const Patch patch = {
        {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}}, {{0, 0, 0}, {7, 8, 9}, {1, 1, 0}}, {{0, 1, 0}, {1, 1, 0}, {1, 1, 0}}};
    EXPECT_EQ(rebuilt(patch), patch);
}

TEST(Coons, OfFewCurvesOrNoGridLeavesThePatch) {
    Patch ragged = flatPatch(4, 5);
    ragged[2].resize(3);
    for (const Patch& before : {Patch{}, flatPatch(2, 6), flatPatch(6, 2), flatPatch(1, 1), ragged}) {
        EXPECT_EQ(rebuilt(before), before);
    }
}

} // namespace velmora::test

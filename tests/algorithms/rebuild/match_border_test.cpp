#include "match_border.h"

#include "patch_curves.h"
#include "regrid.h"
#include "surface_samples.h"

namespace velmora::test {

namespace {

int numberOf(const Border& a, const Border& b, bool reversed) {
    return 4 * ((a.line ? 4 : 0) + (b.line ? 2 : 0) + (reversed ? 1 : 0)) + (a.last ? 2 : 0) + (b.last ? 1 : 0);
}

/// The chosen pairing's number, -1 for none.
int chosen(const Patch& a, const Patch& b) {
    double gap = 0;
    return nearestBorders(a, b, gap).value_or(-1);
}

} // namespace

TEST(BorderPairings, AreNumberedByKindThenByBorderOfAThenOfB) {
    const bool choices[] = {false, true};
    for (const bool lineOfA : choices) {
        for (const bool lineOfB : choices) {
            for (const bool reversed : choices) {
                for (const bool lastOfA : choices) {
                    for (const bool lastOfB : choices) {
                        const Border a{lineOfA, lastOfA};
                        const Border b{lineOfB, lastOfB};
                        const BorderPairing pairing = borderPairing(numberOf(a, b, reversed));
                        EXPECT_EQ(pairing.a.line, lineOfA);
                        EXPECT_EQ(pairing.a.last, lastOfA);
                        EXPECT_EQ(pairing.b.line, lineOfB);
                        EXPECT_EQ(pairing.b.last, lastOfB);
                        EXPECT_EQ(pairing.reversed, reversed);
                    }
                }
            }
        }
    }
}

TEST(BorderGap, IsTheMeanDistanceInTheDirectionOfThePairing) {
    const Patch a = {rowAt({0, 1, 2})};
    const Patch b = {rowAt({0, 1, 5}, 0)};
    EXPECT_DOUBLE_EQ(borderGap(a, b, borderPairing(0)), 1.0);               // 0, 0, 3
    EXPECT_DOUBLE_EQ(borderGap(a, b, borderPairing(4)), (5.0 + 0 + 2) / 3); // reversed
}

TEST(BorderGap, OfDifferentCountsOrWithoutABorderIsMinusOne) {
    EXPECT_EQ(borderGap(flatPatch(2, 3), flatPatch(2, 4), borderPairing(0)), -1.0);
    EXPECT_EQ(borderGap(flatPatch(2, 3), {}, borderPairing(0)), -1.0);
    Patch ragged = flatPatch(3, 4);
    ragged[1].resize(3);
    Patch copy = ragged;
    const BorderPairing lastLines = borderPairing(numberOf({true, true}, {true, true}, false));
    EXPECT_EQ(borderGap(ragged, ragged, lastLines), -1.0);
    EXPECT_FALSE(borderCopy(ragged, copy, lastLines));
    EXPECT_EQ(copy, ragged);
    EXPECT_EQ(borderGap(ragged, ragged, borderPairing(numberOf({true, false}, {true, false}, false))), 0.0);
}

TEST(MatchBorder, PutsEachBorderOfTheSecondOntoEachOfTheFirstInBothDirections) {
    for (int number = 0; number < pairingCount; ++number) {
        const BorderPairing pairing = borderPairing(number);
        const Patch a = flatPatch(4, 4);
        Patch b = moved(flatPatch(4, 4, 50), {100, 0, 0}); // far from a but for the border that is to match
        borderCopy(a, b, pairing);
        const Patch touching = b;
        b = moved(b, {0, 0, 0.05});
        EXPECT_EQ(chosen(a, b), number);
        const Patch before = b;
        ASSERT_TRUE(matchBorder(a, b, false)) << number;
        EXPECT_EQ(borderGap(a, b, pairing), 0.0) << number;
        int changed = 0;
        for (std::size_t n = 0; n < 4; ++n) {
            for (std::size_t m = 0; m < 4; ++m) {
                changed += b[n][m] == before[n][m] ? 0 : 1;
            }
        }
        EXPECT_EQ(changed, 4) << number; // the border alone
    }
}

TEST(MatchBorder, FartherThanItsReachChangesNothing) {
    const Patch a = flatPatch(3, 4);
    for (const double apart : {0.11, 5.0}) {
        const Patch before = moved(a, {3 + apart, 0, 0});
        Patch b = before;
        EXPECT_FALSE(matchBorder(a, b, true));
        EXPECT_EQ(b, before);
    }
    Patch near = moved(a, {3.0999, 0, 0});
    EXPECT_TRUE(matchBorder(a, near, false));
}

TEST(MatchBorder, FindsABorderWithinAMillion) {
    const Patch a = flatPatch(2, 2);
    EXPECT_EQ(chosen(a, moved(a, {0, 0, 999999})), 0);
    EXPECT_EQ(chosen(a, moved(a, {0, 0, 1000000})), -1);
}

TEST(MatchBorder, NeverTakesBordersOfDifferentCounts) {
    const Patch a = flatPatch(3, 4);
    Patch touching = moved(flatPatch(5, 6), {3, 0, 0});
    EXPECT_EQ(chosen(a, touching), -1);
    EXPECT_FALSE(matchBorder(a, touching, false));
    Patch none;
    EXPECT_FALSE(matchBorder(a, none, true));
    EXPECT_FALSE(matchBorder({}, none, true));
}

TEST(MatchBorder, OfEqualGapsTakesTheLowerNumber) {
    const Patch a = {rowAt({0, 1, 2}), rowAt({0, 1, 2})}; // both sections in one place
    EXPECT_EQ(chosen(a, moved(a, {0, 0, 0.0625})), 0);
}

TEST(MatchBorderAndGrid, GivesTheOtherLinesTheSpacingOfTheBorder) {
    Patch a = flatPatch(5, 3);
    const double y[] = {0, 0.9, 2.1, 3.2, 4};
    for (std::size_t i = 0; i < 5; ++i) {
        a[i][2].y = y[i];
    }
    Patch b = moved(flatPatch(5, 3), {2.02, 0, 0});
    for (PointList& section : b) {
        section[2].y *= 2; // this line is twice as long
    }
    ASSERT_TRUE(matchBorder(a, b, true));
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(b[i][0], a[i][2]);
        EXPECT_NEAR(b[i][1].y, y[i], 1e-9);
        EXPECT_NEAR(b[i][2].y, 2 * y[i], 1e-9);
        EXPECT_NEAR(b[i][1].x, 3.02, 1e-9);
    }
}

TEST(MatchBorderAndGrid, GivesTheOtherSectionsTheSpacingOfTheBorder) {
    Patch a = flatPatch(3, 5);
    a[2] = rowAt({0, 0.9, 2.1, 3.2, 4}, 2);
    Patch b = moved(flatPatch(3, 5), {0, 2.02, 0});
    ASSERT_TRUE(matchBorder(a, b, true));
    EXPECT_EQ(b[0], a[2]);
    for (const std::size_t s : {1U, 2U}) {
        EXPECT_THAT(along(b[s]), Pointwise(DoubleNear(1e-9), {0.0, 0.9, 2.1, 3.2, 4.0}));
    }
}

TEST(MatchBorderAndGrid, ToABorderOfNoLengthKeepsTheRest) {
    const Patch a = {rowAt({0, 1, 2, 3}, -1), rowAt({0, 0, 0, 0})};
    Patch b = {rowAt({0.05, 0.05, 0.05, 0.05}), rowAt({0, 1, 2, 3}, 1)};
    ASSERT_TRUE(matchBorder(a, b, true));
    EXPECT_EQ(b, (Patch{a[1], rowAt({0, 1, 2, 3}, 1)}));
}

TEST(MatchBorder, OfAPatchWithItselfLeavesIt) {
    Patch a = flatPatch(3, 4);
    EXPECT_TRUE(matchBorder(a, a, false));
    EXPECT_EQ(a, flatPatch(3, 4));
}

TEST(RegridLikeLine, LeavesLinesThatDoNotRunThroughTheWholePatch) {
    Patch ragged = flatPatch(5, 3);
    ragged[1].resize(2);
    for (std::size_t i = 0; i < 5; ++i) {
        ragged[i][0].y = static_cast<double>(i * i) / 4;
    }
    const Patch before = ragged;
    regridLikeLine(ragged, 0);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_NEAR(ragged[i][1].y, before[i][0].y, 1e-9);
    }
    EXPECT_EQ(ragged[2][2], before[2][2]);
}

} // namespace velmora::test

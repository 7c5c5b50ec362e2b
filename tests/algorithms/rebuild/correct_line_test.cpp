#include "correct_line.h"

#include <algorithm>
#include <cmath>

#include "patch_order.h"
#include "surface_samples.h"

namespace velmora::test {

TEST(CorrectLine, RunsFromThePointToTheOldPlaceAtTheOtherBorder) {
    Patch patch = flatPatch(3, 5);
    // The line at x = 3 shall start at x = 1: with power 1 it passes x = 2 half way.
    ASSERT_TRUE(correctLine(patch, 0, {.point = 1, .line = 3, .before = 3, .after = 3, .power = 1.0}));
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {0.0, 0.5, 1.0, 2.5, 4.0}));
    EXPECT_THAT(along(patch[1]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 4.0}));
    EXPECT_THAT(along(patch[2]), Pointwise(DoubleNear(1e-12), {0.0, 1.5, 3.0, 3.5, 4.0}));
}

TEST(CorrectLine, FadesOutByThePowerOfTheWayAlongTheLine) {
    for (const double power : {0.65, 2.0}) {
        Patch patch = flatPatch(5, 5);
        ASSERT_TRUE(correctLine(patch, 0, {.point = 1, .line = 3, .before = 3, .after = 3, .power = power}));
        for (std::size_t i = 1; i < 4; ++i) {
            const double part = static_cast<double>(i) / 4;
            EXPECT_NEAR(patch[i][2].x, 1 + 2 * std::pow(part, power), 1e-12) << power << " " << i;
        }
    }
}

TEST(CorrectLine, GivesEverySectionBeforePlusAfterMinusOnePoints) {
    Patch patch = flatPatch(4, 7);
    ASSERT_TRUE(correctLine(patch, 0, {.point = 2, .line = 4, .before = 5, .after = 6, .power = 0.65}));
    for (const PointList& section : patch) {
        ASSERT_EQ(section.size(), 10U);
    }
    EXPECT_NEAR(patch[0][4].x, 2.0, 1e-9);
    EXPECT_NEAR(patch[3][4].x, 4.0, 1e-9);
}

TEST(CorrectLine, InTheLastSectionIsTheMirrorResultOfTheReversedPatch) {
    Patch last = flatPatch(5, 6);
    last[2][3].z = 0.4;
    Patch first = last;
    std::reverse(first.begin(), first.end());
    const LineBend bend{.point = 1, .line = 4, .before = 4, .after = 4, .power = 0.65};
    ASSERT_TRUE(correctLine(last, 4, bend));
    ASSERT_TRUE(correctLine(first, 0, bend));
    std::reverse(first.begin(), first.end());
    EXPECT_EQ(last, first);
}

TEST(CorrectLine, InAnInnerSectionFadesOutToBothBorders) {
    Patch patch = flatPatch(5, 5);
    ASSERT_TRUE(correctLine(patch, 2, {.point = 1, .line = 3, .before = 3, .after = 3, .power = 1.0}));
    ASSERT_EQ(patch.size(), 5U);
    std::vector<double> line;
    for (const PointList& section : patch) {
        ASSERT_EQ(section.size(), 5U);
        line.push_back(section[2].x);
    }
    EXPECT_THAT(line, Pointwise(DoubleNear(1e-12), {3.0, 2.0, 1.0, 2.0, 3.0}));
    EXPECT_EQ(along(patch[2], &zVec<double>::y), std::vector<double>(5, 2.0));
}

TEST(CorrectLine, WithThePointBehindTheLineCountsFromTheOtherEnd) {
    Patch patch = flatPatch(3, 5);
    ASSERT_TRUE(correctLine(patch, 0, {.point = 3, .line = 1, .before = 3, .after = 4, .power = 1.0}));
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {0.0, 1.5, 3.0, 3.0 + 1.0 / 3, 3.0 + 2.0 / 3, 4.0}));
    EXPECT_NEAR(patch[1][2].x, 2.0, 1e-12);
    EXPECT_NEAR(patch[2][2].x, 1.0, 1e-12);
}

TEST(CorrectLine, ThroughTheFirstPointOfItsSectionBeginsWithCopiesOfIt) {
    Patch patch = flatPatch(3, 5);
    ASSERT_TRUE(correctLine(patch, 0, {.point = 0, .line = 2, .before = 4, .after = 3, .power = 1.0}));
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {0.0, 0.0, 0.0, 0.0, 2.0, 4.0}));
    EXPECT_NEAR(patch[1][3].x, 1.0, 1e-12);
}

TEST(CorrectLine, OfTheLastLineEndsTheLastSectionWithCopies) {
    Patch patch = flatPatch(3, 5);
    ASSERT_TRUE(correctLine(patch, 0, {.point = 2, .line = 4, .before = 3, .after = 4, .power = 1.0}));
    EXPECT_THAT(along(patch[2]), Pointwise(DoubleNear(1e-12), {0.0, 2.0, 4.0, 4.0, 4.0, 4.0}));
}

TEST(CorrectLine, CutsASectionThatIsTooShortAtItsLastPoint) {
    Patch patch = flatPatch(3, 5);
    patch[1] = rowAt({0, 0.1, 0.2, 0.3, 0.4}, 1); // the line would pass 1 behind its second point
    ASSERT_TRUE(correctLine(patch, 0, {.point = 1, .line = 3, .before = 3, .after = 3, .power = 1.0}));
    EXPECT_THAT(along(patch[1]), Pointwise(DoubleNear(1e-12), {0.0, 0.2, 0.4, 0.4, 0.4}));
}

TEST(CorrectLine, OfOnePointBeforeKeepsTheLineItself) {
    Patch patch = flatPatch(3, 5);
    ASSERT_TRUE(correctLine(patch, 0, {.point = 1, .line = 3, .before = 1, .after = 3, .power = 1.0}));
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {1.0, 2.5, 4.0}));
    Patch after = flatPatch(3, 5);
    ASSERT_TRUE(correctLine(after, 0, {.point = 1, .line = 3, .before = 3, .after = 1, .power = 1.0}));
    EXPECT_THAT(along(after[0]), Pointwise(DoubleNear(1e-12), {0.0, 0.5, 1.0}));
}

TEST(CorrectLine, OfALineOfNoLengthShiftsByTheNumberOfTheSection) {
    Patch patch = flatPatch(3, 5);
    for (std::size_t i = 0; i < 3; ++i) {
        patch[i][3] = {3, 0, 0};
    }
    ASSERT_TRUE(correctLine(patch, 2, {.point = 2, .line = 3, .before = 3, .after = 3, .power = 1.0}));
    for (const PointList& section : patch) {
        for (const zVec<double>& p : section) {
            EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
        }
    }
}

TEST(CorrectLine, WithAPointOnTheLineOrNumbersOutsideDoesNothing) {
    const Patch before = flatPatch(3, 4);
    Patch patch = before;
    EXPECT_FALSE(correctLine(patch, 0, {.point = 2, .line = 2, .before = 3, .after = 3, .power = 1}));
    EXPECT_FALSE(correctLine(patch, 3, {.point = 1, .line = 2, .before = 3, .after = 3, .power = 1}));
    EXPECT_FALSE(correctLine(patch, -1, {.point = 1, .line = 2, .before = 3, .after = 3, .power = 1}));
    EXPECT_FALSE(correctLine(patch, 0, {.point = 4, .line = 2, .before = 3, .after = 3, .power = 1}));
    EXPECT_FALSE(correctLine(patch, 0, {.point = 1, .line = -1, .before = 3, .after = 3, .power = 1}));
    EXPECT_FALSE(correctLine(patch, 0, {.point = 1, .line = 2, .before = 0, .after = 3, .power = 1}));
    EXPECT_FALSE(correctLine(patch, 0, {.point = 1, .line = 2, .before = 3, .after = 0, .power = 1}));
    EXPECT_EQ(patch, before);
    Patch one = flatPatch(1, 4);
    EXPECT_FALSE(correctLine(one, 0, {.point = 1, .line = 2, .before = 3, .after = 3, .power = 1}));
    Patch ragged = flatPatch(3, 4);
    ragged[1].resize(2);
    EXPECT_FALSE(correctLine(ragged, 0, {.point = 1, .line = 2, .before = 3, .after = 3, .power = 1}));
    Patch none;
    EXPECT_FALSE(correctLine(none, 0, {.point = 0, .line = 1, .before = 3, .after = 3, .power = 1}));
}

} // namespace velmora::test

#include "patch_order.h"

#include <gtest/gtest.h>

#include <cmath>

#include "surface_samples.h"

namespace velmora {
namespace {

using test::flatPatch;
using test::numbered;
using test::rowAt;
using Vec = zVec<double>;

std::vector<double> weededNumbers(int count) {
    Patch patch = {numbered(count)};
    weed(patch);
    return test::along(patch.front());
}

using Numbers = std::vector<double>;

TEST(Transposed, ExchangesSectionsAndPoints) {
    const Patch patch = flatPatch(2, 3);
    const Patch lines = transposed(patch);
    ASSERT_EQ(lines.size(), 3U);
    for (std::size_t i = 0; i < 2; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            ASSERT_EQ(lines[j].size(), 2U);
            EXPECT_EQ(lines[j][i], patch[i][j]);
        }
    }
    EXPECT_EQ(transposed(lines), patch);
}

TEST(Transposed, OfNothingIsNothing) {
    EXPECT_EQ(transposed({}), Patch());
    EXPECT_EQ(transposed({{}, {}}), Patch());
}

TEST(Transposed, NeverReadsPastAShortSection) {
    EXPECT_EQ(transposed({numbered(3), numbered(2)}).size(), 2U);
}

TEST(TransposePatches, TakesTheMarkedOnes) {
    PatchList list = {flatPatch(2, 3), flatPatch(4, 5)};
    const PatchList before = list;
    EXPECT_TRUE(transposePatches(list, {false, true}));
    EXPECT_EQ(list[0], before[0]);
    EXPECT_EQ(list[1], transposed(before[1]));
}

TEST(TransposePatches, RefusesWhenAMarkedOneIsNoGrid) {
    PatchList list = {flatPatch(2, 3), {numbered(3), numbered(2)}};
    const PatchList before = list;
    EXPECT_FALSE(transposePatches(list, {true, true}));
    EXPECT_EQ(list, before);
    EXPECT_TRUE(transposePatches(list, {true, false}));
}

TEST(TransposePatches, KeepsWhatHasNoPoints) {
    PatchList list = {{{}, {}}, {}};
    const PatchList before = list;
    EXPECT_TRUE(transposePatches(list, {true, true}));
    EXPECT_EQ(list, before);
}

TEST(ReverseSections, TurnsRoundTheirOrderAlone) {
    Patch patch = flatPatch(3, 2);
    reverseSections(patch);
    EXPECT_EQ(patch[0][0], (Vec{0, 2, 0}));
    EXPECT_EQ(patch[2][1], (Vec{1, 0, 0}));
}

TEST(ReverseLines, TurnsRoundThePointsOfEachSection) {
    Patch patch = flatPatch(2, 3);
    reverseLines(patch);
    EXPECT_EQ(patch[0][0], (Vec{2, 0, 0}));
    EXPECT_EQ(patch[1][2], (Vec{0, 1, 0}));
}

TEST(Weed, TakesEverySecondPointAndKeepsTheLast) {
    EXPECT_EQ(weededNumbers(7), (Numbers{0, 2, 4, 6}));
    EXPECT_EQ(weededNumbers(8), (Numbers{0, 2, 4, 7}));
    EXPECT_EQ(weededNumbers(6), (Numbers{0, 2, 5}));
    EXPECT_EQ(weededNumbers(4), (Numbers{0, 3}));
    EXPECT_EQ(weededNumbers(3), (Numbers{0, 2}));
}

TEST(Weed, OfTwoPointsKeepsTheLastAloneAndOfFewerAll) {
    EXPECT_EQ(weededNumbers(2), (Numbers{1}));
    EXPECT_EQ(weededNumbers(1), (Numbers{0}));
    EXPECT_EQ(weededNumbers(0), (Numbers{}));
}

TEST(Extrapolate, GoesOnFromEitherEndByTheCoefficient) {
    Patch patch = {{{0, 0, 0}}, {{1, 2, 3}}, {{5, 5, 5}}};
    EXPECT_TRUE(extrapolate(patch, false, 2.0));
    EXPECT_TRUE(extrapolate(patch, true, 0.5));
    ASSERT_EQ(patch.size(), 5U);
    EXPECT_EQ(patch.front().front(), (Vec{-2, -4, -6}));
    EXPECT_EQ(patch.back().front(), (Vec{7, 6.5, 6}));
}

TEST(Extrapolate, WithCoefficientZeroRepeatsTheBorder) {
    Patch patch = flatPatch(2, 3);
    EXPECT_TRUE(extrapolate(patch, false, 0.0));
    EXPECT_EQ(patch.size(), 3U);
    EXPECT_EQ(patch[0], patch[1]);
}

TEST(Extrapolate, SkipsAPatchOfOneSection) {
    Patch patch = flatPatch(1, 3);
    EXPECT_FALSE(extrapolate(patch, true, 1.0));
    EXPECT_EQ(patch, flatPatch(1, 3));
}

TEST(Revolved, MakesACircleOfSeventyThreePointsForEachPoint) {
    const Patch body = revolved({{1, 3, 4}, {2, 0, -2}});
    ASSERT_EQ(body.size(), 2U);
    for (std::size_t s = 0; s < 2; ++s) {
        ASSERT_EQ(body[s].size(), 73U);
        const double radius = s == 0 ? 5.0 : 2.0;
        for (std::size_t i = 0; i < 73; ++i) {
            const double angle = (-90.0 + 5.0 * static_cast<double>(i)) * 0.0174533;
            EXPECT_EQ(body[s][i], (Vec{s == 0 ? 1.0 : 2.0, radius * std::sin(angle), radius * std::cos(angle)}));
        }
    }
}

TEST(Revolved, ClosesUpToTheSinesOfItsConstant) {
    const Patch body = revolved({{0, 1, 0}});
    EXPECT_NE(body[0].front(), body[0].back());
    EXPECT_NEAR(body[0].front().z, body[0].back().z, 1e-4);
    EXPECT_NEAR(body[0].front().y, body[0].back().y, 1e-4);
}

TEST(Revolved, OnTheAxisIsOnePointOverAndOver) {
    const Patch body = revolved({{7, 0, 0}});
    for (const Vec& point : body.front()) {
        EXPECT_EQ(point, (Vec{7, 0, 0}));
    }
}

TEST(PatchTurns, ExchangeAndReverse) {
    const Patch patch = {rowAt({1, 2, 3}), rowAt({4, 5, 6})};
    const Patch turned = transposed(patch);
    EXPECT_EQ(turned, (Patch{rowAt({1, 4}), rowAt({2, 5}), rowAt({3, 6})}));
    EXPECT_EQ(transposed(turned), patch);
    Patch reversed = patch;
    reverseLines(reversed);
    EXPECT_EQ(reversed, (Patch{rowAt({3, 2, 1}), rowAt({6, 5, 4})}));
}

} // namespace
} // namespace velmora

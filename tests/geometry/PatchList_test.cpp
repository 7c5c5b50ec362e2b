#include "PatchList.h"

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "regularity.h"

namespace velmora {
namespace {

/// A patch with sections of these point counts; the points are (K, N, M).
Patch patchOf(double k, const std::vector<int>& counts) {
    Patch patch;
    for (std::size_t n = 0; n < counts.size(); ++n) {
        PointList section;
        for (int m = 0; m < counts[n]; ++m) {
            section.emplace_back(k, static_cast<double>(n), m);
        }
        patch.push_back(section);
    }
    return patch;
}

PatchList threePatches() {
    return {patchOf(0, {2, 2}), patchOf(1, {3, 3, 3}), patchOf(2, {1, 1})};
}

TEST(PatchList, IsAddressedByPatchSectionAndPoint) {
    EXPECT_EQ(threePatches()[1][2][0], zVec<double>(1, 2, 0));
}

TEST(PatchList, CountsElementsAsSigned32Bits) {
    EXPECT_EQ(countOf(threePatches()), 3);
    EXPECT_EQ(countOf(PatchList()), 0);
    EXPECT_TRUE((std::is_same_v<decltype(countOf(PatchList())), std::int32_t>));
}

TEST(PatchList, TotalsThePointsOfAllLevels) {
    EXPECT_EQ(pointTotal({}), 0);
    EXPECT_EQ(pointTotal({Patch(), patchOf(0, {0, 0})}), 0);
    EXPECT_EQ(pointTotal(threePatches()), 4 + 9 + 2);
}

TEST(PatchList, NearZeroIsTenToTheMinusEight) {
    EXPECT_EQ(nearZero, 1e-8);
}

TEST(PatchList, AppendsAHalfOpenRangeBehindWhatIsThere) {
    const PatchList source = threePatches();
    PatchList destination{patchOf(7, {2, 2})};
    appendPatches(source, destination, 1, 3);
    ASSERT_EQ(destination.size(), 3U);
    EXPECT_EQ(destination[0], patchOf(7, {2, 2}));
    EXPECT_EQ(destination[1], source[1]);
    EXPECT_EQ(destination[2], source[2]);
}

TEST(PatchList, AppendedPatchesAreDeepCopies) {
    PatchList source = threePatches();
    PatchList destination;
    appendPatches(source, destination, 0, 3);
    source[1][2][0].x = 99;
    source[0].clear();
    EXPECT_EQ(destination, threePatches());
}

TEST(PatchList, AppendingAnEmptyOrBackwardRangeDoesNothing) {
    const PatchList source = threePatches();
    PatchList destination;
    appendPatches(source, destination, 1, 1);
    appendPatches(source, destination, 2, 1);
    appendPatches(source, destination, 3, -3);
    EXPECT_TRUE(destination.empty());
}

TEST(PatchList, AppendingIndicesOutsideTheSourceTakesWhatThereIs) {
    const PatchList source = threePatches();
    PatchList destination;
    appendPatches(source, destination, -5, 1);
    appendPatches(source, destination, 2, 50);
    appendPatches(source, destination, 3, 9);
    appendPatches(source, destination, std::numeric_limits<std::int32_t>::min(), 0);
    appendPatches({}, destination, 0, 4);
    EXPECT_EQ(destination, (PatchList{source[0], source[2]}));
    appendPatches(source, destination, std::numeric_limits<std::int32_t>::min(),
                  std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(destination.size(), 5U);
}

TEST(PatchList, AppendsAListToItself) {
    PatchList list = threePatches();
    appendPatches(list, list, 0, 3);
    ASSERT_EQ(list.size(), 6U);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(list[k], threePatches()[k]);
        EXPECT_EQ(list[k + 3], threePatches()[k]);
    }
}

TEST(PatchList, BoundsWidenToEveryPoint) {
    zVec<double> lower(1, 1, 1);
    zVec<double> upper(1, 1, 1);
    patchBounds({{{{3, 0, 1}}}, {{{1, 1, -2}, {2, 5, 1}}, {}}}, lower, upper);
    EXPECT_EQ(lower, zVec<double>(1, 0, -2));
    EXPECT_EQ(upper, zVec<double>(3, 5, 1));
}

TEST(PatchList, BoundsNeverShrinkAndStayWithoutPoints) {
    zVec<double> lower(-9, -9, -9);
    zVec<double> upper(9, 9, 9);
    patchBounds(threePatches(), lower, upper);
    patchBounds({}, lower, upper);
    patchBounds({Patch(), patchOf(0, {0})}, lower, upper);
    EXPECT_EQ(lower, zVec<double>(-9, -9, -9));
    EXPECT_EQ(upper, zVec<double>(9, 9, 9));
}

TEST(PatchList, BoundsPassOverCoordinatesThatAreNoNumbers) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    zVec<double> lower;
    zVec<double> upper;
    patchBounds({{{{nan, 2, nan}, {-1, nan, 4}}}}, lower, upper);
    EXPECT_EQ(lower, zVec<double>(-1, 0, 0));
    EXPECT_EQ(upper, zVec<double>(0, 2, 4));
}

TEST(Regularity, OfAnEmptyModelIsUndecided) {
    bool sawRegular = true;
    EXPECT_EQ(regularityOf({}, &sawRegular), Regularity::Undecided);
    EXPECT_FALSE(sawRegular);
    EXPECT_EQ(regularityOf({}), Regularity::Undecided);
}

TEST(Regularity, OfEqualSectionsIsRegular) {
    bool sawRegular = false;
    EXPECT_EQ(regularityOf(threePatches(), &sawRegular), Regularity::Regular);
    EXPECT_TRUE(sawRegular);
}

TEST(Regularity, OfOnePatchWithOneSectionIsIrregularForTheWholeModel) {
    for (std::size_t k = 0; k < 3; ++k) {
        PatchList list = threePatches();
        list[k].resize(1);
        EXPECT_EQ(regularityOf(list), Regularity::Irregular) << "patch " << k;
    }
}

TEST(Regularity, BecomesIrregularWhenAPointIsDeleted) {
    for (std::size_t n = 0; n < 3; ++n) {
        PatchList list = threePatches();
        list[1][n].pop_back();
        EXPECT_EQ(regularityOf(list), Regularity::Irregular) << "section " << n;
    }
}

TEST(Regularity, ComparesEverySectionWithTheFirstOfItsPatchOnly) {
    EXPECT_EQ(regularityOf({patchOf(0, {2, 2}), patchOf(1, {5, 5})}), Regularity::Regular);
    EXPECT_EQ(regularityOf({patchOf(0, {2, 3, 3})}), Regularity::Irregular);
    EXPECT_EQ(regularityOf({patchOf(0, {0, 0})}), Regularity::Regular);
}

TEST(Regularity, PassesOverAPatchWithoutSections) {
    bool sawRegular = true;
    EXPECT_EQ(regularityOf({Patch(), Patch()}, &sawRegular), Regularity::Undecided);
    EXPECT_FALSE(sawRegular);
    EXPECT_EQ(regularityOf({Patch(), patchOf(1, {2, 2}), Patch()}), Regularity::Regular);
    EXPECT_EQ(regularityOf({Patch(), patchOf(1, {2})}), Regularity::Irregular);
}

TEST(Regularity, OfChosenPatchesLooksAtNoOthers) {
    const PatchList list = {Patch(), patchOf(1, {2, 2}), patchOf(2, {2, 3}), patchOf(3, {4, 4})};
    const auto ofChosen = [&list](std::initializer_list<std::int32_t> chosen) {
        return regularityOfChosen(list, std::vector<std::int32_t>(chosen));
    };
    EXPECT_EQ(ofChosen({}), Regularity::Undecided);
    EXPECT_EQ(ofChosen({0}), Regularity::Undecided);
    EXPECT_EQ(ofChosen({3, 0, 1}), Regularity::Regular);
    EXPECT_EQ(ofChosen({1, 2, 3}), Regularity::Irregular);
}

TEST(Regularity, TellsOfARegularPatchMetBeforeTheIrregularOne) {
    bool sawRegular = false;
    EXPECT_EQ(regularityOf({patchOf(0, {2, 2}), patchOf(1, {2, 3})}, &sawRegular), Regularity::Irregular);
    EXPECT_TRUE(sawRegular);
    EXPECT_EQ(regularityOf({patchOf(0, {2, 3}), patchOf(1, {2, 2})}, &sawRegular), Regularity::Irregular);
    EXPECT_FALSE(sawRegular);
}

TEST(LineCount, IsThePointCountOfTheFirstSection) {
    EXPECT_EQ(lineCount(Patch()), 0);
    EXPECT_EQ(lineCount(patchOf(0, {4, 4})), 4);
    EXPECT_EQ(lineCount(patchOf(0, {3, 5})), 3);
    EXPECT_EQ(lineCount(patchOf(0, {0, 5})), 0);
}

} // namespace
} // namespace velmora

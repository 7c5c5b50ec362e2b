#include "CRegularInput.h"

#include <gmock/gmock.h>

#include "small_models.h"

namespace velmora {
namespace {

struct RegularInput : testing::Test {
    PatchList list;
    CRegularInput table{list};

    RegularInput() { table.reset(); }

    void act(std::int32_t action, zVec<double> typed = {}) {
        ASSERT_TRUE(table.chooseAction(action)) << CRegularInput::radioText(action);
        if (table.typedOn) {
            table.typed = typed;
        }
        table.act([](CRegularFind&) { return false; });
    }

    void find(std::int32_t k, std::int32_t n, std::int32_t m) {
        ASSERT_TRUE(table.chooseAction(CRegularInput::Find));
        table.act([&](CRegularFind& find) {
            find.K = k;
            find.N = n;
            find.M = m;
            return true;
        });
    }

    std::vector<std::int32_t> live() const {
        std::vector<std::int32_t> on;
        for (std::int32_t action = 1; action <= CRegularInput::actionCount; ++action) {
            if (table.actionOn[static_cast<std::size_t>(action - 1)]) {
                on.push_back(action);
            }
        }
        return on;
    }
};

using testing::ElementsAre;

TEST_F(RegularInput, TheFirstPointMakesPatchSectionAndPoint) {
    act(CRegularInput::InputAfter, {1, 2, 3});
    EXPECT_EQ(list, (PatchList{{{{1, 2, 3}}}}));
    EXPECT_EQ(table.M, 1);
    ASSERT_EQ(table.rows.size(), 1U);
    EXPECT_THAT(table.rows[0].coordinates, ElementsAre("+1.000000e+00", "+2.000000e+00", "+3.000000e+00"));
}

TEST_F(RegularInput, AnEmptyTableOffersInputAndOkAlone) {
    EXPECT_THAT(live(), ElementsAre(CRegularInput::InputAfter, CRegularInput::Ok));
    EXPECT_FALSE(table.chooseAction(CRegularInput::Cut));
}

TEST_F(RegularInput, InputInsideTheLineGoesBehindTheSelectedPoint) {
    act(CRegularInput::InputAfter, {1, 0, 0});
    act(CRegularInput::InputAfter, {3, 0, 0});
    ASSERT_TRUE(table.select(1));
    act(CRegularInput::InputAfter, {2, 0, 0});
    EXPECT_EQ(list[0][0], (PointList{{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}));
    EXPECT_EQ(table.M, 2);
}

TEST_F(RegularInput, ReplaceChangesTheSelectedPoint) {
    act(CRegularInput::InputAfter, {1, 0, 0});
    act(CRegularInput::InputAfter, {2, 0, 0});
    ASSERT_TRUE(table.select(1));
    act(CRegularInput::Replace, {9, 9, 9});
    EXPECT_EQ(list[0][0], (PointList{{9, 9, 9}, {2, 0, 0}}));
    EXPECT_EQ(table.M, 1);
}

TEST_F(RegularInput, CutOfTheOnlyPointEmptiesTheRows) {
    act(CRegularInput::InputAfter, {1, 2, 3});
    act(CRegularInput::Cut);
    EXPECT_TRUE(table.rows.empty());
    EXPECT_EQ(table.M, 0);
    EXPECT_EQ(table.buffer, (zVec<double>{1, 2, 3}));
    EXPECT_THAT(live(), ElementsAre(CRegularInput::InputAfter, CRegularInput::Find, CRegularInput::Ok));
}

TEST_F(RegularInput, CutOfTheFirstOfSeveralPointsSelectsTheNewFirst) {
    act(CRegularInput::InputAfter, {1, 0, 0});
    act(CRegularInput::InputAfter, {2, 0, 0});
    ASSERT_TRUE(table.select(1));
    act(CRegularInput::Cut);
    EXPECT_EQ(table.M, 1);
    EXPECT_EQ(table.rows.size(), 1U);
    EXPECT_EQ(table.typed, (zVec<double>{2, 0, 0}));
}

TEST_F(RegularInput, CutInTheMiddleSelectsThePointBefore) {
    for (const double x : {1.0, 2.0, 3.0, 4.0}) {
        act(CRegularInput::InputAfter, {x, 0, 0});
    }
    ASSERT_TRUE(table.select(3));
    act(CRegularInput::Cut);
    EXPECT_EQ(list[0][0], (PointList{{1, 0, 0}, {2, 0, 0}, {4, 0, 0}}));
    EXPECT_EQ(table.M, 2);
    EXPECT_EQ(table.typed, (zVec<double>{2, 0, 0}));
    EXPECT_EQ(table.buffer, (zVec<double>{3, 0, 0}));
    ASSERT_EQ(table.rows.size(), 3U);
    EXPECT_EQ(table.rows[2].coordinates[0], "+4.000000e+00");
    EXPECT_EQ(table.rows[2].M, 3);
    table.checkPaste(true);
    act(CRegularInput::InputAfter); // and back in its place
    EXPECT_EQ(list[0][0], (PointList{{1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}}));
    EXPECT_EQ(table.M, 3);
}

TEST_F(RegularInput, CutOfTheLastSelectsTheNewLast) {
    act(CRegularInput::InputAfter, {1, 0, 0});
    act(CRegularInput::InputAfter, {2, 0, 0});
    act(CRegularInput::Cut);
    EXPECT_EQ(list[0][0], (PointList{{1, 0, 0}}));
    EXPECT_EQ(table.M, 1);
    EXPECT_EQ(table.typed, (zVec<double>{1, 0, 0}));
    EXPECT_EQ(table.buffer, (zVec<double>{2, 0, 0}));
}

TEST_F(RegularInput, CopyReadsTheRowWithItsSixDecimals) {
    act(CRegularInput::InputAfter, {1.23456789, 0, 0});
    act(CRegularInput::Copy);
    EXPECT_EQ(table.buffer.x, 1.234568);
    EXPECT_EQ(list[0][0][0].x, 1.23456789);
}

TEST_F(RegularInput, PasteTurnsCutIntoInputAfterAndSwitchesTheFields) {
    act(CRegularInput::InputAfter, {1, 2, 3});
    ASSERT_TRUE(table.chooseAction(CRegularInput::Cut));
    EXPECT_FALSE(table.typedOn);
    table.checkPaste(true);
    EXPECT_EQ(table.actionRegime, CRegularInput::InputAfter);
    EXPECT_THAT(live(), ElementsAre(CRegularInput::InputAfter, CRegularInput::Replace, CRegularInput::Ok));
    EXPECT_FALSE(table.typedOn);
    EXPECT_TRUE(table.bufferOn);
    table.checkPaste(false);
    EXPECT_TRUE(table.typedOn);
    EXPECT_FALSE(table.bufferOn);
}

TEST_F(RegularInput, PasteTurnsEachActionThatItSwitchesOffIntoInputAfter) {
    for (const std::int32_t action : {CRegularInput::Cut, CRegularInput::Copy, CRegularInput::NewPatch,
                                      CRegularInput::NewLine, CRegularInput::Find}) {
        list.clear();
        table.reset();
        act(CRegularInput::InputAfter, {1, 2, 3});
        ASSERT_TRUE(table.chooseAction(action));
        table.checkPaste(true);
        EXPECT_EQ(table.actionRegime, CRegularInput::InputAfter) << CRegularInput::radioText(action);
    }
}

TEST_F(RegularInput, TheSelectedRowSelectedAgainLeavesWhatIsTyped) {
    act(CRegularInput::InputAfter, {1, 2, 3});
    act(CRegularInput::InputAfter, {4, 5, 6});
    table.typed = {7, 8, 9};
    ASSERT_TRUE(table.select(2));
    EXPECT_EQ(table.typed, (zVec<double>{7, 8, 9}));
    ASSERT_TRUE(table.select(1));
    EXPECT_EQ(table.typed, (zVec<double>{1, 2, 3}));
}

TEST_F(RegularInput, WithPasteThePointComesFromTheBuffer) {
    act(CRegularInput::InputAfter, {1, 2, 3});
    act(CRegularInput::Copy);
    table.checkPaste(true);
    table.buffer = {7, 8, 9};
    table.act([](CRegularFind&) { return false; });
    EXPECT_EQ(list[0][0].back(), (zVec<double>{7, 8, 9}));
    EXPECT_EQ(table.typed, (zVec<double>{7, 8, 9}));
}

TEST_F(RegularInput, NewPatchShowsOneRowOfTheNewPatch) {
    act(CRegularInput::InputAfter, {1, 0, 0});
    act(CRegularInput::InputAfter, {2, 0, 0});
    act(CRegularInput::NewPatch, {5, 5, 5});
    EXPECT_EQ(list.size(), 2U);
    ASSERT_EQ(table.rows.size(), 1U);
    EXPECT_EQ(table.rows[0].K, 2);
    EXPECT_EQ(table.rows[0].N, 1);
    EXPECT_EQ(table.rows[0].M, 1);
    EXPECT_EQ(table.actionRegime, CRegularInput::InputAfter);
}

TEST_F(RegularInput, NewPatchAndNewLineGoBehindTheLastWhateverIsShown) {
    list = {test::flatPatch(3, 2), test::flatPatch(2, 2)};
    table.reset();
    find(1, 1, 1);
    act(CRegularInput::NewLine, {4, 4, 4});
    EXPECT_EQ(table.K, 1);
    EXPECT_EQ(table.N, 4);
    EXPECT_EQ(list[0].size(), 4U);
    find(1, 2, 1);
    act(CRegularInput::NewPatch, {6, 6, 6});
    EXPECT_EQ(table.K, 3);
    EXPECT_EQ(table.N, 1);
    EXPECT_EQ(list.size(), 3U);
}

TEST_F(RegularInput, FindShowsTheRowsOfAnotherPatch) {
    list = {test::flatPatch(3, 2), test::flatPatch(2, 4, 7.0)};
    table.reset();
    find(2, 2, 3);
    EXPECT_EQ(table.K, 2);
    EXPECT_EQ(table.N, 2);
    EXPECT_EQ(table.M, 3);
    EXPECT_EQ(table.rows.size(), 4U);
    EXPECT_EQ(table.typed, (zVec<double>{2, 1, 7}));
}

} // namespace
} // namespace velmora

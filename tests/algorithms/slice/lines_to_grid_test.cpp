#include "lines_to_grid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Point = zVec<double>;

} // namespace

TEST(LinesToGrid, GivesEverySectionTheSameNumberOfPoints) {
    const PatchList lines = {{{{0, 0, 0}, {1, 0, 0}, {4, 0, 0}}, {{0, 1, 0}, {4, 1, 0}}}, {{{0, 0, 5}, {0, 2, 5}}}};
    for (const bool spline : {true, false}) {
        const PatchList grid = linesToGrid(lines, 5, spline);
        ASSERT_THAT(grid, SizeIs(2));
        for (const Patch& patch : grid) {
            for (const PointList& section : patch) {
                ASSERT_THAT(section, SizeIs(5));
            }
        }
        EXPECT_EQ(grid[0][0][1], Point(1, 0, 0));
        EXPECT_EQ(grid[0][1][3], Point(3, 1, 0));
        EXPECT_EQ(grid[1][0][4], Point(0, 2, 5));
    }
}

TEST(LinesToGrid, SectionsOfFewerThanTwoPointsHaveDefinedPoints) {
    for (const bool spline : {true, false}) {
        const PatchList grid = linesToGrid({{{}, {{1, 2, 3}}}}, 3, spline);
        EXPECT_THAT(grid[0][0], ElementsAre(Point(), Point(), Point()));
        EXPECT_THAT(grid[0][1], ElementsAre(Point(1, 2, 3), Point(1, 2, 3), Point(1, 2, 3)));
    }
}

TEST(LinesToGrid, DoubledPointsOfLongerSectionsAreLeftOutFirst) {
    // Chords 0, 0, 1 and 3 after cleaning: steps of 1 hit the points.
    const PatchList grid = linesToGrid({{{{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {4, 0, 0}}}}, 5, false);
    EXPECT_EQ(grid[0][0][1], Point(1, 0, 0));
    EXPECT_EQ(grid[0][0][4], Point(4, 0, 0));
    // Of three points none is: the spline falls back on the chords, and all the same nothing is divided by zero.
    const PatchList doubled = linesToGrid({{{{0, 0, 0}, {0, 0, 0}, {4, 0, 0}}}}, 5, true);
    EXPECT_EQ(doubled[0][0][0], Point(0, 0, 0));
    EXPECT_NEAR(doubled[0][0][3].x, 3, 1e-12);
    EXPECT_EQ(doubled[0][0][4], Point(4, 0, 0));
}

TEST(LinesToGrid, ClosedSectionStaysClosed) {
    for (const bool spline : {true, false}) {
        const PointList ring = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {0, 0, 0}};
        const PointList section = linesToGrid({{ring}}, 17, spline)[0][0];
        EXPECT_EQ(section.front(), Point(0, 0, 0));
        EXPECT_NEAR(section.back().x, 0, 1e-12);
        EXPECT_NEAR(section.back().y, 0, 1e-12);
    }
}

TEST(LinesToGrid, EachSectionIsTurnedAsTheOneBeforeIt) {
    const PatchList lines = {
        {{{0, 0, 0}, {1, 0, 0}}, {{1, 1, 0}, {0, 1, 0}}, {{1, 2, 0}, {0, 2, 0}}, {{0, 3, 0}, {1, 3, 0}}}};
    const PatchList grid = linesToGrid(lines, 3, false);
    for (const PointList& section : grid[0]) {
        EXPECT_EQ(section.front().x, 0);
    }
}

TEST(LinesToGrid, EmptyModelStaysEmpty) {
    EXPECT_THAT(linesToGrid({}, 20, true), IsEmpty());
    EXPECT_THAT(linesToGrid({{}}, 20, true), ElementsAre(IsEmpty()));
}

TEST(AlignWithPrevious, LeavesATieAndListsOfOtherLengths) {
    const PointList previous = {{0, 0, 0}, {1, 0, 0}};
    PointList tie = {{0.5, 1, 0}, {0.5, 2, 0}};
    const PointList before = tie;
    alignWithPrevious(previous, tie);
    EXPECT_EQ(tie, before);
    PointList shorter = {{5, 0, 0}};
    alignWithPrevious(previous, shorter);
    EXPECT_THAT(shorter, ElementsAre(Point(5, 0, 0)));
    PointList opposite = {{1, 1, 0}, {0, 1, 0}};
    alignWithPrevious(previous, opposite);
    EXPECT_EQ(opposite[0], Point(0, 1, 0));
}

} // namespace velmora::test

#include "line_joiner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

PointList lineOf(const std::vector<double>& xs, double z = 0) {
    PointList line;
    for (const double x : xs) {
        line.emplace_back(x, 0, z);
    }
    return line;
}

std::vector<double> xsOf(const PointList& line) {
    std::vector<double> xs;
    for (const zVec<double>& p : line) {
        xs.push_back(p.x);
    }
    return xs;
}

/// Joins lines across z.
Patch joinedLines(const Patch& lines, double precision) {
    SliceLines given;
    for (const PointList& line : lines) {
        for (const zVec<double>& p : line) {
            given.points.push_back({p.x, p.y, p.z});
        }
        given.ends.push_back(given.points.size());
    }
    return joinLines(given, 2, precision).sections;
}

} // namespace

TEST(JoinLines, TriesTheFourPairsOfEndsInOrder) {
    const auto join = [](const PointList& a, const PointList& b) { return xsOf(joinedLines({a, b}, 0.1).at(0)); };
    EXPECT_THAT(join(lineOf({0, 1}), lineOf({1, 2})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({0, 1}), lineOf({2, 1})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({1, 0}), lineOf({1, 2})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({1, 0}), lineOf({2, 1})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({0, 1, 0}), lineOf({0, 5, 0})), ElementsAre(0, 1, 0, 0, 5, 0)); // all four: the first
}

TEST(JoinLines, DistanceEqualToThePrecisionIsNear) {
    EXPECT_THAT(joinedLines({lineOf({0, 1}), lineOf({1.5, 2})}, 0.5), SizeIs(1));
    EXPECT_THAT(joinedLines({lineOf({0, 1}), lineOf({1.5, 2})}, 0.499), SizeIs(2));
}

TEST(JoinLines, LastLineOfThePlaneGrowsNext) {
    const auto joined = joinedLines({lineOf({0, 1}), lineOf({10, 11}), lineOf({20, 21}), lineOf({9, 10})}, 0.1);
    ASSERT_THAT(joined, SizeIs(3));
    EXPECT_THAT(xsOf(joined[1]), ElementsAre(9, 10, 10, 11)); // 9 to 10 starts and takes 10 to 11
    EXPECT_THAT(xsOf(joined[2]), ElementsAre(20, 21));
}

TEST(JoinLines, FewerThanTwoLinesStayAsTheyAre) {
    EXPECT_THAT(joinedLines({}, 0.1), SizeIs(0));
    EXPECT_THAT(joinedLines({lineOf({0, 1, 0})}, 0.1), ElementsAre(lineOf({0, 1, 0})));
}

TEST(JoinLines, TurnedLinesKeepTheOrderOfTheirPointsWhateverTheyTake) {
    // The line turns for the second one, again for the third, which goes on backward.
    const auto joined = joinedLines({lineOf({5, 6}), lineOf({5, 4}), lineOf({7, 8, 6.05})}, 0.1);
    ASSERT_THAT(joined, SizeIs(1));
    EXPECT_THAT(xsOf(joined[0]), ElementsAre(4, 5, 5, 6, 6.05, 8, 7));
}

TEST(JoinLines, LinesOfDifferentPlanesNeverJoin) {
    EXPECT_THAT(joinedLines({lineOf({0, 1}, 1), lineOf({1, 2}, 1.0001)}, 100), SizeIs(2));
}

TEST(OrientLines, TurnLinesThatStartTheOtherWay) {
    Patch lines = {lineOf({0, 1, 2}), lineOf({5, 4, 3}), lineOf({7, 8}), lineOf({1}), lineOf({3, 2})};
    orientLines(lines);
    EXPECT_THAT(xsOf(lines[1]), ElementsAre(3, 4, 5));
    EXPECT_THAT(xsOf(lines[2]), ElementsAre(7, 8));
    EXPECT_THAT(xsOf(lines[4]), ElementsAre(3, 2)); // the line before it has one point
}

} // namespace velmora::test

#include "line_joiner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

SliceLine lineOf(const std::vector<double>& xs, double z = 0) {
    SliceLine line;
    for (const double x : xs) {
        line.push_back({x, 0, z});
    }
    return line;
}

std::vector<double> xsOf(const SliceLine& line) {
    std::vector<double> xs;
    for (const SlicePoint& p : line) {
        xs.push_back(p[0]);
    }
    return xs;
}

} // namespace

TEST(JoinLines, TriesTheFourPairsOfEndsInOrder) {
    const auto join = [](const SliceLine& a, const SliceLine& b) {
        return xsOf(joinLines({a, b}, 2, 0.1).lines.at(0));
    };
    EXPECT_THAT(join(lineOf({0, 1}), lineOf({1, 2})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({0, 1}), lineOf({2, 1})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({1, 0}), lineOf({1, 2})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({1, 0}), lineOf({2, 1})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({0, 1, 0}), lineOf({0, 5, 0})), ElementsAre(0, 1, 0, 0, 5, 0)); // all four: the first
}

TEST(JoinLines, DistanceEqualToThePrecisionIsNear) {
    EXPECT_THAT(joinLines({lineOf({0, 1}), lineOf({1.5, 2})}, 2, 0.5).lines, SizeIs(1));
    EXPECT_THAT(joinLines({lineOf({0, 1}), lineOf({1.5, 2})}, 2, 0.499).lines, SizeIs(2));
}

TEST(JoinLines, LastLineOfThePlaneGrowsNext) {
    const auto joined = joinLines({lineOf({0, 1}), lineOf({10, 11}), lineOf({20, 21}), lineOf({9, 10})}, 2, 0.1).lines;
    ASSERT_THAT(joined, SizeIs(3));
    EXPECT_THAT(xsOf(joined[1]), ElementsAre(9, 10, 10, 11)); // 9 to 10 starts and takes 10 to 11
    EXPECT_THAT(xsOf(joined[2]), ElementsAre(20, 21));
}

TEST(JoinLines, LinesOfDifferentPlanesNeverJoin) {
    EXPECT_THAT(joinLines({lineOf({0, 1}, 1), lineOf({1, 2}, 1.0001)}, 2, 100).lines, SizeIs(2));
}

TEST(OrientLines, TurnLinesThatStartTheOtherWay) {
    std::vector<SliceLine> lines = {lineOf({0, 1, 2}), lineOf({5, 4, 3}), lineOf({7, 8}), lineOf({1}), lineOf({3, 2})};
    orientLines(lines);
    EXPECT_THAT(xsOf(lines[1]), ElementsAre(3, 4, 5));
    EXPECT_THAT(xsOf(lines[2]), ElementsAre(7, 8));
    EXPECT_THAT(xsOf(lines[4]), ElementsAre(3, 2)); // the line before it has one point
}

} // namespace velmora::test

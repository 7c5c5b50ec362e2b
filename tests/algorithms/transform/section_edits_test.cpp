#include "section_edits.h"

#include <limits>

#include "surface_samples.h"

namespace velmora {
namespace {

using test::along;
using test::numbered;
using Vec = zVec<double>;
using Numbers = std::vector<double>;

TEST(WithoutHalf, OfAnOddCountKeepsTheMiddleOnBothSides) {
    EXPECT_EQ(along(withoutHalf(numbered(7), Side::After)), (Numbers{0, 1, 2, 3}));
    EXPECT_EQ(along(withoutHalf(numbered(7), Side::Before)), (Numbers{3, 4, 5, 6}));
}

TEST(WithoutHalf, OfAnEvenCountKeepsFourOfEight) {
    EXPECT_EQ(along(withoutHalf(numbered(8), Side::After)), (Numbers{0, 1, 2, 3}));
    EXPECT_EQ(along(withoutHalf(numbered(8), Side::Before)), (Numbers{4, 5, 6, 7}));
}

TEST(WithoutHalf, OfOnePointAndOfNoneKeepsAll) {
    for (const Side side : {Side::Before, Side::After}) {
        EXPECT_EQ(withoutHalf(numbered(1), side).size(), 1U);
        EXPECT_TRUE(withoutHalf({}, side).empty());
    }
}

TEST(WithoutSide, KeepsThePointItself) {
    EXPECT_EQ(along(withoutSide(numbered(5), 1, Side::After)), (Numbers{0, 1}));
    EXPECT_EQ(along(withoutSide(numbered(5), 1, Side::Before)), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(withoutSide(numbered(5), 0, Side::Before), numbered(5));
    EXPECT_EQ(withoutSide(numbered(5), 4, Side::After), numbered(5));
}

TEST(WithSideReplaced, PutsThePartWhereTheSideWas) {
    const PointList part = {{8, 0, 0}, {9, 0, 0}};
    EXPECT_EQ(along(withSideReplaced(numbered(4), 1, Side::After, part)), (Numbers{0, 1, 8, 9}));
    EXPECT_EQ(along(withSideReplaced(numbered(4), 1, Side::Before, part)), (Numbers{8, 9, 1, 2, 3}));
    EXPECT_EQ(along(withSideReplaced(numbered(4), 3, Side::After, part)), (Numbers{0, 1, 2, 3, 8, 9}));
    EXPECT_EQ(along(withSideReplaced(numbered(4), 0, Side::Before, part)), (Numbers{8, 9, 0, 1, 2, 3}));
}

TEST(WithSideReplaced, LeavesTheSectionWholeForAPointOutsideIt) {
    for (const std::int32_t point : {-1, 4}) {
        EXPECT_EQ(withSideReplaced(numbered(4), point, Side::After, numbered(2)), numbered(4));
        EXPECT_EQ(withoutSide(numbered(4), point, Side::Before), numbered(4));
    }
}

TEST(WithMirrorImage, DoublesTheLengthAndMirrorsTheEnds) {
    const PointList section = {{1, 5, 0}, {2, 6, 0}, {3, 7, 0}};
    EXPECT_EQ(withMirrorImage(section, {&Vec::y, 10.0}),
              (PointList{{1, 5, 0}, {2, 6, 0}, {3, 7, 0}, {3, 13, 0}, {2, 14, 0}, {1, 15, 0}}));
}

TEST(IsClosed, AsksForLessThanTheCoincidenceDistanceInEachCoordinate) {
    EXPECT_TRUE(isClosed({{0, 0, 0}, {5, 5, 5}, {0.9e-8, -0.9e-8, 0}}));
    EXPECT_FALSE(isClosed({{0, 0, 0}, {5, 5, 5}, {0, 0, 1.1e-8}}));
    EXPECT_FALSE(isClosed({}));
    EXPECT_TRUE(isClosed(numbered(1)));
}

TEST(LoopFrom, RisesFromThePointOnAndLeavesOutPointZero) {
    EXPECT_EQ(along(loopFrom(numbered(5), 2, true)), (Numbers{2, 3, 4, 1, 2}));
}

TEST(LoopFrom, FallsFromThePointOnAndLeavesOutTheLast) {
    EXPECT_EQ(along(loopFrom(numbered(5), 2, false)), (Numbers{2, 1, 0, 3, 2}));
}

TEST(LoopFrom, KeepsTheCountFromEveryPoint) {
    for (int first = 0; first < 5; ++first) {
        for (const bool rising : {true, false}) {
            const PointList loop = loopFrom(numbered(5), first, rising);
            EXPECT_EQ(loop.size(), 5U);
            EXPECT_EQ(loop.front().x, first);
            EXPECT_EQ(loop.back().x, rising && first == 0 ? 4 : !rising && first == 4 ? 0 : first);
        }
    }
    EXPECT_EQ(loopFrom(numbered(5), 5, true), numbered(5));
    EXPECT_EQ(loopFrom(numbered(5), -1, false), numbered(5));
}

TEST(Prescribe, SetsTheCoordinatesThatHaveAValue) {
    Vec point{1, 2, 3};
    PrescribedValues values;
    prescribe(point, values);
    EXPECT_EQ(point, (Vec{1, 2, 3}));
    values.x = 7.0;
    values.z = 0.0;
    prescribe(point, values);
    EXPECT_EQ(point, (Vec{7, 2, 0}));
}

TEST(MatchedPoints, GoInTheDirectionThatLiesCloser) {
    const PointList target = {{0, 0.05, 0}, {1, 0.05, 0}, {2, 0.05, 0}};
    EXPECT_EQ(matchedPoints(numbered(3), target), target);
    EXPECT_EQ(matchedPoints({{2, 0, 0}, {1, 0, 0}, {0, 0, 0}}, target),
              (PointList{{2, 0.05, 0}, {1, 0.05, 0}, {0, 0.05, 0}}));
}

TEST(MatchedPoints, OfATieGoAsTheyAre) {
    // Both directions are as far: a closed pair of equal ends.
    const PointList target = {{0, 0, 0}, {5, 0, 0}, {0, 0, 0.01}};
    EXPECT_EQ(matchedPoints({{0, 0, 0.005}, {5, 0, 0}, {0, 0, 0.005}}, target), target);
}

TEST(MatchedPoints, MayLieATenthAwayByTheMeanAndNoFurther) {
    // 0.125 and three quarters of a tenth have exact means: (0 + 0.125) / 2 = 0.0625, (0.125 + 0.25) / 2 = 0.1875.
    EXPECT_TRUE(matchedPoints({{0, 0, 0}, {9, 0, 0}}, {{0, 0, 0}, {9, 0.125, 0}}).has_value());
    EXPECT_FALSE(matchedPoints({{0, 0, 0}, {9, 0, 0}}, {{0, 0.125, 0}, {9, 0.25, 0}}).has_value());
    EXPECT_TRUE(matchedPoints({{0, 0, 0}}, {{0.1, 0, 0}}).has_value());
    EXPECT_FALSE(matchedPoints({{0, 0, 0}}, {{0.1000001, 0, 0}}).has_value());
}

TEST(MatchedPoints, NeedEqualCountsAndNumbers) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(matchedPoints(numbered(3), numbered(2)).has_value());
    EXPECT_FALSE(matchedPoints({}, {}).has_value());
    EXPECT_FALSE(matchedPoints({{nan, 0, 0}}, {{0, 0, 0}}).has_value());
}

} // namespace
} // namespace velmora

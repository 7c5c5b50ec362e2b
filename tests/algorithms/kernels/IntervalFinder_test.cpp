#include "IntervalFinder.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "curve_samples.h"

namespace velmora {
namespace {

using namespace samples;

std::int32_t byScan(const Column& knots, double s, std::int32_t otherwise) {
    return static_cast<std::int32_t>(reference::intervalOf(knots, s, static_cast<std::size_t>(otherwise)));
}

TEST(IntervalFinder, AKnotBelongsToTheIntervalThatItEnds) {
    const Column knots{0, 1, 2, 3};
    IntervalFinder finder(knots.data(), 4);
    EXPECT_EQ(finder.find(-5), 0);
    EXPECT_EQ(finder.find(0), 0);
    EXPECT_EQ(finder.find(1), 0);
    EXPECT_EQ(finder.find(1.5), 1);
    EXPECT_EQ(finder.find(2), 1);
    EXPECT_EQ(finder.find(3), 2);
    EXPECT_EQ(finder.find(3.5), finder.none());
    EXPECT_EQ(finder.none(), 3);
}

TEST(IntervalFinder, EqualKnotsGiveTheFirstInterval) {
    const Column knots{0, 1, 1, 1, 2};
    IntervalFinder finder(knots.data(), 5);
    EXPECT_EQ(finder.find(2), 3);
    EXPECT_EQ(finder.find(1), 0);
}

TEST(IntervalFinder, FewerThanTwoKnotsHaveNoInterval) {
    const double knot = 1;
    for (const std::int32_t count : {-3, 0, 1}) {
        IntervalFinder finder(&knot, count);
        EXPECT_EQ(finder.none(), 0);
        EXPECT_EQ(finder.find(0), finder.none());
        EXPECT_EQ(finder.find(-1), finder.none());
        EXPECT_EQ(finder.find(notANumber), finder.none());
    }
}

TEST(IntervalFinder, AKnotThatIsNoNumberEndsNoInterval) {
    const Column knots{0, notANumber, 1, notANumber, 2};
    IntervalFinder finder(knots.data(), 5);
    EXPECT_EQ(finder.find(1.5), 3);
    EXPECT_EQ(finder.find(0.5), 1);
    EXPECT_EQ(finder.find(-infinite), 1);
}

TEST(IntervalFinder, AParameterThatIsNoNumberHasNoIntervalAndDoesNotDisturbTheNext) {
    const Column knots{0, 1, 2, 3};
    IntervalFinder finder(knots.data(), 4);
    EXPECT_EQ(finder.find(1.5), 1);
    EXPECT_EQ(finder.find(notANumber), finder.none());
    EXPECT_EQ(finder.find(1.5), 1);
    EXPECT_EQ(finder.find(0.5), 0);
    EXPECT_EQ(finder.find(notANumber), finder.none());
    EXPECT_EQ(finder.find(2.5), 2);
}

TEST(IntervalFinder, StaysOnTheIntervalInUseWhereNoneQualifies) {
    const Column knots{0, 1, 2, 3};
    IntervalFinder finder(knots.data(), 4);
    EXPECT_EQ(finder.findOrStay(9), 0);
    EXPECT_EQ(finder.findOrStay(1.5), 1);
    EXPECT_EQ(finder.findOrStay(9), 1);
    EXPECT_EQ(finder.findOrStay(notANumber), 1);
}

TEST(IntervalFinder, FindsWhatAScanFromTheStartFindsForAnyKnotsAndParameters) {
    Source source(1);
    for (int run = 0; run < 20000; ++run) {
        const bool wild = source.once(2);
        const Column knots = source.rising(source.whole(0, 12), wild);
        const Column parameters =
            source.once(2) ? source.rising(12, source.once(2)) : source.scattered(12, source.once(2));
        IntervalFinder finder(knots.data(), countOf(knots));
        std::int32_t stay = 0;
        for (const double s : parameters) {
            ASSERT_EQ(finder.find(s), byScan(knots, s, finder.none())) << "run " << run;
            stay = byScan(knots, s, stay);
            ASSERT_EQ(finder.findOrStay(s), stay) << "run " << run;
        }
    }
}

} // namespace
} // namespace velmora

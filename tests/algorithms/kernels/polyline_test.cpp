#include "polyline.h"

#include <gtest/gtest.h>

#include "curve_samples.h"
#include "curve_tolerances.h"

namespace velmora {
namespace {

using namespace samples;

/// The points that are left.
Points cleaned(Points p) {
    std::int32_t count = countOf(p);
    RemoveCoincidentPoints(p.x.data(), p.y.data(), p.z.data(), count);
    for (Column* column : {&p.x, &p.y, &p.z}) {
        column->resize(static_cast<std::size_t>(count));
    }
    return p;
}

TEST(CurveTolerances, HaveTheirValues) {
    EXPECT_EQ(bandFreeTolerance, 9.999999974752427e-07);
    EXPECT_EQ(bandFreeTolerance, static_cast<double>(1e-6F));
    EXPECT_EQ(bandTouchTolerance, 9.99999975123501e-09);
    EXPECT_EQ(coincidentDistance, 1e-6);
    EXPECT_EQ(shortLineLength, 1e-4);
    EXPECT_EQ(compressionUnity, 0.01);
    EXPECT_EQ(compressionMin, 1e-4);
    EXPECT_EQ(compressionMax, 1e4);
}

TEST(Polyline, ParameterIsTheRunningChordLength) {
    const Points p{{0, 3, 3, 3}, {0, 4, 4, 4}, {0, 0, 12, 12}};
    Column t(4, untouched);
    EXPECT_EQ(chordParameters(p.x.data(), p.y.data(), p.z.data(), 4, t.data()), 17);
    EXPECT_EQ(t, (Column{0, 5, 17, 17}));
    EXPECT_EQ(polylineLength(p.x.data(), p.y.data(), p.z.data(), 4), 17);
    EXPECT_EQ(chordLength(p.x.data(), p.y.data(), p.z.data(), 2), 12);
}

TEST(Polyline, FewerThanTwoPointsHaveNoLength) {
    const double at = 5;
    double t = untouched;
    for (const std::int32_t n : {-2, 0}) {
        EXPECT_EQ(polylineLength(&at, &at, &at, n), 0);
        EXPECT_EQ(chordParameters(&at, &at, &at, n, &t), 0);
        EXPECT_EQ(t, untouched);
    }
    EXPECT_EQ(polylineLength(&at, &at, &at, 1), 0);
    EXPECT_EQ(chordParameters(&at, &at, &at, 1, &t), 0);
    EXPECT_EQ(t, 0);
}

TEST(RemoveCoincidentPoints, OfThreePointsWithTwoTogetherTwoAreLeft) {
    EXPECT_EQ(cleaned(onAxis({0, 5e-7, 1})).x, (Column{5e-7, 1}));
    EXPECT_EQ(cleaned(onAxis({0, 1, 1 + 5e-7})).x, (Column{0, 1 + 5e-7}));
}

TEST(RemoveCoincidentPoints, TwoPointsStayTwo) {
    EXPECT_EQ(cleaned(onAxis({1, 1})).x, (Column{1, 1}));
}

TEST(RemoveCoincidentPoints, NeverGoesBelowTwoPoints) {
    EXPECT_EQ(cleaned(onAxis({1, 1, 1, 1, 1})).x, (Column{1, 1}));
    const Column close{0, 1e-7, 2e-7, 3e-7};
    EXPECT_EQ(cleaned(onAxis(close)).x, (Column{2e-7, 3e-7}));
}

TEST(RemoveCoincidentPoints, DeletesTheEarlierOfAPair) {
    EXPECT_EQ(cleaned(onAxis({0, 2, 2 + 1e-7, 4})).x, (Column{0, 2 + 1e-7, 4}));
    EXPECT_EQ(cleaned(onAxis({0, 1e-7, 2, 4})).x, (Column{1e-7, 2, 4}));
}

TEST(RemoveCoincidentPoints, ADistanceOfExactlyTheToleranceIsKept) {
    EXPECT_EQ(cleaned(onAxis({0, 1e-6, 1, 2})).x.size(), 4U);
    EXPECT_EQ(cleaned(onAxis({0, 0.999e-6, 1, 2})).x.size(), 3U);
}

TEST(RemoveCoincidentPoints, DistanceIsMeasuredInSpace) {
    // 0.6e-6 on each axis is 1.04e-6 along the diagonal; 0.5e-6 is 0.87e-6.
    const Column far{0, 0.6e-6, 1, 2};
    EXPECT_EQ(cleaned({far, far, far}).x.size(), 4U);
    const Column close{0, 0.5e-6, 1, 2};
    EXPECT_EQ(cleaned({close, close, close}).z, (Column{0.5e-6, 1, 2}));
}

TEST(RemoveCoincidentPoints, ARemovalThatBringsTwoPointsTogetherRemovesTheFirstOfThemToo) {
    // 1.2 and 0.6 are close: 1.2 goes. Then 0 and 0.6 are neighbours, and close.
    EXPECT_EQ(cleaned(onAxis({0, 1.2e-6, 0.6e-6, 1, 2})).x, (Column{0.6e-6, 1, 2}));
}

TEST(RemoveCoincidentPoints, AChainOfCloseNeighboursShrinksToItsLastPoint) {
    EXPECT_EQ(cleaned(onAxis({0, 0.8e-6, 1.6e-6, 2.4e-6, 5})).x, (Column{2.4e-6, 5}));
}

TEST(RemoveCoincidentPoints, MovesTheThreeCoordinatesTogether) {
    const Points left = cleaned({{1, 2, 2, 3}, {4, 5, 5, 6}, {7, 8, 8, 9}});
    EXPECT_EQ(left.x, (Column{1, 2, 3}));
    EXPECT_EQ(left.y, (Column{4, 5, 6}));
    EXPECT_EQ(left.z, (Column{7, 8, 9}));
}

TEST(RemoveCoincidentPoints, FewerThanThreePointsAndNegativeCountsStay) {
    double at = 1;
    for (const std::int32_t before : {-7, 0, 1}) {
        std::int32_t count = before;
        RemoveCoincidentPoints(&at, &at, &at, count);
        EXPECT_EQ(count, before);
    }
    EXPECT_EQ(at, 1);
}

TEST(RemoveCoincidentPoints, PointsThatAreNoNumbersStay) {
    EXPECT_EQ(cleaned(onAxis({notANumber, notANumber, notANumber})).x.size(), 3U);
    EXPECT_EQ(cleaned(onAxis({infinite, infinite, infinite})).x.size(), 3U);
}

TEST(RemoveCoincidentPoints, LeavesWhatScansFromTheStartLeave) {
    Source source(2);
    for (int run = 0; run < 20000; ++run) {
        const Points p = source.polyline(source.whole(0, 14), true);
        Points expected = p;
        reference::removeCoincidentPoints(expected);
        ASSERT_TRUE(sameBits(cleaned(p), expected)) << "run " << run;
    }
}

TEST(RemoveCoincidentPoints, LeavesWhatScansFromTheStartLeaveWherePointsGoBackAndForth) {
    Source source(3);
    for (int run = 0; run < 20000; ++run) {
        Points p = onAxis(source.scattered(source.whole(0, 14), false));
        for (double& x : p.x) {
            x *= 4e-7; // within 2e-6 of the origin: about half of all pairs are close
        }
        Points expected = p;
        reference::removeCoincidentPoints(expected);
        ASSERT_TRUE(sameBits(cleaned(p), expected)) << "run " << run;
    }
}

TEST(RemoveCoincidentPoints, AMillionEqualPointsTakeNoQuadraticTime) {
    const Points left = cleaned(onAxis(Column(1000000, 3.0)));
    EXPECT_EQ(left.x, (Column{3, 3}));
}

} // namespace
} // namespace velmora

#include "spline_table.h"

#include <gtest/gtest.h>

#include "curve_samples.h"
#include "spline_band.h"

namespace velmora {
namespace {

using namespace samples;

Column momentsOf(const Column& t, const Column& y) {
    const std::int32_t n = countOf(t);
    Column knots(t.size(), untouched);
    Column values(t.size(), untouched);
    Column moments(t.size(), untouched);
    SplineMoments(n, t.data(), y.data(), knots.data(), values.data(), moments.data(), n);
    return moments;
}

Column valuesAt(const Column& s, const Column& t, const Column& y) {
    const Column moments = momentsOf(t, y);
    Column out(s.size(), untouched);
    SplineValues(countOf(s), s.data(), out.data(), countOf(t), t.data(), y.data(), moments.data());
    return out;
}

// Through (0,0), (1,1), (2,0): M0 = 0, M0/2 + 2 M1 + M2/2 = -6, M1 + 2 M2 = 0. So 7/4 M1 = -6.
const Column peakT{0, 1, 2};
const Column peakY{0, 1, 0};

TEST(SplineMoments, SolveTheSystemOfThreePoints) {
    expectNear(momentsOf(peakT, peakY), {0, -24.0 / 7, 12.0 / 7}, 1e-15);
}

TEST(SplineMoments, LastIsMinusHalfTheOneBeforeItAndFirstIsZero) {
    Source source(11);
    for (int run = 0; run < 100; ++run) {
        const Column moments = momentsOf({0, 1, 2.5, 3, 7, 8}, source.scattered(6, false));
        EXPECT_EQ(moments[0], 0);
        EXPECT_GT(std::abs(moments[5]), 1e-6);
        EXPECT_NEAR(moments[5], -moments[4] / 2, 1e-13);
    }
}

TEST(SplineMoments, SatisfyEveryInteriorRow) {
    Source source(12);
    for (int run = 0; run < 200; ++run) {
        Column t{0};
        while (t.size() < 20) {
            t.push_back(t.back() + source.real(0.1, 2));
        }
        const Column y = source.scattered(20, false);
        const Column moments = momentsOf(t, y);
        for (std::size_t i = 1; i + 1 < t.size(); ++i) {
            const double before = t[i] - t[i - 1];
            const double after = t[i + 1] - t[i];
            const double bend = 6 * ((y[i + 1] - y[i]) / after - (y[i] - y[i - 1]) / before) / (before + after);
            const double row =
                before / (before + after) * moments[i - 1] + 2 * moments[i] + after / (before + after) * moments[i + 1];
            EXPECT_NEAR(row, bend, 1e-9 * (1 + std::abs(bend))) << "row " << i;
        }
    }
}

TEST(SplineMoments, CopyKnotsAndValues) {
    Column knots(3, untouched);
    Column values(3, untouched);
    Column moments(3, untouched);
    SplineMoments(3, peakT.data(), peakY.data(), knots.data(), values.data(), moments.data(), 5);
    EXPECT_EQ(knots, peakT);
    EXPECT_EQ(values, peakY);
}

TEST(SplineMoments, AreZeroWithoutAnInteriorPoint) {
    EXPECT_EQ(momentsOf({4}, {9}), (Column{0}));
    EXPECT_EQ(momentsOf({0, 2}, {1, 7}), (Column{0, 0}));
}

TEST(SplineMoments, AreZeroForPointsInLine) {
    // Steps and slopes that are exact in binary.
    for (const double moment : momentsOf({0, 1, 2, 4, 8}, {1, 3, 5, 9, 17})) {
        EXPECT_EQ(moment, 0);
    }
}

TEST(SplineMoments, WriteNothingForNoPointsOrMoreThanThereIsRoomFor) {
    for (const std::int32_t n : {-5, 0, 3}) {
        Column knots(3, untouched);
        Column values(3, untouched);
        Column moments(3, untouched);
        SplineMoments(n, peakT.data(), peakY.data(), knots.data(), values.data(), moments.data(), 2);
        BandMoments(n, peakT.data(), peakY.data(), moments.data(), 2);
        EXPECT_EQ(knots[0], untouched);
        EXPECT_EQ(values[0], untouched);
        EXPECT_EQ(moments[0], untouched);
    }
}

TEST(SplineMoments, EqualKnotsGiveNoNumbersButNoCrash) {
    const Column moments = momentsOf({0, 1, 1, 1, 2}, {0, 1, 1, 1, 2});
    EXPECT_TRUE(std::isnan(moments[2]));
}

TEST(SplineMoments, AreThoseOfThePlainSweepsForAnyInput) {
    Source source(13);
    for (int run = 0; run < 5000; ++run) {
        const std::int32_t n = source.whole(1, 15);
        const bool wild = source.once(2);
        const Column t = source.rising(n, wild);
        const Column y = source.scattered(n, wild);
        const Column expected = reference::splineMoments(t, y);
        ASSERT_TRUE(sameBits(momentsOf(t, y), expected)) << "run " << run;
        Column inPlace(t.size(), untouched);
        BandMoments(n, t.data(), y.data(), inPlace.data(), n);
        ASSERT_TRUE(sameBits(inPlace, expected)) << "run " << run;
    }
}

TEST(SplineValues, OfThreePointsByHand) {
    // At 1/2: M1/48 + 1/2 - M1/12 = 5/7. At 3/2: (M1 + M2)/48 + 1/2 - M1/12 - M2/12 = 17/28.
    expectNear(valuesAt({0, 0.5, 1, 1.5, 2}, peakT, peakY), {0, 5.0 / 7, 1, 17.0 / 28, 0}, 1e-15);
}

TEST(SplineValues, PassThroughTheTable) {
    Source source(14);
    const Column t{0, 0.5, 0.75, 2, 3, 10};
    const Column y = source.scattered(6, false);
    expectNear(valuesAt(t, t, y), y, 1e-13);
}

TEST(SplineValues, LieOnTheLineOfPointsInLine) {
    const Column t{0, 1, 2, 4, 8};
    expectNear(valuesAt({0.3, 1.7, 3.1, 6.9}, t, {1, 3, 5, 9, 17}), {1.6, 4.4, 7.2, 14.8}, 1e-14);
}

TEST(SplineValues, BehindTheLastKnotTheIntervalBeforeGoesOn) {
    // From 1.5 the second interval is in use: at 2.5, A = -1/2 and B = 3/2, so
    // (-M1/8 + 27 M2/8)/6 + (1 - M1/6)(-1/2) - M2/6 * 3/2 = (3/7 + 81/14)/6 - 1/2 - 2/7 - 3/7 = -5/28.
    const Column second = valuesAt({1.5, 2.5}, peakT, peakY);
    EXPECT_NEAR(second[1], -5.0 / 28, 1e-14);
    // As the first parameter it finds interval 0: A = -3/2, B = 5/2, so
    // M1 * 125/48 - M1/6 * 5/2 + 5/2 = -125/14 + 10/7 + 5/2 = -5.
    EXPECT_NEAR(valuesAt({2.5}, peakT, peakY)[0], -5, 1e-14);
}

TEST(SplineValues, BeforeTheFirstKnotTheFirstIntervalIsUsed) {
    // A = 3/2, B = -1/2: -M1/48 + M1/12 - 1/2 = -3/14 - 1/2.
    EXPECT_NEAR(valuesAt({-0.5}, peakT, peakY)[0], -10.0 / 14, 1e-14);
}

TEST(SplineValues, WriteNothingWithoutAnInterval) {
    const double one = 1;
    double out = untouched;
    for (const std::int32_t n : {-1, 0, 1}) {
        SplineValues(1, &one, &out, n, &one, &one, &one);
        EXPECT_EQ(out, untouched);
    }
    for (const std::int32_t m : {-1, 0}) {
        SplineValues(m, &one, &out, 3, peakT.data(), peakY.data(), peakY.data());
        EXPECT_EQ(out, untouched);
    }
}

TEST(SplineValues, MayReplaceTheParameters) {
    const Column moments = momentsOf(peakT, peakY);
    Column s{0.5, 1.5};
    SplineValues(2, s.data(), s.data(), 3, peakT.data(), peakY.data(), moments.data());
    EXPECT_EQ(s, valuesAt({0.5, 1.5}, peakT, peakY));
}

TEST(SplineValues, AreThoseOfTheScanFromTheStartForAnyInput) {
    Source source(15);
    for (int run = 0; run < 20000; ++run) {
        const std::int32_t n = source.whole(2, 12);
        const bool wild = source.once(2);
        const Column t = source.rising(n, wild);
        const Column y = source.scattered(n, wild);
        const Column moments = source.scattered(n, wild);
        const Column s = source.once(2) ? source.rising(15, wild) : source.scattered(15, wild);
        Column out(s.size(), untouched);
        SplineValues(countOf(s), s.data(), out.data(), n, t.data(), y.data(), moments.data());
        ASSERT_TRUE(sameBits(out, reference::splineValues(s, t, y, moments))) << "run " << run;
    }
}

} // namespace
} // namespace velmora

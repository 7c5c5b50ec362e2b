#include "spline_band.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "curve_samples.h"
#include "curve_tolerances.h"
#include "spline_table.h"

namespace velmora {
namespace {

using namespace samples;

struct Derivatives {
    double value = untouched;
    double slope = untouched;
    double curvature = untouched;
};

Derivatives splineAt(const Column& t, const Column& y, double s) {
    const std::int32_t n = countOf(t);
    Column moments(t.size(), untouched);
    BandMoments(n, t.data(), y.data(), moments.data(), n);
    Derivatives at;
    BandSplineAt(n, t.data(), y.data(), moments.data(), s, at.value, at.slope, at.curvature);
    return at;
}

struct Fit {
    int result;
    Column out;
};

Fit fit(const Column& t, const Column& y, const Column& halfWidth, std::int32_t capacity = 1000) {
    Fit fit{-1, Column(y.size(), untouched)};
    fit.result = FitSplineInBand(countOf(y), t.data(), y.data(), halfWidth.data(), fit.out.data(), capacity);
    return fit;
}

const Column fiveT{0, 1, 2, 3, 4};
const Column peakY{0, 0, 1, 0, 0};

Fit fitPeak(double halfWidth) {
    return fit(fiveT, peakY, {0, 0, halfWidth, 0, 0});
}

TEST(BandSplineAt, GivesValueSlopeAndCurvatureByHand) {
    // Through (0,0), (1,1), (2,0): M1 = -24/7, M2 = 12/7.
    const Derivatives first = splineAt({0, 1, 2}, {0, 1, 0}, 0.5);
    EXPECT_NEAR(first.value, 5.0 / 7, 1e-15);
    EXPECT_NEAR(first.slope, 8.0 / 7, 1e-15); // M1/8 + 1 - M1/6
    EXPECT_NEAR(first.curvature, -12.0 / 7, 1e-15);
    const Derivatives second = splineAt({0, 1, 2}, {0, 1, 0}, 1.5);
    EXPECT_NEAR(second.value, 17.0 / 28, 1e-15);
    EXPECT_NEAR(second.slope, -17.0 / 14, 1e-15); // (M2 - M1)/8 - 1 - (M2 - M1)/6
    EXPECT_NEAR(second.curvature, -6.0 / 7, 1e-15);
}

TEST(BandSplineAt, BehindTheLastKnotTheLastIntervalGoesOn) {
    const Derivatives at = splineAt({0, 1, 2}, {0, 1, 0}, 2.5);
    EXPECT_NEAR(at.value, -5.0 / 28, 1e-14);
    EXPECT_NEAR(at.curvature, 12.0 / 7 * 1.5 + 24.0 / 7 * 0.5, 1e-14);
}

TEST(BandSplineAt, AgreesWithSplineValues) {
    Source source(21);
    for (int run = 0; run < 2000; ++run) {
        const std::int32_t n = source.whole(2, 10);
        const Column t = source.rising(n, false);
        const Column y = source.scattered(n, false);
        const double s = source.real(t.front(), t.back());
        const Column expected = reference::splineValues({s}, t, y, reference::splineMoments(t, y));
        ASSERT_TRUE(sameBits(splineAt(t, y, s).value, expected[0])) << "run " << run;
    }
}

TEST(BandSplineAt, SlopeAndCurvatureAreTheDerivativesOfTheValue) {
    Source source(22);
    const Column t{0, 1, 3, 4, 6};
    const double step = 1e-4;
    for (int run = 0; run < 100; ++run) {
        const Column y = source.scattered(5, false);
        const double s = source.whole(0, 5) + 0.5;
        const Derivatives at = splineAt(t, y, s);
        const double before = splineAt(t, y, s - step).value;
        const double after = splineAt(t, y, s + step).value;
        EXPECT_NEAR(at.slope, (after - before) / (2 * step), 1e-6);
        EXPECT_NEAR(at.curvature, (after - 2 * at.value + before) / (step * step), 1e-5);
    }
}

TEST(BandSplineAt, OnePointIsConstantAndNoPointWritesNothing) {
    const Derivatives one = splineAt({3}, {8}, 100);
    EXPECT_EQ(one.value, 8);
    EXPECT_EQ(one.slope, 0);
    EXPECT_EQ(one.curvature, 0);
    const double none = 0;
    for (const std::int32_t n : {-1, 0}) {
        Derivatives at;
        BandSplineAt(n, &none, &none, &none, 0, at.value, at.slope, at.curvature);
        EXPECT_EQ(at.value, untouched);
        EXPECT_EQ(at.slope, untouched);
        EXPECT_EQ(at.curvature, untouched);
    }
}

TEST(FitSplineInBand, WithoutABandEveryPointStays) {
    Source source(23);
    const Column y = source.scattered(5, false);
    const Fit fitted = fit(fiveT, y, {0, 0, 0, 0, 0});
    EXPECT_EQ(fitted.result, 0);
    EXPECT_TRUE(sameBits(fitted.out, y));
}

TEST(FitSplineInBand, AWideBandLetsThePointGoToTheSplineOfTheOthers) {
    // The spline through the zeros is zero; the band would allow twice the step.
    const Fit fitted = fitPeak(2);
    EXPECT_EQ(fitted.result, 0);
    EXPECT_EQ(fitted.out, (Column{0, 0, 0, 0, 0}));
}

TEST(FitSplineInBand, ANarrowBandPinsThePointAtItsEdge) {
    const Fit fitted = fitPeak(0.25);
    EXPECT_EQ(fitted.result, 1);
    EXPECT_EQ(fitted.out, (Column{0, 0, 0.75, 0, 0}));
    const Fit dip = fit(fiveT, {0, 0, -1, 0, 0}, {0, 0, 0.25, 0, 0});
    EXPECT_EQ(dip.result, 1);
    EXPECT_EQ(dip.out, (Column{0, 0, -0.75, 0, 0}));
}

TEST(FitSplineInBand, AHalfWidthOfTheToleranceStillPins) {
    const Fit pinned = fitPeak(bandFreeTolerance);
    EXPECT_EQ(pinned.result, 0);
    EXPECT_EQ(pinned.out, peakY);
    const Fit moved = fitPeak(std::nextafter(bandFreeTolerance, 1));
    EXPECT_EQ(moved.result, 1);
    EXPECT_NEAR(moved.out[2], 1 - bandFreeTolerance, 1e-15);
    EXPECT_LT(moved.out[2], 1);
}

TEST(FitSplineInBand, APointThatHasNoStepToMakeIsPinned) {
    // Already on the spline of the others: ratio 1 is the common ratio.
    const Fit fitted = fit(fiveT, {0, 0, 0, 0, 0}, {0, 0, 1, 0, 0});
    EXPECT_EQ(fitted.result, 1);
    EXPECT_EQ(fitted.out, (Column{0, 0, 0, 0, 0}));
}

TEST(FitSplineInBand, AStepBelowTheTouchToleranceIsNotMade) {
    const Fit still = fit(fiveT, {0, 0, 0.9e-8, 0, 0}, {0, 0, 1, 0, 0});
    EXPECT_EQ(still.result, 1);
    EXPECT_EQ(still.out[2], 0.9e-8);
    const Fit made = fit(fiveT, {0, 0, 1.1e-8, 0, 0}, {0, 0, 1, 0, 0});
    EXPECT_EQ(made.result, 0);
    EXPECT_EQ(made.out[2], 0);
}

TEST(FitSplineInBand, AllPointsMoveByTheSmallestRatioInTheFirstPass) {
    // Both steps are -1; point 3 may go half its way, point 2 all of it and more. Point 3 is pinned at 1/2 and holds
    // point 2 up: in the later passes that goes to the spline through (0,0), (1,0), (3,1/2), (4,0), (5,0).
    const Column t{0, 1, 2, 3, 4, 5};
    const Fit fitted = fit(t, {0, 0, 1, 1, 0, 0}, {0, 0, 5, 0.5, 0, 0});
    EXPECT_EQ(fitted.result, 1);
    EXPECT_EQ(fitted.out[3], 0.5);
    EXPECT_NEAR(fitted.out[2], splineAt({0, 1, 3, 4, 5}, {0, 0, 0.5, 0, 0}, 2).value, 1e-14);
}

TEST(FitSplineInBand, FirstAndLastTwoOfPinnedEndsNeverMoveAndNoPointLeavesTheBand) {
    Source source(24);
    for (int run = 0; run < 2000; ++run) {
        const std::int32_t n = source.whole(4, 30);
        Column t{0};
        while (countOf(t) < n) {
            t.push_back(t.back() + source.real(0.05, 1));
        }
        const Column y = source.scattered(n, false);
        Column halfWidth(t.size(), source.real(0, 4));
        halfWidth[0] = halfWidth[1] = halfWidth[t.size() - 2] = halfWidth[t.size() - 1] = 0;
        const Fit fitted = fit(t, y, halfWidth);
        for (std::size_t i = 0; i < t.size(); ++i) {
            if (halfWidth[i] == 0) {
                ASSERT_EQ(fitted.out[i], y[i]) << "run " << run;
            }
            ASSERT_LE(std::abs(fitted.out[i] - y[i]), halfWidth[i] + 1e-6) << "run " << run;
        }
    }
}

TEST(FitSplineInBand, TakesBendingOutOfAZigzag) {
    Column t;
    Column y;
    for (int i = 0; i < 20; ++i) {
        t.push_back(i);
        y.push_back(i % 2 == 0 ? 0.1 : -0.1);
    }
    Column halfWidth(20, 0.15);
    halfWidth[0] = halfWidth[1] = halfWidth[18] = halfWidth[19] = 0;
    const Column out = fit(t, y, halfWidth).out;
    double before = 0;
    double after = 0;
    for (std::size_t i = 1; i + 1 < y.size(); ++i) {
        before += std::abs(y[i - 1] - 2 * y[i] + y[i + 1]);
        after += std::abs(out[i - 1] - 2 * out[i] + out[i + 1]);
    }
    EXPECT_LT(after, before / 2);
}

TEST(FitSplineInBand, MayReplaceItsInput) {
    Source source(25);
    const Column t = source.rising(12, false);
    const Column y = source.scattered(12, false);
    Column halfWidth(12, 1.0);
    halfWidth[0] = halfWidth[1] = halfWidth[10] = halfWidth[11] = 0;
    Column inPlace = y;
    const int result = FitSplineInBand(12, t.data(), inPlace.data(), halfWidth.data(), inPlace.data(), 14);
    const Fit apart = fit(t, y, halfWidth);
    EXPECT_EQ(result, apart.result);
    EXPECT_TRUE(sameBits(inPlace, apart.out));
}

TEST(FitSplineInBand, WritesNothingForNoPoints) {
    double out = untouched;
    for (const std::int32_t n : {-4, 0}) {
        EXPECT_EQ(FitSplineInBand(n, &out, &out, &out, &out, 10), 0);
        EXPECT_EQ(out, untouched);
    }
}

TEST(FitSplineInBand, WithoutAnyPinnedPointTheEndsStay) {
    const Column wide(5, 10.0);
    const Fit fitted = fit(fiveT, peakY, wide);
    EXPECT_EQ(fitted.result, 1);
    EXPECT_EQ(fitted.out[0], 0);
    EXPECT_EQ(fitted.out[4], 0);
}

TEST(FitSplineInBand, FewPointsAreNoTrouble) {
    for (std::size_t n = 1; n < 4; ++n) {
        const Column t(fiveT.begin(), fiveT.begin() + static_cast<std::ptrdiff_t>(n));
        const Column y(n, 2.0);
        EXPECT_EQ(fit(t, y, Column(n, 0.0)).out, y);
        EXPECT_EQ(fit(t, y, Column(n, 1.0)).out, y);
        EXPECT_EQ(fit(t, y, Column(n, 0.0), 0).out, y);
    }
}

TEST(FitSplineInBand, GivesThePlainIterationsPointsForBandsOfTheRebreak) {
    Source source(26);
    int pinned = 0;
    for (int run = 0; run < 5000; ++run) {
        const std::int32_t n = source.whole(4, 25);
        const Column t = source.rising(n, false);
        const Column y = source.scattered(n, false);
        Column halfWidth(t.size(), source.real(0, 3));
        halfWidth[0] = halfWidth[1] = halfWidth[t.size() - 2] = halfWidth[t.size() - 1] = 0;
        const reference::Fit expected = reference::fitSplineInBand(t, y, halfWidth, t.size() + 2);
        const Fit actual = fit(t, y, halfWidth, n + 2);
        ASSERT_EQ(actual.result, expected.result) << "run " << run;
        ASSERT_TRUE(sameBits(actual.out, expected.out)) << "run " << run;
        pinned += actual.result;
    }
    EXPECT_GT(pinned, 1000);
    EXPECT_LT(pinned, 4999);
}

TEST(FitSplineInBand, GivesThePlainIterationsPointsForAnyBandRoomAndParameters) {
    Source source(27);
    for (int run = 0; run < 10000; ++run) {
        const std::int32_t n = source.whole(1, 20);
        const bool wild = source.once(2);
        const Column t = source.once(4) ? source.scattered(n, wild) : source.rising(n, wild);
        const Column y = source.scattered(n, wild);
        Column halfWidth = source.scattered(n, wild);
        std::replace_if(
            halfWidth.begin(), halfWidth.end(), [&](double) { return source.once(6); }, bandFreeTolerance);
        const std::int32_t capacity = source.whole(-1, 22);
        const reference::Fit expected =
            reference::fitSplineInBand(t, y, halfWidth, static_cast<std::size_t>(std::max(capacity, 0)));
        const Fit actual = fit(t, y, halfWidth, capacity);
        ASSERT_EQ(actual.result, expected.result) << "run " << run;
        ASSERT_TRUE(sameBits(actual.out, expected.out)) << "run " << run;
    }
}

} // namespace
} // namespace velmora

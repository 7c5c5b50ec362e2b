#include <numeric>

#include <gtest/gtest.h>

#include "curve_samples.h"
#include "rebreak_kernels.h"

namespace velmora {
namespace {

using namespace samples;

struct Result {
    int code;
    Points out;
};

Result linear(const Points& in, std::int32_t m, double compression) {
    Result result{-1, outputs(std::max(m, 0))};
    Points& out = result.out;
    result.code = LinearRebreak(in.x.data(), in.y.data(), in.z.data(), countOf(in), out.x.data(), out.y.data(),
                                out.z.data(), m, compression);
    return result;
}

Result byLaw(const Points& in, const Column& law) {
    Result result{-1, outputs(countOf(law))};
    Points& out = result.out;
    result.code = LinearRebreakLaw(in.x.data(), in.y.data(), in.z.data(), countOf(in), out.x.data(), out.y.data(),
                                   out.z.data(), countOf(law), law.data());
    return result;
}

Column stepsOf(const Column& x) {
    Column steps(x.size());
    std::adjacent_difference(x.begin(), x.end(), steps.begin());
    steps.erase(steps.begin());
    return steps;
}

TEST(LinearRebreak, LaysEqualStepsAcrossTheChords) {
    const Result result = linear(onAxis({0, 1, 4}), 5, 1);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out.x, (Column{0, 1, 2, 3, 4}));
    EXPECT_EQ(result.out.y, (Column{0, 0, 0, 0, 0}));
}

TEST(LinearRebreak, FollowsTheChordsRoundACorner) {
    // Length 8, steps of 2: the corner at 4 is met, the middle of each leg too.
    const Points in{{0, 4, 4}, {1, 1, 1}, {0, 0, 4}};
    const Result result = linear(in, 5, 1);
    EXPECT_EQ(result.out.x, (Column{0, 2, 4, 4, 4}));
    EXPECT_EQ(result.out.y, (Column{1, 1, 1, 1, 1}));
    EXPECT_EQ(result.out.z, (Column{0, 0, 0, 2, 4}));
}

TEST(LinearRebreak, Compression1005GivesExactlyEqualStepsAnd102DoesNot) {
    EXPECT_EQ(linear(onAxis({0, 4}), 5, 1.005).out.x, (Column{0, 1, 2, 3, 4}));
    EXPECT_EQ(linear(onAxis({0, 4}), 5, 0.995).out.x, (Column{0, 1, 2, 3, 4}));
    const Column steps = stepsOf(linear(onAxis({0, 4}), 5, 1.02).out.x);
    EXPECT_LT(steps[0], 1);
    EXPECT_NEAR(steps[3] / steps[0], 1.02, 1e-12);
}

TEST(LinearRebreak, Compression4WithFivePointsGrowsByTheCubeRootOf4) {
    const Result result = linear(onAxis({0, 3, 10}), 5, 4);
    const Column steps = stepsOf(result.out.x);
    for (std::size_t i = 1; i < 4; ++i) {
        EXPECT_NEAR(steps[i] / steps[i - 1], std::cbrt(4.0), 1e-13);
    }
    EXPECT_NEAR(steps[3] / steps[0], 4, 1e-12);
    EXPECT_EQ(result.out.x.back(), 10);
    EXPECT_EQ(result.code, 0);
}

TEST(LinearRebreak, ThreePointsStandInTheRatioOfTheCompression) {
    // m = 3: q is the ratio itself, the first step L/(1+q).
    expectNear(linear(onAxis({0, 10}), 3, 4).out.x, {0, 2, 10}, 1e-14);
    expectNear(linear(onAxis({0, 10}), 3, 0.25).out.x, {0, 8, 10}, 1e-14);
}

TEST(LinearRebreak, ClampsTheCompression) {
    const Points in = onAxis({0, 1, 5});
    EXPECT_TRUE(sameBits(linear(in, 6, 1e9).out, linear(in, 6, 10000).out));
    EXPECT_TRUE(sameBits(linear(in, 6, infinite).out, linear(in, 6, 10000).out));
    EXPECT_TRUE(sameBits(linear(in, 6, 0).out, linear(in, 6, 0.0001).out));
    EXPECT_TRUE(sameBits(linear(in, 6, -3).out, linear(in, 6, 0.0001).out));
    EXPECT_FALSE(sameBits(linear(in, 6, 9999).out, linear(in, 6, 10000).out));
    EXPECT_TRUE(sameBits(linear(in, 6, notANumber).out, linear(in, 6, 1).out));
}

TEST(LinearRebreak, TwoOutputsAreTheEndPoints) {
    const Result result = linear({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, 2, 4);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out.x, (Column{1, 3}));
    EXPECT_EQ(result.out.y, (Column{4, 6}));
    EXPECT_EQ(result.out.z, (Column{7, 9}));
}

TEST(LinearRebreak, WithTooFewOutputsOrNoInputNothingIsWritten) {
    double out = untouched;
    const double in[] = {0, 1};
    for (const std::int32_t m : {-1, 0, 1}) {
        EXPECT_EQ(LinearRebreak(in, in, in, 2, &out, &out, &out, m, 1), 1);
        EXPECT_EQ(out, untouched);
    }
    for (const std::int32_t m : {2, 3}) {
        const Result none = linear({}, m, 1);
        EXPECT_EQ(none.code, 1);
        EXPECT_EQ(none.out.x, Column(static_cast<std::size_t>(m), untouched));
    }
    EXPECT_EQ(LinearRebreak(in, in, in, -5, &out, &out, &out, 4, 1), 1);
    EXPECT_EQ(out, untouched);
}

TEST(LinearRebreak, OnePointOrNoLengthGivesCopiesOfTheFirstPoint) {
    const Result one = linear({{3}, {4}, {5}}, 3, 2);
    EXPECT_EQ(one.code, 0);
    EXPECT_EQ(one.out.y, (Column{4, 4, 4}));
    EXPECT_EQ(linear({{3}, {4}, {5}}, 2, 2).out.z, (Column{5, 5}));
    EXPECT_EQ(linear(onAxis({7, 7, 7, 7}), 4, 2).out.x, (Column{7, 7, 7, 7}));
}

TEST(LinearRebreak, ALengthOfTheToleranceIsNoLength) {
    EXPECT_EQ(linear(onAxis({0, 1e-6}), 3, 1).out.x, (Column{0, 0, 0}));
    EXPECT_EQ(linear(onAxis({0, 1.01e-6}), 3, 1).out.x.back(), 1.01e-6);
    EXPECT_EQ(linear(onAxis({0, 1, notANumber}), 3, 1).out.x, (Column{0, 0, 0}));
}

TEST(LinearRebreak, LastOutputIsExactlyTheLastPointAndFirstTheFirst) {
    Source source(31);
    for (int run = 0; run < 2000; ++run) {
        const Points in = source.polyline(source.whole(2, 20), false);
        const Result result = linear(in, source.whole(3, 40), source.real(0.01, 10));
        ASSERT_EQ(result.code, 0);
        ASSERT_EQ(result.out.x.back(), in.x.back());
        ASSERT_EQ(result.out.y.back(), in.y.back());
        ASSERT_EQ(result.out.z.back(), in.z.back());
        ASSERT_EQ(result.out.x.front(), in.x.front());
    }
}

TEST(LinearRebreak, TheSmallestDivisorMovesAPointOfAVeryShortChord) {
    // The middle lies 5e-8 before the end of a chord of 1e-7: taken back 5e-8 of 1e-6 of the chord, not of 1e-7.
    const Column x = linear(onAxis({0, 1 - 5e-8, 1 + 5e-8, 2}), 3, 1).out.x;
    EXPECT_NEAR(x[1], 1 + 4.5e-8, 1e-13);
}

TEST(LinearRebreak, RepeatedPointsInTheMiddleAreNoTrouble) {
    EXPECT_EQ(linear(onAxis({0, 1, 1, 1, 2}), 3, 1).out.x, (Column{0, 1, 2}));
    EXPECT_EQ(linear(onAxis({0, 0, 1, 2, 2}), 5, 1).out.x, (Column{0, 0.5, 1, 1.5, 2}));
}

TEST(LinearRebreak, ScalesExactlyWithPowersOfTwo) {
    Source source(32);
    for (int run = 0; run < 500; ++run) {
        const Points in = source.polyline(source.whole(2, 20), false);
        Points scaled = in;
        Points expected = linear(in, 17, 3).out;
        for (Points* points : {&scaled, &expected}) {
            for (Column* column : {&points->x, &points->y, &points->z}) {
                for (double& value : *column) {
                    value *= 8;
                }
            }
        }
        ASSERT_TRUE(sameBits(linear(scaled, 17, 3).out, expected)) << "run " << run;
    }
}

TEST(LinearRebreak, OfAReversedCurveWithTheInverseCompressionIsReversed) {
    Source source(33);
    for (int run = 0; run < 500; ++run) {
        const Points in = source.polyline(source.whole(2, 20), false);
        const double compression = source.real(0.1, 10);
        const Points there = linear(in, 12, compression).out;
        Points back{{in.x.rbegin(), in.x.rend()}, {in.y.rbegin(), in.y.rend()}, {in.z.rbegin(), in.z.rend()}};
        back = linear(back, 12, 1 / compression).out;
        expectNear({back.x.rbegin(), back.x.rend()}, there.x, 1e-9);
        expectNear({back.z.rbegin(), back.z.rend()}, there.z, 1e-9);
    }
}

TEST(LinearRebreak, InfiniteCoordinatesEndTheWalkAllTheSame) {
    const Result far = linear(onAxis({0, 1, 1e200, 3}), 9, 2);
    EXPECT_EQ(far.code, 0);
    EXPECT_EQ(far.out.x.back(), 3);
    EXPECT_EQ(linear(onAxis({0, infinite, 2}), 5, 1).code, 0);
}

TEST(LinearRebreak, GivesThePlainWalksPointsForAnyInput) {
    Source source(34);
    for (int run = 0; run < 20000; ++run) {
        const Points in = source.polyline(source.whole(0, 12), source.once(2));
        const std::int32_t m = source.whole(0, 15);
        const double compression = source.once(3) ? 1 : source.once(8) ? source.nasty() : source.real(-1, 5);
        Points expected = outputs(m);
        const int code = reference::linearRebreak(in, expected, compression);
        const Result actual = linear(in, m, compression);
        ASSERT_EQ(actual.code, code) << "run " << run;
        ASSERT_TRUE(sameBits(actual.out, expected)) << "run " << run;
    }
}

TEST(LinearRebreakLaw, PutsPointsAtPartsOfTheLength) {
    const Result result = byLaw(onAxis({0, 1, 4}), {0, 1, 3, 4});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out.x, (Column{0, 1, 3, 4}));
    EXPECT_EQ(byLaw(onAxis({0, 1, 4}), {0, 0.5, 1.5, 2}).out.x, (Column{0, 1, 3, 4}));
}

TEST(LinearRebreakLaw, DoesNotReadTheFirstEntry) {
    EXPECT_EQ(byLaw(onAxis({0, 4}), {notANumber, 1, 2}).out.x, (Column{0, 2, 4}));
}

TEST(LinearRebreakLaw, MayFall) {
    EXPECT_EQ(byLaw(onAxis({0, 1, 2, 3, 4}), {0, 3.5, 0.5, 2, 4}).out.x, (Column{0, 3.5, 0.5, 2, 4}));
}

TEST(LinearRebreakLaw, ATargetBehindTheEndGivesTheLastPointAndEndsTheWriting) {
    const Result result = byLaw(onAxis({0, 1, 4}), {0, 1, 5, 2, 4});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out.x, (Column{0, 1, 4, untouched, untouched}));
}

TEST(LinearRebreakLaw, ATargetBeforeTheStartIsLaidBackFromTheFirstChord) {
    // Target -1: the overshoot of the first chord, of length 2, is 3.
    EXPECT_EQ(byLaw(onAxis({0, 2, 4}), {0, -1, 4}).out.x, (Column{0, -1, 4}));
}

TEST(LinearRebreakLaw, ALawThatEndsInZeroIsNoTrouble) {
    const Result result = byLaw(onAxis({0, 1, 4}), {0, 1, 2, 0});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out.x, (Column{0, 4, untouched, untouched}));
    EXPECT_TRUE(std::isnan(byLaw(onAxis({0, 1, 4}), {0, 0, 0}).out.x[1]));
}

TEST(LinearRebreakLaw, TwoOutputsAreTheEndPoints) {
    const Result result = byLaw(onAxis({3, 4, 9}), {0, 0});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out.x, (Column{3, 9}));
}

TEST(LinearRebreakLaw, WithFewerThanTwoPointsNothingIsWritten) {
    const Result one = byLaw(onAxis({3}), {0, 1, 2});
    EXPECT_EQ(one.code, 1);
    EXPECT_EQ(one.out.x, Column(3, untouched));
    EXPECT_EQ(byLaw({}, {0, 1}).code, 1);
    EXPECT_EQ(byLaw(onAxis({3, 4}), {1}).code, 1);
    EXPECT_EQ(byLaw(onAxis({3, 4}), {}).code, 1);
    double out = untouched;
    EXPECT_EQ(LinearRebreakLaw(&out, &out, &out, -1, &out, &out, &out, -1, &out), 1);
    EXPECT_EQ(out, untouched);
}

TEST(LinearRebreakLaw, NoLengthGivesCopiesOfTheFirstPoint) {
    const Result result = byLaw(onAxis({7, 7, 7}), {0, 1, 2});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out.x, (Column{7, 7, 7}));
    EXPECT_EQ(byLaw(onAxis({0, 1e-6}), {0, 1, 2}).out.x, (Column{0, 0, 0}));
}

TEST(LinearRebreakLaw, TheSmallestDivisorMovesAPointOfAVeryShortChord) {
    EXPECT_NEAR(byLaw(onAxis({0, 1 - 5e-8, 1 + 5e-8, 2}), {0, 1, 2}).out.x[1], 1 + 4.5e-8, 1e-13);
}

TEST(LinearRebreakLaw, GivesThePlainWalksPointsForAnyInput) {
    Source source(35);
    for (int run = 0; run < 20000; ++run) {
        const Points in = source.polyline(source.whole(0, 12), source.once(2));
        const std::int32_t m = source.whole(0, 15);
        const bool wild = source.once(2);
        const Column law = source.once(3) ? source.scattered(m, wild) : source.rising(m, wild);
        Points expected = outputs(m);
        const int code = reference::linearRebreakLaw(in, expected, law);
        const Result actual = byLaw(in, law);
        ASSERT_EQ(actual.code, code) << "run " << run;
        ASSERT_TRUE(sameBits(actual.out, expected)) << "run " << run;
    }
}

TEST(LinearRebreakLaw, ManyOutputsOnManyPointsTakeNoQuadraticTime) {
    Column x;
    for (int i = 0; i < 200000; ++i) {
        x.push_back(i);
    }
    const Column rising = byLaw(onAxis(x), x).out.x;
    EXPECT_NEAR(rising[100000], 100000, 1e-9);
    Column falling(x.rbegin(), x.rend());
    falling.back() = x.back();
    EXPECT_NEAR(byLaw(onAxis(x), falling).out.x[150000], 49999, 1e-9);
}

} // namespace
} // namespace velmora

#include <algorithm>

#include <gtest/gtest.h>

#include "curve_samples.h"
#include "polyline.h"
#include "rebreak_kernels.h"

namespace velmora {
namespace {

using namespace samples;

/// Any kind but the two that have a name.
constexpr int lawUniform = 0;

Points byLaw(const Points& in, std::int32_t m, double exactness, int kind, double compression, Column& law) {
    Points out = outputs(m);
    EXPECT_EQ(SplineRebreakLaw(in.x.data(), in.y.data(), in.z.data(), countOf(in), out.x.data(), out.y.data(),
                               out.z.data(), m, exactness, kind, compression, law.data()),
              1);
    return out;
}

Points byLaw(const Points& in, std::int32_t m, double exactness, int kind, double compression = 1) {
    Column law(static_cast<std::size_t>(m), 1.0);
    return byLaw(in, m, exactness, kind, compression, law);
}

Points uniform(const Points& in, std::int32_t m, double exactness = 0) {
    Points out = outputs(m);
    EXPECT_EQ(SplineRebreak(in.x.data(), in.y.data(), in.z.data(), countOf(in), out.x.data(), out.y.data(),
                            out.z.data(), m, exactness),
              1);
    return out;
}

/// A quarter turn of a helix.
Points arc(std::int32_t n) {
    Points points;
    for (std::int32_t i = 0; i < n; ++i) {
        const double angle = 1.5 * i / (n - 1);
        points.x.push_back(std::cos(angle));
        points.y.push_back(std::sin(angle));
        points.z.push_back(angle / 2);
    }
    return points;
}

Points zigzag(std::int32_t n) {
    Points points;
    for (std::int32_t i = 0; i < n; ++i) {
        points.x.push_back(i);
        points.y.push_back(i % 2 == 0 ? 0.2 : -0.2);
        points.z.push_back(0);
    }
    return points;
}

double lengthOf(const Points& p) {
    return polylineLength(p.x.data(), p.y.data(), p.z.data(), countOf(p));
}

TEST(SplineRebreak, ThreePointsToTenGoStraightWhateverTheLaw) {
    const Points corner{{0, 4, 4}, {0, 0, 5}, {0, 0, 0}};
    const Column x{0, 1, 2, 3, 4, 4, 4, 4, 4, 4};
    const Column y{0, 0, 0, 0, 0, 1, 2, 3, 4, 5};
    for (const int kind : {0, 1, 2, 3}) {
        Column law(10, 0.3);
        const Points out = byLaw(corner, 10, 50, kind, 7, law);
        EXPECT_EQ(out.x, x);
        EXPECT_EQ(out.y, y);
        EXPECT_EQ(law, Column(10, 0.3));
    }
    EXPECT_EQ(uniform(corner, 10, 50).x, x);
    EXPECT_EQ(uniform(corner, 10, 50).y, y);
}

TEST(SplineRebreak, TenPointsToThreeGoStraightWhateverTheLaw) {
    const Points in = onAxis({0, 1, 2, 3, 4, 5, 6, 7, 8, 10});
    for (const int kind : {0, 1, 3}) {
        Column law{0, 0.1, 7};
        EXPECT_EQ(byLaw(in, 3, 50, kind, 7, law).x, (Column{0, 5, 10}));
        EXPECT_EQ(law, (Column{0, 0.1, 7}));
    }
    EXPECT_EQ(uniform(in, 3).x, (Column{0, 5, 10}));
}

TEST(SplineRebreak, FourPointsToFourAreSplined) {
    // A straight walk would stay on the chords, whose y is a broken line.
    const Points in{{0, 1, 2, 3}, {0, 1, 0, 0}, {0, 0, 0, 0}};
    const Points out = uniform(in, 4);
    Points straight = outputs(4);
    reference::linearRebreak(in, straight, 1);
    EXPECT_NE(out.y, straight.y);
    EXPECT_EQ(out.x[0], 0);
}

TEST(SplineRebreak, FewerThanTwoPointsWriteNothing) {
    for (const std::int32_t n : {-3, 0, 1}) {
        const double in = 4;
        Points out = outputs(5);
        Column law(5, 2.0);
        EXPECT_EQ(SplineRebreak(&in, &in, &in, n, out.x.data(), out.y.data(), out.z.data(), 5, 0), 1);
        EXPECT_EQ(SplineRebreakLaw(&in, &in, &in, n, out.x.data(), out.y.data(), out.z.data(), 5, 0, lawPrescribed, 1,
                                   law.data()),
                  1);
        EXPECT_EQ(out.x, Column(5, untouched));
        EXPECT_EQ(law, Column(5, 2.0));
    }
}

TEST(SplineRebreak, FewerThanTwoOutputsWriteNothing) {
    const Points in = arc(6);
    for (const std::int32_t m : {-3, 0, 1}) {
        double out = untouched;
        EXPECT_EQ(SplineRebreak(in.x.data(), in.y.data(), in.z.data(), 6, &out, &out, &out, m, 0), 1);
        EXPECT_EQ(SplineRebreakLaw(in.x.data(), in.y.data(), in.z.data(), 6, &out, &out, &out, m, 0, lawPrescribed, 1,
                                   nullptr),
                  1);
        EXPECT_EQ(out, untouched);
    }
}

TEST(SplineRebreak, PointsOfALineStayOnIt) {
    Points in;
    for (const double at : {0.0, 1.0, 1.5, 4.0, 6.0, 9.0}) {
        in.x.push_back(1 + 2 * at);
        in.y.push_back(3 - at);
        in.z.push_back(at / 2);
    }
    for (const int kind : {lawUniform, lawCompression}) {
        const Points out = byLaw(in, 13, 0, kind, 3);
        for (std::size_t i = 0; i < out.size(); ++i) {
            EXPECT_NEAR(out.y[i], 3 - (out.x[i] - 1) / 2, 1e-13);
            EXPECT_NEAR(out.z[i], (out.x[i] - 1) / 4, 1e-13);
        }
    }
}

TEST(SplineRebreak, GivesEqualStepsOfTheChordParameter) {
    expectNear(uniform(onAxis({0, 1, 2, 4, 8}), 5).x, {0, 2, 4, 6, 8}, 1e-14);
}

TEST(SplineRebreak, StaysNearTheCurveThatThePointsAreTakenFrom) {
    const Points out = uniform(arc(30), 101);
    for (std::size_t i = 0; i < 90; ++i) { // the far end bends on its own
        EXPECT_NEAR(std::hypot(out.x[i], out.y[i]), 1, 1e-3);
    }
}

TEST(SplineRebreak, TheTwoEndsAreNotAlike) {
    Points in = arc(8);
    const Points there = uniform(in, 15);
    for (Column* column : {&in.x, &in.y, &in.z}) {
        std::reverse(column->begin(), column->end());
    }
    const Points back = uniform(in, 15);
    EXPECT_GT(std::abs(there.x[1] - back.x[13]), 1e-5);
}

TEST(SplineRebreak, OfALineWithoutLengthGivesCopiesOfTheFirstPoint) {
    const Points out = uniform(onAxis({5, 5, 5, 5, 5}), 6, 10);
    EXPECT_EQ(out.x, Column(6, 5.0));
    EXPECT_EQ(byLaw(onAxis({5, 5, 5, 5, 5}), 6, 10, lawCompression).x, Column(6, 5.0));
}

TEST(SplineRebreak, HasNoShortLineTestButTheLawKernelHas) {
    // 9e-5 long, with a bend in it. A straight walk keeps y at or above 0; the spline overshoots below it.
    const Points in{{0, 1e-5, 3e-5, 6e-5, 8e-5}, {0, 0, 1e-5, 0, 0}, {0, 0, 0, 0, 0}};
    ASSERT_LT(lengthOf(in), 1e-4);
    Points straight = outputs(9);
    reference::linearRebreak(in, straight, 1);
    EXPECT_TRUE(sameBits(byLaw(in, 9, 0, lawUniform), straight));
    EXPECT_FALSE(sameBits(uniform(in, 9), straight));
}

TEST(SplineRebreak, ALineOfJustTheShortLengthIsSplined) {
    Column law{0, 1, 2, 4};
    byLaw(onAxis({0, 0.25e-4, 0.5e-4, 0.999e-4}), 4, 0, lawPrescribed, 1, law);
    EXPECT_EQ(law.back(), 4);
    byLaw(onAxis({0, 0.25e-4, 0.5e-4, 1e-4}), 4, 0, lawPrescribed, 1, law);
    EXPECT_EQ(law.back(), 1);
}

TEST(SplineRebreak, TheUniformLawIsTheUniformKernel) {
    const Points in = arc(9);
    for (const int kind : {0, 2, 4, -1, 1000}) {
        EXPECT_TRUE(sameBits(byLaw(in, 20, 0, kind, 5), uniform(in, 20)));
        EXPECT_TRUE(sameBits(byLaw(in, 20, 3, kind, 5), uniform(in, 20, 3)));
    }
}

TEST(SplineRebreak, CompressionSharesTheSpacingOfTheStraightKernel) {
    const Column x{0, 1, 2, 4, 8};
    const Points spline = byLaw(onAxis(x), 7, 0, lawCompression, 4);
    Points straight = outputs(7);
    reference::linearRebreak(onAxis({0, 8}), straight, 4);
    expectNear(spline.x, straight.x, 1e-14);
}

TEST(SplineRebreak, APrescribedLawIsDividedByItsLastEntryInPlace) {
    Column law{1, 2, 4, 6, 8};
    const Points out = byLaw(onAxis({0, 1, 2, 4, 8}), 5, 0, lawPrescribed, 1, law);
    EXPECT_EQ(law, (Column{0.125, 0.25, 0.5, 0.75, 1}));
    // The first target is law[0] too: nothing keeps the first point.
    expectNear(out.x, {1, 2, 4, 6, 8}, 1e-14);
}

TEST(SplineRebreak, OtherKindsDoNotTouchTheLaw) {
    for (const int kind : {lawUniform, lawCompression}) {
        Column law{1, 2, 4, 6, 8};
        byLaw(arc(6), 5, 0, kind, 2, law);
        EXPECT_EQ(law, (Column{1, 2, 4, 6, 8}));
    }
}

TEST(SplineRebreak, APrescribedLawMayFall) {
    Column law{0, 6, 2, 8};
    expectNear(byLaw(onAxis({0, 1, 2, 4, 8}), 4, 0, lawPrescribed, 1, law).x, {0, 6, 2, 8}, 1e-14);
}

TEST(SplineRebreak, WithoutALawThePrescribedKindIsUniform) {
    const Points in = arc(6);
    Points out = outputs(8);
    SplineRebreakLaw(in.x.data(), in.y.data(), in.z.data(), 6, out.x.data(), out.y.data(), out.z.data(), 8, 0,
                     lawPrescribed, 1, nullptr);
    EXPECT_TRUE(sameBits(out, uniform(in, 8)));
}

TEST(SplineRebreak, ExactnessNeverMovesTheFirstAndLastTwoOutputs) {
    const Points exact = uniform(zigzag(12), 30);
    for (const double exactness : {0.1, 1.0, 20.0, 100.0, 1e9}) {
        const Points out = uniform(zigzag(12), 30, exactness);
        for (const std::size_t i : {0, 1, 28, 29}) {
            EXPECT_EQ(out.x[i], exact.x[i]);
            EXPECT_EQ(out.y[i], exact.y[i]);
            EXPECT_EQ(out.z[i], exact.z[i]);
        }
        EXPECT_NE(out.y, exact.y);
    }
}

TEST(SplineRebreak, ExactnessIsAPercentageOfTheInputsLength) {
    const Points in = zigzag(12);
    const Points exact = uniform(in, 30);
    const double halfWidth = lengthOf(in) * 0.5 / 100;
    const Points out = uniform(in, 30, 0.5);
    double furthest = 0;
    for (std::size_t i = 0; i < out.size(); ++i) {
        furthest = std::max(furthest, std::abs(out.y[i] - exact.y[i]));
    }
    EXPECT_NEAR(furthest, halfWidth, 1e-6);
}

TEST(SplineRebreak, ExactnessTakesBendingOut) {
    const auto bendOf = [](const Column& y) {
        double bend = 0;
        for (std::size_t i = 1; i + 1 < y.size(); ++i) {
            bend += std::abs(y[i - 1] - 2 * y[i] + y[i + 1]);
        }
        return bend;
    };
    EXPECT_LT(bendOf(uniform(zigzag(12), 40, 2).y), 0.8 * bendOf(uniform(zigzag(12), 40).y));
}

TEST(SplineRebreak, ExactnessThatIsNegativeOrNoNumberChangesNothing) {
    const Points exact = uniform(zigzag(8), 12);
    EXPECT_TRUE(sameBits(uniform(zigzag(8), 12, -5), exact));
    EXPECT_TRUE(sameBits(uniform(zigzag(8), 12, notANumber), exact));
    EXPECT_TRUE(sameBits(uniform(zigzag(8), 12, 1e-9), exact));
}

TEST(SplineRebreak, ScalesExactlyWithPowersOfTwo) {
    Source source(41);
    for (int run = 0; run < 300; ++run) {
        const Points in = source.polyline(source.whole(4, 20), false);
        Points scaled = in;
        Points expected = byLaw(in, 17, 0, lawCompression, 3);
        for (Points* points : {&scaled, &expected}) {
            for (Column* column : {&points->x, &points->y, &points->z}) {
                for (double& value : *column) {
                    value *= 8;
                }
            }
        }
        ASSERT_TRUE(sameBits(byLaw(scaled, 17, 0, lawCompression, 3), expected)) << "run " << run;
    }
}

TEST(SplineRebreak, TreatsTheThreeCoordinatesAlike) {
    const Points in = arc(9);
    const Points turned{in.z, in.x, in.y};
    const Points out = uniform(in, 14);
    const Points outTurned = uniform(turned, 14);
    expectNear(outTurned.x, out.z, 1e-13);
    expectNear(outTurned.y, out.x, 1e-13);
    expectNear(outTurned.z, out.y, 1e-13);
}

TEST(SplineRebreak, GivesTheBitsOfThreeSeparateSolutionsForAnyInput) {
    Source source(42);
    for (int run = 0; run < 20000; ++run) {
        const Points in = source.polyline(source.whole(0, 14), source.once(2));
        const std::int32_t m = source.whole(0, 18);
        const int kind = source.whole(0, 3);
        const double compression = source.once(8) ? source.nasty() : source.real(-1, 5);
        const double exactness = source.once(2) ? 0 : source.once(8) ? source.nasty() : source.real(0, 20);
        const bool wild = source.once(3);
        Column law = source.once(3) ? source.scattered(m, wild) : source.rising(m, wild);
        Column expectedLaw = law;
        Points expected = outputs(m);
        reference::splineRebreak(in, expected, exactness, kind, compression, expectedLaw, true);
        ASSERT_TRUE(sameBits(byLaw(in, m, exactness, kind, compression, law), expected)) << "run " << run;
        ASSERT_TRUE(sameBits(law, expectedLaw)) << "run " << run;
        expected = outputs(m);
        reference::splineRebreak(in, expected, exactness, 0, 1, expectedLaw, false);
        ASSERT_TRUE(sameBits(uniform(in, m, exactness), expected)) << "run " << run;
    }
}

} // namespace
} // namespace velmora

#include "marker_shift.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "curve_samples.h"
#include "marker_shift_reference.h"

namespace velmora::test {

namespace {

using samples::infinite;
using samples::notANumber;
using samples::sameBits;
using samples::Source;
using samples::untouched;
using testing::ElementsAre;
using testing::IsEmpty;
using Column = std::vector<double>;
using Troubles = std::vector<ShiftTrouble>;
using Vec = zVec<double>;
using Axis = double Vec::*;

constexpr std::array<Axis, 3> axes = {&Vec::x, &Vec::y, &Vec::z};

/// The pairs of one fit, and what comes of it.
struct Fit {
    Column x, y, u, v;
    std::vector<double> coefU = Column(10, untouched);
    std::vector<double> coefV = Column(10, untouched);
    Troubles troubles;

    void add(double xIn, double yIn, double uOut, double vOut) {
        x.push_back(xIn);
        y.push_back(yIn);
        u.push_back(uOut);
        v.push_back(vOut);
    }
    int run(std::int32_t terms) {
        return FitShift(x.data(), y.data(), u.data(), v.data(), static_cast<std::int32_t>(x.size()), terms,
                        coefU.data(), coefV.data(), [this](ShiftTrouble trouble) { troubles.push_back(trouble); });
    }
    bool untouchedBehind(std::size_t terms) const {
        for (std::size_t t = terms; t < 10; ++t) {
            if (coefU[t] != untouched || coefV[t] != untouched) {
                return false;
            }
        }
        return true;
    }
};

/// `count` pairs in the square from -200 to 200, all at (0, 0) on the other side.
Fit scattered(int count, std::uint32_t seed) {
    Source source(seed);
    Fit fit;
    for (int i = 0; i < count; ++i) {
        fit.add(source.real(-200, 200), source.real(-200, 200), 0.0, 0.0);
    }
    return fit;
}

std::array<double, 10> termsAt(double x, double y) {
    return {1, x, y, x * y, x * x, y * y, x * x * y, x * y * y, x * x * x, y * y * y};
}

/// The sum of coefficient t times term t.
double sumOf(const Column& c, double x, double y) {
    const std::array<double, 10> terms = termsAt(x, y);
    double sum = 0.0;
    for (std::size_t t = 0; t < c.size(); ++t) {
        sum += c[t] * terms[t];
    }
    return sum;
}

/// Ten coefficients of each output, each one different, of a map that moves points within 200 by less than some 100.
const Column cubicU{3.0, 1.1, -0.2, 1e-4, -2e-4, 3e-4, 1e-7, -2e-7, 3e-7, 4e-7};
const Column cubicV{-7.0, 0.3, 0.9, -4e-4, 5e-4, 6e-5, -5e-7, 6e-7, 7e-8, -8e-7};

/// A shift with what was told while it was prepared.
struct Shift : MarkerShift {
    Troubles troubles;

    void prepare(std::int32_t plane, const PointList& initial, const PointList& shifted) {
        PrepareShift(plane, initial, shifted, [this](ShiftTrouble trouble) { troubles.push_back(trouble); });
    }
};

ShiftFit constantFit(double u, double v) {
    ShiftFit fit;
    fit.coefU = {u};
    fit.coefV = {v};
    return fit;
}

/// Fits that name themselves: everything goes to (10, 100), (6, 60) or (3, 30).
Shift namedFits() {
    Shift shift;
    shift.shiftFit = constantFit(1, 10);
    shift.shiftFit10 = constantFit(10, 100);
    shift.shiftFit6 = constantFit(6, 60);
    shift.shiftFit3 = constantFit(3, 30);
    return shift;
}

/// Three markers on the x axis at distances of 4, 8 and 12: dMin is 4, dMean 8 and dMid 6.
const PointList threeMarkers{{0, 0, 0}, {4, 0, 0}, {12, 0, 0}};

PointList appliedInXY(const MarkerShift& shift, PointList points, const PointList& shifted = threeMarkers) {
    shift.ApplyShift(points, 3, 0, false, shifted);
    return points;
}

/// 16 markers on an uneven grid, in all three planes.
PointList gridMarkers() {
    PointList markers;
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            markers.push_back({40.0 * i + j, 35.0 * j - i, 20.0 * ((3 * i + 5 * j) % 7) + 2.0 * i * i + j});
        }
    }
    return markers;
}

PointList movedBy(PointList points, const Vec& delta) {
    for (Vec& p : points) {
        p = p + delta;
    }
    return points;
}

/// The first `count` of the grid's markers and those of it twice as large.
PointList firstMarkers(std::size_t count) {
    PointList markers;
    for (const double scale : {1.0, 2.5}) {
        for (const Vec& p : gridMarkers()) {
            markers.push_back(p * scale + Vec(scale, -scale, 3 * scale));
        }
    }
    markers.resize(count);
    return markers;
}

PointList randomMarkers(std::size_t count) {
    Source source(8);
    PointList markers;
    for (std::size_t i = 0; i < count; ++i) {
        markers.push_back({source.real(-100, 100), source.real(-100, 100), source.real(-100, 100)});
    }
    return markers;
}

const ShiftFit identity;

void expectAllIdentity(const MarkerShift& shift) {
    for (const ShiftFit* fit :
         {&shift.shiftFit, &shift.shiftFit10, &shift.shiftFit6, &shift.shiftFit3, &shift.inverseFit}) {
        EXPECT_TRUE(*fit == identity);
    }
}

} // namespace

// ---- EvalShift ------------------------------------------------------------------------------------------------------

TEST(EvalShift, StartsAsTheIdentity) {
    for (const int order : {0, 1, 3, 6, 10}) {
        double u = untouched;
        double v = untouched;
        ShiftFit().EvalShift(order, 0.1, -7.3, u, v);
        EXPECT_EQ(u, 0.1) << order;
        EXPECT_EQ(v, -7.3) << order;
    }
}

TEST(EvalShift, TakesAsManyTermsAsItsOrder) {
    const std::array<double, 10> expected = {1, 2, 3, 6, 4, 9, 12, 18, 8, 27}; // at x = 2, y = 3
    for (const std::size_t order : {3U, 6U, 10U}) {
        for (std::size_t t = 0; t < 10; ++t) {
            ShiftFit fit = constantFit(0, 0);
            fit.coefU[t] = 1.0;
            fit.coefV[t] = -2.0;
            double u = untouched;
            double v = untouched;
            fit.EvalShift(static_cast<std::int32_t>(order), 2, 3, u, v);
            EXPECT_EQ(u, t < order ? expected[t] : 0.0) << order << " " << t;
            EXPECT_EQ(v, t < order ? -2 * expected[t] : 0.0) << order << " " << t;
        }
    }
}

TEST(EvalShift, OfOrder0KeepsAndOfOrder1AddsTheConstants) {
    ShiftFit fit = constantFit(5, 7);
    fit.coefU[1] = fit.coefV[2] = 99;
    double u = untouched;
    double v = untouched;
    fit.EvalShift(0, 2, 3, u, v);
    EXPECT_EQ(u, 2);
    EXPECT_EQ(v, 3);
    fit.EvalShift(1, 2, 3, u, v);
    EXPECT_EQ(u, 7);
    EXPECT_EQ(v, 10);
}

TEST(EvalShift, OfAnyOtherOrderLeavesTheOutput) {
    for (const int order : {-1, 2, 4, 5, 7, 8, 9, 11}) {
        double u = untouched;
        double v = 2 * untouched;
        constantFit(5, 7).EvalShift(order, 2, 3, u, v);
        EXPECT_EQ(u, untouched) << order;
        EXPECT_EQ(v, 2 * untouched) << order;
    }
}

// ---- FitShift -------------------------------------------------------------------------------------------------------

TEST(FitShift, AtTheCornersOfASquareIsAsWorkedByHand) {
    // Scaled columns of plus and minus 1 are orthogonal: each coefficient is a signed mean, 12/4, 4/4 and 6/4 for u;
    // v has no constant and no x part.
    Fit fit;
    fit.add(-100, -100, 1, -5);
    fit.add(100, -100, 2, -5);
    fit.add(-100, 100, 3, 5);
    fit.add(100, 100, 6, 5);
    EXPECT_EQ(fit.run(3), 1);
    EXPECT_THAT(fit.coefU, testing::Contains(untouched).Times(7));
    EXPECT_DOUBLE_EQ(fit.coefU[0], 3);
    EXPECT_DOUBLE_EQ(fit.coefU[1], 0.01);
    EXPECT_DOUBLE_EQ(fit.coefU[2], 0.015);
    EXPECT_EQ(fit.coefV[0], 0);
    EXPECT_EQ(fit.coefV[1], 0);
    EXPECT_DOUBLE_EQ(fit.coefV[2], 0.05);
    EXPECT_THAT(fit.troubles, IsEmpty());
}

TEST(FitShift, FindsTheCoefficientsOfAMapOfItsOwnTerms) {
    for (const std::size_t terms : {3U, 6U, 10U}) {
        const auto count = static_cast<std::ptrdiff_t>(terms);
        const Column wantedU(cubicU.begin(), cubicU.begin() + count);
        const Column wantedV(cubicV.begin(), cubicV.begin() + count);
        Fit fit = scattered(40, 1);
        for (std::size_t i = 0; i < fit.x.size(); ++i) {
            fit.u[i] = sumOf(wantedU, fit.x[i], fit.y[i]);
            fit.v[i] = sumOf(wantedV, fit.x[i], fit.y[i]);
        }
        ASSERT_EQ(fit.run(static_cast<std::int32_t>(terms)), 1);
        for (std::size_t t = 0; t < terms; ++t) {
            EXPECT_NEAR(fit.coefU[t], wantedU[t], 1e-9 * std::abs(wantedU[t])) << terms << " " << t;
            EXPECT_NEAR(fit.coefV[t], wantedV[t], 1e-9 * std::abs(wantedV[t])) << terms << " " << t;
        }
        EXPECT_TRUE(fit.untouchedBehind(terms));
    }
}

TEST(FitShift, LeavesTheLeastSquaresThatOrthogonalColumnsLeave) {
    Source source(2);
    for (int round = 0; round < 30; ++round) {
        Fit fit = scattered(10 + 7 * round, 100U + static_cast<std::uint32_t>(round));
        for (std::size_t i = 0; i < fit.x.size(); ++i) {
            fit.u[i] = sumOf(cubicU, fit.x[i], fit.y[i]) + source.real(-20, 20);
            fit.v[i] = sumOf(cubicV, fit.x[i], fit.y[i]) + source.real(-20, 20);
        }
        for (const std::size_t terms : {3U, 6U, 10U}) {
            ASSERT_EQ(fit.run(static_cast<std::int32_t>(terms)), 1) << round;
            const auto wantedU = reference::leastSquares(fit.x, fit.y, fit.u, terms);
            const auto wantedV = reference::leastSquares(fit.x, fit.y, fit.v, terms);
            for (std::size_t t = 0; t < terms; ++t) {
                // In units of what the term makes of a coordinate of 100.
                const double size = t == 0 ? 1.0 : t < 3 ? 1e2 : t < 6 ? 1e4 : 1e6;
                EXPECT_NEAR(fit.coefU[t] * size, static_cast<double>(wantedU[t]) * size, 1e-6) << round << " " << t;
                EXPECT_NEAR(fit.coefV[t] * size, static_cast<double>(wantedV[t]) * size, 1e-6) << round << " " << t;
            }
        }
    }
}

TEST(FitShift, TakesFromAsManyPairsAsTermsToAThousand) {
    for (const int terms : {3, 6, 10}) {
        EXPECT_EQ(scattered(terms - 1, 3).run(terms), 0) << terms;
        EXPECT_EQ(scattered(terms, 3).run(terms), 1) << terms;
        EXPECT_EQ(scattered(1000, 3).run(terms), 1) << terms;
        EXPECT_EQ(scattered(1001, 3).run(terms), 0) << terms;
    }
}

TEST(FitShift, OfAWrongNumberOfPairsSaysNothingAndLeavesTheCoefficients) {
    for (const int count : {0, 9, 1001}) {
        Fit fit = scattered(count, 4);
        EXPECT_EQ(fit.run(10), 0);
        EXPECT_TRUE(fit.untouchedBehind(0));
        EXPECT_THAT(fit.troubles, IsEmpty());
    }
}

TEST(FitShift, KnowsNoOtherNumbersOfTerms) {
    for (const int terms : {-1, 0, 1, 2, 4, 5, 7, 8, 9, 11}) {
        EXPECT_EQ(scattered(40, 4).run(terms), 0) << terms;
    }
}

TEST(FitShift, TellsOfMarkersThatDoNotDetermineTheTerms) {
    const auto refused = [](Fit fit, int terms) {
        EXPECT_EQ(fit.run(terms), 0);
        EXPECT_TRUE(fit.untouchedBehind(0));
        EXPECT_THAT(fit.troubles, ElementsAre(ShiftTrouble::MatrixNotPositive));
    };
    for (const int terms : {3, 6, 10}) {
        for (const auto& [dx, dy] : {std::pair{1.0, 0.0}, {0.0, 1.0}, {1.0, 1.0}, {3.0, -7.0}}) {
            Fit line;
            Fit place;
            for (int i = 0; i < 12; ++i) {
                line.add(5 + i * dx, 6 + i * dy, i, -i);
                place.add(dx, dy, i, -i);
            }
            refused(line, terms);
            refused(place, terms);
        }
    }
    Fit circle; // x^2 + y^2 is constant on it: three terms are determined, six are not
    for (int i = 0; i < 20; ++i) {
        circle.add(100 * std::cos(i * 0.3), 100 * std::sin(i * 0.3), i, -i);
    }
    EXPECT_EQ(circle.run(3), 1);
    circle.coefU = circle.coefV = Column(10, untouched);
    refused(circle, 6);
    refused(circle, 10);
}

TEST(FitShift, RefusesAPivotThatIsPositiveAndStillTooSmall) {
    // Off the diagonal by delta, the pivot of y is 4 delta^2 beside a g of 4. With 3 terms g swallows a 48th of it when
    // that is not above half a unit of 4, 2^-51: for a delta not above 7.3e-8.
    const auto off = [](double delta) {
        Fit fit;
        for (const double up : {-1.0, 1.0}) {
            fit.add(-100, -100 + 100 * up * delta, 0, 0);
            fit.add(100, 100 + 100 * up * delta, 0, 0);
        }
        return fit.run(3);
    };
    EXPECT_EQ(off(5e-8), 0);
    EXPECT_EQ(off(1.5e-7), 1);
}

TEST(FitShift, RefusesNumbersBeyondTheRangeOfADouble) {
    for (const double bad : {notANumber, infinite, 1e200}) {
        Fit fit = scattered(20, 5);
        fit.x[7] = bad;
        EXPECT_EQ(fit.run(10), 0) << bad;
        EXPECT_TRUE(fit.untouchedBehind(0));
        EXPECT_THAT(fit.troubles, ElementsAre(ShiftTrouble::MatrixNotPositive));
    }
    for (const double bad : {notANumber, infinite, 1.7e308}) {
        for (const bool inU : {true, false}) {
            Fit fit = scattered(20, 5);
            (inU ? fit.u : fit.v)[7] = (inU ? fit.u : fit.v)[8] = bad;
            EXPECT_EQ(fit.run(3), 0) << bad;
            EXPECT_TRUE(fit.untouchedBehind(0));
            EXPECT_THAT(fit.troubles, IsEmpty());
        }
    }
}

// ---- PrepareShift ---------------------------------------------------------------------------------------------------

TEST(PrepareShift, WithListsOfDifferentLengthFitsNothingAndLeavesTheOrder) {
    Shift shift = namedFits();
    shift.inverseFit = constantFit(1, 1);
    shift.shiftOrder = 3;
    shift.report = "old";
    shift.prepare(3, randomMarkers(20), randomMarkers(21));
    EXPECT_THAT(shift.troubles, ElementsAre(ShiftTrouble::CountsDiffer));
    expectAllIdentity(shift);
    EXPECT_EQ(shift.shiftOrder, 3);
    EXPECT_EQ(shift.report, "");
}

TEST(PrepareShift, KnowsThreePlanes) {
    for (const int plane : {-1, 0, 4}) {
        Shift shift;
        shift.shiftOrder = 3;
        shift.prepare(plane, randomMarkers(20), movedBy(randomMarkers(20), {1, 1, 1}));
        EXPECT_THAT(shift.troubles, ElementsAre(ShiftTrouble::UnknownPlane));
        EXPECT_EQ(shift.shiftOrder, 10);
        expectAllIdentity(shift);
    }
}

TEST(PrepareShift, LooksAtTheTwoCoordinatesOfItsPlaneAlone) {
    for (int plane = 1; plane <= 3; ++plane) {
        for (int axis = 1; axis <= 3; ++axis) {
            Vec delta;
            delta.*axes[static_cast<std::size_t>(axis - 1)] = 5;
            Shift shift;
            shift.prepare(plane, gridMarkers(), movedBy(gridMarkers(), delta));
            if (axis == plane) {
                EXPECT_THAT(shift.troubles, ElementsAre(ShiftTrouble::MarkersIdentical));
                expectAllIdentity(shift);
            } else {
                EXPECT_THAT(shift.troubles, IsEmpty()) << plane << " " << axis;
                const bool first = axis == (plane == 1 ? 2 : 1);
                EXPECT_NEAR(shift.shiftFit3.coefU[0], first ? -5 : 0, 1e-9);
                EXPECT_NEAR(shift.shiftFit3.coefV[0], first ? 0 : -5, 1e-9);
                EXPECT_NEAR(shift.inverseFit.coefU[0], first ? 5 : 0, 1e-6);
                EXPECT_NEAR(shift.inverseFit.coefV[0], first ? 0 : 5, 1e-6);
            }
        }
    }
}

TEST(PrepareShift, TakesMarkersThatMovedByLessThanAThousandthSquaredForIdentical) {
    for (const auto& [move, identical] : {std::pair{0.0, true}, {0.0223, true}, {0.0224, false}}) {
        // Twice the square: 0.00099458 and 0.00100352.
        PointList shifted = gridMarkers();
        shifted[2].x += move;
        shifted[5].y -= move;
        Shift shift;
        shift.prepare(3, gridMarkers(), shifted);
        EXPECT_EQ(shift.troubles, identical ? Troubles{ShiftTrouble::MarkersIdentical} : Troubles{}) << move;
    }
}

TEST(PrepareShift, TakesNoMarkersForIdentical) {
    Shift shift;
    shift.prepare(1, {}, {});
    EXPECT_THAT(shift.troubles, ElementsAre(ShiftTrouble::MarkersIdentical));
}

TEST(PrepareShift, NeedsTenPairsAndTakesAThousand) {
    for (const auto& [count, works] :
         {std::pair<std::size_t, bool>{1, false}, {9, false}, {10, true}, {1000, true}, {1001, false}}) {
        const PointList initial = randomMarkers(count);
        Shift shift;
        shift.prepare(2, initial, movedBy(initial, {1, 2, 3}));
        EXPECT_EQ(shift.troubles, works ? Troubles{} : Troubles{ShiftTrouble::EquationsNotSolved}) << count;
        EXPECT_EQ(shift.report.empty(), !works);
        if (!works) {
            expectAllIdentity(shift);
        }
    }
}

TEST(PrepareShift, OfShiftedMarkersOnALineTellsOfTheMatrixFirst) {
    PointList shifted;
    for (int i = 0; i < 16; ++i) {
        shifted.push_back({3.0 * i, 7.0 - i, 0});
    }
    Shift shift;
    shift.prepare(3, gridMarkers(), shifted);
    EXPECT_THAT(shift.troubles, ElementsAre(ShiftTrouble::MatrixNotPositive, ShiftTrouble::EquationsNotSolved));
    expectAllIdentity(shift);
}

TEST(PrepareShift, OfInitialMarkersOnALineKeepsTheFitsBackToThem) {
    PointList initial;
    for (int i = 0; i < 16; ++i) {
        initial.push_back({3.0 * i, 7.0 - i, 0});
    }
    Shift shift;
    shift.prepare(3, initial, gridMarkers());
    EXPECT_THAT(shift.troubles, ElementsAre(ShiftTrouble::MatrixNotPositive, ShiftTrouble::EquationsNotSolved));
    EXPECT_TRUE(shift.inverseFit == identity);
    EXPECT_FALSE(shift.shiftFit == identity || shift.shiftFit10 == identity || shift.shiftFit6 == identity ||
                 shift.shiftFit3 == identity);
    EXPECT_NE(shift.report, "");
}

TEST(PrepareShift, FitsFromShiftedToInitialByTenSixAndThreeTerms) {
    const PointList shifted = firstMarkers(32);
    PointList initial = shifted;
    Column a, b, u, v;
    for (Vec& p : initial) {
        a.push_back(p.x);
        b.push_back(p.y);
        p = {sumOf(cubicU, p.x, p.y), sumOf(cubicV, p.x, p.y), p.z};
        u.push_back(p.x);
        v.push_back(p.y);
    }
    Shift shift;
    shift.shiftOrder = 6;
    shift.prepare(3, initial, shifted);
    EXPECT_EQ(shift.shiftOrder, 10);
    EXPECT_TRUE(shift.shiftFit == shift.shiftFit10);
    for (const auto& [fit, terms] : {std::pair<const ShiftFit*, std::size_t>{&shift.shiftFit10, 10},
                                     {&shift.shiftFit6, 6},
                                     {&shift.shiftFit3, 3}}) {
        const auto wantedU = reference::leastSquares(a, b, u, terms);
        const auto wantedV = reference::leastSquares(a, b, v, terms);
        for (std::size_t t = 0; t < 10; ++t) {
            const double size = t == 0 ? 1.0 : t < 3 ? 1e2 : t < 6 ? 1e4 : 1e6;
            EXPECT_NEAR(fit->coefU[t] * size, t < terms ? static_cast<double>(wantedU[t]) * size : 0.0, 1e-6);
            EXPECT_NEAR(fit->coefV[t] * size, t < terms ? static_cast<double>(wantedV[t]) * size : 0.0, 1e-6);
        }
    }
    const auto forthU = reference::leastSquares(u, v, a, 10);
    const auto forthV = reference::leastSquares(u, v, b, 10);
    for (std::size_t t = 0; t < 10; ++t) {
        const double size = t == 0 ? 1.0 : t < 3 ? 1e2 : t < 6 ? 1e4 : 1e6;
        EXPECT_NEAR(shift.inverseFit.coefU[t] * size, static_cast<double>(forthU[t]) * size, 1e-5);
        EXPECT_NEAR(shift.inverseFit.coefV[t] * size, static_cast<double>(forthV[t]) * size, 1e-5);
    }
}

// ---- The report -----------------------------------------------------------------------------------------------------

TEST(ShiftReport, ShowsTheFiguresWithTwoDigits) {
    EXPECT_EQ(shiftReport({12, {1.234, 20.5, 300}, {0, 0.006, 4.999}, {0.125, 1e6, infinite}}),
              "Shifting Geometry:\n"
              "    Order of approximation =   3\n"
              "Mean linear error   (R) =   1.23\n"
              "    Mean square error  (R) =   20.50\n"
              "    Absolute Max error (R) =   300.00\n"
              "    Number of pairs        =   12\n"
              "Mean linear error   (X) =   0.00\n"
              "    Mean square error  (X) =   0.01\n"
              "    Absolute Max error (X) =   5.00\n"
              "Mean linear error   (Y) =   0.12\n"
              "    Mean square error  (Y) =   1000000.00\n"
              "    Absolute Max error (Y) =   inf");
}

TEST(ShiftReport, TellsHowFarTheTenTermFitMissesThePairs) {
    const PointList shifted = firstMarkers(32);
    Source source(6);
    Column a, b, u, v;
    PointList initial;
    for (const Vec& p : shifted) {
        initial.push_back({p.x + source.real(-30, 30), p.y + source.real(-9, 9), 0});
        a.push_back(p.x);
        b.push_back(p.y);
        u.push_back(initial.back().x);
        v.push_back(initial.back().y);
    }
    const auto coefU = reference::leastSquares(a, b, u, 10);
    const auto coefV = reference::leastSquares(a, b, v, 10);
    double means[3] = {};
    double squares[3] = {};
    double maxima[3] = {};
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double ex = sumOf({coefU.begin(), coefU.end()}, a[i], b[i]) - u[i];
        const double ey = sumOf({coefV.begin(), coefV.end()}, a[i], b[i]) - v[i];
        const double errors[3] = {std::sqrt(ex * ex + ey * ey), std::abs(ex), std::abs(ey)};
        for (int k = 0; k < 3; ++k) {
            means[k] += errors[k] / 32;
            squares[k] += errors[k] * errors[k] / 31;
            maxima[k] = std::max(maxima[k], errors[k]);
        }
    }
    std::array<char, 1000> text{};
    std::snprintf(text.data(), text.size(),
                  "Shifting Geometry:\n    Order of approximation =   %d\nMean linear error   (R) =   %.2f\n    Mean "
                  "square error  (R) =   %.2f\n    Absolute Max error (R) =   %.2f\n    Number of pairs        =   "
                  "%d\nMean linear error   (X) =   %.2f\n    Mean square error  (X) =   %.2f\n    Absolute Max error "
                  "(X) =   %.2f\nMean linear error   (Y) =   %.2f\n    Mean square error  (Y) =   %.2f\n    Absolute "
                  "Max error (Y) =   %.2f",
                  3, means[0], std::sqrt(squares[0]), maxima[0], 32, means[1], std::sqrt(squares[1]), maxima[1],
                  means[2], std::sqrt(squares[2]), maxima[2]);
    Shift shift;
    shift.prepare(3, initial, shifted);
    EXPECT_EQ(shift.report, text.data());
    EXPECT_GT(maxima[1], 1.0) << "the figures are worth a test";
}

// ---- The blend ------------------------------------------------------------------------------------------------------

TEST(ShiftBlend, IsSmallestMiddleAndMeanDistance) {
    const ShiftBlend blend = shiftBlend({{0, 0}, {4, 0}, {12, 0}});
    EXPECT_EQ(blend.dMin, 4);
    EXPECT_EQ(blend.dMid, 6);
    EXPECT_EQ(blend.dMean, 8);
}

TEST(ShiftBlend, RoundsCoordinatesAndDistancesToSinglePrecision) {
    // 16777217 lies between two floats and goes to the even one below.
    const ShiftBlend coordinates = shiftBlend({{16777216, 0}, {16777217, 0}, {16777220, 0}});
    EXPECT_EQ(coordinates.dMin, 0);
    EXPECT_EQ(coordinates.dMean, 8.0 / 3);
    const ShiftBlend distances = shiftBlend({{0, 0}, {1, 1}});
    EXPECT_EQ(distances.dMin, double{static_cast<float>(std::sqrt(2.0))});
    EXPECT_EQ(distances.dMean, distances.dMin);
    EXPECT_EQ(distances.dMid, distances.dMin);
}

TEST(ShiftBlend, OfFewerThanTwoMarkersFormsNoDistance) {
    for (const auto& markers : {std::vector<PlanePoint>{}, std::vector<PlanePoint>{{3, 4}}}) {
        const ShiftBlend blend = shiftBlend(markers);
        EXPECT_EQ(blend.dMin, 0);
        EXPECT_EQ(blend.dMid, 0);
        EXPECT_EQ(blend.dMean, 0);
    }
}

TEST(ApplyShift, BlendsByTheDistanceFromTheNearestMarker) {
    const std::pair<double, double> rows[] = {
        {0, 10}, {3.999, 10}, {4, 10}, {5, 8}, {6, 6}, {7, 4.5}, {8, 3}, {8.001, 3}, {1e6, 3},
    };
    for (const auto& [d, expected] : rows) {
        const PointList moved = appliedInXY(namedFits(), {{-d, 0, 42}, {12 + d, 0, 43}, {4, d, 44}});
        EXPECT_DOUBLE_EQ(moved[0].x, expected) << d;
        EXPECT_DOUBLE_EQ(moved[0].y, 10 * expected) << d;
        EXPECT_EQ(moved[0].z, 42);
        EXPECT_DOUBLE_EQ(moved[1].x, expected) << d;
        EXPECT_EQ(moved[1].z, 43);
        if (d < 3) {
            EXPECT_DOUBLE_EQ(moved[2].x, expected) << d;
        }
    }
}

TEST(ApplyShift, MeasuresFromTheImagesOfTheShiftedMarkers) {
    Shift shift = namedFits();
    shift.inverseFit.coefU[0] = 100;
    shift.inverseFit.coefV[0] = 7;
    const PointList moved = appliedInXY(shift, {{100, 7, 0}, {95, 7, 0}, {0, 0, 0}});
    EXPECT_EQ(moved[0].x, 10);
    EXPECT_DOUBLE_EQ(moved[1].x, 8);
    EXPECT_EQ(moved[2].x, 3);
}

TEST(ApplyShift, WritesBothCoordinatesOfItsPlane) {
    const Axis written[3][2] = {{&Vec::y, &Vec::z}, {&Vec::x, &Vec::z}, {&Vec::x, &Vec::y}};
    for (int plane = 1; plane <= 3; ++plane) {
        for (const int firstPlane : {0, 1, 2, 3}) { // of no meaning in the first pass
            PointList points{{1e6, 2e6, 3e6}};
            Vec expected = points[0];
            expected.*written[plane - 1][0] = 3;
            expected.*written[plane - 1][1] = 30;
            namedFits().ApplyShift(points, plane, firstPlane, false, threeMarkers);
            EXPECT_EQ(points[0], expected) << plane << firstPlane;
        }
    }
}

TEST(ApplyShift, InItsSecondPassWritesTheCoordinateThatTheFirstPlaneLacks) {
    struct Row {
        int plane;
        int firstPlane;
        Axis written;
        double value; ///< of the three-term fit: 3 for the plane's first, 30 for its second coordinate
    };
    const Row rows[] = {
        {.plane = 1, .firstPlane = 2, .written = &Vec::y, .value = 3},
        {.plane = 1, .firstPlane = 3, .written = &Vec::z, .value = 30},
        {.plane = 2, .firstPlane = 1, .written = &Vec::x, .value = 3},
        {.plane = 2, .firstPlane = 3, .written = &Vec::z, .value = 30},
        {.plane = 3, .firstPlane = 1, .written = &Vec::x, .value = 3},
        {.plane = 3, .firstPlane = 2, .written = &Vec::y, .value = 30},
    };
    for (const Row& row : rows) {
        PointList points{{1e6, 2e6, 3e6}};
        Vec expected = points[0];
        expected.*row.written = row.value;
        namedFits().ApplyShift(points, row.plane, row.firstPlane, true, threeMarkers);
        EXPECT_EQ(points[0], expected) << row.plane << row.firstPlane;
    }
    for (int plane = 1; plane <= 3; ++plane) {
        for (const int firstPlane : {-1, 0, plane, 4}) {
            PointList points{{1e6, 2e6, 3e6}};
            namedFits().ApplyShift(points, plane, firstPlane, true, threeMarkers);
            EXPECT_EQ(points[0], (Vec{1e6, 2e6, 3e6})) << plane << firstPlane;
        }
    }
}

TEST(ApplyShift, OfAnotherOrderTakesTheFitOfTheErrorsWithoutBlending) {
    Shift shift = namedFits();
    shift.shiftFit.coefU = {1, 2, 0, 0, 5};
    shift.shiftFit.coefV = {10, 0, 2, 0, 5};
    const std::pair<int, Vec> rows[] = {
        {0, {-3, 4, 9}}, {1, {-2, 14, 9}}, {3, {-5, 18, 9}}, {6, {40, 63, 9}}, {7, {-3, 4, 9}},
    };
    for (const auto& [order, expected] : rows) {
        shift.shiftOrder = order;
        EXPECT_EQ(appliedInXY(shift, {{-3, 4, 9}})[0], expected) << order;
        EXPECT_EQ(appliedInXY(shift, {{-3, 4, 9}}, {})[0], expected) << order;
    }
}

TEST(ApplyShift, InAPlaneThatIsNoneMovesNothing) {
    for (const int plane : {-1, 0, 4}) {
        PointList points{{1, 2, 3}};
        namedFits().ApplyShift(points, plane, 0, false, threeMarkers);
        EXPECT_EQ(points[0], (Vec{1, 2, 3}));
    }
}

TEST(ApplyShift, ByFitsThatAreTheIdentityMovesNothingToTheLastBit) {
    PointList points;
    Source source(7);
    for (int i = 0; i < 1000; ++i) {
        points.push_back({source.real(-10, 20), source.real(-10, 10), 0.1});
    }
    EXPECT_EQ(appliedInXY(MarkerShift(), points), points);
    EXPECT_EQ(appliedInXY(MarkerShift(), points, {}), points);
    EXPECT_EQ(appliedInXY(MarkerShift(), points, {{1, 1, 1}}), points);
}

TEST(ApplyShift, LeavesAPointThatWouldLeaveTheRangeOfNumbers) {
    Shift shift = namedFits();
    shift.shiftFit3.coefU = {0, 1e300};
    const PointList points{{1e200, 5, 0}, {notANumber, 5, 0}, {infinite, 5, 0}, {1e7, 5, 0}};
    const PointList moved = appliedInXY(shift, points);
    EXPECT_EQ(moved[0], points[0]);
    EXPECT_TRUE(std::isnan(moved[1].x));
    EXPECT_EQ(moved[1].y, 5);
    EXPECT_EQ(moved[2], points[2]);
    EXPECT_EQ(moved[3], (Vec{1e300 * 1e7, 30, 0}));
}

TEST(ApplyShift, FarFromAllMarkersIsTheAffineMapAlone) {
    // Initial = affine(shifted), disturbed: the far point follows the disturbed pairs' three-term fit.
    const PointList shifted = firstMarkers(32);
    Source source(9);
    Column a, b, u, v;
    PointList initial;
    for (const Vec& p : shifted) {
        initial.push_back({1.1 * p.x - 0.2 * p.y + source.real(-5, 5), 0.3 * p.x + p.y - 7, p.z});
        a.push_back(p.x);
        b.push_back(p.y);
        u.push_back(initial.back().x);
        v.push_back(initial.back().y);
    }
    Shift shift;
    shift.prepare(3, initial, shifted);
    const auto coefU = reference::leastSquares(a, b, u, 3);
    const auto coefV = reference::leastSquares(a, b, v, 3);
    const Vec moved = appliedInXY(shift, {{5000, -3000, 1}}, shifted)[0];
    EXPECT_NEAR(moved.x, static_cast<double>(coefU[0] + 5000 * coefU[1] - 3000 * coefU[2]), 1e-6);
    EXPECT_NEAR(moved.y, static_cast<double>(coefV[0] + 5000 * coefV[1] - 3000 * coefV[2]), 1e-6);
    EXPECT_EQ(moved.z, 1);
}

// ---- Against the plain forms ----------------------------------------------------------------------------------------

TEST(ApplyShift, GivesTheBitsOfThePlainForm) {
    Source source(11);
    for (int round = 0; round < 100; ++round) {
        PointList initial;
        PointList shifted;
        const int count = static_cast<int>(source.real(12, 120));
        for (int i = 0; i < count; ++i) {
            const Vec p{source.real(-200, 200), source.real(-200, 200), 0};
            shifted.push_back(p);
            initial.push_back({sumOf(cubicU, p.x, p.y) + source.real(-3, 3), sumOf(cubicV, p.x, p.y), 0});
        }
        Shift shift;
        shift.prepare(3, initial, shifted);
        ASSERT_THAT(shift.troubles, IsEmpty()) << round;
        PointList points = shifted;
        for (int i = 0; i < 200; ++i) {
            points.push_back({source.real(-600, 600), source.real(-600, 600), source.real(-1, 1)});
        }
        PointList expected = points;
        reference::applyInXY(shift, shifted, expected);
        const PointList moved = appliedInXY(shift, points, shifted);
        for (std::size_t i = 0; i < moved.size(); ++i) {
            ASSERT_TRUE(sameBits(moved[i].x, expected[i].x) && sameBits(moved[i].y, expected[i].y)) << round;
            ASSERT_TRUE(sameBits(moved[i].z, expected[i].z));
        }
    }
}

} // namespace velmora::test

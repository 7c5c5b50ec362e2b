#include "marker_shift.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace velmora {

namespace {

using Column = std::vector<double>;
using Axis = double zVec<double>::*;
using Terms = std::array<double, 10>;

struct PlaneAxes {
    Axis first = nullptr;
    Axis second = nullptr;
};

/// Without axes for a code of no plane.
PlaneAxes axesOf(std::int32_t plane) {
    switch (plane) {
    case 1:
        return {&zVec<double>::y, &zVec<double>::z};
    case 2:
        return {&zVec<double>::x, &zVec<double>::z};
    case 3:
        return {&zVec<double>::x, &zVec<double>::y};
    default:
        return {};
    }
}

// ---- Least squares --------------------------------------------------------------------------------------------------

/// A'A, packed by rows of its lower triangle, and A' times both right-hand sides.
struct NormalEquations {
    std::int32_t terms;
    std::array<double, 55> matrix{};
    Terms u{};
    Terms v{};

    double& at(std::int32_t i, std::int32_t j) {
        const std::int32_t place = i * (i + 1) / 2 + j;
        return matrix[static_cast<std::size_t>(place)];
    }
};

double& entry(Terms& terms, std::int32_t i) {
    return terms[static_cast<std::size_t>(i)];
}

/// The powers of 0.01 bring the columns to like sizes, as coordinates are large.
Terms designRow(double x, double y) {
    return {1.0,          x * 0.01,         y * 0.01,         x * x * 1e-4,     y * y * 1e-4,
            x * y * 1e-4, x * x * x * 1e-6, y * y * y * 1e-6, x * x * y * 1e-6, x * y * y * 1e-6};
}

void addPair(NormalEquations& equations, Terms row, double u, double v) {
    for (std::int32_t i = 0; i < equations.terms; ++i) {
        for (std::int32_t j = 0; j <= i; ++j) {
            equations.at(i, j) += entry(row, i) * entry(row, j);
        }
        entry(equations.u, i) += entry(row, i) * u;
        entry(equations.v, i) += entry(row, i) * v;
    }
}

/// Cholesky factorisation in place. False when a pivot is so small beside what stood there that it cannot be told from
/// rounding, is negative or no number.
bool factorise(NormalEquations& equations) {
    for (std::int32_t i = 0; i < equations.terms; ++i) {
        for (std::int32_t j = 0; j <= i; ++j) {
            const double before = equations.at(i, j);
            double rest = before;
            for (std::int32_t k = 0; k < j; ++k) {
                rest -= equations.at(i, k) * equations.at(j, k);
            }
            if (j < i) {
                equations.at(i, j) = rest / equations.at(j, j);
            } else if (before < before + rest / (16.0 * equations.terms)) {
                equations.at(i, i) = std::sqrt(rest);
            } else {
                return false;
            }
        }
    }
    return true;
}

/// Solves for one right-hand side by the factor. Zeros in front of it have no part in the forward substitution.
Terms solved(NormalEquations& equations, Terms side) {
    const std::int32_t n = equations.terms;
    std::int32_t leading = 0;
    while (leading < n && entry(side, leading) == 0.0) {
        ++leading;
    }
    for (std::int32_t i = leading; i < n; ++i) {
        for (std::int32_t k = leading; k < i; ++k) {
            entry(side, i) -= equations.at(i, k) * entry(side, k);
        }
        entry(side, i) /= equations.at(i, i);
    }
    for (std::int32_t i = n - 1; i >= 0; --i) {
        for (std::int32_t k = i + 1; k < n; ++k) {
            entry(side, i) -= equations.at(k, i) * entry(side, k);
        }
        entry(side, i) /= equations.at(i, i);
    }
    return side;
}

/// From the design matrix' order and scale to those of ShiftFit.
Terms unscaled(const Terms& s) {
    return {s[0],        s[1] * 0.01, s[2] * 0.01, s[5] * 1e-4, s[3] * 1e-4,
            s[4] * 1e-4, s[8] * 1e-6, s[9] * 1e-6, s[6] * 1e-6, s[7] * 1e-6};
}

/// The pairs of markers in a plane.
struct PlanePairs {
    Column sa;
    Column sb;
    Column ia;
    Column ib;

    PlanePairs(const PlaneAxes& axes, const PointList& initial, const PointList& shifted) {
        for (const zVec<double>& p : shifted) {
            sa.push_back(p.*axes.first);
            sb.push_back(p.*axes.second);
        }
        for (const zVec<double>& p : initial) {
            ia.push_back(p.*axes.first);
            ib.push_back(p.*axes.second);
        }
    }

    bool identical() const {
        constexpr double leastShift = 0.001;
        double d = 0.0;
        for (std::size_t i = 0; i < sa.size(); ++i) {
            const double da = ia[i] - sa[i];
            const double db = ib[i] - sb[i];
            d += da * da + db * db;
        }
        return sa.empty() || d < leastShift;
    }

    bool fitBack(std::int32_t terms, ShiftFit& fit, const TellTrouble& tell) const {
        return FitShift(sa.data(), sb.data(), ia.data(), ib.data(), countOf(sa), terms, fit.coefU.data(),
                        fit.coefV.data(), tell) != 0;
    }

    bool fitForth(ShiftFit& fit, const TellTrouble& tell) const {
        return FitShift(ia.data(), ib.data(), sa.data(), sb.data(), countOf(sa), 10, fit.coefU.data(), fit.coefV.data(),
                        tell) != 0;
    }
};

// ---- Errors ---------------------------------------------------------------------------------------------------------

ShiftError errorOf(const Column& misses) {
    ShiftError error;
    double squares = 0.0;
    for (const double miss : misses) {
        error.mean += miss;
        squares += miss * miss;
        error.maximum = std::max(error.maximum, miss);
    }
    const auto count = static_cast<double>(misses.size());
    error.mean /= count;
    error.meanSquare = std::sqrt(squares / (count - 1.0));
    return error;
}

ShiftErrors errorsOf(const ShiftFit& fit, const PlanePairs& pairs) {
    Column r;
    Column x;
    Column y;
    for (std::size_t i = 0; i < pairs.sa.size(); ++i) {
        double u = 0.0;
        double v = 0.0;
        fit.EvalShift(10, pairs.sa[i], pairs.sb[i], u, v);
        const double ex = u - pairs.ia[i];
        const double ey = v - pairs.ib[i];
        r.push_back(std::sqrt(ex * ex + ey * ey));
        x.push_back(std::abs(ex));
        y.push_back(std::abs(ey));
    }
    return {countOf(r), errorOf(r), errorOf(x), errorOf(y)};
}

std::string twoDigits(double value) {
    std::array<char, 320> text{}; // the largest double has 309 digits before its point
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 2).ptr;
    return {text.data(), end};
}

std::string errorLines(const ShiftError& error, const std::string& of) {
    return "Mean linear error   (" + of + ") =   " + twoDigits(error.mean) + "\n    Mean square error  (" + of +
           ") =   " + twoDigits(error.meanSquare) + "\n    Absolute Max error (" + of +
           ") =   " + twoDigits(error.maximum);
}

/// The share of a fit that counts in full at `full` and not at all at `none`.
double shareOf(double d, double none, double full) {
    return std::clamp((d - none) / (full - none), 0.0, 1.0);
}

PlanePoint valueOf(const ShiftFit& fit, std::int32_t order, double a, double b) {
    PlanePoint value{a, b};
    fit.EvalShift(order, a, b, value.a, value.b);
    return value;
}

PlanePoint blended(double share, const PlanePoint& p, double otherShare, const PlanePoint& q) {
    return {share * p.a + otherShare * q.a, share * p.b + otherShare * q.b};
}

} // namespace

void ShiftFit::EvalShift(std::int32_t order, double x, double y, double& u, double& v) const {
    const auto value = [order, x, y](const Terms& c) {
        double sum = c[0] + c[1] * x + c[2] * y;
        if (order > 3) {
            sum = sum + c[3] * x * y + c[4] * x * x + c[5] * y * y;
        }
        if (order > 6) {
            sum = sum + c[6] * x * x * y + c[7] * x * y * y + c[8] * x * x * x + c[9] * y * y * y;
        }
        return sum;
    };
    if (order == 0 || order == 1) {
        u = order == 0 ? x : x + coefU[0];
        v = order == 0 ? y : y + coefV[0];
    } else if (order == 3 || order == 6 || order == 10) {
        u = value(coefU);
        v = value(coefV);
    }
}

int FitShift(const double* xIn, const double* yIn, const double* uOut, const double* vOut, std::int32_t count,
             std::int32_t terms, double* coefU, double* coefV, const TellTrouble& tell) {
    if (count > maxShiftPairs || count < terms || (terms != 3 && terms != 6 && terms != 10)) {
        return 0;
    }
    NormalEquations equations{terms};
    for (std::int32_t i = 0; i < count; ++i) {
        addPair(equations, designRow(xIn[i], yIn[i]), uOut[i], vOut[i]);
    }
    if (!factorise(equations)) {
        tell(ShiftTrouble::MatrixNotPositive);
        return 0;
    }
    const Terms u = unscaled(solved(equations, equations.u));
    const Terms v = unscaled(solved(equations, equations.v));
    const auto finite = [](double value) { return std::isfinite(value); };
    if (!std::all_of(u.begin(), u.end(), finite) || !std::all_of(v.begin(), v.end(), finite)) {
        return 0;
    }
    std::copy_n(u.begin(), terms, coefU);
    std::copy_n(v.begin(), terms, coefV);
    return 1;
}

std::string shiftReport(const ShiftErrors& errors) {
    // The figures are of the ten-term fit; the order that the text names is its degree.
    return "Shifting Geometry:\n    Order of approximation =   3\n" + errorLines(errors.distance, "R") +
           "\n    Number of pairs        =   " + std::to_string(errors.pairs) + "\n" + errorLines(errors.x, "X") +
           "\n" + errorLines(errors.y, "Y");
}

ShiftBlend shiftBlend(const std::vector<PlanePoint>& markers) {
    if (markers.size() < 2) {
        return {};
    }
    std::vector<PlanePoint> rounded;
    rounded.reserve(markers.size());
    for (const PlanePoint& p : markers) {
        rounded.push_back({static_cast<float>(p.a), static_cast<float>(p.b)});
    }
    double smallest = std::numeric_limits<double>::infinity();
    double sum = 0.0;
    for (std::size_t i = 0; i < rounded.size(); ++i) {
        for (std::size_t j = 0; j < rounded.size(); ++j) {
            if (i != j) {
                const double da = rounded[i].a - rounded[j].a;
                const double db = rounded[i].b - rounded[j].b;
                const double d = static_cast<float>(std::sqrt(da * da + db * db));
                smallest = std::min(smallest, d);
                sum += d;
            }
        }
    }
    const auto count = static_cast<double>(rounded.size());
    const double mean = sum / (count * (count - 1.0));
    return {smallest, (mean + smallest) * 0.5, mean};
}

bool MarkerShift::isIdentity() const {
    const ShiftFit identity;
    return shiftFit == identity && shiftFit10 == identity && shiftFit6 == identity && shiftFit3 == identity;
}

void MarkerShift::PrepareShift(std::int32_t plane, const PointList& initial, const PointList& shifted,
                               const TellTrouble& tell) {
    shiftFit = shiftFit10 = shiftFit6 = shiftFit3 = inverseFit = ShiftFit();
    report.clear();
    if (initial.size() != shifted.size()) {
        tell(ShiftTrouble::CountsDiffer);
        return;
    }
    shiftOrder = 10;
    const PlaneAxes axes = axesOf(plane);
    if (axes.first == nullptr) {
        tell(ShiftTrouble::UnknownPlane);
        return;
    }
    const PlanePairs pairs(axes, initial, shifted);
    if (pairs.identical()) {
        tell(ShiftTrouble::MarkersIdentical);
        return;
    }
    if (!pairs.fitBack(10, shiftFit, tell)) {
        tell(ShiftTrouble::EquationsNotSolved);
        return;
    }
    shiftFit10 = shiftFit;
    pairs.fitBack(6, shiftFit6, tell);
    pairs.fitBack(3, shiftFit3, tell);
    report = shiftReport(errorsOf(shiftFit, pairs));
    if (!pairs.fitForth(inverseFit, tell)) {
        tell(ShiftTrouble::EquationsNotSolved);
    }
}

PlanePoint MarkerShift::shiftedPoint(const ShiftBlend& blend, double d, double a, double b) const {
    if (shiftOrder != 10) {
        return valueOf(shiftFit, shiftOrder, a, b);
    }
    if (d < blend.dMin) {
        return valueOf(shiftFit10, 10, a, b);
    }
    if (d > blend.dMean) {
        return valueOf(shiftFit3, 3, a, b);
    }
    const PlanePoint by6 = valueOf(shiftFit6, 6, a, b);
    if (d >= blend.dMid && d <= blend.dMean) {
        return blended(shareOf(d, blend.dMean, blend.dMid), by6, shareOf(d, blend.dMid, blend.dMean),
                       valueOf(shiftFit3, 3, a, b));
    }
    return blended(shareOf(d, blend.dMid, blend.dMin), valueOf(shiftFit10, 10, a, b),
                   shareOf(d, blend.dMin, blend.dMid), by6);
}

void MarkerShift::ApplyShift(PointList& points, std::int32_t plane, std::int32_t firstPlane, bool secondPass,
                             const PointList& shifted) const {
    const PlaneAxes axes = axesOf(plane);
    // Where nothing was fitted everything stays: the shares of a blend need not add up to 1 to the last bit.
    if (axes.first == nullptr || isIdentity()) {
        return;
    }
    std::vector<PlanePoint> markers;
    for (const zVec<double>& p : shifted) {
        markers.push_back(valueOf(inverseFit, shiftOrder, p.*axes.first, p.*axes.second));
    }
    const ShiftBlend blend = shiftOrder == 10 ? shiftBlend(markers) : ShiftBlend();
    const NearestMarker nearest(std::move(markers));
    const PlaneAxes lacking = axesOf(firstPlane);
    const auto writes = [&](Axis axis) {
        return !secondPass || (lacking.first != nullptr && axis != lacking.first && axis != lacking.second);
    };
    for (zVec<double>& point : points) {
        const double a = point.*axes.first;
        const double b = point.*axes.second;
        const double d = shiftOrder == 10 ? nearest.distanceFrom(a, b) : 0.0;
        const PlanePoint target = shiftedPoint(blend, d, a, b);
        if (!std::isfinite(target.a) || !std::isfinite(target.b)) {
            continue;
        }
        if (writes(axes.first)) {
            point.*axes.first = target.a;
        }
        if (writes(axes.second)) {
            point.*axes.second = target.b;
        }
    }
}

} // namespace velmora

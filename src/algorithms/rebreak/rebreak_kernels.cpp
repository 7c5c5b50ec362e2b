#include "rebreak_kernels.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "IntervalFinder.h"
#include "SplineSystem.h"
#include "curve_tolerances.h"
#include "polyline.h"
#include "spline_band.h"

namespace velmora {

namespace {

/// A polyline to read from.
struct Curve {
    const double* x;
    const double* y;
    const double* z;
    std::int32_t n;

    double chord(std::int32_t i) const { return chordLength(x, y, z, i); }
    double length() const { return polylineLength(x, y, z, n); }
};

/// The arrays to write m points to.
struct Output {
    double* x;
    double* y;
    double* z;
    std::int32_t m;

    void copy(std::int32_t k, const Curve& curve, std::int32_t i) const {
        x[k] = curve.x[i];
        y[k] = curve.y[i];
        z[k] = curve.z[i];
    }

    void copyToAll(const Curve& curve, std::int32_t i) const {
        for (std::int32_t k = 0; k < m; ++k) {
            copy(k, curve, i);
        }
    }

    /// Output k becomes the point that lies `back` short of the end of chord i, whose length is `chord`.
    void walkBack(std::int32_t k, const Curve& curve, std::int32_t i, double back, double chord) const {
        const double divisor = chord < coincidentDistance ? coincidentDistance : chord;
        x[k] = curve.x[i] - (curve.x[i] - curve.x[i - 1]) * back / divisor;
        y[k] = curve.y[i] - (curve.y[i] - curve.y[i - 1]) * back / divisor;
        z[k] = curve.z[i] - (curve.z[i] - curve.z[i - 1]) * back / divisor;
    }
};

/// Steps d, dq, dq^2 and so on.
struct Progression {
    double d;
    double q;
};

/// m - 1 steps that add up to `length`; m is 3 or more.
Progression progressionFor(double length, std::int32_t m, double compression) {
    const double ratio = std::clamp(compression, compressionMin, compressionMax);
    if (!(std::abs(ratio - 1) > compressionUnity)) {
        return {length / (m - 1), 1};
    }
    const double q = std::pow(ratio, 1.0 / (m - 2));
    return {length * (1 - q) / (1 - std::pow(q, m - 1)), q};
}

/// Lays the steps along the chords. What a step leaves of a chord is carried on to the next one.
int layProgression(const Curve& in, const Output& out, Progression step) {
    out.copy(0, in, 0);
    double left = 0;
    std::int32_t k = 0;
    for (std::int32_t i = 1; i < in.n; ++i) {
        const double chord = in.chord(i);
        left += chord;
        while (true) {
            if (step.d > left) {
                if (i < in.n - 1) {
                    break;
                }
                left = 0; // rounding used up the last chord: the outputs that are left go to the last point
            }
            if (left >= step.d) {
                left -= step.d;
            }
            ++k;
            if (k == out.m - 1) {
                out.copy(k, in, in.n - 1);
                return 0;
            }
            step.d *= step.q;
            out.walkBack(k, in, i, left, chord);
        }
    }
    return 1;
}

int rebreakLinear(const Curve& in, const Output& out, double compression) {
    if (out.m < 2 || in.n < 1) {
        return 1;
    }
    if (out.m == 2) {
        out.copy(0, in, 0);
        out.copy(1, in, in.n - 1);
        return 0;
    }
    const double length = in.length();
    if (in.n == 1 || !(length > coincidentDistance)) {
        out.copyToAll(in, 0);
        return 0;
    }
    return layProgression(in, out, progressionFor(length, out.m, compression));
}

/// How a spline is to be re-spaced.
struct SplineLaw {
    int kind;
    double compression;
    double* positions;
};

/// The spline parameters of m outputs. `spareY` and `spareZ` are m entries each to work with.
void targetParameters(double length, std::int32_t m, const SplineLaw& law, double* s, double* spareY, double* spareZ) {
    if (law.kind == lawCompression) {
        const double ends[] = {0, length};
        const double zeros[] = {0, 0};
        rebreakLinear({ends, zeros, zeros, 2}, {s, spareY, spareZ, m}, law.compression);
        return;
    }
    const bool prescribed = law.kind == lawPrescribed && law.positions != nullptr;
    const double whole = prescribed ? law.positions[m - 1] : m - 1;
    for (std::int32_t i = 0; i < m; ++i) {
        if (prescribed) {
            law.positions[i] /= whole;
            s[i] = law.positions[i] * length;
        } else {
            s[i] = std::min(i * length / whole, length); // rounding must not lead behind the last interval
        }
    }
}

/// Puts out.m points at the parameters s of the spline through the points, whose own parameters are t. The three
/// coordinates share what depends on the parameters only.
void evaluateSpline(const Curve& in, const double* t, const double* s, const Output& out) {
    const auto size = static_cast<std::size_t>(in.n);
    std::vector<double> moments(3 * size);
    double* momentsX = moments.data();
    double* momentsY = momentsX + size;
    double* momentsZ = momentsY + size;
    SplineSystem system;
    system.factor(in.n, t);
    system.solve(in.x, momentsX);
    system.solve(in.y, momentsY);
    system.solve(in.z, momentsZ);
    IntervalFinder finder(t, in.n);
    for (std::int32_t i = 0; i < out.m; ++i) {
        const std::int32_t j = finder.findOrStay(s[i]);
        const SplinePiece piece(t[j], t[j + 1], s[i]);
        out.x[i] = piece.value(in.x + j, momentsX + j);
        out.y[i] = piece.value(in.y + j, momentsY + j);
        out.z[i] = piece.value(in.z + j, momentsZ + j);
    }
}

/// Takes bending out of the points but for the first and last two; t is room for their parameters.
void fitInBand(const Output& points, double halfWidth, double* t, std::int32_t capacity) {
    if (!(halfWidth > bandFreeTolerance)) {
        return; // every point would be pinned where it is
    }
    chordParameters(points.x, points.y, points.z, points.m, t);
    std::vector<double> halfWidths(static_cast<std::size_t>(points.m), halfWidth);
    std::fill_n(halfWidths.begin(), 2, 0.0);
    std::fill_n(halfWidths.rbegin(), 2, 0.0);
    for (double* coordinate : {points.x, points.y, points.z}) {
        FitSplineInBand(points.m, t, coordinate, halfWidths.data(), coordinate, capacity);
    }
}

void rebreakSpline(const Curve& in, const Output& out, double exactness, const SplineLaw& law, double shortest) {
    if (in.n < 2) {
        return;
    }
    if (in.n < 4 || out.m < 4) {
        rebreakLinear(in, out, 1);
        return;
    }
    const std::int32_t most = std::max(in.n, out.m);
    std::vector<double> t(static_cast<std::size_t>(most));
    const double length = chordParameters(in.x, in.y, in.z, in.n, t.data());
    if (length < shortest || length == 0) {
        rebreakLinear(in, out, 1);
        return;
    }
    std::vector<double> s(static_cast<std::size_t>(out.m));
    targetParameters(length, out.m, law, s.data(), out.y, out.z);
    evaluateSpline(in, t.data(), s.data(), out);
    const std::int32_t capacity = most > INT32_MAX - 2 ? most : most + 2;
    fitInBand(out, length * exactness / 100, t.data(), capacity);
}

} // namespace

int SplineRebreak(const double* x, const double* y, const double* z, std::int32_t n, double* outX, double* outY,
                  double* outZ, std::int32_t m, double exactness) {
    rebreakSpline({x, y, z, n}, {outX, outY, outZ, m}, exactness, {0, 1, nullptr}, 0);
    return 1;
}

int SplineRebreakLaw(const double* x, const double* y, const double* z, std::int32_t n, double* outX, double* outY,
                     double* outZ, std::int32_t m, double exactness, int lawKind, double compression, double* law) {
    rebreakSpline({x, y, z, n}, {outX, outY, outZ, m}, exactness, {lawKind, compression, law}, shortLineLength);
    return 1;
}

int LinearRebreak(const double* x, const double* y, const double* z, std::int32_t n, double* outX, double* outY,
                  double* outZ, std::int32_t m, double compression) {
    return rebreakLinear({x, y, z, n}, {outX, outY, outZ, m}, compression);
}

int LinearRebreakLaw(const double* x, const double* y, const double* z, std::int32_t n, double* outX, double* outY,
                     double* outZ, std::int32_t m, const double* law) {
    const Curve in{x, y, z, n};
    const Output out{outX, outY, outZ, m};
    if (n < 2 || m < 2) {
        return 1;
    }
    if (m == 2) {
        return rebreakLinear(in, out, 1);
    }
    std::vector<double> t(static_cast<std::size_t>(n));
    const double length = chordParameters(x, y, z, n, t.data());
    if (!(length > coincidentDistance)) {
        out.copyToAll(in, 0);
        return 0;
    }
    out.copy(0, in, 0);
    IntervalFinder finder(t.data(), n);
    for (std::int32_t k = 1; k < m; ++k) {
        const double target = law[k] / law[m - 1] * length;
        const std::int32_t i = std::min(finder.find(target) + 1, n - 1);
        if (t[static_cast<std::size_t>(i)] < target) {
            out.copy(k, in, n - 1);
            return 0;
        }
        out.walkBack(k, in, i, t[static_cast<std::size_t>(i)] - target, in.chord(i));
    }
    return 0;
}

} // namespace velmora

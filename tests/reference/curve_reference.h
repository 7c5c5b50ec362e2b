#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "curve_tolerances.h"

/// The curve kernels in their plainest form: every scan starts from the beginning, every array is written out, nothing
/// is shared between coordinates. Slow on purpose; the shipped kernels must give the same bits.
namespace velmora::reference {

using Column = std::vector<double>;

/// A polyline, or the outputs of a kernel.
struct Points {
    Column x;
    Column y;
    Column z;

    std::size_t size() const { return x.size(); }

    void set(std::size_t k, const Points& from, std::size_t i) {
        x[k] = from.x[i];
        y[k] = from.y[i];
        z[k] = from.z[i];
    }
};

inline double chord(const Points& p, std::size_t i) {
    const double dx = p.x[i] - p.x[i - 1];
    const double dy = p.y[i] - p.y[i - 1];
    const double dz = p.z[i] - p.z[i - 1];
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

/// Running chord lengths, from 0.
inline Column parameters(const Points& p) {
    Column t(p.size(), 0.0);
    for (std::size_t i = 1; i < p.size(); ++i) {
        t[i] = t[i - 1] + chord(p, i);
    }
    return t;
}

/// Second derivatives of the spline through (t[i], y[i]).
inline Column splineMoments(const Column& t, const Column& y) {
    const std::size_t n = t.size();
    Column h(n, 0.0);
    Column lambda(n, 0.0);
    Column mu(n, 1.0);
    Column d(n, 0.0);
    for (std::size_t i = 1; i < n; ++i) {
        h[i] = t[i] - t[i - 1];
    }
    for (std::size_t i = 1; i + 1 < n; ++i) {
        lambda[i] = h[i + 1] / (h[i + 1] + h[i]);
        mu[i] = 1 - lambda[i];
        d[i] = 6 * ((y[i + 1] - y[i]) / h[i + 1] - (y[i] - y[i - 1]) / h[i]) / (h[i] + h[i + 1]);
    }
    Column q(n + 1, 0.0);
    Column u(n + 1, 0.0);
    for (std::size_t k = 0; k < n; ++k) {
        const double p = q[k] * mu[k] + 2;
        q[k + 1] = -lambda[k] / p;
        u[k + 1] = (d[k] - u[k] * mu[k]) / p;
    }
    Column moments(n, 0.0);
    if (n > 0) {
        moments[n - 1] = u[n];
    }
    for (std::size_t k = n; k-- > 1;) {
        moments[k - 1] = q[k] * moments[k] + u[k];
    }
    return moments;
}

/// The spline's value at s, taken on interval j.
inline double splineOnInterval(const Column& knots, const Column& values, const Column& moments, std::size_t j,
                               double s) {
    const double h = knots[j + 1] - knots[j];
    const double a = knots[j + 1] - s;
    const double b = s - knots[j];
    return ((moments[j] * (a * a * a) + moments[j + 1] * (b * b * b)) / 6 + (values[j] - moments[j] * (h * h) / 6) * a +
            (values[j + 1] - moments[j + 1] * (h * h) / 6) * b) /
           h;
}

/// The first j with knots[j+1] >= s; `otherwise` without one.
inline std::size_t intervalOf(const Column& knots, double s, std::size_t otherwise) {
    for (std::size_t j = 0; j + 1 < knots.size(); ++j) {
        if (knots[j + 1] >= s) {
            return j;
        }
    }
    return otherwise;
}

inline Column splineValues(const Column& s, const Column& knots, const Column& values, const Column& moments) {
    Column out;
    std::size_t j = 0;
    for (const double parameter : s) {
        j = intervalOf(knots, parameter, j);
        out.push_back(splineOnInterval(knots, values, moments, j, parameter));
    }
    return out;
}

/// Result and values of `fitSplineInBand`.
struct Fit {
    int result = 1;
    Column out;
};

/// The knots of a band fit: the points that are not free, as far as there is room.
struct Knots {
    std::vector<std::size_t> point;
    Column t;
    Column y;
    Column moments;

    Knots(const std::vector<int>& free, const Column& allT, const Column& allY, std::size_t capacity) {
        for (std::size_t i = 0; i < free.size(); ++i) {
            if (free[i] == 0 && t.size() < capacity) {
                point.push_back(i);
                t.push_back(allT[i]);
                y.push_back(allY[i]);
            }
        }
        moments = splineMoments(t, y);
    }

    double at(double s, double otherwise) const {
        if (t.size() < 2) {
            return t.empty() ? otherwise : y[0];
        }
        return splineOnInterval(t, y, moments, intervalOf(t, s, t.size() - 2), s);
    }
};

/// Whether knot j of a band fit is let go.
inline bool isReleased(const Knots& knots, std::size_t j, double halfWidth, double below, double above) {
    if (halfWidth < bandFreeTolerance || j == 0 || j + 1 == knots.t.size()) {
        return false;
    }
    const Column& m = knots.moments;
    const double part = (knots.t[j] - knots.t[j - 1]) / (knots.t[j + 1] - knots.t[j - 1]);
    const double straight = m[j - 1] + (m[j + 1] - m[j - 1]) * part;
    if (m[j] > straight && !(above > bandFreeTolerance)) {
        return false;
    }
    if (!(m[j] < straight)) {
        return true;
    }
    return below > bandFreeTolerance;
}

inline Fit fitSplineInBand(const Column& t, const Column& y, const Column& halfWidth, std::size_t capacity) {
    const std::size_t n = y.size();
    Column current = y;
    Fit fit{1, y};
    std::vector<int> free(n, 1);
    for (std::size_t i = 0; i < n; ++i) {
        free[i] = halfWidth[i] > bandFreeTolerance ? 1 : 0;
    }
    bool everPinned = false;
    for (int counter = 1; counter <= 11; ++counter) {
        const Knots knots(free, t, current, capacity);
        Column step(n, 0.0);
        Column ratio(n, 1.0);
        double alpha = 1;
        for (std::size_t i = 0; i < n; ++i) {
            if (free[i] == 0) {
                continue;
            }
            step[i] = knots.at(t[i], current[i]) - current[i];
            if (std::abs(step[i]) < bandTouchTolerance) {
                step[i] = 0;
            } else if (step[i] < 0) {
                ratio[i] = (y[i] - halfWidth[i] - current[i]) / step[i];
            } else {
                ratio[i] = (y[i] + halfWidth[i] - current[i]) / step[i];
            }
            if (ratio[i] < alpha) {
                alpha = ratio[i];
            }
        }
        for (std::size_t i = 0; i < n; ++i) {
            if (free[i] == 0) {
                continue;
            }
            fit.out[i] = current[i] + alpha * step[i];
            if (!(std::abs(ratio[i] - alpha) > bandTouchTolerance)) {
                free[i] = 0;
                everPinned = true;
            }
        }
        if (!everPinned) {
            fit.result = 0;
            return fit;
        }
        current = fit.out;
        const Knots pinned(free, t, current, capacity);
        for (std::size_t j = 0; j < pinned.t.size(); ++j) {
            const std::size_t i = pinned.point[j];
            if (isReleased(pinned, j, halfWidth[i], current[i] - (y[i] - halfWidth[i]),
                           y[i] + halfWidth[i] - current[i])) {
                free[i] = 1;
            }
        }
    }
    return fit;
}

/// Writes to the m points that `out` already has.
inline int linearRebreak(const Points& in, Points& out, double compression) {
    const std::size_t n = in.size();
    const std::size_t m = out.size();
    if (m < 2 || n < 1) {
        return 1;
    }
    if (m == 2) {
        out.set(0, in, 0);
        out.set(1, in, n - 1);
        return 0;
    }
    const double ratio = std::clamp(compression, compressionMin, compressionMax);
    const double length = parameters(in).back();
    if (n == 1 || !(length > coincidentDistance)) {
        for (std::size_t k = 0; k < m; ++k) {
            out.set(k, in, 0);
        }
        return 0;
    }
    const auto count = static_cast<int>(m);
    double q = 1;
    double d = length / (count - 1);
    if (std::abs(ratio - 1) > compressionUnity) {
        q = std::pow(ratio, 1.0 / (count - 2));
        d = length * (1 - q) / (1 - std::pow(q, count - 1));
    }
    out.set(0, in, 0);
    double acc = 0;
    std::size_t index = 0;
    for (std::size_t i = 1; i < n; ++i) {
        double c = chord(in, i);
        acc += c;
        for (;;) {
            if (d > acc && i != n - 1) {
                break;
            }
            if (d > acc) {
                acc = 0;
            }
            if (acc >= d) {
                acc -= d;
            }
            if (c < coincidentDistance) {
                c = coincidentDistance;
            }
            index += 1;
            if (index == m - 1) {
                out.set(index, in, n - 1);
                return 0;
            }
            d = d * q;
            out.x[index] = in.x[i] - (in.x[i] - in.x[i - 1]) * acc / c;
            out.y[index] = in.y[i] - (in.y[i] - in.y[i - 1]) * acc / c;
            out.z[index] = in.z[i] - (in.z[i] - in.z[i - 1]) * acc / c;
        }
    }
    return 1;
}

/// Writes to the m points that `out` already has.
inline int linearRebreakLaw(const Points& in, Points& out, const Column& law) {
    const std::size_t n = in.size();
    const std::size_t m = out.size();
    if (n < 2 || m < 2) {
        return 1;
    }
    out.set(0, in, 0);
    if (m == 2) {
        out.set(1, in, n - 1);
        return 0;
    }
    const double length = parameters(in).back();
    if (!(length > coincidentDistance)) {
        for (std::size_t k = 0; k < m; ++k) {
            out.set(k, in, 0);
        }
        return 0;
    }
    for (std::size_t k = 1; k < m; ++k) {
        const double target = law[k] / law[m - 1] * length;
        double acc = 0;
        std::size_t i = 0;
        do {
            ++i;
            acc += chord(in, i);
        } while (!(acc >= target) && i < n - 1);
        if (acc < target) {
            out.set(k, in, n - 1);
            return 0;
        }
        acc -= target;
        double c = chord(in, i);
        if (c < coincidentDistance) {
            c = coincidentDistance;
        }
        out.x[k] = in.x[i] - (in.x[i] - in.x[i - 1]) * acc / c;
        out.y[k] = in.y[i] - (in.y[i] - in.y[i - 1]) * acc / c;
        out.z[k] = in.z[i] - (in.z[i] - in.z[i - 1]) * acc / c;
    }
    return 0;
}

/// Writes to the m points that `out` already has; changes `law` when the kind is 3. With `testShort` false a short
/// polyline, but not one of no length, is splined too.
inline void splineRebreak(const Points& in, Points& out, double exactness, int lawKind, double compression, Column& law,
                          bool testShort) {
    const std::size_t n = in.size();
    const std::size_t m = out.size();
    if (n < 2) {
        return;
    }
    Column t = parameters(in);
    const double length = t.back();
    if (n < 4 || m < 4 || length == 0 || (testShort && length < shortLineLength)) {
        linearRebreak(in, out, 1);
        return;
    }
    Column s(m, 0.0);
    const auto steps = static_cast<double>(m - 1);
    if (lawKind == 1) {
        Points targets{s, s, s};
        linearRebreak({{0, length}, {0, 0}, {0, 0}}, targets, compression);
        s = targets.x;
    } else if (lawKind == 3) {
        const double last = law[m - 1];
        for (std::size_t i = 0; i < m; ++i) {
            law[i] = law[i] / last;
            s[i] = law[i] * length;
        }
    } else {
        for (std::size_t i = 0; i < m; ++i) {
            s[i] = std::min(static_cast<double>(i) * length / steps, length);
        }
    }
    out.x = splineValues(s, t, in.x, splineMoments(t, in.x));
    out.y = splineValues(s, t, in.y, splineMoments(t, in.y));
    out.z = splineValues(s, t, in.z, splineMoments(t, in.z));
    t = parameters(out);
    Column halfWidth(m, length * exactness / 100);
    halfWidth[0] = halfWidth[1] = halfWidth[m - 2] = halfWidth[m - 1] = 0;
    const std::size_t capacity = std::max(n, m) + 2;
    out.x = fitSplineInBand(t, out.x, halfWidth, capacity).out;
    out.y = fitSplineInBand(t, out.y, halfWidth, capacity).out;
    out.z = fitSplineInBand(t, out.z, halfWidth, capacity).out;
}

/// Starts again from the first point after each removal.
inline void removeCoincidentPoints(Points& p) {
    for (std::size_t i = 1; i < p.size() && p.size() >= 3;) {
        if (!(chord(p, i) < coincidentDistance)) {
            ++i;
            continue;
        }
        const auto earlier = static_cast<std::ptrdiff_t>(i - 1);
        p.x.erase(p.x.begin() + earlier);
        p.y.erase(p.y.begin() + earlier);
        p.z.erase(p.z.begin() + earlier);
        i = 1;
    }
}

} // namespace velmora::reference

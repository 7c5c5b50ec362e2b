#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "zVec.h"

/// The distance of a point from a triangle by solving for its foot, with more digits than the shipped form has.
namespace velmora::reference {

using Long = std::array<long double, 3>;

inline Long longOf(const zVec<double>& v) {
    return {v.x, v.y, v.z};
}
inline Long minus(const Long& a, const Long& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline Long alongBy(const Long& a, const Long& direction, long double part) {
    return {a[0] + part * direction[0], a[1] + part * direction[1], a[2] + part * direction[2]};
}
inline long double product(const Long& a, const Long& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline long double lengthOf(const Long& a) {
    return std::sqrt(product(a, a));
}

inline long double distanceToSegment(const Long& point, const Long& a, const Long& b) {
    const Long along = minus(b, a);
    const long double whole = product(along, along);
    const long double part =
        whole > 0 ? std::clamp<long double>(product(minus(point, a), along) / whole, 0.0L, 1.0L) : 0.0L;
    return lengthOf(minus(point, alongBy(a, along, part)));
}

inline double distanceToTriangle(const zVec<double>& p, const zVec<double>& a, const zVec<double>& b,
                                 const zVec<double>& c) {
    const Long point = longOf(p);
    const Long corner = longOf(a);
    const Long u = minus(longOf(b), corner);
    const Long v = minus(longOf(c), corner);
    const Long w = minus(point, corner);
    long double best =
        std::min({distanceToSegment(point, corner, longOf(b)), distanceToSegment(point, longOf(b), longOf(c)),
                  distanceToSegment(point, longOf(c), corner)});
    // The foot is corner + s u + t v with the remainder square to both.
    const long double determinant = product(u, u) * product(v, v) - product(u, v) * product(u, v);
    if (determinant > 0) {
        const long double s = (product(w, u) * product(v, v) - product(w, v) * product(u, v)) / determinant;
        const long double t = (product(w, v) * product(u, u) - product(w, u) * product(u, v)) / determinant;
        if (s >= 0 && t >= 0 && s + t <= 1) {
            best = std::min(best, lengthOf(minus(point, alongBy(alongBy(corner, u, s), v, t))));
        }
    }
    return static_cast<double>(best);
}

} // namespace velmora::reference

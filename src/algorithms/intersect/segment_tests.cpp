#include "segment_tests.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "PatchList.h"
#include "vectors.h"

namespace velmora {

namespace {

/// A point at distance e behind an end is let through while e times e is not above `nearZero`, so up to its root.
constexpr double rootOfNearZero = 1e-4;
/// Room for rounding where a reach is only a bound.
constexpr double boundPart = 1.001;

double largestOf(const zVec<double>& p) {
    return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)});
}

bool betweenOnEachAxis(const zVec<double>& p, const zVec<double>& a, const zVec<double>& b) {
    return (p.x - a.x) * (p.x - b.x) <= nearZero && (p.y - a.y) * (p.y - b.y) <= nearZero &&
           (p.z - a.z) * (p.z - b.z) <= nearZero;
}

} // namespace

double lineDistance(const zVec<double>& a, const zVec<double>& b, const zVec<double>& q) {
    const double span = lengthOf(b - a);
    return span < nearZero ? lengthOf(q - a) : lengthOf(cross(q - a, b - a)) / span;
}

SegmentPlace pointOnSegment(const zVec<double>& a, const zVec<double>& b, const zVec<double>& p, double tolerance) {
    const double span = distance(a, b);
    if (span < nearZero) {
        return {SegmentPlace::Coincident, 0.0};
    }
    if (!betweenOnEachAxis(p, a, b)) {
        return {SegmentPlace::Off, 0.0};
    }
    const zVec<double> unit = (b - a) * (1.0 / span);
    const zVec<double> from = p - a;
    const zVec<double> across = from - unit * dot(from, unit);
    if (!(span * tolerance > lengthOf(across))) {
        return {SegmentPlace::Off, 0.0};
    }
    const double way = lengthOf(from);
    return way < nearZero ? SegmentPlace{SegmentPlace::Coincident, 0.0} : SegmentPlace{SegmentPlace::On, way / span};
}

bool liesBetween(const zVec<double>& hit, const zVec<double>& a, const zVec<double>& b) {
    return samePoint(hit, a, samePointTolerance) || samePoint(hit, b, samePointTolerance) ||
           betweenOnEachAxis(hit, a, b);
}

double betweenSlack(const zVec<double>& a, const zVec<double>& b) {
    return boundPart * (rootOfNearZero + 2.0 * samePointTolerance * std::max(largestOf(a), largestOf(b)));
}

double samePointReach(const zVec<double>& p, double tolerance) {
    return tolerance < 0.5 ? boundPart * tolerance / (1.0 - tolerance) * largestOf(p)
                           : std::numeric_limits<double>::infinity();
}

} // namespace velmora

#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "zVec.h"

namespace velmora {

// When two points count as one. There are three measures, and each caller brings its tolerance; exact equality is `==`.
// A point with a coordinate that is not a number is never the same as another, whatever the measure, but for the one of
// double points.

/// The part of the larger coordinate below which two points or two planes are the same, where nobody chooses another.
inline constexpr double samePointTolerance = 1e-10;

/// The largest absolute coordinate of a point.
inline double largestCoordinate(const std::array<double, 3>& p) {
    double largest = 0.0;
    for (const double coordinate : p) {
        largest = std::fabs(coordinate) > largest ? std::fabs(coordinate) : largest;
    }
    return largest;
}

/// By the size of both: they differ, in each coordinate, by less than `tolerance` times the largest absolute coordinate
/// of the two. The origin is the same as itself; points with a coordinate that is not finite, and points other than the
/// origin so near to it that the division overflows, are not even the same as themselves.
inline bool samePoint(const std::array<double, 3>& a, const std::array<double, 3>& b,
                      double tolerance = samePointTolerance) {
    const double largestOfA = largestCoordinate(a);
    const double largestOfB = largestCoordinate(b);
    const double largest = largestOfA > largestOfB ? largestOfA : largestOfB;
    if (largest == 0.0) {
        return a == b; // both are the origin, or a coordinate is not a number
    }
    const double scale = 1.0 / largest;
    return std::fabs(a[0] - b[0]) * scale < tolerance && std::fabs(a[1] - b[1]) * scale < tolerance &&
           std::fabs(a[2] - b[2]) * scale < tolerance;
}
inline bool samePoint(const zVec<double>& a, const zVec<double>& b, double tolerance = samePointTolerance) {
    return samePoint(std::array<double, 3>{a.x, a.y, a.z}, std::array<double, 3>{b.x, b.y, b.z}, tolerance);
}

/// By `samePoint` with its own tolerance, for the double points of the picture. Here the differences are divided by the
/// largest coordinate, there they are multiplied by its reciprocal: at the very edge of the tolerance the two may part,
/// and pictures and cuts both stay as they have always been.
inline bool isDoublePoint(const zVec<double>& a, const zVec<double>& b) {
    const double largest =
        std::max({std::fabs(a.x), std::fabs(a.y), std::fabs(a.z), std::fabs(b.x), std::fabs(b.y), std::fabs(b.z)});
    if (largest == 0.0) {
        return true;
    }
    return std::fabs(a.x - b.x) / largest < samePointTolerance && std::fabs(a.y - b.y) / largest < samePointTolerance &&
           std::fabs(a.z - b.z) / largest < samePointTolerance;
}

/// By a length in model units: each coordinate differs by less than `reach`.
inline bool withinReach(const zVec<double>& a, const zVec<double>& b, double reach) {
    return std::fabs(a.x - b.x) < reach && std::fabs(a.y - b.y) < reach && std::fabs(a.z - b.z) < reach;
}

/// By each coordinate alone: the difference is below `part` of the sum. Two coordinates that are both 0 differ: their
/// sum is no measure.
inline bool sameCoordinates(const zVec<double>& a, const zVec<double>& b, double part) {
    const auto same = [part](double p, double q) { return std::fabs((p + q) * part) > std::fabs(p - q); };
    return same(a.x, b.x) && same(a.y, b.y) && same(a.z, b.z);
}

} // namespace velmora

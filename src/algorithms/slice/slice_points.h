#pragma once

#include <array>
#include <cmath>
#include <vector>

namespace velmora {

/// A point of a cut, by axis: x, y, z.
using SlicePoint = std::array<double, 3>;

/// What a plane leaves of one triangle.
struct SliceSegment {
    SlicePoint first{};
    SlicePoint second{};
};

/// A chain of cut points.
using SliceLine = std::vector<SlicePoint>;

/// The part of the larger coordinate below which two points or two planes are the same.
inline constexpr double samePointTolerance = 1e-10;

/// The largest absolute coordinate of a point.
inline double largestCoordinate(const SlicePoint& p) {
    double largest = 0.0;
    for (const double coordinate : p) {
        largest = std::fabs(coordinate) > largest ? std::fabs(coordinate) : largest;
    }
    return largest;
}

/// Whether two points differ, in each coordinate, by less than `tolerance` times the largest absolute coordinate of
/// both. Points with a coordinate that is not finite, and points other than the origin so near to it that the division
/// overflows, are not even the same as themselves.
inline bool samePoint(const SlicePoint& a, const SlicePoint& b, double tolerance = samePointTolerance) {
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

/// The same for the coordinate of two planes.
inline bool samePlane(double a, double b) {
    if (a == 0.0 && b == 0.0) {
        return true;
    }
    const double largest = std::fabs(a) > std::fabs(b) ? std::fabs(a) : std::fabs(b);
    return std::fabs(a - b) / largest < samePointTolerance;
}

} // namespace velmora

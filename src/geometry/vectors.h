#pragma once

#include <cmath>

#include "zVec.h"

namespace velmora {

// The words for lengths, directions and coordinates that all folders share. The order of the operations is part of
// each: saved files are compared byte for byte.

/// Every component divided by `divisor`, which is not the same to the last bit as times its reciprocal.
inline zVec<double> operator/(const zVec<double>& v, double divisor) {
    return {v.x / divisor, v.y / divisor, v.z / divisor};
}

inline double lengthOf(const zVec<double>& v) {
    return std::sqrt(dot(v, v));
}

/// The same direction with length 1; of a vector without length not a number.
inline zVec<double> unitOf(const zVec<double>& v) {
    return v / lengthOf(v);
}

inline double squaredDistance(const zVec<double>& a, const zVec<double>& b) {
    const zVec<double> d = a - b;
    return dot(d, d);
}

/// The distance between two points.
inline double distance(const zVec<double>& a, const zVec<double>& b) {
    return std::sqrt(squaredDistance(a, b));
}

/// The cosine of the angle between two vectors; not a number when one of the two has no length.
inline double cosine(const zVec<double>& a, const zVec<double>& b) {
    return dot(a, b) / (std::sqrt(dot(a, a)) * std::sqrt(dot(b, b)));
}

/// The point of three numbers in a row.
inline zVec<double> vectorAt(const double* p) {
    return {p[0], p[1], p[2]};
}

/// Along the axis of that number: 0 x, 1 y, 2 z.
inline double& along(zVec<double>& point, int axis) {
    return axis == 0 ? point.x : axis == 1 ? point.y : point.z;
}
inline double along(const zVec<double>& point, int axis) {
    return axis == 0 ? point.x : axis == 1 ? point.y : point.z;
}

} // namespace velmora

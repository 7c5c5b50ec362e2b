#pragma once

#include <cmath>

#include "zVec.h"

namespace velmora {

inline double squaredDistance(const zVec<double>& a, const zVec<double>& b) {
    const zVec<double> d = a - b;
    return dot(d, d);
}

/// The distance between two points.
inline double distance(const zVec<double>& a, const zVec<double>& b) {
    return std::sqrt(squaredDistance(a, b));
}

} // namespace velmora

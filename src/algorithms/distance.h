#pragma once

#include <cmath>

#include "zVec.h"

namespace velmora {

/// The distance between two points.
inline double distance(const zVec<double>& a, const zVec<double>& b) {
    const zVec<double> d = a - b;
    return std::sqrt(dot(d, d));
}

} // namespace velmora

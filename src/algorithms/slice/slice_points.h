#pragma once

#include <array>
#include <cmath>
#include <vector>

#include "same_point.h"

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

/// `samePoint` for the coordinate of two planes.
inline bool samePlane(double a, double b) {
    if (a == 0.0 && b == 0.0) {
        return true;
    }
    const double largest = std::fabs(a) > std::fabs(b) ? std::fabs(a) : std::fabs(b);
    return std::fabs(a - b) / largest < samePointTolerance;
}

} // namespace velmora

#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <span>
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

/// Chains of cut points, one behind the other.
struct SliceLines {
    std::vector<SlicePoint> points;
    std::vector<std::size_t> ends; ///< of each line, behind its last point

    std::size_t size() const { return ends.size(); }
    std::span<const SlicePoint> operator[](std::size_t line) const {
        const std::size_t begin = line == 0 ? 0 : ends[line - 1];
        return {points.data() + begin, ends[line] - begin};
    }
    void clear() {
        points.clear();
        ends.clear();
    }
};

/// `samePoint` for the coordinate of two planes.
inline bool samePlane(double a, double b) {
    if (a == 0.0 && b == 0.0) {
        return true;
    }
    const double largest = std::fabs(a) > std::fabs(b) ? std::fabs(a) : std::fabs(b);
    return std::fabs(a - b) / largest < samePointTolerance;
}

} // namespace velmora

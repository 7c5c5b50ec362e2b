#pragma once

#include <cstdint>
#include <vector>

#include "small_models.h"
#include "small_zones.h"

namespace velmora::test {

using Vector = zVec<double>;

/// The corners of the box from the origin to (x, y, z): number 4 i + 2 j + k stands at (i x, j y, k z).
inline std::vector<Vector> boxCorners(double x, double y, double z, const Vector& at = {}) {
    std::vector<Vector> corners;
    for (int i = 0; i < 8; ++i) {
        corners.push_back(at + Vector(i >= 4 ? x : 0.0, i / 2 % 2 == 1 ? y : 0.0, i % 2 == 1 ? z : 0.0));
    }
    return corners;
}

/// Two triangles for each side of such a box, all seen from outside in one sense.
inline std::vector<std::int32_t> boxTriangles(std::int32_t base = 0) {
    std::vector<std::int32_t> corners = {0, 1, 3, 0, 3, 2, 4, 6, 7, 4, 7, 5, 0, 4, 5, 0, 5, 1,
                                         2, 3, 7, 2, 7, 6, 0, 2, 6, 0, 6, 4, 1, 5, 7, 1, 7, 3};
    for (std::int32_t& corner : corners) {
        corner += base;
    }
    return corners;
}

/// Each corner of each triangle as a node of its own, as from a file of loose triangles.
inline zRegion_fe looseTriangles(const std::vector<Vector>& nodes, const std::vector<std::int32_t>& corners) {
    std::vector<Vector> loose;
    std::vector<std::int32_t> numbers;
    for (const std::int32_t corner : corners) {
        numbers.push_back(static_cast<std::int32_t>(loose.size()));
        loose.push_back(nodes[static_cast<std::size_t>(corner)]);
    }
    return triangleRegion(loose, numbers);
}

/// A patch of one cell with the corners a (section 0, point 0), b (1, 0), c (1, 1), d (0, 1).
inline Patch oneCell(const Vector& a, const Vector& b, const Vector& c, const Vector& d) {
    return {{a, d}, {b, c}};
}

/// The flat patch, moved.
inline Patch flatPatchAt(int sections, int points, const Vector& at) {
    Patch patch = flatPatch(sections, points);
    for (PointList& section : patch) {
        for (Vector& point : section) {
            point = point + at;
        }
    }
    return patch;
}

} // namespace velmora::test

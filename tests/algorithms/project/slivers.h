#pragma once

#include <array>
#include <vector>

#include "TriangleTree.h"
#include "random_numbers.h"
#include "vectors.h"

/// Triangles of length 1 and a ten-thousandth of width that run askew: the boxes along the axes of nearly all of them
/// overlap.
namespace velmora::test {

using SliverCorners = std::array<zVec<double>, 3>;

inline std::vector<SliverCorners> parallelSlivers(int count) {
    const zVec<double> along = unitOf(zVec<double>(1, 1, 1));
    std::vector<SliverCorners> slivers;
    for (int i = 0; i < count; ++i) {
        const zVec<double> a = anyVector(0.5);
        slivers.push_back({a, a + along, a + anyVector(1e-4)});
    }
    return slivers;
}

inline std::vector<SliverCorners> crossingSlivers(int count) {
    std::vector<SliverCorners> slivers;
    for (int i = 0; i < count; ++i) {
        const zVec<double> a = anyVector(0.5);
        slivers.push_back({a, a + unitOf(anyVector(1)), a + anyVector(1e-4)});
    }
    return slivers;
}

inline TriangleMesh meshOf(const std::vector<SliverCorners>& triangles) {
    TriangleMesh mesh;
    for (const SliverCorners& corners : triangles) {
        const std::int32_t first = 3 * mesh.triangleCount();
        for (const zVec<double>& corner : corners) {
            mesh.addPoint(corner);
        }
        mesh.addTriangle(first, first + 1, first + 2);
    }
    return mesh;
}

} // namespace velmora::test

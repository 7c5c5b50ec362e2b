#pragma once

#include "zVec.h"

namespace velmora {

/// Where a line meets a triangle: 0 no hit, 1 through a vertex (or along a degenerate triangle: a point or a segment),
/// 2 on an edge, 3 inside. `point` means nothing with code 0.
struct TriangleHit {
    int code = 0;
    zVec<double> point;
};

/// Meets the infinite line through `origin` along `direction`, of any length, with the triangle a, b, c. The test of
/// picking: zero tests are exact, the inside test is relative to 5e-12. Coordinates that are not numbers give no hit.
TriangleHit LineHitsTriangle(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c,
                             const zVec<double>& direction, const zVec<double>& origin);

/// True when the two count as one vertex for LineHitsTriangle.
bool sameVertex(const zVec<double>& a, const zVec<double>& b);

} // namespace velmora

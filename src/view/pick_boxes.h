#pragma once

#include <limits>

#include "line_triangle_strict.h"
#include "zVec.h"

namespace velmora {

/// A box about the points of some triangles, wide enough that a line that misses it hits none of them.
struct PickBox {
    /// No numbers for a box that cannot be told: no comparison with it leaves anything out.
    zVec<double> centre;
    zVec<double> half;
    double radius = 0.0;

    /// Whether the infinite line through `origin` stays outside.
    bool missedBy(const zVec<double>& origin, const zVec<double>& direction) const;
};

/// The smallest extent of points, growing.
class PickExtent {
public:
    void add(const zVec<double>& p);
    void add(const PickBox& box) {
        add(box.centre - box.half);
        add(box.centre + box.half);
    }
    /// Widened by what the inside test accepts beyond a triangle, and by rounding.
    PickBox triangleBox() const;
    /// Widened by rounding alone.
    PickBox boxOfBoxes() const;

private:
    zVec<double> lower_{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
                        std::numeric_limits<double>::infinity()};
    zVec<double> upper_ = lower_ * -1.0;
    bool broken_ = false; ///< some coordinate is not a finite number
};

/// The corners of a triangle, all three or none.
struct TriangleCorners {
    const zVec<double>* a = nullptr;
    const zVec<double>* b = nullptr;
    const zVec<double>* c = nullptr;
};

/// The direction of a line of sight, of any length: a vast one is scaled, so that products of it do not overflow.
zVec<double> sightDirection(const zVec<double>& nearPoint, const zVec<double>& farPoint);

/// LineHitsTriangle; of a vast triangle, whose areas overflow, it is that of the same one scaled by a power of two.
TriangleHit sightHitsTriangle(const TriangleCorners& t, const zVec<double>& direction, const zVec<double>& origin);

/// A triangle that may be hit outside its box, for what its corners do to the inside test: to be tested by every line.
bool isOddTriangle(const TriangleCorners& t);

} // namespace velmora

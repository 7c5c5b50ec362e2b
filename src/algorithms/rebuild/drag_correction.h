#pragma once

#include <cstdint>

#include "PatchList.h"

namespace velmora {

/// The two coordinates of a coordinate plane.
struct DragPlane {
    double zVec<double>::*first;
    double zVec<double>::*second;
};

/// Bends a curve so that point `index` moves by `delta` in the two coordinates of the plane; the third stays. The ends
/// barely move, points near `index` by nearly the whole of it. Nothing happens with an index outside the curve.
void bendCurve(PointList& curve, std::int32_t index, const zVec<double>& delta, const DragPlane& plane);

} // namespace velmora

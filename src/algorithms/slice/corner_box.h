#pragma once

#include <array>

#include "zRegion.h"
#include "zVec.h"

namespace velmora {

/// How far the corners of triangles reach along one axis.
struct CornerRange {
    double lower = 1e65;
    double upper = -1e65;
};

/// The box of a surface as slicing and cutting know it.
struct CornerBox {
    zVec<double> lower{1e65, 1e65, 1e65};
    zVec<double> upper{-1e65, -1e65, -1e65};
};

/// The range of the corners of all triangles along an axis; the wrong way round without any. Zones without coordinates
/// have no corners.
CornerRange cornerRange(const zRegion_fe& region, int axis);

/// The same along all three.
CornerBox cornerBox(const zRegion_fe& region);

/// The coordinates of a zone by axis; none for a zone of fewer than three fields or without one of x, y, z.
std::array<const double*, 3> zoneAxes(const zBlock_fe& zone);

} // namespace velmora

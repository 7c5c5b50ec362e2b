#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "zVec.h"

namespace velmora {

/// Splits a polygon of n >= 3 corners, given in order, into n - 2 triangles inside its border, concave ones too; they
/// go behind those in `triangles` as places in `corners`, turning as the polygon does. Points must be finite.
///
/// The border is seen along the axis in which the polygon is widest. Triangles of no area are made only where corners
/// lie on one line and nothing else is left. False when the border crosses itself: the n - 2 triangles then cover it
/// somehow. About n log n for what people draw; a border made to be slow is given up and fanned.
bool triangulatePolygon(std::span<const zVec<double>> corners, std::vector<std::array<std::int32_t, 3>>& triangles);

} // namespace velmora

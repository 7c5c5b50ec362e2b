#pragma once

#include <cstdint>

#include "PatchList.h"

namespace velmora {

/// How a line is bent. Numbers count from 0.
struct LineBend {
    std::int32_t point = 0;  ///< the point of its section through which the line shall pass
    std::int32_t line = 0;   ///< the line, another one than the point's own
    std::int32_t before = 1; ///< points of each section up to the new line, this one included; at least 1
    std::int32_t after = 1;  ///< points from the new line on, this one included; at least 1
    double power = 0.65;     ///< the larger, the longer the line stays near the point
};

/// Bends a line of a grid so that it passes through point `bend.point` of section `section`; at the borders it comes
/// back to its old place. Every section gets `before` + `after` - 1 points at equal steps on both sides of the line,
/// whose number becomes `before` - 1. Nothing happens, and false comes back, with numbers outside the patch, on a patch
/// of fewer than two sections or one that is no grid, and with a point on the line. `values`, if there are any, have
/// the shape of the patch and go along with its points.
bool correctLine(Patch& patch, std::int32_t section, const LineBend& bend, Patch* values = nullptr);

} // namespace velmora

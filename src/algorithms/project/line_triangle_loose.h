#pragma once

namespace velmora {

/// Two vertices count as one when each coordinate differs by less than this part of its sum (`sameCoordinates`).
inline constexpr double nearEqualPart = 2.5e-6;

/// Where the infinite line through `origin` along `direction` meets the triangle a, b, c. Each argument is three
/// coordinates; `direction` is of unit length.
///
/// Returns 0 for no hit, 1 when the line passes through a vertex or through a degenerate triangle, one point or a
/// segment along the line, 2 for a hit on an edge (of a triangle that degenerates to a segment, or with the origin on
/// the edge), 3 for a hit inside. The place of a hit goes to the three coordinates of `hit`; with result 0 they mean
/// nothing. Coordinates that are not numbers give no hit. Of three vertices on the line the first counts.
int IntersectLineTriangle(const double* a, const double* b, const double* c, const double* direction,
                          const double* origin, double* hit);

} // namespace velmora

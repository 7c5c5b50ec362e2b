#pragma once

namespace velmora {

/// The margin of a proper triangle, as a part of the sum of its extents.
inline constexpr double hitMargin = 2e-3;
/// Rounding of a place on a line, as a part of the coordinates in question.
inline constexpr double hitRounding = 4e-15;

/// How far IntersectLineTriangle can find a hit beside a triangle. Either it lies within `margin` of the triangle's
/// box, or (`anywhere`) nothing is known about its place.
struct HitReach {
    bool anywhere = false;
    double margin = 0.0;
};

/// The reach of the triangle with the given corners, three coordinates each.
HitReach hitReach(const double* a, const double* b, const double* c);

/// IntersectLineTriangle (corners, direction, origin and the place of the hit: three coordinates each), with its places
/// outside of the triangle's reach refused: where the line runs along the plane to within rounding, nothing else keeps
/// that test from taking a place millions of times the triangle's size away.
bool hitsWithinReach(const double* a, const double* b, const double* c, const double* direction, const double* origin,
                     double* place);

} // namespace velmora

#include "line_triangle_bounded.h"

#include <algorithm>
#include <cmath>

#include "line_triangle_loose.h"
#include "same_point.h"
#include "vectors.h"
#include "zVec.h"

namespace velmora {

namespace {

/// Beyond these the products inside IntersectLineTriangle leave the range of doubles.
constexpr double largestSafe = 1e60;
constexpr double smallestSafe = 1e-60;
/// The least height of a proper triangle, as a part of its longest edge.
constexpr double sliverHeight = 1e-6;

bool nearEqual(const double* p, const double* q) {
    return sameCoordinates(vectorAt(p), vectorAt(q), nearEqualPart);
}

zVec<double> difference(const double* p, const double* q) {
    return vectorAt(p) - vectorAt(q);
}

/// Whether a place on the triangle's plane is within its margin, up to the rounding of places on the line.
bool withinMargin(const double* a, const double* b, const double* c, double margin, const double* origin,
                  const double* place) {
    for (int i = 0; i < 3; ++i) {
        const double slack = margin + hitRounding * std::max(std::abs(origin[i]), std::abs(place[i]));
        if (!(place[i] >= std::min({a[i], b[i], c[i]}) - slack && place[i] <= std::max({a[i], b[i], c[i]}) + slack)) {
            return false;
        }
    }
    return true;
}

} // namespace

// What IntersectLineTriangle accepts, with u = 2^-53, L the longest edge and W twice the area:
//
// - A vertex on the line, the middle of a triangle that counts as one point, an origin on an edge: places of the
//   triangle, and the exact zeros that are asked for say that the line passes within rounding of them.
// - A degenerate triangle, of which two vertices count as one but not all three, is treated as a segment, and its hit
//   can stand anywhere on the line. Such triangles have no bound.
// - A proper triangle: the hit H is accepted when the three areas about it exceed W by less than 5e-6 W. For H in the
//   plane, with barycentric coordinates l1 + l2 + l3 = 1, the excess is 2 W times the sum of the negative ones, so that
//   sum is below 2.5e-6 and H leaves the box by less than 2.5e-6 of its extents. Off the plane by h, with the perimeter
//   p, the areas are at least the root of W^2 + (h p)^2: h < 0.0032 W / p, and W / p < 0.29 L. Rounding of the areas is
//   below 1000 u L^2 as long as H is within 3 L; with a height W / L above 1e-6 L that is a small part of 5e-6 W. So
//   2e-3 of the extents' sum, which is not less than L, is margin enough. For H at a distance D > 3 L the areas are at
//   least 0.7 D W / L, and rounding is below 256 u D^2: no hit until D comes to W / (1000 u L), at least 1e7 L. A line
//   comes that far before it meets the plane only when it runs along it to within rounding. What rounding might let
//   through out there, `hitsWithinReach` refuses.
// - Flatter triangles, and ones beyond the range where squares of areas are doubles, have no bound.
HitReach hitReach(const double* a, const double* b, const double* c) {
    const HitReach anywhere{true, 0.0};
    double extents = 0.0;
    for (int i = 0; i < 3; ++i) {
        const double low = std::min({a[i], b[i], c[i]});
        const double high = std::max({a[i], b[i], c[i]});
        if (!(std::abs(a[i]) < largestSafe && std::abs(b[i]) < largestSafe && std::abs(c[i]) < largestSafe)) {
            return anywhere;
        }
        extents += high - low;
    }
    const bool abOne = nearEqual(a, b);
    const bool acOne = nearEqual(a, c);
    if ((abOne && acOne) || extents == 0.0) {
        return {false, hitMargin * extents};
    }
    if (abOne || acOne || nearEqual(b, c) || extents < smallestSafe) {
        return anywhere;
    }
    const zVec<double> ab = difference(b, a);
    const zVec<double> ac = difference(c, a);
    const zVec<double> bc = difference(c, b);
    const zVec<double> normal = cross(ab, ac);
    const double longest = std::max({dot(ab, ab), dot(ac, ac), dot(bc, bc)});
    return lengthOf(normal) < sliverHeight * longest ? anywhere : HitReach{false, hitMargin * extents};
}

bool hitsWithinReach(const double* a, const double* b, const double* c, const double* direction, const double* origin,
                     double* place) {
    if (IntersectLineTriangle(a, b, c, direction, origin, place) == 0) {
        return false;
    }
    const HitReach reach = hitReach(a, b, c);
    return reach.anywhere || withinMargin(a, b, c, reach.margin, origin, place);
}

} // namespace velmora

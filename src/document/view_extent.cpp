#include "view_extent.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmora {

namespace {

/// The radius as a fraction of the box diagonal.
constexpr double radiusOfDiagonal = 0.525;
/// Extents below this part of the coordinates are rounding, below `smallestRadius` nothing can be worked out.
constexpr double roundingOfCoordinates = 1e-12;
constexpr double smallestRadius = 1e-100;
constexpr double radiusOfPlace = 0.01;
constexpr double radiusAtOrigin = 1.0;
/// Leaves room for the distances of the eye and of the far plane, some hundreds of radii.
constexpr double largestCoordinate = 1e300;
/// Squares of lengths in between neither overflow nor lose digits.
constexpr double safeSquareMin = 1e-280;

double limited(double value) {
    return std::isnan(value) ? 0.0 : std::clamp(value, -largestCoordinate, largestCoordinate);
}

zVec<double> limited(const zVec<double>& p) {
    return {limited(p.x), limited(p.y), limited(p.z)};
}

double largestOf(const zVec<double>& p) {
    return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)});
}

double lengthWithoutOverflow(const zVec<double>& v) {
    const double square = dot(v, v);
    return std::isfinite(square) && square > safeSquareMin ? std::sqrt(square) : std::hypot(v.x, v.y, v.z);
}

} // namespace

ViewExtent viewExtentOf(const zVec<double>& lower, const zVec<double>& upper) {
    const zVec<double> low = limited(lower);
    const zVec<double> high = limited(upper);
    const double largest = std::max(largestOf(low), largestOf(high));
    ViewExtent extent;
    extent.centre = (low + high) * 0.5;
    extent.radius = radiusOfDiagonal * lengthWithoutOverflow(high - low);
    if (extent.radius < std::max(smallestRadius, roundingOfCoordinates * largest)) {
        extent.radius = radiusOfPlace * largest < smallestRadius ? radiusAtOrigin : radiusOfPlace * largest;
        extent.kind = ExtentKind::None;
    }
    if (largest > std::numeric_limits<float>::max()) {
        extent.kind = ExtentKind::Vast;
    }
    return extent;
}

double diagonalOf(double viewRadius) {
    return viewRadius / radiusOfDiagonal;
}

} // namespace velmora

#pragma once

#include "zVec.h"

namespace velmora {

/// What a box came to as something to look at.
enum class ExtentKind {
    Usual,
    None, ///< a single place: there is nothing to take a size from
    Vast, ///< coordinates beyond single precision, in which pictures are drawn
};

/// Where to look and how much there is to see. Always finite, the radius above 0.
struct ViewExtent {
    zVec<double> centre;
    double radius = 0.0;
    ExtentKind kind = ExtentKind::Usual;
};

/// The middle of the box and 0.525 of its diagonal. A box smaller than rounding leaves of its coordinates gets a
/// radius of a hundredth of the largest of them, at the origin of 1; one of more than 1e300 is taken as that large.
ViewExtent viewExtentOf(const zVec<double>& lower, const zVec<double>& upper);

/// The diagonal that the radius was taken from.
double diagonalOf(double viewRadius);

} // namespace velmora

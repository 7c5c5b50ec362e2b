#pragma once

#include "zVec.h"

namespace velmora {

/// The place of the triangle a, b, c that is nearest to `point`. A triangle that is a segment or a point has one too;
/// the place never lies off the triangle by more than rounding.
zVec<double> nearestOnTriangle(const zVec<double>& point, const zVec<double>& a, const zVec<double>& b,
                               const zVec<double>& c);

} // namespace velmora

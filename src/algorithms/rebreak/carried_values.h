#pragma once

#include <cstdint>
#include <vector>

#include "PatchList.h"

namespace velmora {

// Values that points of a curve carry, such as those of a flow field, when the curve gets other points.

/// The running chord length at each point as a part of the whole, 0 to 1. A curve without length is parted evenly.
std::vector<double> chordFractions(const PointList& points);

/// The parts of the length at which `count` points stand whose steps are in geometric progression.
std::vector<double> progressionFractions(std::int32_t count, double compression);

/// The values at `fractions` of the length of a curve, by straight-line interpolation over it. `values` belong to
/// `points` one by one; those that are missing are 0.
PointList valuesAlong(const PointList& points, const PointList& values, const std::vector<double>& fractions);

/// A section gets other points: of its values the new points take those at the same part of the length.
void carryValues(const PointList& before, const PointList& after, PointList& values);

} // namespace velmora

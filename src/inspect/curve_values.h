#pragma once

#include <optional>
#include <vector>

#include "PatchList.h"

namespace velmora {

/// A value that may not exist at a place.
using MaybeValue = std::optional<double>;

/// How the points of a curve are set, as a plot shows it.
struct CurveValues {
    PointList points;
    std::vector<double> steps;         ///< from each point to the next one: one less than points
    std::vector<MaybeValue> growth;    ///< at each point; none at the ends and at a step of 0
    std::vector<MaybeValue> curvature; ///< at each point; none at the ends and where three points make no circle
    std::vector<double> length;        ///< along the curve from the first point to each
};

CurveValues curveValues(PointList points);

/// The larger of two neighbouring steps as a multiple of the smaller one; none when one of them is 0.
MaybeValue growthOf(double step, double next);

/// One by the radius of the circle through three points: 0 on a straight line; none when two of them are equal.
MaybeValue curvatureOf(const zVec<double>& before, const zVec<double>& point, const zVec<double>& behind);

} // namespace velmora

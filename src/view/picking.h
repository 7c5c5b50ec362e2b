#pragma once

#include <optional>
#include <vector>

#include "PatchList.h"

namespace velmora {

/// The line of sight through a pixel, in model coordinates: its points at window depth 0 and 1.
struct PixelLine {
    zVec<double> nearPoint;
    zVec<double> farPoint;
};

/// Distance of `point` from the infinite line; -1e10, which beats any real distance, when the line's two points are
/// closer than 1e-10.
double RayDistance(const PixelLine& line, const zVec<double>& point);

/// Which points of a model a pick looks at; -1 and empty mean no limit.
struct PickFilter {
    std::vector<bool> patches; ///< per patch: whether it is looked at; empty for all
    std::int32_t patch = -1;
    std::int32_t section = -1;
    std::int32_t point = -1;
};

/// Where a pick came out: the nearest point and its distance.
struct NearestPoint {
    std::int32_t patch = -1;
    std::int32_t section = -1;
    std::int32_t point = -1;
    double distance = 0.0;
    zVec<double> position;
};

/// The point nearest to the line among those that the filter lets through; of equal distances the first in list
/// order. None when no point is let through or no distance is a number. One pass, no allocation.
std::optional<NearestPoint> nearestGridPoint(const PatchList& list, const PixelLine& line, const PickFilter& filter);

} // namespace velmora

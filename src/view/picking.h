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

/// Distances from one infinite line, with what depends on the line alone worked out once.
class LineDistance {
public:
    explicit LineDistance(const PixelLine& line);

    /// False when the line's two points are closer than 1e-10; every distance is then -1e10.
    bool isLine() const;
    double operator()(const zVec<double>& point) const;
    /// Square of the distance times the square of a constant: rises with the distance, without its root and division.
    double key(const zVec<double>& point) const;
    /// More than rounding can make out of the distance of `point`.
    double slack(const zVec<double>& point) const;

private:
    zVec<double> far_;
    zVec<double> along_;
    double length_ = 0.0;
    double scale_ = 1.0; ///< of `along_`, and of what is measured against it
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

/// Keeps the nearest of the points shown to it, in any order; of equal distances the first in list order.
class NearestSearch {
public:
    explicit NearestSearch(const LineDistance& distanceTo) : distanceTo_(distanceTo) {}

    void look(std::int32_t patch, std::int32_t section, std::int32_t point, const zVec<double>& position);
    /// None when no point was shown or no distance is a number.
    std::optional<NearestPoint> result() const { return found_ ? std::optional<NearestPoint>(nearest_) : std::nullopt; }

private:
    const LineDistance& distanceTo_;
    bool found_ = false;
    double keyBound_ = 0.0;
    NearestPoint nearest_;
};

/// The point nearest to the line among those that the filter lets through; of equal distances the first in list
/// order. None when no point is let through or no distance is a number. One pass, no allocation.
std::optional<NearestPoint> nearestGridPoint(const PatchList& list, const PixelLine& line, const PickFilter& filter);

} // namespace velmora

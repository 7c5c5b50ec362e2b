#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "progress.h"
#include "slice_points.h"
#include "zRegion.h"

namespace velmora {

/// Cuts the triangles of a region by planes across one axis. Each triangle is visited once, with the planes that it
/// spans; the segments of a plane stand in the order of the triangles.
class PlaneCutter {
public:
    /// What one plane cut; `plane` counts from 0 in the order given.
    using TakePlane = std::function<void(std::size_t plane, std::span<const SliceSegment> segments)>;

    /// `region` must outlive the cutter. Planes whose coordinate is not a number cut nothing.
    PlaneCutter(const zRegion_fe& region, int axis, const std::vector<double>& planes);

    /// Hands over every plane that cuts a triangle, rising by coordinate, planes of one coordinate in the order given.
    void cut(const TakePlane& take, const ReportProgress& progress);

private:
    struct Plane {
        double value;
        std::size_t number;
    };
    /// A triangle and the planes that it spans, as places in `planes_`.
    struct Hit {
        std::uint32_t zone;
        std::int32_t element;
        std::int32_t firstPlane;
        std::int32_t endPlane;
    };

    void findHits(const ReportProgress& progress);
    std::int32_t firstPlaneFrom(double value) const;
    void cutPlanes(std::size_t from, std::size_t to, const TakePlane& take);

    const zRegion_fe& region_;
    int axis_;
    std::vector<std::array<const double*, 3>> axes_; ///< the coordinates of each zone
    std::vector<Plane> planes_;                      ///< rising
    std::vector<Hit> hits_;                          ///< in the order of the triangles
    std::vector<std::size_t> candidates_;            ///< for each plane, how many triangles span it
    std::vector<SliceSegment> segments_;
    double guessFrom_ = 0.0; ///< where the guess for a coordinate's plane starts, and planes per unit
    double guessScale_ = 0.0;
};

} // namespace velmora

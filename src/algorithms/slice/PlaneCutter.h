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

/// Cuts the triangles of a region by planes across one axis. It looks once at each triangle for the planes that it
/// spans. The planes are cut in groups of neighbours, so that the segments of a few planes alone are there at a time;
/// the segments of a plane stand in the order of the triangles.
class PlaneCutter {
public:
    /// What one plane cut; `plane` counts from 0 in the order given.
    using TakePlane = std::function<void(std::size_t plane, std::span<const SliceSegment> segments)>;
    /// What the cutting of one group needs, and the next one can use again.
    struct Workplace {
        std::vector<SliceSegment> segments;
        std::vector<std::size_t> ends;
    };

    /// Looks at the triangles. `region` must outlive the cutter. Planes whose coordinate is not a number cut nothing.
    PlaneCutter(const zRegion_fe& region, int axis, const std::vector<double>& planes,
                const ReportProgress& progress = {});

    /// Whether no two planes count as one by `samePlane`.
    bool planesApart() const;

    std::size_t groups() const { return groups_.size(); }
    /// Hands over the planes of a group that cut a triangle, rising by coordinate, planes of one coordinate in the
    /// order given; the groups rise too. Several threads may cut at a time, each at a workplace of its own.
    void cutGroup(std::size_t group, Workplace& workplace, const TakePlane& take) const;

private:
    struct Plane {
        double value;
        std::size_t number;
    };
    /// The planes from the lowest corner of a triangle to its highest one, as places in `planes_`; and between which
    /// numbers both may lie with the same planes: behind `lowFrom` up to `lowTo`, from `highFrom` to before `highTo`.
    struct Span {
        std::int32_t firstPlane;
        std::int32_t endPlane;
        double lowFrom;
        double lowTo;
        double highFrom;
        double highTo;
    };
    /// A triangle of a chunk and planes that it spans, as places in `planes_`; with more planes it takes several.
    struct Hit {
        std::uint16_t element;
        std::uint16_t planes;
        std::int32_t firstPlane;

        std::int32_t endPlane() const { return firstPlane + planes; }
    };
    /// What neighbours of one zone hit. The hits of all chunks are numbered one behind the other.
    struct HitChunk {
        std::uint32_t zone;
        std::size_t firstElement;
        std::size_t firstHit;
        std::vector<Hit> hits;
    };
    /// Planes that are cut together, and the triangles that span any of them, as places in `hitsOfGroups_`.
    struct Group {
        std::size_t firstPlane;
        std::size_t endPlane;
        std::size_t firstHit;
        std::size_t endHit;
    };

    void arrangePlanes(const std::vector<double>& planes);
    std::int32_t cellOf(double value) const;
    Span spanOf(double low, double high) const;
    void findHits(const ReportProgress& progress);
    void findHitsInZone(std::uint32_t zone);
    void findHitsOf(std::uint32_t zone, std::size_t first, std::size_t last, std::vector<Hit>& hits) const;
    template <class Visit>
    void forEachHit(const Visit& visit) const;
    void cutHit(const HitChunk& chunk, const Hit& hit, const Group& group, Workplace& workplace) const;
    void countCandidates();
    void makeGroups();
    void takeHitsIntoGroups();

    const zRegion_fe& region_;
    int axis_;
    std::vector<std::array<const double*, 3>> axes_; ///< the coordinates of each zone
    std::vector<Plane> planes_;                      ///< rising
    std::vector<std::int32_t> cells_;                ///< the first plane of each cell of `cellOf`, and the end
    double cellsFrom_ = 0.0;
    double cellsPerUnit_ = 0.0;
    std::vector<HitChunk> chunks_;        ///< in the order of the triangles; none is empty
    std::vector<std::size_t> candidates_; ///< for each plane, how many triangles span it
    std::vector<Group> groups_;
    std::vector<std::uint32_t> hitsOfGroups_; ///< numbers of hits, rising within a group
};

} // namespace velmora

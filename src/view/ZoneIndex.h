#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "PatchIndex.h"
#include "pick_boxes.h"
#include "picking.h"
#include "zRegion.h"

namespace velmora {

/// The node nearest to the line among the zones that the filter lets through (`patch`, `section` and `point` of the
/// filter play no part); of equal distances the first. The result's patch is the zone and its point the node. None
/// when no node is let through, no distance is a number, or some zone has fewer than three fields.
std::optional<NearestPoint> nearestNode(const zRegion_fe& region, const PixelLine& line, const PickFilter& filter);

/// The nodes of a model for point picks: the answer of nearestNode, to the last bit, at a cost that hardly grows with
/// the nodes.
class NodeIndex {
public:
    /// Takes a copy of the nodes in.
    void takeIn(const zRegion_fe& region);
    std::optional<NearestPoint> nearest(const PixelLine& line, const PickFilter& filter) const;

private:
    bool complete_ = true; ///< every zone has coordinates
    PatchList nodes_;      ///< each zone as a patch of one section
    PatchIndex index_;
};

/// The triangle of a zone that a line meets first, and where.
struct FirstTriangle {
    std::int32_t zone = -1;
    std::size_t element = 0;
    zVec<double> place;
};

/// Boxes over the zones of a model and over runs of their triangles, so that a pick looks only at what lies near the
/// line of sight. The answer is the one of the plain rule, to the last bit.
class ZoneIndex {
public:
    /// Takes the model in. Linear in nodes and triangles.
    void takeIn(const zRegion_fe& region);

    /// The first zone with a triangle hit that no other zone hides; -1 for none. `region` is the one taken in.
    std::int32_t pickZone(const zRegion_fe& region, const PixelLine& line) const;

    /// What the line meets first beyond its near point; none when it meets nothing.
    std::optional<FirstTriangle> firstTriangle(const zRegion_fe& region, const PixelLine& line) const;
    /// Whether a triangle lies before `point`, seen along the line, by more than `margin`.
    bool hides(const zRegion_fe& region, const PixelLine& line, const zVec<double>& point, double margin) const;

private:
    struct Run {
        std::size_t firstElement = 0;
        std::size_t lastElement = 0;
        PickBox box;
    };
    struct ZoneEntry {
        ZoneCoordinates at;
        PickBox box;
        std::vector<Run> runs;
        std::vector<std::size_t> oddElements;
    };

    static ZoneEntry entryOf(const zBlock_fe& zone);
    template <class Visit>
    bool anyHit(const zRegion_fe& region, std::size_t zone, const zVec<double>& origin, const zVec<double>& direction,
                Visit visit) const;
    bool isVisible(const zRegion_fe& region, std::size_t zone, const zVec<double>& hit,
                   const zVec<double>& direction) const;

    std::vector<ZoneEntry> zones_;
};

} // namespace velmora

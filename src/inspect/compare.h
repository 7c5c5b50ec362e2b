#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "NearestTree.h"
#include "PatchList.h"
#include "model_faces.h"
#include "zRegion.h"

namespace velmora {

/// A point of a patch or a node of a zone, from 0.
struct ComparedPlace {
    std::int32_t part = 0;
    std::int32_t section = -1; ///< -1 in a zone
    std::int32_t point = 0;
};

/// The points of a model against a surface.
struct Comparison {
    std::vector<double> values; ///< of each point: its distance from the nearest place of the surface
    double largest = 0.0;       ///< these three only with a point
    double mean = 0.0;
    double rms = 0.0;
    std::optional<ComparedPlace> at; ///< where it is largest first
};

/// The parts (patches, or zones) of a model that `chosen` marks, one mark a part, in order. `surface` must not be
/// empty.
Comparison comparePatches(const PatchList& patches, const std::vector<bool>& chosen, const NearestTree& surface);
Comparison compareZones(const zRegion_fe& region, const std::vector<bool>& chosen, const NearestTree& surface);

/// The surface of a model as triangles: cells as the triangles a, b, c and a, c, d. `left` marks the patches and the
/// zones to be passed over by their numbers; one mark each at least.
TriangleMesh surfaceTriangles(const PatchList& patches, const zRegion_fe& region, const std::vector<bool>& left);

} // namespace velmora

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "PatchList.h"
#include "border_gaps.h"
#include "patch_quality.h"
#include "surface_body.h"
#include "zRegion.h"

namespace velmora {

/// Sides of patches count as close when they are within this part of the model's radius of each other.
inline constexpr double gapPart = 1e-3;

struct ZoneReport {
    std::string title;
    std::int64_t nodes = 0;
    std::int64_t triangles = 0;
    double area = 0.0;
    std::int64_t degenerate = 0; ///< triangles with an area of exactly 0
};

/// Numbers about a whole model.
struct ModelReport {
    std::optional<std::array<zVec<double>, 2>> box; ///< of all points; none for a model without points
    std::int64_t sections = 0;
    std::int64_t points = 0; ///< of patches
    std::int64_t cells = 0;
    std::int64_t nodes = 0;
    std::int64_t triangles = 0;
    double area = 0.0;
    SurfaceBody body;
    std::vector<BorderGap> gaps;
    std::vector<PatchQuality> patches;
    std::vector<ZoneReport> zones;
};

/// `radius` is the model's. Two points are the same when their coordinates are equal, without tolerance. n log n.
ModelReport modelReport(const PatchList& patches, const zRegion_fe& region, double radius);

} // namespace velmora

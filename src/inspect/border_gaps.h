#pragma once

#include <cstdint>
#include <vector>

#include "EdgeTable.h"
#include "model_faces.h"

namespace velmora {

/// Sides of two patches, patch < other, that lie close to each other and are not joined.
struct BorderGap {
    std::int32_t patch = 0;
    std::int32_t other = 0;
    double largest = 0.0; ///< largest distance of a point of one side from the other side
};

/// All gaps between sides (first and last section, first and last line) that are open along their whole length and no
/// point of which is further than `reach` from the other side; by patch, then by other, each in the order of its sides.
/// Sides that are the same are joined, so they are not open.
std::vector<BorderGap> borderGaps(const ModelFaces& model, const EdgeTable& edges, double reach);

} // namespace velmora

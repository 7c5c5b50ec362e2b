#pragma once

#include <cstdint>
#include <optional>

#include "EdgeTable.h"

namespace velmora {

/// What the edges of a model tell about it as a body.
struct SurfaceBody {
    std::int64_t components = 0; ///< of faces that hang together by edges; a face without an edge is in none
    double openBorder = 0.0;     ///< length of the edges that occur once
    std::int64_t badEdges = 0;   ///< edges that occur more than twice
    /// Of closed bodies; none unless there is an edge, each occurs twice, and within each component the faces can be
    /// turned to agree. Bodies inside of others are not subtracted.
    std::optional<double> volume;
};

/// `centre`: what the volume is summed about; it should stand near the model.
SurfaceBody surfaceBody(const ModelFaces& model, const EdgeTable& edges, const zVec<double>& centre);

} // namespace velmora

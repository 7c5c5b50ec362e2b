#pragma once

#include <cstdint>

#include "PatchList.h"

namespace velmora {

enum class Interpolation {
    Done,
    TooFewSections, ///< fewer than 3
    TooFar,         ///< the target is farther from the section than both neighbours
    DoubleLine,     ///< the neighbour on the target's side coincides with the section
    NotMoved,       ///< at a border whose neighbour coincides with it, or no such section in a grid
};

/// Moves section `N` of a grid towards its neighbours by a fraction of the way: an inner section to the next one with
/// `k` above 0, to the previous one below; a border section towards its one neighbour at the first border, away from it
/// at the last one, and the other way below 0. Nothing changes unless the outcome is Done.
Interpolation interpolateSection(Patch& patch, std::int32_t N, double k);

/// Moves section `N` of a grid so that the point of it that is nearest to `target` comes as close as its way along the
/// neighbours allows.
Interpolation interpolateToPoint(Patch& patch, std::int32_t N, const zVec<double>& target);

} // namespace velmora

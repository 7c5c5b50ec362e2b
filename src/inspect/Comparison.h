#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace velmora {

/// A point of a patch or a node of a zone, from 0.
struct ComparedPlace {
    std::int32_t part = 0;
    std::int32_t section = -1; ///< -1 in a zone
    std::int32_t point = 0;
};

/// The points of a model against a surface.
struct Comparison {
    std::vector<bool> chosen;   ///< per part of the model whether its points were compared
    std::vector<double> values; ///< of each of those points: its distance from the nearest place of the surface
    double largest = 0.0;       ///< these three only with a point
    double mean = 0.0;
    double rms = 0.0;
    std::optional<ComparedPlace> at; ///< where it is largest first
};

} // namespace velmora

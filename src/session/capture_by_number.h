#pragma once

#include <cstdint>

namespace velmora {

class Session;

/// Captures a point of the grid as a click in the point regime does; what is captured beside it stays as far as the
/// point lies in it, else its regime is left first. Measuring goes on. False when the point cannot be captured now.
/// Numbers from 0.
bool capturePointByNumber(Session& session, std::int32_t patch, std::int32_t section, std::int32_t point);

} // namespace velmora

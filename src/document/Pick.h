#pragma once

#include <cstdint>

#include "zVec.h"

namespace velmora {

/// What lies under a pixel, for one of the regimes. Whoever looks writes nothing: the document takes the answer.
struct Pick {
    enum class Target {
        Point,   ///< of a patch: K, N and M
        Node,    ///< of a zone: K and M
        Section, ///< of the nearest point
        Line,
        WholePatch,
        Removal,   ///< the patch that leaves the zBlock
        DragPlace, ///< of the drag grid
        PlanePlace ///< in the plane of the screen
    };

    Target target = Target::Point;
    /// Something lies near enough. Without it the numbers are those of the nearest, or -1 when nothing was looked at.
    bool found = false;
    std::int32_t patch = -1;
    std::int32_t section = -1;
    std::int32_t point = -1; ///< of a line the number of it
    std::int32_t points = 0; ///< of the section or line
    zVec<double> position;
};

} // namespace velmora

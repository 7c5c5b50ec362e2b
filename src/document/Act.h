#pragma once

#include <cstdint>

#include "zVec.h"

namespace velmora {

/// What the mouse did in a regime, by what it took: the same whatever the view was, so that it can be done again.
struct Act {
    enum class Kind {
        Point, ///< of a patch: K, N and M
        Node,  ///< of a zone: K and M
        Section,
        Line, ///< its number is the one of the point
        WholePatch,
        Beside,       ///< a click that captured nothing leaves the numbers of what was nearest
        Under,        ///< the button went down on a point, or on a node without a section, and is not up yet
        UnderSection, ///< the same on a section; without one where it moved off again
        UnderLine,
        Drag,    ///< a move of what is dragged, to `place`
        Release, ///< the end of a drag
    };

    Kind kind = Kind::Point;
    std::int32_t patch = -1; ///< numbers from 0, -1 where the kind has none
    std::int32_t section = -1;
    std::int32_t point = -1;
    zVec<double> place{}; ///< of a drag
    int plane = 0;        ///< of a drag that bends a curve: the plane of the view, see DocumentView::principalPlane
};

} // namespace velmora

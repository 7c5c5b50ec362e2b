#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// How a section is renumbered: turned round, or begun at the captured point.
struct CFirstPoint {
    std::int32_t kind = 1;     ///< 1 last to first, 2 from the captured point on; the command's state decides
    std::int32_t sortKind = 1; ///< 1 rising numbers, 2 falling ones
    bool makeLoop = false;     ///< the last point takes the place of the first, so that the section closes

    // Set by the command before the dialog opens, and shown.
    bool closed = false;      ///< the ends of the section coincide
    bool pointInside = false; ///< a point between the ends is captured
};

/// The form over `values`, which must outlive it.
DialogForm describe(CFirstPoint& values);

} // namespace velmora

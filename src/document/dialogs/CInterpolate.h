#pragma once

#include "DialogForm.h"
#include "count_limit.h"

namespace velmora {

/// Where a section goes between its neighbours.
struct CInterpolate {
    double coefficient = 0.0; ///< part of the way to the next section, or to the previous one below 0
    bool fitToBuffer = false; ///< go to the point in the clipboard instead

    // Set by the command before the dialog opens.
    bool pointClipboardFull = false;
    MemoryRoom room = {}; ///< of the copies that it works on
};

/// The form over `values`, which must outlive it.
DialogForm describe(CInterpolate& values);

} // namespace velmora

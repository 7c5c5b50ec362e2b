#pragma once

#include "DialogForm.h"

namespace velmora {

/// Where a section goes between its neighbours.
struct CInterpolate {
    double coefficient = 0.0; ///< part of the way to the next section, or to the previous one below 0
    bool fitToBuffer = false; ///< go to the point in the clipboard instead

    bool pointClipboardFull = false; ///< set by the command before the dialog opens
};

/// The form over `values`, which must outlive it.
DialogForm describe(CInterpolate& values);

} // namespace velmora

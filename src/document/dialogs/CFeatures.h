#pragma once

#include "DialogForm.h"

namespace velmora {

/// What the view shows beside the model.
struct CFeatures {
    bool showBlockOnly = false;
    bool showFirstPoints = false;
    bool showDoublePoints = false;
    bool showBuffer = false;
    bool showZBlockMarkers = false;

    // Set by the command before the dialog opens.
    bool blockEmpty = true;    ///< no patch in the zBlock
    bool unstructured = false; ///< the model is unstructured
};

/// The form over `values`, which must outlive it.
DialogForm describe(CFeatures& values);

} // namespace velmora

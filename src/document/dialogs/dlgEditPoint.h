#pragma once

#include "DialogForm.h"

namespace velmora {

/// Coordinates of the captured point, in model units.
struct dlgEditPoint {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// The form over `values`, which must outlive it.
DialogForm describe(dlgEditPoint& values);

} // namespace velmora

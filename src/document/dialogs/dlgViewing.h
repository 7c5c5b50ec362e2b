#pragma once

#include "DialogForm.h"

namespace velmora {

/// How the model stands in the view: angles in degrees, distances in model units, scale 1 / zoom factor.
struct dlgViewing {
    double angleX = 0.0;
    double angleY = 0.0;
    double angleZ = 0.0;
    double distanceX = 0.0;
    double distanceY = 0.0;
    double distanceZ = 0.0;
    double scale = 1.0;
};

/// The form over `values`, which must outlive it.
DialogForm describe(dlgViewing& values);

} // namespace velmora

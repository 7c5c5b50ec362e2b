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
inline DialogForm describe(dlgViewing& values) {
    DialogForm form;
    form.name = "dlgViewing";
    form.title = "Viewport Options";
    form.fields = {
        realField("angleX", "Angle X", values.angleX),          realField("angleY", "Angle Y", values.angleY),
        realField("angleZ", "Angle Z", values.angleZ),          realField("distanceX", "Distance X", values.distanceX),
        realField("distanceY", "Distance Y", values.distanceY), realField("distanceZ", "Distance Z", values.distanceZ),
        realField("scale", "Scale", values.scale, 0.01, 1e7),
    };
    return form;
}

} // namespace velmora

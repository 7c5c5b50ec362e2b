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
inline DialogForm describe(dlgEditPoint& values) {
    DialogForm form;
    form.name = "dlgEditPoint";
    form.title = "Edit point";
    form.fields = {realField("x", "X", values.x), realField("y", "Y", values.y), realField("z", "Z", values.z)};
    return form;
}

} // namespace velmora

#include "dlgViewing.h"

namespace velmora {

DialogForm describe(dlgViewing& values) {
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

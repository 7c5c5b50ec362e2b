#include "CScaling.h"

namespace velmora {

PointMap CScaling::map() const {
    return [centre = zVec<double>(xCenter, yCenter, zCenter), factor = scale](const zVec<double>& point) {
        return std::optional(scaledPoint(point, centre, factor));
    };
}

DialogForm describe(CScaling& values) {
    DialogForm form;
    form.name = "CScaling";
    form.title = "Scaling";
    form.fields = {
        realField("xCenter", "X center", values.xCenter),
        realField("yCenter", "Y center", values.yCenter),
        realField("zCenter", "Z center", values.zCenter),
        realField("scale", "Scale", values.scale),
    };
    return form;
}

} // namespace velmora

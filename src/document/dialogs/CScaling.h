#pragma once

#include "DialogForm.h"
#include "point_transforms.h"

namespace velmora {

/// The centre that points move away from, and to how many times their distance.
struct CScaling {
    double xCenter = 0.0;
    double yCenter = 0.0;
    double zCenter = 0.0;
    double scale = 1.0;

    /// What the values do to a point.
    PointMap map() const;
};

inline PointMap CScaling::map() const {
    return [centre = zVec<double>(xCenter, yCenter, zCenter), factor = scale](const zVec<double>& point) {
        return std::optional(scaledPoint(point, centre, factor));
    };
}

/// The form over `values`, which must outlive it.
inline DialogForm describe(CScaling& values) {
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

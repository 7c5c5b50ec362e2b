#pragma once

#include "DialogForm.h"
#include "point_transforms.h"

namespace velmora {

/// How far points are moved.
struct CBlockMove {
    double deltaX = 0.0;
    double deltaY = 0.0;
    double deltaZ = 0.0;

    /// What the values do to a point.
    PointMap map() const;
};

inline PointMap CBlockMove::map() const {
    return [delta = zVec<double>(deltaX, deltaY, deltaZ)](const zVec<double>& point) {
        return std::optional(point + delta);
    };
}

/// The form over `values`, which must outlive it.
inline DialogForm describe(CBlockMove& values) {
    DialogForm form;
    form.name = "CBlockMove";
    form.title = "Move";
    form.fields = {
        realField("deltaX", "Delta X", values.deltaX),
        realField("deltaY", "Delta Y", values.deltaY),
        realField("deltaZ", "Delta Z", values.deltaZ),
    };
    return form;
}

} // namespace velmora

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

/// The form over `values`, which must outlive it.
DialogForm describe(CScaling& values);

} // namespace velmora

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

/// The form over `values`, which must outlive it.
DialogForm describe(CBlockMove& values);

} // namespace velmora

#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "zVec.h"

namespace velmora {

/// Parameters of the knife for triangles: the plane, and what is kept.
struct CUKnife {
    std::int32_t planeKind = 1; ///< 1 x = const, 2 y = const, 3 z = const, 4 any plane
    double section = 0.0;       ///< the coordinate of a plane of the first three kinds
    std::int32_t cutKind = 1;   ///< 1 what lies before the plane, 2 what lies after it, 3 both, in files
    double x = 0.0;             ///< a point of any plane
    double y = 0.0;
    double z = 0.0;
    double nx = 0.0; ///< its normal
    double ny = 0.0;
    double nz = 0.0;

    // Shown: the body's extent on the axis, and its box, which the command sets.
    double min = 0.0;
    double max = 0.0;
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    double zMin = 0.0;
    double zMax = 0.0;
};

/// The form over `values`, which must outlive it.
DialogForm describe(CUKnife& values);

} // namespace velmora

#pragma once

#include <cstdint>
#include <functional>
#include <limits>

#include "DialogForm.h"
#include "count_limit.h"
#include "zVec.h"

namespace velmora {

/// Parameters of the conversion of a surface to section lines: where its planes stand.
struct CConvert_to_SKL {
    std::int32_t number = 20;        ///< of planes
    std::int32_t planeAxis = 1;      ///< 1 x, 2 y, 3 z
    std::int32_t borderApproach = 1; ///< 1 automatic, 2 manual
    double border = 0.1;             ///< how far the end planes move inward, in steps
    double min = 0.0;                ///< the body's extent on the axis
    double max = 0.0;
    double yourMin = 0.0; ///< the end planes of the manual approach
    double yourMax = 0.0;
    double precision = 0.0001; ///< line ends closer than this join

    // Set by the command before the dialog opens.
    zVec<double> boxMin;
    zVec<double> boxMax;
    double freeBytes = std::numeric_limits<double>::infinity(); ///< that the lines may take
    /// How many points a plane between `yourMin` and `yourMax`, or in the body, has on the average.
    std::function<double(const CConvert_to_SKL&)> pointsOfPlane;
};

/// The form over `values`, which must outlive it.
DialogForm describe(CConvert_to_SKL& values);

} // namespace velmora

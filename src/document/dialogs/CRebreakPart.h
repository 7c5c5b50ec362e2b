#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "PartRebreaker.h"

namespace velmora {

/// Parameters of Rebreak part: how the points on one side of the captured point are spaced anew. Numbers count from 1.
struct CRebreakPart {
    std::int32_t regime = 1; ///< 1 the captured curve, 2 all curves of the patch
    PartLaw law;

    // Set by the command before the dialog opens.
    bool lineMode = false;        ///< the curves are lines
    bool isApt = false;           ///< the model is a regular grid
    std::int32_t pointNumber = 1; ///< of the captured point along the curve
    std::int32_t curveLength = 1; ///< points of the captured curve
};

/// Sets the stretch on the side of the point that is chosen, and the number of points that it has.
void fillStretch(CRebreakPart& values);

/// The form over `values`, which must outlive it.
DialogForm describe(CRebreakPart& values);

} // namespace velmora

#pragma once

#include <cstdint>
#include <functional>

#include "DialogForm.h"
#include "count_limit.h"
#include "rebreak_patch.h"

namespace velmora {

/// Parameters of Rebreak: how the points along sections or lines are spaced anew. Numbers count from 1.
struct CRebreak {
    std::int32_t regime = 1; ///< 1 the captured curve, 2 all curves from firstCurve on
    RebreakLaw law;
    std::int32_t capturedNumber = 1;
    std::int32_t firstCurve = 1;
    std::int32_t lastCurve = 1; ///< shown and typed, read by nothing: the range always runs to the last curve
    std::int32_t patchNumber = 1;
    bool useBlock = false;

    // Set by the command before the dialog opens.
    std::int32_t blockCount = 0;
    bool lineMode = false;                           ///< the curves are lines
    bool isApt = false;                              ///< the model is a regular grid
    std::int32_t curveCount = 2;                     ///< points of the captured curve
    double patchCurves = 1;                          ///< curves of the captured patch
    double blockCurves = 0;                          ///< curves of the patches of the zBlock
    MemoryRoom room = {};                            ///< of one point of one curve
    std::function<void(const CRebreak&)> tried = {}; ///< called with the values as they change
};

/// The form over `values`, which must outlive it.
DialogForm describe(CRebreak& values);

} // namespace velmora

#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "count_limit.h"

namespace velmora {

/// What stays of two bodies that are cut against each other, and how many points the rest gets.
struct CIntersection {
    std::int32_t insideSide = 2;    ///< 1 keeps what stands before the joint, 2 what stands behind it
    std::int32_t insidePoints = 20; ///< points of each line of the zBlock's patches
    std::int32_t outsideSide = 2;
    std::int32_t outsidePoints = 20; ///< points of each section of the other patches
    double tolerance = 0.0005;       ///< set by the command before the dialog opens

    // Set by the command before the dialog opens: of one point of each line inside, of each section outside.
    MemoryRoom inside = {};
    MemoryRoom outside = {};
};

/// The form over `values`, which must outlive it.
DialogForm describe(CIntersection& values);

} // namespace velmora

#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "count_limit.h"

namespace velmora {

/// Parameters of the conversion of lines to a grid.
struct CConvert_SKL_to_APT {
    std::int32_t pointCount = 20;   ///< of every section of the grid
    std::int32_t approximation = 1; ///< 1 spline, 2 linear

    MemoryRoom room = {}; ///< set by the command before the dialog opens: of one point of each section
};

/// The form over `values`, which must outlive it.
DialogForm describe(CConvert_SKL_to_APT& values);

} // namespace velmora

#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// What is turned round: 1 the sections, 2 the lines.
struct CLast_First_switch {
    std::int32_t kind = 1;
};

/// The form over `values`, which must outlive it.
DialogForm describe(CLast_First_switch& values);

} // namespace velmora

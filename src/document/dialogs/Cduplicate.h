#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "count_limit.h"

namespace velmora {

/// How many times the captured point, section or line stands afterwards.
struct Cduplicate {
    std::int32_t duplicateCount = 1;

    MemoryRoom room = {}; ///< set by the command before the dialog opens: of one copy
};

/// The form over `values`, which must outlive it.
DialogForm describe(Cduplicate& values);

} // namespace velmora

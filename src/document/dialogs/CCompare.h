#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// What the model is compared with: 1 the second geometry, 2 the patches outside of the zBlock, 3 a file.
struct CCompare {
    std::int32_t target = 1;
};

/// The form over `values`, which must outlive it.
DialogForm describe(CCompare& values);

} // namespace velmora

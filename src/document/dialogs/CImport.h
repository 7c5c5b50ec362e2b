#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "exchange_model.h"

namespace velmora {

/// How a file of others becomes a model.
struct CImport {
    bool merge = false;       ///< points with equal coordinates become one
    std::int32_t volumes = 1; ///< 1 surface zones only, 2 outer faces of volume zones too
    double scale = 1.0;       ///< of every coordinate, above 0

    /// What the readers are to do.
    ImportOptions options() const;
};

/// The form over `values`, which must outlive it.
DialogForm describe(CImport& values);

} // namespace velmora

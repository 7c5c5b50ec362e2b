#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "exchange_model.h"

namespace velmora {

/// How a file of others becomes a model.
struct CImport {
    bool merge = false;         ///< points with equal coordinates become one
    std::int32_t volumes = 1;   ///< 1 surface zones only, 2 outer faces of volume zones too
    std::int32_t cad = 1;       ///< 1 triangles, 2 structured patches
    double chord = 0.1;         ///< how far triangles may stand from the surface, in the file's unit, above 0
    std::int32_t sections = 33; ///< of each patch
    std::int32_t points = 33;   ///< of each section of these
    double scale = 1.0;         ///< of every coordinate, above 0

    /// What the readers are to do.
    ImportOptions options() const;
};

/// The form over `values`, which must outlive it.
DialogForm describe(CImport& values);

} // namespace velmora

#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// Beyond which border a patch grows, and by how many steps.
struct CExtrapolation {
    std::int32_t kind = 1; ///< 1 first section, 2 last section, 3 first line, 4 last line
    double coefficient = 1.0;
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CExtrapolation& values) {
    DialogForm form;
    form.name = "CExtrapolation";
    form.title = "Extrapolation";
    form.fields = {
        radioField("kind", values.kind, {"First section", "Last section", "First line", "Last line"}),
        realField("coefficient", "Coefficient", values.coefficient, 0, 1e6),
    };
    return form;
}

} // namespace velmora

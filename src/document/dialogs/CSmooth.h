#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// How patches are smoothed.
struct CSmooth {
    std::int32_t regime = 1;   ///< 1 sections, 2 lines, 3 sections then lines, 4 lines then sections
    std::int32_t function = 1; ///< 1 spline, 2 linear
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CSmooth& values) {
    DialogForm form;
    form.name = "CSmooth";
    form.title = "Smooth";
    form.fields = {
        radioField("regime", values.regime, {"Sections only", "Lines only", "Sections + Lines", "Lines + Sections"}),
        radioField("function", values.function, {"Spline", "Linear"}),
    };
    return form;
}

} // namespace velmora

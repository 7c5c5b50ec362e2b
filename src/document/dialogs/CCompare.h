#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// What the model is compared with: 1 the second geometry, 2 the patches outside of the zBlock, 3 a file.
struct CCompare {
    std::int32_t target = 1;
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CCompare& values) {
    DialogForm form;
    form.name = "CCompare";
    form.title = "Compare";
    form.fields = {radioField("target", values.target, {"Second geometry", "Patches outside of zBlock", "File"})};
    return form;
}

} // namespace velmora

#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// Which side of the captured point, or of the middle, a part command means.
struct CBeforeAfter {
    std::int32_t choice = 1; ///< 1 before, 2 after
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CBeforeAfter& values) {
    DialogForm form;
    form.name = "CBeforeAfter";
    form.title = "Before or After";
    form.fields = {radioField("choice", values.choice, {"Before", "After"})};
    return form;
}

} // namespace velmora

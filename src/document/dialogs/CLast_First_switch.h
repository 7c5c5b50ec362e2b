#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// What is turned round: 1 the sections, 2 the lines.
struct CLast_First_switch {
    std::int32_t kind = 1;
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CLast_First_switch& values) {
    DialogForm form;
    form.name = "CLast_First_switch";
    form.title = "Last/First switch";
    form.fields = {radioField("kind", values.kind, {"Make last section the first", "Make last line the first"})};
    form.notices = {"This option changes normal ", "of the surfaces"};
    return form;
}

} // namespace velmora

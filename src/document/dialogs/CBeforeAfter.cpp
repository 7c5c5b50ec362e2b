#include "CBeforeAfter.h"

namespace velmora {

DialogForm describe(CBeforeAfter& values) {
    DialogForm form;
    form.name = "CBeforeAfter";
    form.title = "Before or After";
    form.fields = {radioField("choice", values.choice, {"Before", "After"})};
    return form;
}

} // namespace velmora

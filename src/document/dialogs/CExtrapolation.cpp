#include "CExtrapolation.h"

namespace velmora {

DialogForm describe(CExtrapolation& values) {
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

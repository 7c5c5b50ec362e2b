#include "CSmooth.h"

namespace velmora {

DialogForm describe(CSmooth& values) {
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

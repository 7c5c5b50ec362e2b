#include "CCompare.h"

namespace velmora {

DialogForm describe(CCompare& values) {
    DialogForm form;
    form.name = "CCompare";
    form.title = "Compare";
    form.fields = {radioField("target", values.target, {"Second geometry", "Patches outside of zBlock", "File"})};
    return form;
}

} // namespace velmora

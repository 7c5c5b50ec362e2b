#include "dlgEditPoint.h"

namespace velmora {

DialogForm describe(dlgEditPoint& values) {
    DialogForm form;
    form.name = "dlgEditPoint";
    form.title = "Edit point";
    form.fields = {realField("x", "X", values.x), realField("y", "Y", values.y), realField("z", "Z", values.z)};
    return form;
}

} // namespace velmora

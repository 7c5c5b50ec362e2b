#include "CLast_First_switch.h"

namespace velmora {

DialogForm describe(CLast_First_switch& values) {
    DialogForm form;
    form.name = "CLast_First_switch";
    form.title = "Last/First switch";
    form.fields = {radioField("kind", values.kind, {"Make last section the first", "Make last line the first"})};
    form.notices = {"This option changes normal ", "of the surfaces"};
    return form;
}

} // namespace velmora

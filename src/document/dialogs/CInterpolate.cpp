#include "CInterpolate.h"

namespace velmora {

namespace {

void refresh(DialogForm& form, CInterpolate& values) {
    if (!values.pointClipboardFull) {
        values.fitToBuffer = false;
    }
    form.find("fitToBuffer")->on = values.pointClipboardFull;
    form.find("coefficient")->on = !values.fitToBuffer;
}

} // namespace

DialogForm describe(CInterpolate& values) {
    DialogForm form;
    form.name = "CInterpolate";
    form.title = "Interpolate";
    form.fields = {
        realField("coefficient", "Coefficient", values.coefficient, -1, 1),
        checkField("fitToBuffer", "Fit to point in buffer", values.fitToBuffer),
    };
    form.notices = {"Coefficient is changed in range (-1; 1)"};
    form.refresh = [&values](DialogForm& self, std::string_view) { refresh(self, values); };
    form.confirm = [&values](DialogForm&) { return refuseTooLarge(values.room.bytesEach, values.room.free); };
    return form;
}

} // namespace velmora

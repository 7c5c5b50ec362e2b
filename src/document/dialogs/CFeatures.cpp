#include "CFeatures.h"

namespace velmora {

namespace {

void refresh(DialogForm& form, CFeatures& values) {
    if (values.blockEmpty) {
        values.showBlockOnly = false;
        values.showZBlockMarkers = false;
    }
    if (values.unstructured) {
        values.showDoublePoints = false;
    }
    form.find("showBlockOnly")->on = !values.blockEmpty;
    form.find("showZBlockMarkers")->on = !values.blockEmpty;
    form.find("showDoublePoints")->on = !values.unstructured;
}

} // namespace

DialogForm describe(CFeatures& values) {
    DialogForm form;
    form.name = "CFeatures";
    form.title = "View features";
    form.fields = {
        checkField("showBlockOnly", "Block only", values.showBlockOnly),
        checkField("showFirstPoints", "First points", values.showFirstPoints),
        checkField("showDoublePoints", "Double points", values.showDoublePoints),
        checkField("showBuffer", "Buffer", values.showBuffer),
        checkField("showZBlockMarkers", "Markers in zBlock", values.showZBlockMarkers),
    };
    form.refresh = [&values](DialogForm& self, std::string_view) { refresh(self, values); };
    return form;
}

} // namespace velmora

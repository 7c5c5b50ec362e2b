#include "CFirstPoint.h"

namespace velmora {

namespace {

void refresh(DialogForm& form, CFirstPoint& values) {
    values.kind = values.pointInside ? 2 : 1;
    DialogField& kind = *form.find("kind");
    kind.choiceOn = {!values.pointInside, values.pointInside};
    const bool loops = values.closed || values.makeLoop;
    form.find("sortKind")->on = values.kind == 2 && loops;
    form.find("makeLoop")->on = !values.closed;
    form.okOn = values.kind == 1 || loops;
}

} // namespace

DialogForm describe(CFirstPoint& values) {
    DialogForm form;
    form.name = "CFirstPoint";
    form.title = "First point in section";
    form.fields = {
        radioField("kind", values.kind, {"First/Last switch", "Captured point"}),
        radioField("sortKind", values.sortKind, {"Sort up", "Sort down"}),
        checkField("makeLoop", "Make loop", values.makeLoop),
        shownOnly(checkField("closed", "Closed section", values.closed)),
        shownOnly(checkField("pointInside", "Point inside section", values.pointInside)),
    };
    form.refresh = [&values](DialogForm& self, std::string_view) { refresh(self, values); };
    return form;
}

} // namespace velmora

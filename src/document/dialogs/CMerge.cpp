#include "CMerge.h"

namespace velmora {

namespace {

void refresh(DialogForm& form, CMerge& values) {
    if (!values.isApt) {
        values.kind = 1;
        values.aptControl = false;
    }
    form.find("kind")->choiceOn[1] = values.isApt;
    form.find("aptControl")->on = values.isApt;
    form.find("matching")->on = values.isApt;
}

} // namespace

DialogForm describe(CMerge& values) {
    DialogForm form;
    form.name = "CMerge";
    form.title = "Merge";
    form.fields = {
        radioField("kind", values.kind, {"Sections", "Lines"}),
        checkField("aptControl", "APT control", values.aptControl),
        checkField("matching", "Matching", values.matching),
        checkField("showDouble", "Show double points", values.showDouble),
        checkField("deleteDouble", "Delete double sections", values.deleteDouble),
    };
    form.refresh = [&values](DialogForm& self, std::string_view) { refresh(self, values); };
    return form;
}

} // namespace velmora

#include "CPrescribe.h"

namespace velmora {

DialogForm describe(CPrescribe& values) {
    DialogForm form;
    form.name = "CPrescribe";
    form.title = "Prescribe";
    form.fields = {
        checkField("useX", "X coordinate", values.useX), realField("x", "", values.x),
        checkField("useY", "Y coordinate", values.useY), realField("y", "", values.y),
        checkField("useZ", "Z coordinate", values.useZ), realField("z", "", values.z),
    };
    form.refresh = [&values](DialogForm& self, std::string_view) {
        self.find("x")->on = values.useX;
        self.find("y")->on = values.useY;
        self.find("z")->on = values.useZ;
    };
    return form;
}

} // namespace velmora

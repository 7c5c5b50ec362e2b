#pragma once

#include "DialogForm.h"

namespace velmora {

/// Which coordinates of a curve take a value, and the values.
struct CPrescribe {
    bool useX = false;
    double x = 0.0;
    bool useY = false;
    double y = 0.0;
    bool useZ = false;
    double z = 0.0;
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CPrescribe& values) {
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

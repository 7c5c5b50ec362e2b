#include "CFlipBlock.h"

namespace velmora {

namespace {

DialogForm describePlane(MirrorPlane& values, const char* name, const char* title) {
    DialogForm form;
    form.name = name;
    form.title = title;
    form.fields = {
        radioField("plane", values.plane, {"X=const plane", "Y=const plane", "Z=const plane"}),
        realField("xPlane", "X plane", values.xPlane),
        realField("yPlane", "Y plane", values.yPlane),
        realField("zPlane", "Z plane", values.zPlane),
    };
    form.refresh = [&values](DialogForm& self, std::string_view) {
        self.find("xPlane")->on = values.plane == 1;
        self.find("yPlane")->on = values.plane == 2;
        self.find("zPlane")->on = values.plane == 3;
    };
    return form;
}

} // namespace

CoordinatePlane MirrorPlane::chosen() const {
    switch (plane) {
    case 2:
        return {&zVec<double>::y, yPlane};
    case 3:
        return {&zVec<double>::z, zPlane};
    default:
        return {&zVec<double>::x, xPlane};
    }
}

PointMap MirrorPlane::map() const {
    return [plane = chosen()](const zVec<double>& point) { return std::optional(reflectedPoint(point, plane)); };
}

DialogForm describe(CFlipBlock& values) {
    return describePlane(values, "CFlipBlock", "Flip");
}

DialogForm describe(CSymmetricBlock& values) {
    return describePlane(values, "CSymmetricBlock", "Symmetry");
}

} // namespace velmora

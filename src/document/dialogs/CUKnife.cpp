#include "CUKnife.h"

namespace velmora {

namespace {

void takeExtent(CUKnife& values) {
    if (values.planeKind == 1) {
        values.min = values.xMin;
        values.max = values.xMax;
    } else if (values.planeKind == 2) {
        values.min = values.yMin;
        values.max = values.yMax;
    } else if (values.planeKind == 3) {
        values.min = values.zMin;
        values.max = values.zMax;
    }
}

void refresh(DialogForm& form, CUKnife& values, std::string_view key) {
    if (key.empty() || key == "planeKind") {
        takeExtent(values);
    }
    const bool anyPlane = values.planeKind == 4;
    form.find("section")->on = !anyPlane;
    for (const char* const name : {"x", "y", "z", "nx", "ny", "nz"}) {
        form.find(name)->on = anyPlane;
    }
}

} // namespace

DialogForm describe(CUKnife& values) {
    DialogForm form;
    form.name = "CUKnife";
    form.title = "Unstructured knife";
    form.fields = {
        radioField("planeKind", values.planeKind,
                   {"Use X=const plane", "Use Y=const plane", "Use Z=const plane", "Use 3D plane"}),
        radioField("cutKind", values.cutKind, {"Before", "After", "Save parts"}),
        shownOnly(realField("min", "Min", values.min)),
        shownOnly(realField("max", "Max", values.max)),
        realField("section", "Max >Section >Min", values.section),
        realField("nx", "Nx", values.nx),
        realField("ny", "Ny", values.ny),
        realField("nz", "Nz", values.nz),
        shownOnly(realField("xMin", "Xmin", values.xMin)),
        shownOnly(realField("xMax", "Xmax", values.xMax)),
        realField("x", "X", values.x),
        shownOnly(realField("yMin", "Ymin", values.yMin)),
        shownOnly(realField("yMax", "Ymax", values.yMax)),
        realField("y", "Y", values.y),
        shownOnly(realField("zMin", "Zmin", values.zMin)),
        shownOnly(realField("zMax", "Zmax", values.zMax)),
        realField("z", "Z", values.z),
    };
    form.refresh = [&values](DialogForm& self, std::string_view key) { refresh(self, values, key); };
    return form;
}

} // namespace velmora

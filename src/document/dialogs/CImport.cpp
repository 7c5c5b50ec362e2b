#include "CImport.h"

namespace velmora {

ImportOptions CImport::options() const {
    ImportOptions options;
    options.merge = merge;
    options.volumeFaces = volumes == 2;
    options.cadPatches = cad == 2;
    options.chord = chord;
    options.sections = sections;
    options.points = points;
    options.scale = scale;
    return options;
}

DialogForm describe(CImport& values) {
    DialogForm form;
    form.name = "CImport";
    form.title = "Import";
    form.fields = {
        checkField("merge", "Merge equal points", values.merge),
        radioField("volumes", values.volumes, {"Surface zones only", "Outer faces of volume zones too"}),
        radioField("cad", values.cad, {"CAD as triangles", "CAD as structured patches"}),
        realField("chord", "Error of triangles", values.chord),
        integerField("sections", "Sections of a patch", values.sections, 2, 10000),
        integerField("points", "Points of a section", values.points, 2, 10000),
        realField("scale", "Scale", values.scale),
    };
    form.confirm = [&values](DialogForm&) -> std::optional<DialogRefusal> {
        if (!(values.chord > 0.0)) {
            return DialogRefusal{"The error of triangles must be above 0", "chord"};
        }
        if (!(values.scale > 0.0)) {
            return DialogRefusal{"The scale must be above 0", "scale"};
        }
        return std::nullopt;
    };
    return form;
}

} // namespace velmora

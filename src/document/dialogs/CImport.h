#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "exchange_model.h"

namespace velmora {

/// How a file of others becomes a model.
struct CImport {
    bool merge = false;         ///< points with equal coordinates become one
    std::int32_t volumes = 1;   ///< 1 surface zones only, 2 outer faces of volume zones too
    std::int32_t cad = 1;       ///< 1 triangles, 2 structured patches
    double chord = 0.1;         ///< how far triangles may stand from the surface, in the file's unit, above 0
    std::int32_t sections = 33; ///< of each patch
    std::int32_t points = 33;   ///< of each section of these
    double scale = 1.0;         ///< of every coordinate, above 0

    /// What the readers are to do.
    ImportOptions options() const;
};

inline ImportOptions CImport::options() const {
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

/// The form over `values`, which must outlive it.
inline DialogForm describe(CImport& values) {
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

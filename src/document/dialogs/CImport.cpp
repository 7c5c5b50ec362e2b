#include "CImport.h"

namespace velmora {

ImportOptions CImport::options() const {
    ImportOptions options;
    options.merge = merge;
    options.volumeFaces = volumes == 2;
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
        realField("scale", "Scale", values.scale),
    };
    form.confirm = [&values](DialogForm&) -> std::optional<DialogRefusal> {
        if (!(values.scale > 0.0)) {
            return DialogRefusal{"The scale must be above 0", "scale"};
        }
        return std::nullopt;
    };
    return form;
}

} // namespace velmora

#include <utility>

#include "VelmoraDoc.h"
#include "load_files.h"
#include "open_commands.h"
#include "path_names.h"
#include "rescue_format.h"

namespace velmora {

// The model on its way into a rescue copy and back.

std::string VelmoraDoc::rescueBytes() const {
    static const PatchList noPatches;
    static const zRegion_fe noZones;
    const bool grid = structureKind == StructureKind::Structured;
    return encodeRescue(modelFile.chosenPath.string(), modelFile.documentTitle, modelFile.imported,
                        grid ? patches : noPatches, grid ? noZones : feRegion, fieldPatches,
                        {fieldLoaded, fieldMode, fieldCount, fieldTitleLine, fieldVariablesLine});
}

void VelmoraDoc::takeRescued(RescuedModel model) {
    keepForUndo();
    clearModel();
    modelFile.forget();
    patches = std::move(model.patches);
    feRegion = std::move(model.zones);
    fieldPatches = std::move(model.fieldPatches);
    fieldLoaded = model.field.loaded;
    fieldMode = model.field.mode;
    fieldCount = model.field.count;
    fieldTitleLine = std::move(model.field.titleLine);
    fieldVariablesLine = std::move(model.field.variablesLine);
    if (patches.empty()) {
        structureKind = StructureKind::Unstructured;
    } else {
        checkRegularity(patches);
    }
    modelFile.titleWrong = false;
    modelFile.adopt(model.path);
    modelFile.currentDirectory = directoryOf(modelFile.chosenPath);
    modelFile.setTitle(model.title);
    modelFile.currentPath = modelFile.currentDirectory + modelFile.documentTitle;
    modelFile.imported = model.imported; // no file is its own: Save must not hit one that happens to have its name
    finishOpen(*this, {});
    documentModified = true;
}

} // namespace velmora

#include <utility>

#include "VelmoraDoc.h"
#include "path_names.h"

namespace velmora {

// The model on its way into a rescue copy and back.

std::string VelmoraDoc::rescueBytes() const {
    static const PatchList noPatches;
    static const zRegion_fe noZones;
    const bool grid = structureKind == "str";
    return encodeRescue(chosenPath.string(), documentTitle, grid ? patches : noPatches, grid ? noZones : feRegion,
                        fieldPatches, {fieldLoaded, fieldMode, fieldCount, fieldTitleLine, fieldVariablesLine});
}

void VelmoraDoc::takeRescued(RescuedModel model) {
    keepForUndo();
    clearModel();
    patches = std::move(model.patches);
    feRegion = std::move(model.zones);
    fieldPatches = std::move(model.fieldPatches);
    fieldLoaded = model.field.loaded;
    fieldMode = model.field.mode;
    fieldCount = model.field.count;
    fieldTitleLine = std::move(model.field.titleLine);
    fieldVariablesLine = std::move(model.field.variablesLine);
    if (patches.empty()) {
        setKinds("uns", "non", "non");
    } else {
        checkRegularity(patches);
    }
    titleWrong_ = false;
    adoptPath(model.path);
    currentDirectory = directoryOf(chosenPath);
    setTitle(model.title);
    currentPath = currentDirectory + documentTitle;
    pointsRead_ = pointsKept_ = 0;
    finishOpen();
    documentModified = true;
}

} // namespace velmora

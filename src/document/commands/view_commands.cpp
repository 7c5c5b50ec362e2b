#include "VelmoraDoc.h"

#include "DialogValues.h"
#include "UserInterface.h"
#include "show_dialog.h"

namespace velmora {

void VelmoraDoc::FitToWindow() {
    updateBounds();
}

void VelmoraDoc::ViewFeatures() {
    dialogs->features.showBlockOnly = showBlockOnly;
    dialogs->features.showBuffer = showBuffer;
    dialogs->features.showZBlockMarkers = showZBlockMarkers;
    dialogs->features.blockEmpty = blockCount == 0;
    dialogs->features.unstructured = structureKind == StructureKind::Unstructured;
    if (!showDialog(ui_, dialogs->features)) {
        return;
    }
    showBlockOnly = dialogs->features.showBlockOnly;
    showFirstPoints = dialogs->features.showFirstPoints;
    showDoublePoints = dialogs->merge.showDouble = dialogs->features.showDoublePoints;
    showBuffer = dialogs->features.showBuffer;
    showZBlockMarkers = dialogs->features.showZBlockMarkers;
    redrawPicture();
}

void VelmoraDoc::ToggleBlockOnly() {
    showBlockOnly = !showBlockOnly;
    redrawPicture();
}

void VelmoraDoc::toggleSurface() {
    surfaceMode = !surfaceMode;
    redrawPicture();
}

bool VelmoraDoc::askViewing(dlgViewing& values) {
    dialogs->viewing = values;
    const bool agreed = showDialog(ui_, dialogs->viewing);
    values = dialogs->viewing;
    return agreed;
}

} // namespace velmora

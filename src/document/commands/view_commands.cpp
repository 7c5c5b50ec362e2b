#include "VelmoraDoc.h"

namespace velmora {

void VelmoraDoc::FitToWindow() {
    updateBounds();
}

void VelmoraDoc::ViewFeatures() {
    featuresValues.showBlockOnly = showBlockOnly;
    featuresValues.showBuffer = showBuffer;
    featuresValues.showZBlockMarkers = showZBlockMarkers;
    featuresValues.blockEmpty = blockCount == 0;
    featuresValues.unstructured = structureKind == StructureKind::Unstructured;
    if (!showDialog(featuresValues)) {
        return;
    }
    showBlockOnly = featuresValues.showBlockOnly;
    showFirstPoints = featuresValues.showFirstPoints;
    showDoublePoints = mergeValues.showDouble = featuresValues.showDoublePoints;
    showBuffer = featuresValues.showBuffer;
    showZBlockMarkers = featuresValues.showZBlockMarkers;
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
    viewingValues = values;
    const bool agreed = showDialog(viewingValues);
    values = viewingValues;
    return agreed;
}

} // namespace velmora

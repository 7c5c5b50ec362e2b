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
    featuresValues.unstructured = structureKind == "uns";
    if (!showDialog(featuresValues)) {
        return;
    }
    showBlockOnly = featuresValues.showBlockOnly;
    showFirstPoints = featuresValues.showFirstPoints;
    showDoublePoints = mergeValues.showDouble = featuresValues.showDoublePoints;
    showBuffer = featuresValues.showBuffer;
    showZBlockMarkers = featuresValues.showZBlockMarkers;
    redraw();
}

void VelmoraDoc::ToggleBlockOnly() {
    showBlockOnly = !showBlockOnly;
    redraw();
}

} // namespace velmora

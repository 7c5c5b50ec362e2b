#include "VelmoraDoc.h"
#include "zone_conversion.h"

namespace velmora {

void VelmoraDoc::ConvertToUnstructured() {
    beginPatchCommand(false);
    // What is captured is a part of a grid: there is none from here on.
    leaveRegimes();
    if (!patches.empty()) {
        zRegion zones;
        feRegion.blocks.clear();
        patchesToRegion(patches, zones);
        regionToSurface(zones, feRegion);
        patches.clear();
    }
    structureKind = "uns";
    fileKind = "non";
    titleWrong_ = false;
    takeExtension("dat");
    ShowStatus(idlePrompt);
    redraw();
}

} // namespace velmora

#include "VelmoraDoc.h"
#include "messages.h"
#include "projection.h"
#include "target_mesh.h"

namespace velmora {

// The zBlock is projected along its own normals: "Reflection" in the menus.

void VelmoraDoc::finishReflection() {
    // Full only when points missed: an empty buffer has nothing to paste.
    lineBufferFull = !lineBuffer.empty();
    followCapturedPoint();
    redraw();
}

void VelmoraDoc::ReflectToApt() {
    beginPatchCommand(false);
    if (structureKind == StructureKind::Unstructured) {
        projectZonesOfBlock();
        return;
    }
    bool missed = false;
    {
        const BusyScope busy(ui_);
        lineBuffer.clear();
        const TriangleTree target(CellMesh(patches, blockMask()).takeMesh());
        projectPatches(
            patches, blockCount < 1 ? std::vector<std::int32_t>() : chosenPatches(), target, nearestCellHit, lineBuffer,
            [&missed] { missed = true; }, progressTo(ui_));
    }
    if (missed) {
        ui_.showMessage(message::someLinesMiss);
    }
    finishReflection();
}

void VelmoraDoc::projectZonesOfBlock() {
    {
        const BusyScope busy(ui_);
        projectZones(feRegion, blockCount < 1 ? std::vector<std::int32_t>() : chosenPatches(), progressTo(ui_));
    }
    followCapturedPoint();
    redraw();
}

void VelmoraDoc::ReflectToWrl() {
    beginPatchCommand(false);
    {
        const BusyScope busy(ui_);
        lineBuffer.clear();
        const TriangleTree target(zoneMesh(referenceRegion, std::vector<bool>(referenceRegion.blocks.size(), false)));
        // The message comes while the work is still going on.
        projectPatches(
            patches, chosenPatches(), target, nearestElementHit, lineBuffer,
            [this] { ui_.showMessage(message::someLinesMiss); }, progressTo(ui_));
    }
    // One projection uses the reference geometry up.
    referenceRegion.blocks.clear();
    secondKind = SecondKind::None;
    emptyBlock();
    showBlockOnly = false;
    finishReflection();
}

/// Never on: no command leaves a second grid open (see AppendDat), so there is nothing to project on.
void VelmoraDoc::ReflectToDat() {
    redraw();
}

} // namespace velmora

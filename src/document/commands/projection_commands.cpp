#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "messages.h"
#include "projection.h"
#include "target_mesh.h"

namespace velmora {

// The zBlock is projected along its own normals: "Reflection" in the menus.

namespace {

void finishReflection(VelmoraDoc& doc) {
    // Full only when points missed: an empty buffer has nothing to paste.
    doc.lineBufferFull = !doc.lineBuffer.empty();
    followCapturedPoint(doc);
    doc.redraw();
}

void projectZonesOfBlock(VelmoraDoc& doc) {
    {
        const BusyScope busy(doc.ui());
        projectZones(doc.feRegion, doc.blockCount < 1 ? std::vector<std::int32_t>() : doc.chosenPatches(),
                     progressTo(doc.ui()));
    }
    followCapturedPoint(doc);
    doc.redraw();
}

} // namespace

void VelmoraDoc::ReflectToApt() {
    beginPatchCommand(Extent::Stays);
    if (structureKind == StructureKind::Unstructured) {
        projectZonesOfBlock(*this);
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
    finishReflection(*this);
}

void VelmoraDoc::ReflectToWrl() {
    if (structureKind == StructureKind::Unstructured) {
        // No patch is there to be projected: the reference geometry would be used up for nothing. Zones go onto the
        // other zones.
        ReflectToApt();
        return;
    }
    beginPatchCommand(Extent::Stays);
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
    finishReflection(*this);
}

/// Never on: no command leaves a second grid open (see AppendDat), so there is nothing to project on.
void VelmoraDoc::ReflectToDat() {
    redraw();
}

} // namespace velmora

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "command_rows.h"
#include "command_rules.h"
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
        lineBuffer.clear(); // the guard has a copy
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

namespace {

/// Onto the reference geometry, which is used up by it.
void ReflectToWrl(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::Unstructured) {
        // No patch is there to be projected: the reference geometry would be used up for nothing. Zones go onto the
        // other zones.
        doc.ReflectToApt();
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    {
        const BusyScope busy(doc.ui());
        doc.lineBuffer.clear();
        const TriangleTree target(
            zoneMesh(doc.referenceRegion, std::vector<bool>(doc.referenceRegion.blocks.size(), false)));
        // The message comes while the work is still going on.
        projectPatches(
            doc.patches, doc.chosenPatches(), target, nearestElementHit, doc.lineBuffer,
            [&doc] { doc.ui().showMessage(message::someLinesMiss); }, progressTo(doc.ui()));
    }
    // One projection uses the reference geometry up.
    doc.referenceRegion.blocks.clear();
    doc.secondKind = SecondKind::None;
    doc.emptyBlock();
    doc.showBlockOnly = false;
    finishReflection(doc);
}

/// Never on: no command leaves a second grid open (see AppendDat), so there is nothing to project on.
void ReflectToDat(VelmoraDoc& doc) {
    doc.redraw();
}

} // namespace

std::span<const Command> projectionCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "patch.reflection",
         .menuText = "Re&flection",
         .statusText = "Project zBlock (yelow) to the rest part of geometry (out-zBlock patches)",
         .run = &VelmoraDoc::ReflectToApt,
         .off = [](Doc d) { return noBlockOrField(d) || emptyModel(d) || (!notStr(d) && d.patches.size() < 2); },
         .places = {{PatchContext, 340}}},
        {.id = "model.reflectToApt",
         .menuText = "Reflect&ion to apt",
         .statusText = "Project zBlock (yelow) to the rest part of geometry (out-zBlock patches)",
         .toolTip = "Reflect zBlock to apt",
         .icon = true,
         .run = &VelmoraDoc::ReflectToApt,
         .off = [](Doc d) { return notStrOrField(d) || noBlock(d) || d.patches.size() < 2; },
         .places = {{Transformations, 210}, {TransformationsBar, 310}}},
        {.id = "model.reflectToWrl",
         .menuText = "Reflection to wrl",
         .statusText = "Project zBlock (yelow) to the unstructured geometry ",
         .toolTip = "Reflect zBlock to wrl",
         .icon = true,
         .run = &ReflectToWrl,
         .off = [](Doc d) { return d.secondKind != SecondKind::Wrl || noBlock(d); },
         .places = {{Transformations, 220}, {TransformationsBar, 320}}},
        {.id = "model.reflectToDat",
         .menuText = "Reflection to dat",
         .statusText = "Project zBlock (yelow) to the second, structured geometry",
         .run = &ReflectToDat,
         .off = [](Doc d) { return d.secondKind != SecondKind::Dat || noBlock(d); },
         .places = {{Transformations, 230}}},
    };
    return rows;
}

} // namespace velmora

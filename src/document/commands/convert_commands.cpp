#include "VelmoraDoc.h"
#include "corner_box.h"
#include "lines_to_grid.h"
#include "messages.h"
#include "slice_surface.h"
#include "zone_conversion.h"

namespace velmora {

/// The model has become one of another kind: tags, title and path follow.
void VelmoraDoc::finishConversion(StructureKind structure, FileKind kind, const char* extension) {
    structureKind = structure;
    fileKind = kind;
    modelFile.titleWrong = false;
    modelFile.takeExtension(extension);
}

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
    finishConversion(StructureKind::Unstructured, FileKind::None, "dat");
    ShowStatus(idlePrompt);
    redraw();
}

namespace {

SlicePlan planOf(const CConvert_to_SKL& values) {
    SlicePlan plan;
    plan.axis = values.planeAxis - 1;
    plan.planes = values.number;
    plan.manual = values.borderApproach == 2;
    plan.lower = values.yourMin;
    plan.upper = values.yourMax;
    plan.border = values.border;
    plan.precision = values.precision;
    return plan;
}

} // namespace

void VelmoraDoc::ConvertToSkl() {
    if (structureKind != StructureKind::Unstructured) {
        return;
    }
    snapshotBeforeAsking();
    const CornerBox box = cornerBox(feRegion);
    toSklValues.boxMin = box.lower;
    toSklValues.boxMax = box.upper;
    toSklValues.precision = CConvert_to_SKL().precision;
    if (!showDialog(toSklValues)) {
        return;
    }
    // Only once the model is another one: a conversion that was cancelled or failed leaves nothing to undo.
    patchUndoReady = true;
    rebuildOnUndo = false;
    // What is captured is a part of the surface: there is none from here on.
    leaveRegimes();
    SliceResult slices;
    {
        const BusyScope busy(ui_);
        slices = sliceSurface(feRegion, planOf(toSklValues), progressTo(ui_));
    }
    for (std::int32_t line = 0; line < slices.linesLeft; ++line) {
        ui_.showMessage(message::linesLeft);
    }
    patches.clear();
    patches.push_back(std::move(slices.sections));
    feRegion.blocks.clear();
    finishConversion(StructureKind::Structured, FileKind::Skl, "skl");
    ShowStatus(idlePrompt);
    emptyBlock();
    showBlockOnly = false; // of an empty zBlock nothing would be shown
    redraw();
}

void VelmoraDoc::ConvertToApt() {
    if (structureKind != StructureKind::Structured) {
        return;
    }
    snapshotBeforeAsking();
    if (!showDialog(toAptValues)) {
        return;
    }
    patchUndoReady = true;
    rebuildOnUndo = false;
    {
        const BusyScope busy(ui_);
        patches = linesToGrid(patches, toAptValues.pointCount, toAptValues.approximation == 1);
    }
    finishConversion(StructureKind::Structured, FileKind::Apt, "apt");
    leavePointAndCurves();
    ShowStatus(capture->patchCaptured       ? capture->blockStatus
               : capture->patchCaptureArmed ? capture->patchStatus
                                            : idlePrompt);
    redraw();
}

} // namespace velmora

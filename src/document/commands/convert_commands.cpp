#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "corner_box.h"
#include "lines_to_grid.h"
#include "messages.h"
#include "regimes.h"
#include "show_dialog.h"
#include "slice_surface.h"
#include "zone_conversion.h"

namespace velmora {

namespace {

/// The model has become one of another kind: tags, title and path follow.
void finishConversion(VelmoraDoc& doc, StructureKind structure, FileKind kind, const char* extension) {
    doc.structureKind = structure;
    doc.fileKind = kind;
    doc.modelFile.titleWrong = false;
    doc.modelFile.takeExtension(extension);
}

} // namespace

void VelmoraDoc::ConvertToUnstructured() {
    beginPatchCommand(Extent::Stays);
    // What is captured is a part of a grid: there is none from here on.
    leaveRegimes();
    if (!patches.empty()) {
        zRegion zones;
        feRegion.blocks.clear();
        patchesToRegion(patches, zones);
        regionToSurface(zones, feRegion);
        patches.clear();
    }
    finishConversion(*this, StructureKind::Unstructured, FileKind::None, "dat");
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
    dialogs->toSkl.boxMin = box.lower;
    dialogs->toSkl.boxMax = box.upper;
    dialogs->toSkl.precision = CConvert_to_SKL().precision;
    if (!showDialog(ui_, dialogs->toSkl)) {
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
        slices = sliceSurface(feRegion, planOf(dialogs->toSkl), progressTo(ui_));
    }
    for (std::int32_t line = 0; line < slices.linesLeft; ++line) {
        ui_.showMessage(message::linesLeft);
    }
    patches.clear();
    patches.push_back(std::move(slices.sections));
    feRegion.blocks.clear();
    finishConversion(*this, StructureKind::Structured, FileKind::Skl, "skl");
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
    if (!showDialog(ui_, dialogs->toApt)) {
        return;
    }
    patchUndoReady = true;
    rebuildOnUndo = false;
    {
        const BusyScope busy(ui_);
        patches = linesToGrid(patches, dialogs->toApt.pointCount, dialogs->toApt.approximation == 1);
    }
    finishConversion(*this, StructureKind::Structured, FileKind::Apt, "apt");
    leavePointAndCurves(*this);
    ShowStatus(capture->patchCaptured       ? capture->blockStatus
               : capture->patchCaptureArmed ? capture->patchStatus
                                            : idlePrompt);
    redraw();
}

} // namespace velmora

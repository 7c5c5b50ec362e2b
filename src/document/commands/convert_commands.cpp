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
    zRegion zones;
    zRegion_fe surface;
    patchesToRegion(patches, zones);
    regionToSurface(zones, surface);
    if (surface.blocks.empty()) {
        ui_.showMessage(message::conversionWithoutResult);
        return;
    }
    beginPatchCommand(Extent::Stays);
    // What is captured is a part of a grid: there is none from here on.
    leaveRegimes();
    feRegion.blocks.swap(surface.blocks);
    patches.clear();
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
    const CornerBox box = cornerBox(feRegion);
    dialogs->toSkl.boxMin = box.lower;
    dialogs->toSkl.boxMax = box.upper;
    dialogs->toSkl.precision = CConvert_to_SKL().precision;
    dialogs->toSkl.freeBytes = memoryRoom(0.0).free;
    dialogs->toSkl.pointsOfPlane = [this](const CConvert_to_SKL& values) {
        const bool manual = values.borderApproach == 2;
        return cutsOfPlane(feRegion, values.planeAxis - 1, manual ? values.yourMin : values.min,
                           manual ? values.yourMax : values.max);
    };
    if (!showDialog(ui_, dialogs->toSkl)) {
        return;
    }
    SliceResult slices;
    {
        const BusyScope busy(ui_);
        slices = sliceSurface(feRegion, planOf(dialogs->toSkl), progressTo(ui_));
    }
    if (slices.sections.empty()) {
        // One plane has no step and cuts nothing, as none does beside the body: the body is worth more than no line.
        ui_.showMessage(message::conversionWithoutResult);
        return;
    }
    beginPatchCommand(Extent::Stays);
    // What is captured is a part of the surface: there is none from here on.
    leaveRegimes();
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
    std::size_t sections = 0;
    for (const Patch& patch : patches) {
        sections += patch.size();
    }
    if (sections == 0) {
        ui_.showMessage(message::conversionWithoutResult);
        return;
    }
    dialogs->toApt.room = memoryRoom(static_cast<double>(sections) * bytesOfPoint);
    if (!showDialog(ui_, dialogs->toApt)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    {
        const BusyScope busy(ui_);
        patches = linesToGrid(patches, dialogs->toApt.pointCount, dialogs->toApt.approximation == 1, wholeField());
        for (std::size_t k = 0; dialogs->toApt.align && k < patches.size(); ++k) {
            alignSections(patches[k], wholeField() != nullptr ? &(*wholeField())[k] : nullptr);
        }
    }
    finishConversion(*this, StructureKind::Structured, FileKind::Apt, "apt");
    leavePointAndCurves(*this);
    ShowStatus(capture->patchCaptured       ? capture->blockStatus
               : capture->patchCaptureArmed ? capture->patchStatus
                                            : idlePrompt);
    redraw();
}

} // namespace velmora

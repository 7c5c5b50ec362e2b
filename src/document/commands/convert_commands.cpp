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
    zRegion zones;
    zRegion_fe surface;
    patchesToRegion(patches, zones);
    regionToSurface(zones, surface);
    if (surface.blocks.empty()) {
        ui_.showMessage(message::conversionWithoutResult);
        return;
    }
    beginPatchCommand(false);
    // What is captured is a part of a grid: there is none from here on.
    leaveRegimes();
    feRegion.blocks.swap(surface.blocks);
    patches.clear();
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
    const CornerBox box = cornerBox(feRegion);
    toSklValues.boxMin = box.lower;
    toSklValues.boxMax = box.upper;
    toSklValues.precision = CConvert_to_SKL().precision;
    toSklValues.freeBytes = memoryRoom(0.0).free;
    toSklValues.pointsOfPlane = [this](const CConvert_to_SKL& values) {
        const bool manual = values.borderApproach == 2;
        return cutsOfPlane(feRegion, values.planeAxis - 1, manual ? values.yourMin : values.min,
                           manual ? values.yourMax : values.max);
    };
    if (!showDialog(toSklValues)) {
        return;
    }
    SliceResult slices;
    {
        const BusyScope busy(ui_);
        slices = sliceSurface(feRegion, planOf(toSklValues), progressTo(ui_));
    }
    if (slices.sections.empty()) {
        // One plane has no step and cuts nothing, as none does beside the body: the body is worth more than no line.
        ui_.showMessage(message::conversionWithoutResult);
        return;
    }
    beginPatchCommand(false);
    // What is captured is a part of the surface: there is none from here on.
    leaveRegimes();
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
    std::size_t sections = 0;
    for (const Patch& patch : patches) {
        sections += patch.size();
    }
    if (sections == 0) {
        ui_.showMessage(message::conversionWithoutResult);
        return;
    }
    toAptValues.room = memoryRoom(static_cast<double>(sections) * bytesOfPoint);
    if (!showDialog(toAptValues)) {
        return;
    }
    beginPatchCommand(false);
    {
        const BusyScope busy(ui_);
        patches = linesToGrid(patches, toAptValues.pointCount, toAptValues.approximation == 1, wholeField());
    }
    finishConversion(StructureKind::Structured, FileKind::Apt, "apt");
    leavePointAndCurves();
    ShowStatus(capture->patchCaptured       ? capture->blockStatus
               : capture->patchCaptureArmed ? capture->patchStatus
                                            : idlePrompt);
    redraw();
}

} // namespace velmora

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
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

void ConvertToUnstructured(VelmoraDoc& doc) {
    zRegion zones;
    zRegion_fe surface;
    patchesToRegion(doc.patches, zones);
    regionToSurface(zones, surface);
    if (surface.blocks.empty()) {
        doc.ui().showMessage(message::conversionWithoutResult);
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    // What is captured is a part of a grid: there is none from here on.
    doc.leaveRegimes();
    doc.feRegion.blocks.swap(surface.blocks);
    doc.patches.clear();
    finishConversion(doc, StructureKind::Unstructured, FileKind::None, "dat");
    doc.ShowStatus(idlePrompt);
    doc.redraw();
}

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

void ConvertToSkl(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Unstructured) {
        return;
    }
    const CornerBox box = cornerBox(doc.feRegion);
    doc.dialogs->toSkl.boxMin = box.lower;
    doc.dialogs->toSkl.boxMax = box.upper;
    doc.dialogs->toSkl.precision = CConvert_to_SKL().precision;
    doc.dialogs->toSkl.freeBytes = doc.memoryRoom(0.0).free;
    doc.dialogs->toSkl.pointsOfPlane = [&doc](const CConvert_to_SKL& values) {
        const bool manual = values.borderApproach == 2;
        return cutsOfPlane(doc.feRegion, values.planeAxis - 1, manual ? values.yourMin : values.min,
                           manual ? values.yourMax : values.max);
    };
    if (!showDialog(doc.ui(), doc.dialogs->toSkl)) {
        return;
    }
    SliceResult slices;
    {
        const BusyScope busy(doc.ui());
        slices = sliceSurface(doc.feRegion, planOf(doc.dialogs->toSkl), progressTo(doc.ui()));
    }
    if (slices.sections.empty()) {
        // One plane has no step and cuts nothing, as none does beside the body: the body is worth more than no line.
        doc.ui().showMessage(message::conversionWithoutResult);
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    // What is captured is a part of the surface: there is none from here on.
    doc.leaveRegimes();
    for (std::int32_t line = 0; line < slices.linesLeft; ++line) {
        doc.ui().showMessage(message::linesLeft);
    }
    doc.patches.clear();
    doc.patches.push_back(std::move(slices.sections));
    doc.feRegion.blocks.clear();
    finishConversion(doc, StructureKind::Structured, FileKind::Skl, "skl");
    doc.ShowStatus(idlePrompt);
    doc.emptyBlock();
    doc.showBlockOnly = false; // of an empty zBlock nothing would be shown
    doc.redraw();
}

void ConvertToApt(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Structured) {
        return;
    }
    std::size_t sections = 0;
    for (const Patch& patch : doc.patches) {
        sections += patch.size();
    }
    if (sections == 0) {
        doc.ui().showMessage(message::conversionWithoutResult);
        return;
    }
    doc.dialogs->toApt.room = doc.memoryRoom(static_cast<double>(sections) * bytesOfPoint);
    if (!showDialog(doc.ui(), doc.dialogs->toApt)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    {
        const BusyScope busy(doc.ui());
        doc.patches = linesToGrid(doc.patches, doc.dialogs->toApt.pointCount, doc.dialogs->toApt.approximation == 1,
                                  doc.wholeField());
        for (std::size_t k = 0; doc.dialogs->toApt.align && k < doc.patches.size(); ++k) {
            alignSections(doc.patches[k], doc.wholeField() != nullptr ? &(*doc.wholeField())[k] : nullptr);
        }
    }
    finishConversion(doc, StructureKind::Structured, FileKind::Apt, "apt");
    leavePointAndCurves(doc);
    doc.ShowStatus(doc.capture->patchCaptured       ? doc.capture->blockStatus
                   : doc.capture->patchCaptureArmed ? doc.capture->patchStatus
                                                    : idlePrompt);
    doc.redraw();
}

} // namespace

std::span<const Command> convertCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "convert.toUnstructured",
         .menuText = "&VRML or DAT",
         .statusText = "Convert structured grid to unstructured one",
         .toolTip = "APT to DAT",
         .icon = true,
         .run = &ConvertToUnstructured,
         .off = [](Doc d) { return notStrOrField(d) || d.fileKind == FileKind::Skl; },
         .places = {{ConvertTo, 110}, {PatchConvertTo, 110}, {TransformationsBar, 110}}},
        {.id = "convert.toApt",
         .menuText = "&APT...",
         .statusText = "Convert lines (SKL) to structured grid (APT)",
         .toolTip = "SKL to APT",
         .icon = true,
         .run = &ConvertToApt,
         .off = [](Doc d) { return notStr(d) || d.fileKind == FileKind::Apt; },
         .places = {{ConvertTo, 120}, {PatchConvertTo, 120}, {TransformationsBar, 120}}},
        {.id = "convert.toSkl",
         .menuText = "&SKL...",
         .statusText = "Convert unstructured grid to lines (SKL)",
         .toolTip = "DAT to SKL",
         .icon = true,
         .run = &ConvertToSkl,
         .off = notUns,
         .places = {{ConvertTo, 130}, {PatchConvertTo, 130}, {TransformationsBar, 130}}},
    };
    return rows;
}

} // namespace velmora

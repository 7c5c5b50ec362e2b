#include <algorithm>
#include <string>
#include <vector>

#include "DialogValues.h"
#include "ProgressCounter.h"
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

/// "patch 2: sections 3, 4": the sections at which the grid twists; empty for none.
std::string twistsOf(const VelmoraDoc& doc) {
    constexpr std::size_t mostNamed = 8;
    std::string text;
    for (std::size_t k = 0; k < doc.patches.size(); ++k) {
        const std::vector<std::int32_t> twisted = twistedSections(doc.patches[k]);
        if (twisted.empty()) {
            continue;
        }
        text += (text.empty() ? "" : "; ") + (doc.patches.size() > 1 ? "patch " + std::to_string(k + 1) + ": " : "") +
                (twisted.size() > 1 ? "sections" : "section");
        for (std::size_t i = 0; i < std::min(twisted.size(), mostNamed); ++i) {
            text += (i > 0 ? ", " : " ") + std::to_string(twisted[i] + 1);
        }
        if (twisted.size() > mostNamed) {
            text += " and " + std::to_string(twisted.size() - mostNamed) + " more";
        }
    }
    return text;
}

/// The lines come in an order, and with starts, that nobody looked at: where the grid of them twists is told.
void tellTwists(VelmoraDoc& doc) {
    const std::string twists = twistsOf(doc);
    if (!twists.empty()) {
        const std::string target = doc.saveTargetText();
        doc.ShowStatus("The grid twists at " + twists + ": align lines to their neighbours" +
                       (target.empty() ? "" : ". " + target));
    }
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
        const ReportProgress report = progressTo(doc.ui());
        const CConvert_SKL_to_APT& values = doc.dialogs->toApt;
        const double sampled = values.align ? 0.5 : 1.0;
        doc.patches = linesToGrid(doc.patches, values.pointCount, values.approximation == 1, doc.wholeField(),
                                  partOfProgress(report, 0.0, sampled));
        const double share = (1.0 - sampled) / static_cast<double>(doc.patches.size());
        for (std::size_t k = 0; values.align && k < doc.patches.size(); ++k) {
            const double from = sampled + share * static_cast<double>(k);
            alignSections(doc.patches[k], doc.wholeField() != nullptr ? &(*doc.wholeField())[k] : nullptr,
                          partOfProgress(report, from, from + share));
        }
    }
    finishConversion(doc, StructureKind::Structured, FileKind::Apt, "apt");
    leavePointAndCurves(doc);
    doc.ShowStatus(doc.capture->patchCaptured       ? doc.capture->blockStatus
                   : doc.capture->patchCaptureArmed ? doc.capture->patchStatus
                                                    : idlePrompt);
    doc.redraw();
    tellTwists(doc);
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

#include <algorithm>
#include <utility>

#include "DialogValues.h"
#include "ModelTrial.h"
#include "ProgressCounter.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "captured_curve.h"
#include "command_rows.h"
#include "command_rules.h"
#include "coons_rebuild.h"
#include "correct_line.h"
#include "exchange.h"
#include "interpolate_section.h"
#include "messages.h"
#include "patch_curves.h"
#include "patch_order.h"
#include "show_dialog.h"
#include "smooth_patch.h"

namespace velmora {

// Commands that rebuild the inside of whole patches, or move one curve inside of a patch.

namespace {

/// The snapshot, and what a kernel keeps of a patch as it works.
constexpr double workingCopies = 4.0;

void CoonsRebuild(VelmoraDoc& doc) {
    if (workingCopies * bytesOf(doc.patches) > doc.memoryRoom(0.0).free) {
        doc.ui().showMessage(message::notEnoughMemory);
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    for (const std::int32_t k : doc.chosenInModelOrder()) {
        coonsRebuild(doc.patches[static_cast<std::size_t>(k)]);
    }
    followCapturedPoint(doc);
    doc.redraw();
}

/// The passes over a patch, in their order: true for lines.
std::vector<bool> passesOf(const CSmooth& values) {
    switch (values.regime) {
    case 2:
        return {true};
    case 3:
        return {false, true};
    case 4:
        return {true, false};
    default:
        return {false};
    }
}

/// False once coincident points turned the spline to straight lines.
bool smoothChosen(VelmoraDoc& doc, const CSmooth& values, const ReportProgress& report) {
    const std::vector<std::int32_t> chosen = doc.chosenInModelOrder();
    const std::vector<bool> passes = passesOf(values);
    const double share = 1.0 / static_cast<double>(chosen.size() * passes.size());
    bool spline = values.function == 1;
    double done = 0.0;
    for (const std::int32_t k : chosen) {
        for (const bool lines : passes) {
            const auto smooth = lines ? smoothLines : smoothSections;
            smooth(doc.patches[static_cast<std::size_t>(k)], spline, partOfProgress(report, done, done + share));
            done += share;
        }
    }
    return spline;
}

void SmoothGeometry(VelmoraDoc& doc) {
    const auto tryOut = [&doc](const CSmooth& values) {
        smoothChosen(doc, values, {});
        plotTried(doc, curveIsThere(doc) ? capturedCurvePoints(doc) : PointList());
        return true;
    };
    if (!showDialogTrying(doc, doc.dialogs->smooth, tryOut)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    bool spline = true;
    {
        const BusyScope busy(doc.ui());
        spline = smoothChosen(doc, doc.dialogs->smooth, progressTo(doc.ui()));
    }
    doc.dialogs->smooth.function = spline ? 1 : 2; // coincident points turn it to Linear, for the next call too
    followCapturedPoint(doc);
    doc.redraw();
}

// ---- One curve ------------------------------------------------------------------------------------------------------

void Interpolate(VelmoraDoc& doc) {
    doc.dialogs->interpolate.pointClipboardFull = doc.pointClipboardFull;
    doc.dialogs->interpolate.room = doc.memoryRoom(workingCopies * bytesOf(doc.patches));
    if (!showDialog(doc.ui(), doc.dialogs->interpolate)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    const bool lines = doc.capture->lineCaptured;
    const bool exists = doc.sectionAt(doc.capture->capturedPatch, 0) != nullptr &&
                        (!lines || isGrid(doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)]));
    if (!exists) {
        return;
    }
    if (lines) {
        turnCapturedPatch(doc);
    }
    Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
    const Interpolation outcome =
        doc.dialogs->interpolate.fitToBuffer
            ? interpolateToPoint(patch, doc.capture->capturedSection, doc.pointClipboard)
            : interpolateSection(patch, doc.capture->capturedSection, doc.dialogs->interpolate.coefficient);
    if (lines) {
        turnCapturedPatch(doc);
    }
    switch (outcome) {
    case Interpolation::Done:
        followCapturedPoint(doc);
        doc.redraw();
        break;
    case Interpolation::TooFewSections:
        doc.ui().showMessage(message::fewSectionsToInterpolate);
        break;
    case Interpolation::TooFar:
        doc.ui().showMessage(message::interpolationTooFar);
        break;
    case Interpolation::DoubleLine:
        doc.ui().showMessage(message::interpolationDoubleLine);
        break;
    case Interpolation::NotMoved:
        break;
    }
}

bool bendLine(VelmoraDoc& doc, const CCorrectLine& values, Patch* field) {
    return correctLine(
        doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)], doc.capture->capturedPointSection,
        {doc.capture->capturedPoint, doc.capture->capturedLine, values.linesBefore, values.linesAfter, values.power},
        field);
}

/// Shows the dialog for the captured line. False for Cancel, and where there is nothing to correct.
bool askForCorrection(VelmoraDoc& doc) {
    if (doc.capture->capturedPoint == doc.capture->capturedLine) {
        doc.ui().showMessage(message::correctionHasNoAction);
        return false;
    }
    const Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
    doc.dialogs->correctLine = {doc.capture->capturedLine + 1, lineCount(patch) - doc.capture->capturedLine,
                                CCorrectLine().power};
    doc.dialogs->correctLine.room = doc.memoryRoom(static_cast<double>(patch.size()) * bytesOfPoint);
    return showDialogTrying(doc, doc.dialogs->correctLine, [&doc](const CCorrectLine& values) {
        const double lines = static_cast<double>(values.linesBefore) + values.linesAfter;
        const Patch& bent = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
        if (lines * static_cast<double>(bent.size()) > ModelTrial::mostPoints || !bendLine(doc, values, nullptr)) {
            return false;
        }
        plotTried(doc, ConstPatchCurve(bent, true, values.linesBefore - 1).points());
        return true;
    });
}

/// Bends the captured line. False leaves model and capture as they were.
bool correctCapturedLine(VelmoraDoc& doc) {
    const CCorrectLine& v = doc.dialogs->correctLine;
    if (!bendLine(doc, v, doc.fieldOfPatch(doc.capture->capturedPatch))) {
        return false;
    }
    doc.capture.renumberLine(v.linesBefore - 1);
    doc.capture.renumberPoint(doc.capture->capturedPointSection, v.linesBefore - 1);
    return true;
}

void CorrectLine(VelmoraDoc& doc) {
    if (doc.sectionAt(doc.capture->capturedPatch, 0) == nullptr ||
        !isGrid(doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)])) {
        return;
    }
    const bool sections = doc.capture->sectionCaptured;
    if (sections) {
        turnCapturedPatch(doc);
    }
    const bool confirmed = askForCorrection(doc);
    if (sections) {
        turnCapturedPatch(doc);
    }
    if (!confirmed) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    doc.SavePointUndo();
    doc.pointUndoReady = true;
    doc.capture.savePoint();
    doc.capture.saveCurve();
    if (sections) {
        turnCapturedPatch(doc);
    }
    const bool corrected = correctCapturedLine(doc);
    if (sections) {
        turnCapturedPatch(doc);
    }
    if (corrected) {
        doc.redraw();
    }
}

} // namespace

std::span<const Command> surfaceCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "line.interpolate",
         .menuText = "&Interpolate...",
         .statusText = "Interpolate section between the closest ones and move it to prescribed position",
         .run = &Interpolate,
         .off = [](Doc d) { return noCurve(d) || notGridOrField(d); },
         .places = {{LineContext, 320}}},
        {.id = "line.correct",
         .menuText = "Correct Line...",
         .statusText = "Correct selected line to fit it to captured point and rebuild geometry",
         .run = &CorrectLine,
         .off = [](Doc d) { return !d.capture->freePointHeld; },
         .places = {{PointContext, 410, "Correct line"}, {LineContext, 520}}},
        {.id = "model.coonsRebuild",
         .menuText = "Coons Re&build",
         .statusText = "Rebuild blocks using Coons patches algorithm.  If no selections work with geometry",
         .toolTip = "Coons rebuild",
         .icon = true,
         .run = &CoonsRebuild,
         .off = notGridOrField,
         .places = {{Transformations, 410}, {TransformationsBar, 410}}},
        {.id = "model.smooth",
         .menuText = "Smoo&th geometry...",
         .statusText = "Smooth zBlock using soft algorithm.  If no selections work with geometry",
         .toolTip = "Smooth geometry",
         .icon = true,
         .run = &SmoothGeometry,
         .off = notGridOrField,
         .places = {{Transformations, 420}, {TransformationsBar, 420}}},
    };
    return rows;
}

} // namespace velmora

#include <algorithm>
#include <utility>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
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

} // namespace

void VelmoraDoc::CoonsRebuild() {
    if (workingCopies * bytesOf(patches) > memoryRoom(0.0).free) {
        ui_.showMessage(message::notEnoughMemory);
        return;
    }
    beginPatchCommand(Extent::Stays);
    for (const std::int32_t k : chosenInModelOrder()) {
        coonsRebuild(patches[static_cast<std::size_t>(k)]);
    }
    followCapturedPoint(*this);
    redraw();
}

void VelmoraDoc::SmoothGeometry() {
    if (!showDialog(ui_, dialogs->smooth)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    bool spline = dialogs->smooth.function == 1;
    for (const std::int32_t k : chosenInModelOrder()) {
        Patch& patch = patches[static_cast<std::size_t>(k)];
        if (dialogs->smooth.regime == 2 || dialogs->smooth.regime == 4) {
            smoothLines(patch, spline);
        }
        if (dialogs->smooth.regime != 2) {
            smoothSections(patch, spline);
        }
        if (dialogs->smooth.regime == 3) {
            smoothLines(patch, spline);
        }
    }
    dialogs->smooth.function = spline ? 1 : 2; // coincident points turn it to Linear, for the next call too
    followCapturedPoint(*this);
    redraw();
}

// ---- One curve ------------------------------------------------------------------------------------------------------

void VelmoraDoc::Interpolate() {
    dialogs->interpolate.pointClipboardFull = pointClipboardFull;
    dialogs->interpolate.room = memoryRoom(workingCopies * bytesOf(patches));
    if (!showDialog(ui_, dialogs->interpolate)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    const bool lines = capture->lineCaptured;
    const bool exists = sectionAt(capture->capturedPatch, 0) != nullptr &&
                        (!lines || isGrid(patches[static_cast<std::size_t>(capture->capturedPatch)]));
    if (!exists) {
        return;
    }
    if (lines) {
        turnCapturedPatch(*this);
    }
    Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    const Interpolation outcome =
        dialogs->interpolate.fitToBuffer
            ? interpolateToPoint(patch, capture->capturedSection, pointClipboard)
            : interpolateSection(patch, capture->capturedSection, dialogs->interpolate.coefficient);
    if (lines) {
        turnCapturedPatch(*this);
    }
    switch (outcome) {
    case Interpolation::Done:
        followCapturedPoint(*this);
        redraw();
        break;
    case Interpolation::TooFewSections:
        ui_.showMessage(message::fewSectionsToInterpolate);
        break;
    case Interpolation::TooFar:
        ui_.showMessage(message::interpolationTooFar);
        break;
    case Interpolation::DoubleLine:
        ui_.showMessage(message::interpolationDoubleLine);
        break;
    case Interpolation::NotMoved:
        break;
    }
}

namespace {

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
    return showDialog(doc.ui(), doc.dialogs->correctLine);
}

/// Bends the captured line. False leaves model and capture as they were.
bool correctCapturedLine(VelmoraDoc& doc) {
    Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
    const CCorrectLine& v = doc.dialogs->correctLine;
    if (!correctLine(patch, doc.capture->capturedPointSection,
                     {doc.capture->capturedPoint, doc.capture->capturedLine, v.linesBefore, v.linesAfter, v.power},
                     doc.fieldOfPatch(doc.capture->capturedPatch))) {
        return false;
    }
    doc.capture.renumberLine(v.linesBefore - 1);
    doc.capture.renumberPoint(doc.capture->capturedPointSection, v.linesBefore - 1);
    return true;
}

} // namespace

void VelmoraDoc::CorrectLine() {
    if (sectionAt(capture->capturedPatch, 0) == nullptr ||
        !isGrid(patches[static_cast<std::size_t>(capture->capturedPatch)])) {
        return;
    }
    const bool sections = capture->sectionCaptured;
    if (sections) {
        turnCapturedPatch(*this);
    }
    const bool confirmed = askForCorrection(*this);
    if (sections) {
        turnCapturedPatch(*this);
    }
    if (!confirmed) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    SavePointUndo();
    pointUndoReady = true;
    capture.savePoint();
    capture.saveCurve();
    if (sections) {
        turnCapturedPatch(*this);
    }
    const bool corrected = correctCapturedLine(*this);
    if (sections) {
        turnCapturedPatch(*this);
    }
    if (corrected) {
        redraw();
    }
}

} // namespace velmora

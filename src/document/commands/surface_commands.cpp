#include <algorithm>
#include <utility>

#include "VelmoraDoc.h"
#include "coons_rebuild.h"
#include "correct_line.h"
#include "interpolate_section.h"
#include "messages.h"
#include "patch_curves.h"
#include "patch_order.h"
#include "smooth_patch.h"

namespace velmora {

// Commands that rebuild the inside of whole patches, or move one curve inside of a patch.

namespace {

/// The snapshot, and what a kernel keeps of a patch as it works.
constexpr double workingCopies = 4.0;

} // namespace

std::vector<std::int32_t> VelmoraDoc::chosenInModelOrder() const {
    const std::vector<bool> chosen = chosenMask();
    std::vector<std::int32_t> numbers;
    for (std::int32_t k = 0; k < countOf(patches); ++k) {
        if (chosen[static_cast<std::size_t>(k)]) {
            numbers.push_back(k);
        }
    }
    return numbers;
}

void VelmoraDoc::turnCapturedPatch() {
    if (capture->capturedPatch >= 0 && capture->capturedPatch < countOf(patches) &&
        (blockCount < 1 || inBlock(capture->capturedPatch))) {
        Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
        if (isGrid(patch)) {
            if (Patch* const field = fieldOfPatch(capture->capturedPatch)) {
                *field = transposed(*field);
            }
            patch = transposed(patch);
        }
    }
    exchangeCapture();
}

void VelmoraDoc::CoonsRebuild() {
    if (workingCopies * bytesOf(patches) > memoryRoom(0.0).free) {
        ui_.showMessage(message::notEnoughMemory);
        return;
    }
    beginPatchCommand(false);
    for (const std::int32_t k : chosenInModelOrder()) {
        coonsRebuild(patches[static_cast<std::size_t>(k)]);
    }
    followCapturedPoint();
    redraw();
}

void VelmoraDoc::SmoothGeometry() {
    if (!showDialog(smoothValues)) {
        return;
    }
    beginPatchCommand(false);
    bool spline = smoothValues.function == 1;
    for (const std::int32_t k : chosenInModelOrder()) {
        Patch& patch = patches[static_cast<std::size_t>(k)];
        if (smoothValues.regime == 2 || smoothValues.regime == 4) {
            smoothLines(patch, spline);
        }
        if (smoothValues.regime != 2) {
            smoothSections(patch, spline);
        }
        if (smoothValues.regime == 3) {
            smoothLines(patch, spline);
        }
    }
    smoothValues.function = spline ? 1 : 2; // coincident points turn it to Linear, for the next call too
    followCapturedPoint();
    redraw();
}

// ---- One curve ------------------------------------------------------------------------------------------------------

void VelmoraDoc::Interpolate() {
    interpolateValues.pointClipboardFull = pointClipboardFull;
    interpolateValues.room = memoryRoom(workingCopies * bytesOf(patches));
    if (!showDialog(interpolateValues)) {
        return;
    }
    beginPatchCommand(false);
    const bool lines = capture->lineCaptured;
    const bool exists = sectionAt(capture->capturedPatch, 0) != nullptr &&
                        (!lines || isGrid(patches[static_cast<std::size_t>(capture->capturedPatch)]));
    if (!exists) {
        return;
    }
    if (lines) {
        turnCapturedPatch();
    }
    Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    const Interpolation outcome =
        interpolateValues.fitToBuffer
            ? interpolateToPoint(patch, capture->capturedSection, pointClipboard)
            : interpolateSection(patch, capture->capturedSection, interpolateValues.coefficient);
    if (lines) {
        turnCapturedPatch();
    }
    switch (outcome) {
    case Interpolation::Done:
        followCapturedPoint();
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

void VelmoraDoc::CorrectLine() {
    if (sectionAt(capture->capturedPatch, 0) == nullptr ||
        !isGrid(patches[static_cast<std::size_t>(capture->capturedPatch)])) {
        return;
    }
    const bool sections = capture->sectionCaptured;
    if (sections) {
        turnCapturedPatch();
    }
    const bool confirmed = askForCorrection();
    if (sections) {
        turnCapturedPatch();
    }
    if (!confirmed) {
        return;
    }
    beginPatchCommand(false);
    SavePointUndo();
    pointUndoReady = true;
    capture.savePoint();
    capture.saveCurve();
    if (sections) {
        turnCapturedPatch();
    }
    const bool corrected = correctCapturedLine();
    if (sections) {
        turnCapturedPatch();
    }
    if (corrected) {
        redraw();
    }
}

/// Shows the dialog for the captured line. False for Cancel, and where there is nothing to correct.
bool VelmoraDoc::askForCorrection() {
    if (capture->capturedPoint == capture->capturedLine) {
        ui_.showMessage(message::correctionHasNoAction);
        return false;
    }
    const Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    correctLineValues = {capture->capturedLine + 1, lineCount(patch) - capture->capturedLine, CCorrectLine().power};
    correctLineValues.room = memoryRoom(static_cast<double>(patch.size()) * bytesOfPoint);
    return showDialog(correctLineValues);
}

/// Bends the captured line. False leaves model and capture as they were.
bool VelmoraDoc::correctCapturedLine() {
    Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    const CCorrectLine& v = correctLineValues;
    if (!correctLine(patch, capture->capturedPointSection,
                     {capture->capturedPoint, capture->capturedLine, v.linesBefore, v.linesAfter, v.power},
                     fieldOfPatch(capture->capturedPatch))) {
        return false;
    }
    capture.renumberLine(v.linesBefore - 1);
    capture.renumberPoint(capture->capturedPointSection, v.linesBefore - 1);
    return true;
}

} // namespace velmora

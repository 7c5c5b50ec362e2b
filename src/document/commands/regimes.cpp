#include <algorithm>

#include "VelmoraDoc.h"
#include "messages.h"

namespace velmora {

// What the user meets when the capture changes: questions, mouse modes, status texts, pictures. What is captured, and
// what each step changes in it, is Capture's.

// ---- Leaving what stands in the way ---------------------------------------------------------------------------------

/// Leaves the point regime when it has its point; one that still waits for the click stays.
void VelmoraDoc::letPointGo() {
    if (capture->pointHeld()) {
        ExitPointRegime();
    }
}

/// Leaves the line regime when it has its section or line.
void VelmoraDoc::letCurveGo() {
    if (capture->curveHeld()) {
        ExitLineRegime();
    }
}

/// Leaves the point regime, also one that waits for the click.
void VelmoraDoc::leavePointRegime() {
    if (capture->pointRegimeActive()) {
        ExitPointRegime();
    }
}

/// The point regime and the line regime, in this order.
void VelmoraDoc::leavePointAndCurves() {
    leavePointRegime();
    if (capture->curveRegimeActive()) {
        ExitLineRegime();
    }
}

// ---- Points ---------------------------------------------------------------------------------------------------------

void VelmoraDoc::CapturePoint() {
    capture.armPoint();
    forceMouseMode(ModePoint);
    ShowStatus(capture->pointStatus);
}

void VelmoraDoc::CaptureFreePoint() {
    capture.armFreePoint();
    ShowStatus(capture->pointStatus);
}

void VelmoraDoc::CaptureFreePointInPointRegime() {
    forceMouseMode(ModePoint);
    CaptureFreePoint();
}

void VelmoraDoc::ExitPointRegime() {
    capture.leavePoint();
    pointUndoReady = false;
    if (capture->sectionCaptured || capture->sectionCaptureArmed) {
        forceMouseMode(ModeSection);
        ShowStatus(capture->continuePrompt);
    } else if (capture->patchRegimeActive()) {
        forceMouseMode(ModePatch);
        ShowStatus(capture->continuePrompt);
    } else {
        resetMouseMode();
    }
    redraw();
}

void VelmoraDoc::ExitPoint() {
    ExitPointRegime();
    showIdlePrompt();
}

// ---- Sections and lines ---------------------------------------------------------------------------------------------

void VelmoraDoc::CaptureSection() {
    armCurveCapture(true);
}

void VelmoraDoc::CaptureLine() {
    armCurveCapture(false);
}

void VelmoraDoc::armCurveCapture(bool section) {
    if (capture->patchCaptureArmed && !ui_.ask(message::leaveAddRegime)) {
        return;
    }
    letPointGo();
    if (section ? capture->lineCaptured : capture->sectionCaptured) {
        ExitLineRegime();
    }
    section ? capture.armSection() : capture.armLine();
    forceMouseMode(section ? ModeSection : ModeLine);
    ShowStatus(capture->dragPrompt);
}

void VelmoraDoc::NextSectionOrLine() {
    if (capture->sectionCaptured) {
        CaptureSection();
    } else if (capture->lineCaptured) {
        CaptureLine();
    }
}

InputContext VelmoraDoc::inputContext(bool lines) const {
    InputContext context;
    context.curveCounts.reserve(patches.size());
    for (const Patch& patch : patches) {
        context.curveCounts.push_back(lines ? lineCount(patch) : countOf(patch));
    }
    context.block.assign(blockList.begin(), blockList.begin() + blockCount);
    return context;
}

void VelmoraDoc::InputSection() {
    inputSectionValues.maximumPatches = countOf(patches);
    if (capture->capturedPatch >= 0) {
        inputSectionValues.patch = capture->capturedPatch + 1;
    }
    if (capture->capturedSection >= 0) {
        inputSectionValues.section = capture->capturedSection + 1;
    }
    if (showDialog(inputSectionValues, inputContext(false))) {
        holdInputCurve(true, inputSectionValues.patch - 1, inputSectionValues.section - 1);
    }
}

void VelmoraDoc::InputLine() {
    inputLineValues.maximumPatches = countOf(patches);
    if (capture->capturedPatch >= 0) {
        inputLineValues.patch = capture->capturedPatch + 1;
    }
    if (capture->capturedLine >= 0) {
        inputLineValues.line = capture->capturedLine + 1;
    }
    if (showDialog(inputLineValues, inputContext(true))) {
        holdInputCurve(false, inputLineValues.patch - 1, inputLineValues.line - 1);
    }
}

void VelmoraDoc::holdInputCurve(bool section, std::int32_t patch, std::int32_t curve) {
    letPointGo();
    if (capture->lineCaptured || (!section && capture->sectionCaptured)) {
        ExitLineRegime();
    }
    if (section) {
        const PointList* points = sectionAt(patch, curve);
        capture.holdSection(patch, curve, points != nullptr ? countOf(*points) : 0);
    } else {
        capture.holdLine(patch, curve);
    }
    forceMouseMode(section ? ModeSection : ModeLine);
    ShowStatus(curve < 0 ? capture->dragPrompt
               : section ? capture->sectionContinueStatus
                         : capture->lineContinueStatus);
    redraw();
}

void VelmoraDoc::ExitLineRegime() {
    letPointGo();
    const bool wasActive = capture->curveRegimeActive();
    capture.leaveCurve();
    if (wasActive) {
        dropEmptyPatchesFromBlock();
    }
    if (capture->patchRegimeActive()) {
        setMouseMode(ModePatch);
        refillStatus();
        ShowStatus(capture->blockStatus);
    } else {
        resetMouseMode();
    }
    redraw();
}

void VelmoraDoc::ExitLines() {
    ExitLineRegime();
    showIdlePrompt();
}

void VelmoraDoc::dropEmptyPatchesFromBlock() {
    const auto end = blockList.begin() + blockCount;
    const auto kept = std::remove_if(blockList.begin(), end, [this](std::int32_t patch) {
        return patch >= 0 && patch < countOf(patches) && patches[static_cast<std::size_t>(patch)].empty();
    });
    std::fill(kept, end, -1);
    blockCount = static_cast<std::int32_t>(kept - blockList.begin());
}

// ---- Patches and the zBlock -----------------------------------------------------------------------------------------

void VelmoraDoc::CapturePatch() {
    capture.disarmForPatch();
    letPointGo();
    letCurveGo();
    armPatchCapture();
    ShowStatus(capture->patchStatus);
}

void VelmoraDoc::AddPatchToBlock() {
    if (blockCount >= blockCapacity) {
        ui_.showMessage(message::blockIsFull);
        return;
    }
    leavePointAndCurves();
    armPatchCapture();
}

void VelmoraDoc::armPatchCapture() {
    capture.armPatch();
    forceMouseMode(ModePatch);
}

void VelmoraDoc::RemovePatchFromBlock() {
    capture.armRemoval();
    leavePointAndCurves();
    // One click does one thing: what waited for a patch to add has the zBlock captured from here on.
    capture.disarmForRemoval();
    ShowStatus(capture->removeStatus);
    forceMouseMode(ModePatch);
}

void VelmoraDoc::NewBlock() {
    emptyBlock();
    showBlockOnly = false;
    redrawPicture();
    AddPatchToBlock();
}

void VelmoraDoc::emptyBlock() {
    blockList.fill(-1);
    blockCount = 0;
}

void VelmoraDoc::InputPatch() {
    inputPatchValues.maximum = partCount();
    if (inputPatchValues.maximum < 1 || !showDialog(inputPatchValues)) {
        return;
    }
    const std::int32_t patch = inputPatchValues.number - 1;
    const bool joins = !inBlock(patch);
    if (joins && blockCount >= blockCapacity) {
        ui_.showMessage(message::blockIsFull);
        return;
    }
    capture.disarmForPatchNumber();
    letPointGo();
    letCurveGo();
    capture.holdPatch(patch, joins);
    forceMouseMode(ModePatch);
    if (joins) {
        blockList[static_cast<std::size_t>(blockCount)] = patch;
        ++blockCount;
        ShowStatus(capture->blockStatus);
    }
    redraw();
}

void VelmoraDoc::ExitPatchRegime() {
    letCurveGo();
    leavePointRegime(); // its point is one of a patch that is about to be let go
    capture.forgetPatch();
    showBlockOnly = false;
    emptyBlock();
    EndBlockRegime();
}

void VelmoraDoc::ExitPatches() {
    ExitPatchRegime();
    showIdlePrompt();
}

void VelmoraDoc::EndBlockRegime() {
    capture.leavePatch(blockCount == 0);
    pointUndoReady = false;
    resetMouseMode();
    emptyBlock();
    showBlockOnly = false;
    redraw();
}

void VelmoraDoc::leaveRegimes() {
    capture.releaseCorrection();
    leavePointRegime();
    if (capture->patchRegimeActive()) {
        ExitPatchRegime();
    }
    if (capture->curveRegimeActive()) {
        ExitLineRegime();
    }
    capture.forgetNumbers();
    emptyBlock();
}

// ---- The left button comes up ---------------------------------------------------------------------------------------

void VelmoraDoc::moveRegimeAtRelease() {
    if (capture->pointCaptureArmed) {
        ShowStatus(capture.releasePoint() ? capture->pointContinueStatus : capture->dragPrompt);
    }
    if (capture->freePointArmed) {
        ShowStatus(capture.releaseFreePoint() ? capture->pointContinueStatus : capture->dragPrompt);
    }
    if (capture->pointDragging) {
        capture.releaseDrag();
        refillStatus();
        ShowStatus(capture->pointContinueStatus);
    }
    if (capture->patchCaptureArmed) {
        joinBlockAtRelease();
    }
    if (capture->patchRemoving) {
        removeFromBlockAtRelease();
    } else {
        takeCurveAtRelease();
    }
}

void VelmoraDoc::joinBlockAtRelease() {
    capture.releasePatch();
    if (!inBlock(capture->capturedPatch) && capture->capturedPatch >= 0) {
        if (blockCount >= blockCapacity) {
            ui_.showMessage(message::blockIsFull);
        } else {
            blockList[static_cast<std::size_t>(blockCount)] = capture->capturedPatch;
            ++blockCount;
            ShowStatus(capture->patchStatus);
        }
    }
    redrawHighlight();
}

void VelmoraDoc::removeFromBlockAtRelease() {
    capture.releaseRemoval();
    const auto end = blockList.begin() + blockCount;
    const auto found = std::find(blockList.begin(), end, capture->patchToRemove);
    if (found != end) {
        std::move(found + 1, end, found);
        *(end - 1) = -1;
        --blockCount;
        if (blockCount == 0) {
            EndBlockRegime();
        }
    }
    ShowStatus(capture->removeStatus);
    redrawHighlight();
}

void VelmoraDoc::takeCurveAtRelease() {
    if (capture->sectionCaptureArmed) {
        ShowStatus(capture.releaseSection() ? capture->sectionContinueStatus : capture->dragPrompt);
    }
    if (capture->lineCaptureArmed) {
        ShowStatus(capture.releaseLine() ? capture->lineContinueStatus : capture->dragPrompt);
    }
}

} // namespace velmora

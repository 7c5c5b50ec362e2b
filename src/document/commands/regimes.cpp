#include <algorithm>

#include "VelmoraDoc.h"
#include "messages.h"
#include "status_texts.h"

namespace velmora {

namespace {

constexpr const char* findPatchPrompt = "Find patch and click it";

} // namespace

// ---- Points ---------------------------------------------------------------------------------------------------------

void VelmoraDoc::armPointCapture() {
    capturedPoint = -1;
    if (capturedSection < 0 && capturedLine < 0) {
        capturedPatch = -1;
    }
    patchCaptureArmed = false;
    patchRemoving = false;
    sectionCaptureArmed = lineCaptureArmed = false;
    pointStatus = dragPrompt;
    ShowStatus(pointStatus);
}

void VelmoraDoc::CapturePoint() {
    pointCaptureArmed = true;
    pointCaptured = false;
    freePointArmed = false;
    freePointHeld = false;
    pointPicked = false;
    forceMouseMode(ModePoint);
    armPointCapture();
}

void VelmoraDoc::CaptureFreePoint() {
    freePointArmed = true;
    freePointHeld = false;
    armPointCapture();
}

void VelmoraDoc::CaptureFreePointInPointRegime() {
    forceMouseMode(ModePoint);
    CaptureFreePoint();
}

void VelmoraDoc::ExitPointRegime() {
    pointCaptureArmed = pointCaptured = freePointArmed = freePointHeld = false;
    pointDragging = false;
    dragCorrectsLine = false;
    pointPicked = false;
    pointUndoReady = false;
    if (sectionCaptured || sectionCaptureArmed) {
        forceMouseMode(ModeSection);
        ShowStatus(continuePrompt);
    } else if (patchRegimeActive()) {
        forceMouseMode(ModePatch);
        ShowStatus(continuePrompt);
    } else {
        resetMouseMode();
    }
    if (capturedSection < 0 && capturedLine < 0) {
        capturedPatch = -1;
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
    if (patchCaptureArmed && !ui_.ask(message::leaveAddRegime)) {
        return;
    }
    if (pointCaptured || freePointHeld) {
        ExitPointRegime();
    }
    if (section ? lineCaptured : sectionCaptured) {
        ExitLineRegime();
    }
    (section ? capturedSection : capturedLine) = -1;
    capturedPatch = -1;
    pointCaptureArmed = freePointArmed = patchCaptureArmed = patchRemoving = false;
    sectionCaptureArmed = section;
    lineCaptureArmed = !section;
    sectionCaptured = lineCaptured = false;
    forceMouseMode(section ? ModeSection : ModeLine);
    (section ? sectionStatus : lineStatus) = dragPrompt;
    ShowStatus(dragPrompt);
}

void VelmoraDoc::NextSectionOrLine() {
    if (sectionCaptured) {
        CaptureSection();
    } else if (lineCaptured) {
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
    if (capturedPatch >= 0) {
        inputSectionValues.patch = capturedPatch + 1;
    }
    if (capturedSection >= 0) {
        inputSectionValues.section = capturedSection + 1;
    }
    if (showDialog(inputSectionValues, inputContext(false))) {
        holdInputCurve(true, inputSectionValues.patch - 1, inputSectionValues.section - 1);
    }
}

void VelmoraDoc::InputLine() {
    inputLineValues.maximumPatches = countOf(patches);
    if (capturedPatch >= 0) {
        inputLineValues.patch = capturedPatch + 1;
    }
    if (capturedLine >= 0) {
        inputLineValues.line = capturedLine + 1;
    }
    if (showDialog(inputLineValues, inputContext(true))) {
        holdInputCurve(false, inputLineValues.patch - 1, inputLineValues.line - 1);
    }
}

void VelmoraDoc::holdInputCurve(bool section, std::int32_t patch, std::int32_t curve) {
    if (pointCaptured || freePointHeld) {
        ExitPointRegime();
    }
    if (lineCaptured || (!section && sectionCaptured)) {
        ExitLineRegime();
    }
    pointCaptureArmed = freePointArmed = patchCaptureArmed = patchRemoving = false;
    sectionCaptureArmed = lineCaptureArmed = false;
    sectionCaptured = section;
    lineCaptured = !section;
    capturedPatch = patch;
    (section ? capturedSection : capturedLine) = curve;
    forceMouseMode(section ? ModeSection : ModeLine);
    if (curve < 0) {
        ShowStatus(dragPrompt);
    } else if (section) {
        const PointList* points = sectionAt(patch, curve);
        sectionStatus = capturedSectionText(patch, curve, points != nullptr ? countOf(*points) : 0);
        sectionContinueStatus = sectionStatus + curveContinueClause;
        ShowStatus(sectionContinueStatus);
    } else {
        lineContinueStatus = inputtedLineText(patch, curve);
        ShowStatus(lineContinueStatus);
    }
    redraw();
}

void VelmoraDoc::ExitLineRegime() {
    if (pointCaptured || freePointHeld) {
        ExitPointRegime();
    }
    const bool wasActive = curveRegimeActive();
    if (sectionCaptured || sectionCaptureArmed) {
        sectionCaptured = sectionCaptureArmed = false;
        capturedSection = -1;
    }
    if (lineCaptured || lineCaptureArmed) {
        lineCaptured = lineCaptureArmed = false;
        capturedLine = -1;
    }
    if (wasActive) {
        dropEmptyPatchesFromBlock();
    }
    if (patchRegimeActive()) {
        setMouseMode(ModePatch);
        ShowStatus(blockStatus);
    } else {
        resetMouseMode();
    }
    capturedPatch = -1;
    pointPicked = false;
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
    sectionCaptureArmed = lineCaptureArmed = pointCaptureArmed = freePointArmed = false;
    if (pointCaptured || freePointHeld) {
        ExitPointRegime();
    }
    if (sectionCaptured || lineCaptured) {
        ExitLineRegime();
    }
    armPatchCapture();
    ShowStatus(patchStatus);
}

void VelmoraDoc::AddPatchToBlock() {
    if (blockCount >= blockCapacity) {
        ui_.showMessage(message::blockIsFull);
        return;
    }
    if (pointRegimeActive()) {
        ExitPointRegime();
    }
    if (curveRegimeActive()) {
        ExitLineRegime();
    }
    armPatchCapture();
}

void VelmoraDoc::armPatchCapture() {
    capturedPatch = -1;
    patchCaptureArmed = true;
    patchCaptured = patchRemoving = false;
    forceMouseMode(ModePatch);
    patchStatus = findPatchPrompt;
}

void VelmoraDoc::RemovePatchFromBlock() {
    patchRemoving = true;
    if (pointRegimeActive()) {
        ExitPointRegime();
    }
    if (curveRegimeActive()) {
        ExitLineRegime();
    }
    // One click does one thing: what waited for a patch to add has the zBlock captured from here on.
    patchCaptured = patchCaptured || patchCaptureArmed;
    patchCaptureArmed = false;
    removeStatus = findPatchPrompt;
    ShowStatus(removeStatus);
    forceMouseMode(ModePatch);
}

void VelmoraDoc::NewBlock() {
    emptyBlock();
    showBlockOnly = false;
    redraw();
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
    sectionCaptureArmed = pointCaptureArmed = false;
    if (pointCaptured || freePointHeld) {
        ExitPointRegime();
    }
    if (sectionCaptured || lineCaptured) {
        ExitLineRegime();
    }
    capturedPatch = patch;
    patchCaptureArmed = patchRemoving = false;
    patchCaptured = true;
    forceMouseMode(ModePatch);
    if (joins) {
        blockList[static_cast<std::size_t>(blockCount)] = patch;
        ++blockCount;
        blockStatus = capturedPatchText(patch);
        ShowStatus(blockStatus);
    }
    redraw();
}

void VelmoraDoc::ExitPatchRegime() {
    if (sectionCaptured || lineCaptured) {
        ExitLineRegime();
    }
    if (pointRegimeActive()) {
        ExitPointRegime(); // its point is one of a patch that is about to be let go
    }
    capturedPatch = -1;
    showBlockOnly = false;
    emptyBlock();
    EndBlockRegime();
}

void VelmoraDoc::ExitPatches() {
    ExitPatchRegime();
    showIdlePrompt();
}

void VelmoraDoc::EndBlockRegime() {
    patchCaptureArmed = patchCaptured = false;
    patchRemoving = false;
    pointUndoReady = false;
    pointPicked = false;
    resetMouseMode();
    if (blockCount == 0) {
        removeStatus = "Choose any item from menu to continue";
    }
    emptyBlock();
    showBlockOnly = false;
    redraw();
}

void VelmoraDoc::leaveRegimes() {
    dragCorrectsLine = false;
    if (pointRegimeActive()) {
        ExitPointRegime();
    }
    if (patchRegimeActive()) {
        ExitPatchRegime();
    }
    if (curveRegimeActive()) {
        ExitLineRegime();
    }
    capturedPatch = capturedPointSection = capturedPoint = capturedSection = capturedLine = -1;
    emptyBlock();
}

// ---- The left button comes up ---------------------------------------------------------------------------------------

void VelmoraDoc::moveRegimeAtRelease() {
    if (pointCaptureArmed) {
        takePointAtRelease(pointCaptureArmed, pointCaptured);
    }
    if (freePointArmed) {
        takePointAtRelease(freePointArmed, freePointHeld);
    }
    if (pointDragging) {
        endDragAtRelease();
    }
    if (patchCaptureArmed) {
        joinBlockAtRelease();
    }
    if (patchRemoving) {
        removeFromBlockAtRelease();
    } else {
        takeCurveAtRelease();
    }
}

void VelmoraDoc::endDragAtRelease() {
    pointDragging = false;
    namePointByCurve();
    ShowStatus(pointContinueStatus);
}

void VelmoraDoc::joinBlockAtRelease() {
    patchCaptureArmed = false;
    patchCaptured = true;
    if (!inBlock(capturedPatch) && capturedPatch >= 0) {
        if (blockCount >= blockCapacity) {
            ui_.showMessage(message::blockIsFull);
        } else {
            blockList[static_cast<std::size_t>(blockCount)] = capturedPatch;
            ++blockCount;
            ShowStatus(patchStatus);
        }
    }
    redraw();
}

void VelmoraDoc::removeFromBlockAtRelease() {
    removeStatus = continuePrompt;
    patchRemoving = false;
    const auto end = blockList.begin() + blockCount;
    const auto found = std::find(blockList.begin(), end, patchToRemove);
    if (found != end) {
        std::move(found + 1, end, found);
        *(end - 1) = -1;
        --blockCount;
        if (blockCount == 0) {
            EndBlockRegime();
        }
    }
    ShowStatus(removeStatus);
    redraw();
}

void VelmoraDoc::takePointAtRelease(bool& armed, bool& captured) {
    if (pointPicked) {
        armed = false;
        captured = true;
        ShowStatus(pointContinueStatus);
    } else {
        ShowStatus(dragPrompt);
    }
}

void VelmoraDoc::takeCurveAtRelease() {
    if (sectionCaptureArmed) {
        const bool found = capturedSection >= 0;
        sectionCaptureArmed = !found;
        sectionCaptured = found;
        ShowStatus(found ? sectionContinueStatus : dragPrompt);
    }
    if (lineCaptureArmed) {
        const bool found = capturedLine >= 0;
        lineCaptureArmed = !found;
        lineCaptured = found;
        ShowStatus(found ? lineContinueStatus : dragPrompt);
    }
}

} // namespace velmora

#include "regimes.h"

#include <algorithm>

#include "Act.h"
#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "messages.h"
#include "show_dialog.h"

namespace velmora {

// What the user meets when the capture changes: questions, mouse modes, status texts, pictures. What is captured, and
// what each step changes in it, is Capture's.

// ---- Leaving what stands in the way ---------------------------------------------------------------------------------

namespace {

/// Leaves the point regime when it has its point; one that still waits for the click stays.
void letPointGo(VelmoraDoc& doc) {
    if (doc.capture->pointHeld()) {
        doc.ExitPointRegime();
    }
}

} // namespace

void letCurveGo(VelmoraDoc& doc) {
    if (doc.capture->curveHeld()) {
        doc.ExitLineRegime();
    }
}

void leavePointRegime(VelmoraDoc& doc) {
    if (doc.capture->pointRegimeActive()) {
        doc.ExitPointRegime();
    }
}

void leavePointAndCurves(VelmoraDoc& doc) {
    leavePointRegime(doc);
    if (doc.capture->curveRegimeActive()) {
        doc.ExitLineRegime();
    }
}

void showIdlePrompt(VelmoraDoc& doc) {
    if (!doc.capture->pointRegimeActive() && !doc.capture->curveRegimeActive() && !doc.capture->patchRegimeActive()) {
        doc.ShowStatus(idlePrompt);
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
    showIdlePrompt(*this);
}

// ---- Sections and lines ---------------------------------------------------------------------------------------------

namespace {

void armCurveCapture(VelmoraDoc& doc, bool section) {
    if (doc.capture->patchCaptureArmed && !doc.ui().ask(message::leaveAddRegime)) {
        return;
    }
    letPointGo(doc);
    if (section ? doc.capture->lineCaptured : doc.capture->sectionCaptured) {
        doc.ExitLineRegime();
    }
    section ? doc.capture.armSection() : doc.capture.armLine();
    doc.forceMouseMode(section ? ModeSection : ModeLine);
    doc.ShowStatus(doc.capture->dragPrompt);
}

} // namespace

void VelmoraDoc::CaptureSection() {
    armCurveCapture(*this, true);
}

void VelmoraDoc::CaptureLine() {
    armCurveCapture(*this, false);
}

void VelmoraDoc::NextSectionOrLine() {
    if (capture->sectionCaptured) {
        CaptureSection();
    } else if (capture->lineCaptured) {
        CaptureLine();
    }
}

namespace {

InputContext inputContext(const VelmoraDoc& doc, bool lines) {
    InputContext context;
    context.curveCounts.reserve(doc.patches.size());
    for (const Patch& patch : doc.patches) {
        context.curveCounts.push_back(lines ? lineCount(patch) : countOf(patch));
    }
    context.block.assign(doc.blockList.begin(), doc.blockList.begin() + doc.blockCount);
    return context;
}

void holdInputCurve(VelmoraDoc& doc, bool section, std::int32_t patch, std::int32_t curve) {
    letPointGo(doc);
    if (doc.capture->lineCaptured || (!section && doc.capture->sectionCaptured)) {
        doc.ExitLineRegime();
    }
    if (section) {
        const PointList* points = doc.sectionAt(patch, curve);
        doc.capture.holdSection(patch, curve, points != nullptr ? countOf(*points) : 0);
    } else {
        doc.capture.holdLine(patch, curve);
    }
    doc.forceMouseMode(section ? ModeSection : ModeLine);
    doc.ShowStatus(curve < 0 ? doc.capture->dragPrompt
                   : section ? doc.capture->sectionContinueStatus
                             : doc.capture->lineContinueStatus);
    doc.redraw();
}

} // namespace

void VelmoraDoc::InputSection() {
    dialogs->inputSection.maximumPatches = countOf(patches);
    if (capture->capturedPatch >= 0) {
        dialogs->inputSection.patch = capture->capturedPatch + 1;
    }
    if (capture->capturedSection >= 0) {
        dialogs->inputSection.section = capture->capturedSection + 1;
    }
    if (showDialog(ui_, dialogs->inputSection, inputContext(*this, false))) {
        holdInputCurve(*this, true, dialogs->inputSection.patch - 1, dialogs->inputSection.section - 1);
    }
}

void VelmoraDoc::InputLine() {
    dialogs->inputLine.maximumPatches = countOf(patches);
    if (capture->capturedPatch >= 0) {
        dialogs->inputLine.patch = capture->capturedPatch + 1;
    }
    if (capture->capturedLine >= 0) {
        dialogs->inputLine.line = capture->capturedLine + 1;
    }
    if (showDialog(ui_, dialogs->inputLine, inputContext(*this, true))) {
        holdInputCurve(*this, false, dialogs->inputLine.patch - 1, dialogs->inputLine.line - 1);
    }
}

namespace {

void dropEmptyPatchesFromBlock(VelmoraDoc& doc) {
    const auto end = doc.blockList.begin() + doc.blockCount;
    const auto kept = std::remove_if(doc.blockList.begin(), end, [&doc](std::int32_t patch) {
        return patch >= 0 && patch < countOf(doc.patches) && doc.patches[static_cast<std::size_t>(patch)].empty();
    });
    std::fill(kept, end, -1);
    doc.blockCount = static_cast<std::int32_t>(kept - doc.blockList.begin());
}

} // namespace

void VelmoraDoc::ExitLineRegime() {
    letPointGo(*this);
    const bool wasActive = capture->curveRegimeActive();
    capture.leaveCurve();
    if (wasActive) {
        dropEmptyPatchesFromBlock(*this);
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
    showIdlePrompt(*this);
}

// ---- Patches and the zBlock -----------------------------------------------------------------------------------------

namespace {

void armPatchCapture(VelmoraDoc& doc) {
    doc.capture.armPatch();
    doc.forceMouseMode(ModePatch);
}

} // namespace

void VelmoraDoc::CapturePatch() {
    capture.disarmForPatch();
    letPointGo(*this);
    letCurveGo(*this);
    armPatchCapture(*this);
    ShowStatus(capture->patchStatus);
}

void VelmoraDoc::AddPatchToBlock() {
    if (blockCount >= blockCapacity) {
        ui_.showMessage(message::blockIsFull);
        return;
    }
    leavePointAndCurves(*this);
    armPatchCapture(*this);
}

void VelmoraDoc::RemovePatchFromBlock() {
    capture.armRemoval();
    leavePointAndCurves(*this);
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

void VelmoraDoc::InputPatch() {
    dialogs->inputPatch.maximum = partCount();
    if (dialogs->inputPatch.maximum < 1 || !showDialog(ui_, dialogs->inputPatch)) {
        return;
    }
    const std::int32_t patch = dialogs->inputPatch.number - 1;
    const bool joins = !inBlock(patch);
    if (joins && blockCount >= blockCapacity) {
        ui_.showMessage(message::blockIsFull);
        return;
    }
    capture.disarmForPatchNumber();
    letPointGo(*this);
    letCurveGo(*this);
    capture.holdPatch(patch, joins);
    forceMouseMode(ModePatch);
    if (joins) {
        blockList[static_cast<std::size_t>(blockCount)] = patch;
        ++blockCount;
        ShowStatus(capture->blockStatus);
    }
    redrawPicture();
}

void VelmoraDoc::ExitPatchRegime() {
    letCurveGo(*this);
    leavePointRegime(*this); // its point is one of a patch that is about to be let go
    capture.forgetPatch();
    showBlockOnly = false;
    emptyBlock();
    EndBlockRegime();
}

void VelmoraDoc::ExitPatches() {
    ExitPatchRegime();
    showIdlePrompt(*this);
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
    leavePointRegime(*this);
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

namespace {

void tellPoint(VelmoraDoc& doc) {
    const CaptureState& now = *doc.capture;
    doc.ui().tellAct(doc.structureKind == StructureKind::Unstructured
                         ? Act{.kind = Act::Kind::Node, .patch = now.capturedPatch, .point = now.capturedPoint}
                         : Act{.kind = Act::Kind::Point,
                               .patch = now.capturedPatch,
                               .section = now.capturedPointSection,
                               .point = now.capturedPoint});
}

void takePointAtRelease(VelmoraDoc& doc) {
    if (doc.capture->pointCaptureArmed) {
        const bool taken = doc.capture.releasePoint();
        doc.ShowStatus(taken ? doc.capture->pointContinueStatus : doc.capture->dragPrompt);
        if (taken) {
            tellPoint(doc);
        }
    }
    if (doc.capture->freePointArmed) {
        const bool taken = doc.capture.releaseFreePoint();
        doc.ShowStatus(taken ? doc.capture->pointContinueStatus : doc.capture->dragPrompt);
        if (taken) {
            tellPoint(doc);
        }
    }
}

void joinBlockAtRelease(VelmoraDoc& doc) {
    doc.capture.releasePatch();
    doc.ui().tellAct({.kind = Act::Kind::WholePatch, .patch = doc.capture->capturedPatch});
    if (!doc.inBlock(doc.capture->capturedPatch) && doc.capture->capturedPatch >= 0) {
        if (doc.blockCount >= blockCapacity) {
            doc.ui().showMessage(message::blockIsFull);
        } else {
            doc.blockList[static_cast<std::size_t>(doc.blockCount)] = doc.capture->capturedPatch;
            ++doc.blockCount;
            doc.ShowStatus(doc.capture->patchStatus);
        }
    }
    doc.redrawHighlight();
}

void removeFromBlockAtRelease(VelmoraDoc& doc) {
    doc.capture.releaseRemoval();
    doc.ui().tellAct({.kind = Act::Kind::WholePatch, .patch = doc.capture->patchToRemove});
    const auto end = doc.blockList.begin() + doc.blockCount;
    const auto found = std::find(doc.blockList.begin(), end, doc.capture->patchToRemove);
    if (found != end) {
        std::move(found + 1, end, found);
        *(end - 1) = -1;
        --doc.blockCount;
        if (doc.blockCount == 0) {
            doc.EndBlockRegime();
        }
    }
    doc.ShowStatus(doc.capture->removeStatus);
    doc.redrawHighlight();
}

void takeCurveAtRelease(VelmoraDoc& doc) {
    if (doc.capture->sectionCaptureArmed) {
        const bool taken = doc.capture.releaseSection();
        doc.ShowStatus(taken ? doc.capture->sectionContinueStatus : doc.capture->dragPrompt);
        if (taken) {
            doc.ui().tellAct({.kind = Act::Kind::Section,
                              .patch = doc.capture->capturedPatch,
                              .section = doc.capture->capturedSection});
        }
    }
    if (doc.capture->lineCaptureArmed) {
        const bool taken = doc.capture.releaseLine();
        doc.ShowStatus(taken ? doc.capture->lineContinueStatus : doc.capture->dragPrompt);
        if (taken) {
            doc.ui().tellAct(
                {.kind = Act::Kind::Line, .patch = doc.capture->capturedPatch, .point = doc.capture->capturedLine});
        }
    }
}

void takePartAtRelease(VelmoraDoc& doc) {
    if (doc.capture->patchCaptureArmed) {
        joinBlockAtRelease(doc);
    }
    if (doc.capture->patchRemoving) {
        removeFromBlockAtRelease(doc);
    } else {
        takeCurveAtRelease(doc);
    }
}

} // namespace

void VelmoraDoc::endDrag() {
    if (capture->pointDragging) {
        capture.releaseDrag();
        refillStatus();
        ShowStatus(capture->pointContinueStatus);
        ui_.tellAct({.kind = Act::Kind::Release});
    }
}

void VelmoraDoc::moveRegimeAtRelease() {
    takePointAtRelease(*this);
    endDrag();
    takePartAtRelease(*this);
}

void VelmoraDoc::takeAtRelease() {
    takePointAtRelease(*this);
    takePartAtRelease(*this);
}

} // namespace velmora

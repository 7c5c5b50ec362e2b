#include "VelmoraDoc.h"

namespace velmora {

void VelmoraDoc::snapshot(PatchList& undoList) {
    documentModified = true;
    if (structureKind == "str") {
        undoList = patches; // into the memory of the snapshot before
    } else {
        undoList.clear();
    }
}

void VelmoraDoc::SavePointUndo() {
    snapshot(pointUndoPatches);
}

void VelmoraDoc::SavePatchUndo() {
    snapshot(undoPatches);
    undoPath_.clear();
}

void VelmoraDoc::clearSnapshots() {
    pointUndoPatches.clear();
    undoPatches.clear();
}

void VelmoraDoc::takeCapturedPosition() {
    if (const zVec<double>* point = pointAt(capturedPatch, capturedPointSection, capturedPoint)) {
        capturedPointPos = *point;
    }
}

void VelmoraDoc::rememberPointAddress() {
    savedPatch = capturedPatch;
    savedPointSection = capturedPointSection;
    savedPoint = capturedPoint;
}

void VelmoraDoc::UndoPoint() {
    if (structureKind != "str" || pointUndoPatches.empty()) {
        return;
    }
    patches = pointUndoPatches;
    capturedPatch = savedPatch;
    capturedPointSection = savedPointSection;
    capturedPoint = savedPoint;
    if (savedLine >= 0) {
        capturedLine = savedLine;
    }
    if (savedSection >= 0) {
        capturedSection = savedSection;
    }
    savedPatch = savedPointSection = savedPoint = savedLine = savedSection = -1;
    if (pointCaptured) {
        takeCapturedPosition();
        pickedPoint = capturedPointPos;
    }
    UpdateAfterEdit();
    RefillPointStatus(false);
    pointUndoReady = false;
    patchUndoReady = false;
    pointPicked = true;
    clearSnapshots();
    ShowStatus(pointContinueStatus);
    redraw();
}

void VelmoraDoc::UndoPatch() {
    // The box of a model that was removed is gone too: the views need it anew.
    const bool modelWasGone = structureKind == "non";
    if (!undoPatches.empty()) {
        patches = undoPatches;
        structureKind = "str";
        if (!undoPath_.empty()) {
            adoptPath(undoPath_);
            undoPath_.clear();
            titleWrong_ = false;
        }
        UpdateAfterEdit();
    }
    undoStatus = patchCaptured ? continuePrompt : idlePrompt;
    ShowStatus(undoStatus);
    patchUndoReady = false;
    emptyBlock();
    if (pointUndoReady && structureKind == "str" && pointCaptured) {
        takeCapturedPosition();
    }
    clearSnapshots();
    pointUndoReady = false;
    if (rebuildOnUndo || modelWasGone) {
        updateBounds();
        rebuildOnUndo = false;
    } else {
        redraw();
    }
}

} // namespace velmora

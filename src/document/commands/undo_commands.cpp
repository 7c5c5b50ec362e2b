#include <utility>

#include "VelmoraDoc.h"
#include "capture_address.h"

namespace velmora {

void VelmoraDoc::snapshot(PatchList& undoList, zRegion_fe& undoZones) {
    documentModified = true;
    undoZones.blocks.clear();
    if (structureKind == StructureKind::Structured) {
        undoList = patches; // into the memory of the snapshot before
    } else {
        undoList.clear();
    }
    if (structureKind == StructureKind::Unstructured) {
        copyRegion(feRegion, undoZones);
    }
}

void VelmoraDoc::SavePointUndo() {
    ++pointSnapshotsBegun_;
    snapshot(pointUndoPatches, pointUndoRegion);
    ++pointSnapshots_;
}

void VelmoraDoc::SavePatchUndo() {
    ++patchSnapshotsBegun_;
    snapshot(undoPatches, undoRegion);
    undoPath.clear();
    ++patchSnapshots_;
}

void VelmoraDoc::snapshotBeforeAsking() {
    SavePatchUndo();
    patchUndoReady = false;
}

void VelmoraDoc::beginPatchCommand(bool changesExtent) {
    SavePatchUndo();
    patchUndoReady = true;
    rebuildOnUndo = changesExtent;
}

void VelmoraDoc::keepForUndo() {
    pointUndoPatches.clear();
    pointUndoRegion.blocks.clear();
    pointUndoReady = false;
    if (holdsNothing()) {
        return;
    }
    undoModified = documentModified;
    beginPatchCommand(false);
    undoPath = modelFile.chosenPath;
    modelFile.keepForUndo(modelFile);
}

void VelmoraDoc::clearSnapshots() {
    pointUndoPatches.clear();
    undoPatches.clear();
    pointUndoRegion.blocks.clear();
    undoRegion.blocks.clear();
}

/// The captured point stands where the model says; at `otherwise` when its numbers name none.
void VelmoraDoc::takeCapturedPosition(const zVec<double>& otherwise) {
    capture.placePoint(
        positionAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint).value_or(otherwise));
}

void VelmoraDoc::UndoPoint() {
    const bool zones = structureKind == StructureKind::Unstructured;
    if (zones ? pointUndoRegion.blocks.empty() : pointUndoPatches.empty()) {
        return;
    }
    // As in exchangeWithSnapshot.
    patches.swap(pointUndoPatches);
    std::swap(feRegion, pointUndoRegion);
    ++pointSnapshotsBegun_;
    ++pointSnapshots_;
    capture.restorePoint();
    // Undo counts as a change since the last save, as what it undoes does.
    documentModified = true;
    if (zones) {
        // A transformation has named the node that tells where the model stood; a point edit knows its own address.
        takeCapturedPosition(undoNode);
    } else if (capture->pointCaptured) {
        takeCapturedPosition(capture->capturedPointPos);
    }
    retitle();
    capture.describePoint(false);
    pointUndoReady = false;
    patchUndoReady = false;
    capture.showPoint();
    ShowStatus(capture->pointContinueStatus);
    redraw();
    clearSnapshots(); // last: until then a guard finds the model that goes there
}

/// The model of the patch snapshot and the one that is there take each other's places: until the command is through, a
/// guard around it finds the model in the snapshot.
void VelmoraDoc::exchangeWithSnapshot() {
    patches.swap(undoPatches);
    std::swap(feRegion, undoRegion);
    ++patchSnapshotsBegun_;
    ++patchSnapshots_;
}

void VelmoraDoc::keepForGuard() {
    guardPatches_ = patches;
    ++guardCopies_;
}

void VelmoraDoc::UndoPatch() {
    // The box of a model that was removed is gone too: the views need it anew.
    const bool modelWasGone = structureKind == StructureKind::None;
    // What a file holds is the model that goes; one that was removed knows whether its file still has it.
    documentModified = undoPath.empty() || undoModified;
    if (!undoPath.empty()) {
        // Field values belong to the model that goes, not to the one that comes back.
        fieldLoaded = fieldMode = fieldOpening = false;
        fieldPatches.clear();
    }
    if (!undoPatches.empty()) {
        // The document holds one model: what comes back takes the place of the other kind too.
        exchangeWithSnapshot();
        structureKind = StructureKind::Structured;
        if (!undoPath.empty()) {
            modelFile.takeBack();
            undoPath.clear();
        }
        retitle();
    } else if (!undoRegion.blocks.empty()) {
        exchangeWithSnapshot();
        structureKind = StructureKind::Unstructured;
        fileKind = FileKind::None;
        if (!undoPath.empty()) {
            modelFile.takeBack();
            undoPath.clear();
        }
        modelFile.takeExtension("dat");
    }
    capture.tellUndone(capture->patchCaptured ? capture->continuePrompt : idlePrompt);
    ShowStatus(capture->undoStatus);
    patchUndoReady = false;
    emptyBlock();
    showBlockOnly = false; // of an empty zBlock nothing would be shown
    keepCaptureInside(*this);
    if (pointUndoReady && structureKind == StructureKind::Unstructured) {
        capture.placePoint(undoNode);
    } else {
        followCapturedPoint();
    }
    pointUndoReady = false;
    if (rebuildOnUndo || modelWasGone) {
        updateBounds();
        rebuildOnUndo = false;
    } else {
        redraw();
    }
    clearSnapshots(); // last, as above
}

} // namespace velmora

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

void VelmoraDoc::keepForUndo(PatchList&& patchesBefore, zRegion_fe&& zonesBefore, const ModelFile& fileBefore) {
    pointUndoPatches.clear();
    pointUndoRegion.blocks.clear();
    pointUndoReady = false;
    if (patchesBefore.empty() && zonesBefore.blocks.empty()) {
        return;
    }
    ++patchSnapshotsBegun_;
    undoModified = documentModified;
    undoPatches = std::move(patchesBefore);
    undoRegion = std::move(zonesBefore);
    undoPath = fileBefore.chosenPath;
    modelFile.keepForUndo(fileBefore);
    patchUndoReady = true;
    rebuildOnUndo = false;
    ++patchSnapshots_;
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
    if (zones) {
        feRegion = std::move(pointUndoRegion);
    } else {
        patches = std::move(pointUndoPatches);
    }
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
    clearSnapshots();
    ShowStatus(capture->pointContinueStatus);
    redraw();
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
        patches = std::move(undoPatches);
        structureKind = StructureKind::Structured;
        if (!undoPath.empty()) {
            modelFile.takeBack();
            undoPath.clear();
        }
        // The document holds one model: what comes back takes the place of the other kind.
        feRegion.blocks.clear();
        retitle();
    } else if (!undoRegion.blocks.empty()) {
        feRegion = std::move(undoRegion);
        patches.clear();
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

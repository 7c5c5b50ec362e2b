#include <utility>

#include "VelmoraDoc.h"
#include "capture_address.h"

namespace velmora {

namespace {

void snapshot(VelmoraDoc& doc, PatchList& undoList, zRegion_fe& undoZones) {
    doc.documentModified = true;
    undoZones.blocks.clear();
    if (doc.structureKind == StructureKind::Structured) {
        undoList = doc.patches; // into the memory of the snapshot before
    } else {
        undoList.clear();
    }
    if (doc.structureKind == StructureKind::Unstructured) {
        copyRegion(doc.feRegion, undoZones);
    }
}

} // namespace

void VelmoraDoc::SavePointUndo() {
    ++snapshotCounts.pointBegun;
    snapshot(*this, pointUndoPatches, pointUndoRegion);
    ++snapshotCounts.pointTaken;
}

void VelmoraDoc::SavePatchUndo() {
    ++snapshotCounts.patchBegun;
    snapshot(*this, undoPatches, undoRegion);
    undoPath.clear();
    ++snapshotCounts.patchTaken;
}

void VelmoraDoc::snapshotBeforeAsking() {
    SavePatchUndo();
    patchUndoReady = false;
}

void VelmoraDoc::beginPatchCommand(Extent extent) {
    SavePatchUndo();
    patchUndoReady = true;
    rebuildOnUndo = extent == Extent::Changes;
}

void VelmoraDoc::keepForUndo() {
    pointUndoPatches.clear();
    pointUndoRegion.blocks.clear();
    pointUndoReady = false;
    if (holdsNothing()) {
        return;
    }
    undoModified = documentModified;
    beginPatchCommand(Extent::Stays);
    undoPath = modelFile.chosenPath;
    modelFile.keepForUndo(modelFile);
}

namespace {

void clearSnapshots(VelmoraDoc& doc) {
    doc.pointUndoPatches.clear();
    doc.undoPatches.clear();
    doc.pointUndoRegion.blocks.clear();
    doc.undoRegion.blocks.clear();
}

} // namespace

void VelmoraDoc::UndoPoint() {
    const bool zones = structureKind == StructureKind::Unstructured;
    if (zones ? pointUndoRegion.blocks.empty() : pointUndoPatches.empty()) {
        return;
    }
    // As in exchangeWithSnapshot.
    patches.swap(pointUndoPatches);
    std::swap(feRegion, pointUndoRegion);
    ++snapshotCounts.pointBegun;
    ++snapshotCounts.pointTaken;
    capture.restorePoint();
    // Undo counts as a change since the last save, as what it undoes does.
    documentModified = true;
    if (zones) {
        // A transformation has named the node that tells where the model stood; a point edit knows its own address.
        takeCapturedPosition(*this, undoNode);
    } else if (capture->pointCaptured) {
        takeCapturedPosition(*this, capture->capturedPointPos);
    }
    retitle();
    capture.describePoint(false);
    pointUndoReady = false;
    patchUndoReady = false;
    capture.showPoint();
    ShowStatus(capture->pointContinueStatus);
    redraw();
    clearSnapshots(*this); // last: until then a guard finds the model that goes there
}

namespace {

/// The model of the patch snapshot and the one that is there take each other's places: until the command is through, a
/// guard around it finds the model in the snapshot.
void exchangeWithSnapshot(VelmoraDoc& doc) {
    doc.patches.swap(doc.undoPatches);
    std::swap(doc.feRegion, doc.undoRegion);
    ++doc.snapshotCounts.patchBegun;
    ++doc.snapshotCounts.patchTaken;
}

} // namespace

void VelmoraDoc::keepForGuard() {
    guardPatches = patches;
    ++snapshotCounts.guardCopies;
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
        exchangeWithSnapshot(*this);
        structureKind = StructureKind::Structured;
        if (!undoPath.empty()) {
            modelFile.takeBack();
            undoPath.clear();
        }
        retitle();
    } else if (!undoRegion.blocks.empty()) {
        exchangeWithSnapshot(*this);
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
        followCapturedPoint(*this);
    }
    pointUndoReady = false;
    if (rebuildOnUndo || modelWasGone) {
        updateBounds();
        rebuildOnUndo = false;
    } else {
        redraw();
    }
    clearSnapshots(*this); // last, as above
}

} // namespace velmora

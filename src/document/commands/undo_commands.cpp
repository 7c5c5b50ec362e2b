#include <new>
#include <stdexcept>
#include <utility>

#include "VelmoraDoc.h"
#include "capture_address.h"
#include "finite_model.h"
#include "messages.h"
#include "path_names.h"

namespace velmora {

// ---- Snapshots ------------------------------------------------------------------------------------------------------

void VelmoraDoc::snapshot(PatchList& undoList, zRegion_fe& undoZones, FieldSnapshot& undoField) {
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
    undoField = {fieldPatches, fieldTitleLine, fieldVariablesLine, fieldCount, fieldLoaded, fieldMode};
}

void VelmoraDoc::SavePointUndo() {
    if (running_ && !running_->pointTaken) {
        running_->pointTaken = true;
        running_->pointPatches.swap(pointUndoPatches);
        running_->pointRegion.blocks.swap(pointUndoRegion.blocks);
        std::swap(running_->pointField, pointUndoField_);
    }
    snapshot(pointUndoPatches, pointUndoRegion, pointUndoField_);
    pointUndoIsNewer = true;
}

void VelmoraDoc::SavePatchUndo() {
    if (running_ && !running_->patchTaken) {
        running_->patchTaken = true;
        running_->patches.swap(undoPatches);
        running_->region.blocks.swap(undoRegion.blocks);
        std::swap(running_->field, undoField_);
        running_->path = undoPath;
    }
    snapshot(undoPatches, undoRegion, undoField_);
    undoPath.clear();
    pointUndoIsNewer = false;
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
    undoTitle_ = modelFile.titleWrong ? std::string() : modelFile.documentTitle;
}

void VelmoraDoc::clearSnapshots() {
    pointUndoPatches.clear();
    undoPatches.clear();
    pointUndoRegion.blocks.clear();
    undoRegion.blocks.clear();
    pointUndoField_ = undoField_ = FieldSnapshot();
}

void VelmoraDoc::takeField(FieldSnapshot&& field) {
    fieldPatches = std::move(field.patches);
    fieldTitleLine = std::move(field.titleLine);
    fieldVariablesLine = std::move(field.variablesLine);
    fieldCount = field.count;
    fieldLoaded = field.loaded;
    fieldMode = field.mode;
}

// ---- Commands that cannot be done -----------------------------------------------------------------------------------

void VelmoraDoc::runCommand(void (VelmoraDoc::*command)()) {
    running_.emplace();
    RunningCommand& before = *running_;
    before.capture = capture;
    before.blockList = blockList;
    before.blockCount = blockCount;
    before.showBlockOnly = showBlockOnly;
    before.modified = documentModified;
    before.pointUndoReady = pointUndoReady;
    before.patchUndoReady = patchUndoReady;
    before.pointUndoIsNewer = pointUndoIsNewer;
    before.rebuildOnUndo = rebuildOnUndo;
    before.lineBuffer = lineBuffer;
    before.lineBufferFull = lineBufferFull;
    before.structureKind = structureKind;
    before.fileKind = fileKind;
    before.chosenPath = modelFile.chosenPath;
    before.currentPath = modelFile.currentPath;
    before.currentDirectory = modelFile.currentDirectory;
    before.title = modelFile.documentTitle;
    before.status = status;
    before.boxMin = boxMin;
    before.boxMax = boxMax;
    const char* reason = nullptr;
    try {
        (this->*command)();
        reason = resultIsFinite() ? nullptr : message::resultNotFinite;
    } catch (const std::bad_alloc&) {
        reason = message::notEnoughMemory;
    } catch (const std::length_error&) {
        reason = message::notEnoughMemory;
    }
    if (reason != nullptr) {
        takeBack();
        ui_.showMessage(reason);
    }
    running_.reset();
}

/// False when the command that runs has put a number into the model that is infinite or none.
bool VelmoraDoc::resultIsFinite() const {
    if ((!running_->patchTaken && !running_->pointTaken) || (isFinite(patches) && isFinite(feRegion))) {
        return true;
    }
    // A model that held such a number before can be edited all the same.
    return running_->patchTaken ? !(isFinite(undoPatches) && isFinite(undoRegion))
                                : !(isFinite(pointUndoPatches) && isFinite(pointUndoRegion));
}

/// The model and what is known of it as they were before the command that runs, with the snapshots before it. A model
/// that the command removed is left to Undo.
void VelmoraDoc::takeBack() {
    RunningCommand& before = *running_;
    if (!before.patchTaken && !before.pointTaken) {
        return;
    }
    if (before.patchTaken && !undoPath.empty()) {
        return;
    }
    patches = std::move(before.patchTaken ? undoPatches : pointUndoPatches);
    feRegion.blocks = std::move((before.patchTaken ? undoRegion : pointUndoRegion).blocks);
    takeField(std::move(before.patchTaken ? undoField_ : pointUndoField_));
    if (before.patchTaken) {
        undoPatches = std::move(before.patches);
        undoRegion.blocks = std::move(before.region.blocks);
        undoField_ = std::move(before.field);
        undoPath = before.path;
    }
    if (before.pointTaken) {
        pointUndoPatches = std::move(before.pointPatches);
        pointUndoRegion.blocks = std::move(before.pointRegion.blocks);
        pointUndoField_ = std::move(before.pointField);
    }
    capture = before.capture;
    blockList = before.blockList;
    blockCount = before.blockCount;
    showBlockOnly = before.showBlockOnly;
    documentModified = before.modified;
    pointUndoReady = before.pointUndoReady;
    patchUndoReady = before.patchUndoReady;
    pointUndoIsNewer = before.pointUndoIsNewer;
    rebuildOnUndo = before.rebuildOnUndo;
    lineBuffer = std::move(before.lineBuffer);
    lineBufferFull = before.lineBufferFull;
    structureKind = before.structureKind;
    fileKind = before.fileKind;
    modelFile.chosenPath = before.chosenPath;
    modelFile.currentPath = before.currentPath;
    modelFile.currentDirectory = before.currentDirectory;
    modelFile.setTitle(before.title);
    if (status != before.status) {
        ShowStatus(before.status);
    }
    if (boxMin == before.boxMin && boxMax == before.boxMax) {
        redraw();
    } else {
        updateBounds();
    }
}

// ---- Undo -----------------------------------------------------------------------------------------------------------

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
        takeField(std::move(pointUndoField_));
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

/// The model that comes back was removed by a command on files: it has its own file and name.
void VelmoraDoc::takeRemovedName() {
    modelFile.adopt(undoPath);
    undoPath.clear();
    modelFile.titleWrong = false;
    fieldOpening = false;
    if (undoTitle_.empty()) {
        retitle(); // it was wrong, and is no longer: what could be read is a model like any other
        return;
    }
    modelFile.currentDirectory = directoryOf(modelFile.chosenPath);
    modelFile.setTitle(undoTitle_);
    modelFile.currentPath = modelFile.currentDirectory + undoTitle_;
}

void VelmoraDoc::UndoPatch() {
    // The box of a model that was removed is gone too: the views need it anew, whatever model took its place.
    const bool wasRemoved = structureKind == StructureKind::None || !undoPath.empty();
    // What a file holds is the model that goes; one that was removed knows whether its file still has it.
    documentModified = undoPath.empty() || undoModified;
    if (!undoPatches.empty()) {
        patches = std::move(undoPatches);
        takeField(std::move(undoField_));
        structureKind = StructureKind::Structured;
        // The document holds one model: what comes back takes the place of the other kind.
        feRegion.blocks.clear();
        // Patches without a section decide nothing: without a kind of their own they would be saved as a file of none.
        if (fileKind == FileKind::None) {
            fileKind = FileKind::Skl;
        }
        if (undoPath.empty()) {
            retitle();
        } else {
            checkRegularity(patches);
            takeRemovedName();
        }
    } else if (!undoRegion.blocks.empty()) {
        feRegion = std::move(undoRegion);
        patches.clear();
        takeField(FieldSnapshot());
        structureKind = StructureKind::Unstructured;
        fileKind = FileKind::None;
        if (undoPath.empty()) {
            modelFile.takeExtension("dat");
        } else {
            takeRemovedName();
        }
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
    if (rebuildOnUndo || wasRemoved) {
        updateBounds();
        rebuildOnUndo = false;
    } else {
        redraw();
    }
}

} // namespace velmora

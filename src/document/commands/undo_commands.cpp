#include <exception>
#include <utility>

#include "CommandGuard.h"
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
    undoField = fieldAsItIs();
}

void VelmoraDoc::SavePointUndo() {
    ++pointSnapshotsBegun_;
    if (replaced_ && !replaced_->pointTaken) {
        replaced_->pointTaken = true;
        replaced_->pointPatches.swap(pointUndoPatches);
        replaced_->pointRegion.blocks.swap(pointUndoRegion.blocks);
        std::swap(replaced_->pointField, pointUndoField_);
    }
    snapshot(pointUndoPatches, pointUndoRegion, pointUndoField_);
    pointUndoIsNewer = true;
    ++pointSnapshots_;
}

void VelmoraDoc::SavePatchUndo() {
    ++patchSnapshotsBegun_;
    if (replaced_ && !replaced_->patchTaken) {
        replaced_->patchTaken = true;
        replaced_->patches.swap(undoPatches);
        replaced_->region.blocks.swap(undoRegion.blocks);
        std::swap(replaced_->field, undoField_);
    }
    snapshot(undoPatches, undoRegion, undoField_);
    undoPath.clear();
    pointUndoIsNewer = false;
    ++patchSnapshots_;
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
    pointUndoField_ = undoField_ = FieldSnapshot();
}

FieldSnapshot VelmoraDoc::fieldAsItIs() const {
    return {fieldPatches, fieldTitleLine, fieldVariablesLine, fieldCount, fieldLoaded, fieldMode};
}

void VelmoraDoc::exchangeField(FieldSnapshot& field) {
    FieldSnapshot own = {std::move(fieldPatches),
                         std::move(fieldTitleLine),
                         std::move(fieldVariablesLine),
                         fieldCount,
                         fieldLoaded,
                         fieldMode};
    takeField(std::move(field));
    field = std::move(own);
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

namespace {

/// A command has put a number into the model that is infinite or none.
class NotFinite : public std::exception {};

} // namespace

void VelmoraDoc::runCommand(void (VelmoraDoc::*command)()) {
    replaced_.emplace();
    replaced_->patchReady = patchUndoReady;
    replaced_->pointReady = pointUndoReady;
    replaced_->extent = rebuildOnUndo;
    replaced_->pointIsNewer = pointUndoIsNewer;
    replaced_->path = undoPath;
    const zVec<double> lower = boxMin;
    const zVec<double> upper = boxMax;
    try {
        const CommandGuard guard(*this);
        (this->*command)();
        if (!resultIsFinite()) {
            throw NotFinite();
        }
    } catch (const NotFinite&) {
        // The guard has put the model back.
        takeReplacedSnapshots();
        if (!(boxMin == lower && boxMax == upper)) {
            updateBounds();
        }
        ui_.showMessage(message::resultNotFinite);
    } catch (...) {
        replaced_.reset();
        throw;
    }
    replaced_.reset();
}

bool VelmoraDoc::resultIsFinite() const {
    if ((!replaced_->patchTaken && !replaced_->pointTaken) || (isFinite(patches) && isFinite(feRegion))) {
        return true;
    }
    // A model that held such a number before can be edited all the same.
    return replaced_->patchTaken ? !(isFinite(undoPatches) && isFinite(undoRegion))
                                 : !(isFinite(pointUndoPatches) && isFinite(pointUndoRegion));
}

void VelmoraDoc::takeReplacedSnapshots() {
    if (replaced_->patchTaken) {
        undoPatches = std::move(replaced_->patches);
        undoRegion.blocks = std::move(replaced_->region.blocks);
        undoField_ = std::move(replaced_->field);
        undoPath = replaced_->path;
    }
    if (replaced_->pointTaken) {
        pointUndoPatches = std::move(replaced_->pointPatches);
        pointUndoRegion.blocks = std::move(replaced_->pointRegion.blocks);
        pointUndoField_ = std::move(replaced_->pointField);
    }
    patchUndoReady = replaced_->patchReady;
    pointUndoReady = replaced_->pointReady;
    rebuildOnUndo = replaced_->extent;
    pointUndoIsNewer = replaced_->pointIsNewer;
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
    // As in exchangeWithSnapshot.
    patches.swap(pointUndoPatches);
    std::swap(feRegion, pointUndoRegion);
    exchangeField(pointUndoField_);
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
    exchangeField(undoField_);
    ++patchSnapshotsBegun_;
    ++patchSnapshots_;
}

void VelmoraDoc::keepForGuard() {
    guardPatches_ = patches;
    guardField_ = fieldAsItIs();
    ++guardCopies_;
}

void VelmoraDoc::UndoPatch() {
    // The box of a model that was removed is gone too: the views need it anew, whatever model took its place.
    const bool wasRemoved = structureKind == StructureKind::None || !undoPath.empty();
    // What a file holds is the model that goes; one that was removed knows whether its file still has it.
    documentModified = undoPath.empty() || undoModified;
    fieldOpening = fieldOpening && undoPath.empty(); // it said how the model that goes was opened
    if (!undoPatches.empty()) {
        // The document holds one model: what comes back takes the place of the other kind too.
        exchangeWithSnapshot();
        structureKind = StructureKind::Structured;
        // Patches without a section decide nothing: without a kind of their own they would be saved as a file of none.
        if (fileKind == FileKind::None) {
            fileKind = FileKind::Skl;
        }
        checkRegularity(patches);
        if (undoPath.empty() || !modelFile.takeBack()) {
            retitle();
        }
        undoPath.clear();
    } else if (!undoRegion.blocks.empty()) {
        exchangeWithSnapshot();
        structureKind = StructureKind::Unstructured;
        fileKind = FileKind::None;
        if (undoPath.empty() || !modelFile.takeBack()) {
            modelFile.takeExtension("dat");
        }
        undoPath.clear();
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
    if (rebuildOnUndo || wasRemoved) {
        updateBounds();
        rebuildOnUndo = false;
    } else {
        redraw();
    }
    clearSnapshots(); // last, as above
}

} // namespace velmora

#include <exception>
#include <utility>
#include <vector>

#include "CommandGuard.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "WorkCancelled.h"
#include "capture_address.h"
#include "captured_curve.h"
#include "command_rows.h"
#include "command_rules.h"
#include "finite_model.h"
#include "messages.h"
#include "path_names.h"

namespace velmora {

// ---- Snapshots ------------------------------------------------------------------------------------------------------

namespace {

/// What the snapshots keep that are there, and those that they have replaced: the newest first.
struct EarlierSnapshots {
    std::vector<const KeptPatches*> patches;
    std::vector<const KeptZones*> zones;
    std::vector<const KeptPatches*> fields;

    explicit EarlierSnapshots(const DocumentState& doc) {
        add(doc.undoPatches, doc.undoRegion, doc.undoField);
        add(doc.pointUndoPatches, doc.pointUndoRegion, doc.pointUndoField);
        if (doc.replaced) {
            add(doc.replaced->patches, doc.replaced->region, doc.replaced->field);
            add(doc.replaced->pointPatches, doc.replaced->pointRegion, doc.replaced->pointField);
        }
    }

private:
    void add(const KeptPatches& list, const KeptRegion& region, const KeptField& field) {
        patches.push_back(&list);
        zones.push_back(&region.blocks);
        fields.push_back(&field.patches);
    }
};

void snapshot(VelmoraDoc& doc, KeptPatches& undoList, KeptRegion& undoZones, KeptField& undoField) {
    doc.documentModified = true;
    const EarlierSnapshots earlier(doc);
    if (doc.structureKind == StructureKind::Structured) {
        undoList.keep(doc.patches, earlier.patches);
    } else {
        undoList.clear();
    }
    if (doc.structureKind == StructureKind::Unstructured && !doc.feRegion.blocks.empty()) {
        undoZones.blocks.keep(doc.feRegion.blocks, earlier.zones);
        undoZones.title = doc.feRegion.title;
        undoZones.words = doc.feRegion.words;
    } else {
        undoZones.blocks.clear();
    }
    undoField.patches.keep(doc.fieldPatches, earlier.fields);
    undoField.words = doc.fieldWords();
}

/// The model of the snapshot and the one that is there take each other's places: until the command is through, a guard
/// around it finds the model in the snapshot. What takes memory comes first.
void exchange(VelmoraDoc& doc, KeptPatches& undoList, KeptRegion& undoZones, KeptField& undoField) {
    FieldWords words = doc.fieldWords();
    KeptPatches patches = undoList.prepareExchange(doc.patches);
    KeptZones zones = undoZones.blocks.prepareExchange(doc.feRegion.blocks);
    KeptPatches values = undoField.patches.prepareExchange(doc.fieldPatches);
    undoList.exchange(doc.patches, std::move(patches));
    undoZones.blocks.exchange(doc.feRegion.blocks, std::move(zones));
    undoZones.title.swap(doc.feRegion.title);
    std::swap(undoZones.words, doc.feRegion.words);
    undoField.patches.exchange(doc.fieldPatches, std::move(values));
    doc.takeFieldWords(std::move(undoField.words));
    undoField.words = std::move(words);
}

} // namespace

void VelmoraDoc::SavePointUndo() {
    ++snapshotCounts.pointBegun;
    if (replaced && !replaced->pointTaken) {
        replaced->pointTaken = true;
        replaced->pointPatches.swap(pointUndoPatches);
        replaced->pointRegion.blocks.swap(pointUndoRegion.blocks);
        std::swap(replaced->pointField, pointUndoField);
    }
    snapshot(*this, pointUndoPatches, pointUndoRegion, pointUndoField);
    pointUndoIsNewer = true;
    ++snapshotCounts.pointTaken;
}

void VelmoraDoc::SavePatchUndo() {
    ++snapshotCounts.patchBegun;
    if (replaced && !replaced->patchTaken) {
        replaced->patchTaken = true;
        replaced->patches.swap(undoPatches);
        replaced->region.blocks.swap(undoRegion.blocks);
        std::swap(replaced->field, undoField);
    }
    snapshot(*this, undoPatches, undoRegion, undoField);
    undoPath.clear();
    pointUndoIsNewer = false;
    ++snapshotCounts.patchTaken;
}

void VelmoraDoc::beginPatchCommand(Extent extent) {
    SavePatchUndo();
    patchUndoReady = true;
    rebuildOnUndo = extent == Extent::Changes;
}

void VelmoraDoc::dropPointUndo() {
    pointUndoPatches.clear();
    pointUndoRegion.blocks.clear();
    pointUndoReady = false;
}

void VelmoraDoc::keepForUndo() {
    dropPointUndo();
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
    doc.undoField = KeptField();
    doc.pointUndoField = KeptField();
}

// ---- Commands that cannot be done -----------------------------------------------------------------------------------

/// A command has put a number into the model that is infinite or none.
class NotFinite : public std::exception {};

bool resultIsFinite(const DocumentState& doc) {
    if ((!doc.replaced->patchTaken && !doc.replaced->pointTaken) || (isFinite(doc.patches) && isFinite(doc.feRegion))) {
        return true;
    }
    // A model that held such a number before can be edited all the same.
    return doc.replaced->patchTaken ? !(isFinite(doc.undoPatches) && isFinite(doc.undoRegion.blocks))
                                    : !(isFinite(doc.pointUndoPatches) && isFinite(doc.pointUndoRegion.blocks));
}

void takeReplacedSnapshots(DocumentState& doc) {
    ReplacedSnapshots& replaced = *doc.replaced;
    if (replaced.patchTaken) {
        doc.undoPatches = std::move(replaced.patches);
        doc.undoRegion.blocks = std::move(replaced.region.blocks);
        doc.undoField = std::move(replaced.field);
        doc.undoPath = replaced.path;
    }
    if (replaced.pointTaken) {
        doc.pointUndoPatches = std::move(replaced.pointPatches);
        doc.pointUndoRegion.blocks = std::move(replaced.pointRegion.blocks);
        doc.pointUndoField = std::move(replaced.pointField);
    }
    doc.patchUndoReady = replaced.patchReady;
    doc.pointUndoReady = replaced.pointReady;
    doc.rebuildOnUndo = replaced.extent;
    doc.pointUndoIsNewer = replaced.pointIsNewer;
}

/// The command took a snapshot and has left the model as it is there.
bool changedNothing(const DocumentState& doc, const KeptPatches& patches, const KeptRegion& region,
                    const KeptField& field) {
    const bool sameTitle = region.blocks.empty() || region.title == doc.feRegion.title;
    return sameTitle && patches.isSameAs(doc.patches) && region.blocks.isSameAs(doc.feRegion.blocks) &&
           field.patches.isSameAs(doc.fieldPatches);
}

/// Whether the one snapshot that the command took is of the model that is there.
bool changedNothing(const DocumentState& doc) {
    const ReplacedSnapshots& replaced = *doc.replaced;
    if (replaced.patchTaken && !replaced.pointTaken) {
        // Another model, be it the same to the bit, may stand in the place of the one in the snapshot.
        return doc.undoPath.empty() && changedNothing(doc, doc.undoPatches, doc.undoRegion, doc.undoField);
    }
    // A drag takes its own before the mouse moves: that nothing has changed yet says nothing of it.
    const bool drags = doc.capture->pointDragging || doc.capture->dragCorrectsLine;
    return replaced.pointTaken && !replaced.patchTaken && !drags &&
           changedNothing(doc, doc.pointUndoPatches, doc.pointUndoRegion, doc.pointUndoField);
}

/// A command that changed nothing takes away no way back: Undo would answer that it is done, and what the command
/// before did could not be taken back any more. Of one that failed or was cancelled the mark of the model goes
/// back too, and Undo is off where it was off; a refused one that replaces no snapshot leaves its own. `counts` are
/// those of the moment before it, `before` what was captured then.
void leaveWayBack(DocumentState& doc, bool gaveUp, const SnapshotCounts& counts, const CaptureState& before) {
    const ReplacedSnapshots& replaced = *doc.replaced;
    const bool hadOne = replaced.patchReady || replaced.pointReady;
    if (!(gaveUp || hadOne) || !changedNothing(doc)) {
        return;
    }
    const bool pointReady = doc.pointUndoReady; // the command may have left the regime of the point
    const bool hadPoint = replaced.pointReady;
    const bool ofPoint = replaced.pointTaken;
    takeReplacedSnapshots(doc);
    doc.pointUndoReady = ofPoint ? pointReady && hadPoint : pointReady;
    if (ofPoint) {
        doc.capture.returnToSaved(before);
    }
    if (gaveUp) {
        doc.documentModified = replaced.modified;
    }
    doc.snapshotCounts = counts; // a guard around the command finds the model where it was
}

} // namespace

/// A command that changes the kind of the model changes the file that Save writes: that is told at once, unless
/// the command told it itself, and until the next command. Before this one Save went to `before`, of which `textBefore`
/// was told.
void VelmoraDoc::tellSaveTarget(const std::filesystem::path& before, const std::string& textBefore) {
    const std::filesystem::path target = saveTarget();
    const std::string text = saveTargetText();
    const bool sameModel = !before.empty() && (undoPath.empty() || undoPath == replaced->path);
    if (sameModel && target != before && !text.empty() && status.find(text) == std::string::npos) {
        const CaptureText captured = shownCaptureText();
        std::string covered = status == idlePrompt ? std::string() : status;
        ShowStatus(text);
        coveredText_ = captured;
        coveredStatus_ = std::move(covered);
    } else if (!coveredStatus_.empty()) { // the command said nothing
        ShowStatus(coveredText_ != nullptr ? std::string((*capture).*coveredText_) : std::string(coveredStatus_));
    } else if (target != before && !textBefore.empty() && status == textBefore) {
        ShowStatus(idlePrompt); // Save goes where it went at first
    }
}

void VelmoraDoc::runCommand(CommandRun command, const std::function<bool()>& gaveUp) {
    const std::filesystem::path target = saveTarget();
    const std::string targetText = saveTargetText();
    const SnapshotCounts counts = snapshotCounts;
    const CaptureState held = *capture;
    replaced.emplace();
    replaced->patchReady = patchUndoReady;
    replaced->pointReady = pointUndoReady;
    replaced->extent = rebuildOnUndo;
    replaced->pointIsNewer = pointUndoIsNewer;
    replaced->path = undoPath;
    replaced->modified = documentModified;
    const zVec<double> lower = boxMin;
    const zVec<double> upper = boxMax;
    try {
        {
            const CommandGuard guard(*this);
            command(*this);
            if (!resultIsFinite(*this)) {
                throw NotFinite();
            }
            if (replaced->patchTaken || replaced->pointTaken) {
                keepPointTrue(*this);
                refillStatus();
            }
            tellSaveTarget(target, targetText);
        }
        leaveWayBack(*this, gaveUp && gaveUp(), counts, held);
    } catch (const NotFinite&) {
        // The guard has put the model back.
        takeReplacedSnapshots(*this);
        if (!(boxMin == lower && boxMax == upper)) {
            updateBounds();
        }
        ui_.showMessage(message::resultNotFinite);
    } catch (const WorkCancelled&) {
        takeReplacedSnapshots(*this);
        if (!(boxMin == lower && boxMax == upper)) {
            updateBounds();
        }
        ShowStatus(message::workCancelled);
    } catch (...) {
        replaced.reset();
        throw;
    }
    replaced.reset();
}

// ---- Undo -----------------------------------------------------------------------------------------------------------

namespace {

/// Commands of patches may stand between the snapshot of a point and its Undo, which takes them back too: the numbers
/// of patches in the zBlock, and of a captured curve, were those of the model that goes.
void letGoOfWhatIsGone(VelmoraDoc& doc, std::int32_t partsBefore) {
    if (doc.partCount() != partsBefore) {
        doc.emptyBlock();
        doc.showBlockOnly = false; // of an empty zBlock nothing would be shown
    }
    if (doc.capture->curveHeld() && !curveIsThere(doc)) {
        keepCaptureInside(doc);
    }
    if (doc.capture->curveHeld() && !curveIsThere(doc)) {
        doc.ExitLineRegime();
    }
}

} // namespace

void VelmoraDoc::UndoPoint() {
    const bool zones = structureKind == StructureKind::Unstructured;
    if (zones ? pointUndoRegion.blocks.empty() : pointUndoPatches.empty()) {
        return;
    }
    const std::int32_t partsBefore = partCount();
    exchange(*this, pointUndoPatches, pointUndoRegion, pointUndoField);
    ++snapshotCounts.pointBegun;
    ++snapshotCounts.pointTaken;
    capture.restorePoint();
    letGoOfWhatIsGone(*this, partsBefore);
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
    if (std::exchange(rebuildOnUndo, false) && !pointUndoIsNewer) { // what moved the model came behind the snapshot
        updateBounds();
    } else {
        redraw();
    }
    clearSnapshots(*this); // last: until then a guard finds the model that goes there
}

namespace {

void exchangeWithSnapshot(VelmoraDoc& doc) {
    exchange(doc, doc.undoPatches, doc.undoRegion, doc.undoField);
    ++doc.snapshotCounts.patchBegun;
    ++doc.snapshotCounts.patchTaken;
}

} // namespace

void VelmoraDoc::keepForGuard() {
    guardPatches = patches;
    guardField = {fieldPatches, fieldWords()};
    ++snapshotCounts.guardCopies;
}

void VelmoraDoc::UndoPatch() {
    // The box of a model that was removed is gone too: the views need it anew, whatever model took its place.
    const bool wasRemoved = structureKind == StructureKind::None || !undoPath.empty();
    // What a file holds is the model that goes; one that was removed knows whether its file still has it.
    documentModified = undoPath.empty() || undoModified;
    fieldOpening = fieldOpening && undoPath.empty(); // it said how the model that goes was opened
    if (!undoPatches.empty()) {
        // The document holds one model: what comes back takes the place of the other kind too.
        exchangeWithSnapshot(*this);
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
        exchangeWithSnapshot(*this);
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
    const auto held = static_cast<std::size_t>(capture->capturedPatch);
    if (capture->capturedPatch >= 0 && held < patches.size() && held < undoPatches.size()) {
        turnCaptureBack(*this, undoPatches[held]);
    }
    keepCaptureInside(*this);
    if (capture->curveHeld() && !curveIsThere(*this)) {
        // Of zones, and of a patch without a section, there is none to hold.
        ExitLineRegime();
        ShowStatus(capture->undoStatus);
    }
    if (pointUndoReady && structureKind == StructureKind::Unstructured) {
        capture.placePoint(undoNode);
    } else {
        followCapturedPoint(*this);
    }
    pointUndoReady = false;
    if (rebuildOnUndo || wasRemoved) {
        updateBounds();
        rebuildOnUndo = false;
    } else {
        redraw();
    }
    clearSnapshots(*this); // last, as above
}

std::span<const Command> undoCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "patch.undo",
         .menuText = "&Undo",
         .statusText = "Undo edited patches",
         .toolTip = "Undo patch",
         .accelerator = "Ctrl+Z",
         .icon = true,
         .run = &VelmoraDoc::UndoPatch,
         .off = [](Doc d) { return !d.patchUndoReady; },
         .places = {{EditPatches, 130}, {EditLines, 130}, {LineContext, 140}, {PatchContext, 150}, {GeneralBar, 610}}},
        {.id = "point.undo",
         .menuText = "&Undo",
         .statusText = "Undo edited point",
         .toolTip = "Undo point",
         .accelerator = "Ctrl+Z",
         .icon = true,
         .run = &VelmoraDoc::UndoPoint,
         // A transformation names the captured point for Undo patch and takes no snapshot of it.
         .off =
             [](Doc d) {
                 return !d.pointUndoReady || (d.pointUndoPatches.empty() && d.pointUndoRegion.blocks.empty());
             },
         .places = {{EditPoint, 310}, {PointContext, 510}, {GeneralBar, 620}}},
    };
    return rows;
}

} // namespace velmora

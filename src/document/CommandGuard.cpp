#include "CommandGuard.h"

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>
#include <utility>

#include "UserInterface.h"
#include "VelmoraDoc.h"

namespace velmora {

namespace {

using Flag = bool DocumentState::*;

/// What a command may switch, besides what its snapshot holds. That Undo is ready is settled apart.
constexpr Flag keptFlags[] = {
    &DocumentState::documentModified,  &DocumentState::surfaceMode,      &DocumentState::showBlockOnly,
    &DocumentState::showFirstPoints,   &DocumentState::showDoublePoints, &DocumentState::showBuffer,
    &DocumentState::showZBlockMarkers, &DocumentState::partBefore,       &DocumentState::partAfter,
    &DocumentState::gridNamed,         &DocumentState::fieldLoaded,      &DocumentState::fieldMode,
    &DocumentState::fieldOpening,      &DocumentState::pointUndoReady,   &DocumentState::patchUndoReady,
    &DocumentState::rebuildOnUndo,     &DocumentState::undoModified,     &DocumentState::lineBufferFull,
};

void drop(KeptPatches& patches, KeptRegion& region, KeptField& field) noexcept {
    patches.clear();
    region.blocks.clear();
    field.patches.clear();
}

/// No way back is left, neither by the snapshots that are there nor by those that they have replaced.
void dropSnapshots(DocumentState& doc) noexcept {
    drop(doc.undoPatches, doc.undoRegion, doc.undoField);
    drop(doc.pointUndoPatches, doc.pointUndoRegion, doc.pointUndoField);
    doc.patchUndoReady = doc.pointUndoReady = false;
    if (doc.replaced) {
        drop(doc.replaced->patches, doc.replaced->region, doc.replaced->field);
        drop(doc.replaced->pointPatches, doc.replaced->pointRegion, doc.replaced->pointField);
        doc.replaced->patchReady = doc.replaced->pointReady = false;
    }
}

/// The model is the one of the snapshot. Where memory lacks even for that, the other snapshots give theirs.
void giveBack(DocumentState& doc, KeptPatches& patches, KeptRegion& region, KeptField& field) noexcept {
    const std::array<bool, 3> takenAway = {patches.giveBack(doc.patches), region.blocks.giveBack(doc.feRegion.blocks),
                                           field.patches.giveBack(doc.fieldPatches)};
    doc.feRegion.title.swap(region.title);
    std::swap(doc.feRegion.words, region.words);
    doc.takeFieldWords(std::move(field.words));
    if (std::find(takenAway.begin(), takenAway.end(), true) != takenAway.end()) {
        dropSnapshots(doc);
    }
}

} // namespace

std::string causeOf(const std::exception& error) {
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
        return "out of memory";
    }
    return dynamic_cast<const std::length_error*>(&error) != nullptr ? "more than fits" : error.what();
}

CommandGuard::CommandGuard(VelmoraDoc& document)
    : doc_(document), exceptionsBefore_(std::uncaught_exceptions()),
      counts_(document.snapshotCounts), kinds_{document.structureKind, document.fileKind, document.secondKind},
      titleWrong_(document.modelFile.titleWrong), names_{document.modelFile.currentPath,
                                                         document.modelFile.currentDirectory,
                                                         document.modelFile.fileExtension,
                                                         document.modelFile.documentTitle,
                                                         document.status,
                                                         document.modelFile.chosenPath,
                                                         document.undoPath},
      lists_{document.lineBuffer, document.interLine, document.beforeIntersection, document.afterIntersection},
      capture_(document.capture), empty_(document.holdsNothing()),
      block_(document.blockList.begin(), document.blockList.begin() + document.blockCount) {
    for (const Flag flag : keptFlags) {
        flags_.push_back(document.*flag);
    }
}

CommandGuard::~CommandGuard() {
    if (std::uncaught_exceptions() > exceptionsBefore_) {
        putBack();
    }
    if (doc_.snapshotCounts.guardCopies != counts_.guardCopies) {
        doc_.snapshotCounts.guardCopies = counts_.guardCopies;
        PatchList().swap(doc_.guardPatches);
    }
}

/// Everything here moves and swaps: when memory ran out there is none to be had.
void CommandGuard::putBack() noexcept {
    putBackState();
    putBackModel();
    tellViews();
}

/// A command takes its snapshot before it changes anything; without one the model is as it was. A snapshot that was not
/// taken whole is no use to Undo.
void CommandGuard::putBackModel() noexcept {
    const bool patchesKept = doc_.snapshotCounts.patchTaken != counts_.patchTaken;
    const bool pointKept = doc_.snapshotCounts.pointTaken != counts_.pointTaken;
    if (doc_.snapshotCounts.guardCopies != counts_.guardCopies) {
        doc_.patches.swap(doc_.guardPatches);
        doc_.fieldPatches = std::move(doc_.guardField.patches);
        doc_.takeFieldWords(std::move(doc_.guardField.words));
    } else if (patchesKept) {
        giveBack(doc_, doc_.undoPatches, doc_.undoRegion, doc_.undoField);
    } else if (pointKept) {
        giveBack(doc_, doc_.pointUndoPatches, doc_.pointUndoRegion, doc_.pointUndoField);
    } else if (empty_) {
        doc_.patches.clear();
        doc_.feRegion.blocks.clear();
    }
    if (doc_.fieldPatches.empty()) {
        doc_.fieldLoaded = doc_.fieldMode = false; // the values went with the model that was removed
    }
    if (doc_.snapshotCounts.patchBegun != counts_.patchBegun) {
        doc_.undoPatches.clear();
        doc_.undoRegion.blocks.clear();
        doc_.patchUndoReady = false;
    }
    if (doc_.snapshotCounts.pointBegun != counts_.pointBegun) {
        doc_.pointUndoPatches.clear();
        doc_.pointUndoRegion.blocks.clear();
        doc_.pointUndoReady = false;
    }
    // A guard around this one finds nothing left to do.
    const std::uint64_t guardCopies = doc_.snapshotCounts.guardCopies;
    doc_.snapshotCounts = counts_;
    doc_.snapshotCounts.guardCopies = guardCopies; // the copy is dropped at the end
}

void CommandGuard::putBackState() noexcept {
    doc_.structureKind = kinds_.structure;
    doc_.fileKind = kinds_.file;
    doc_.secondKind = kinds_.second;
    ModelFile& file = doc_.modelFile;
    file.titleWrong = titleWrong_;
    file.currentPath.swap(names_.currentPath);
    file.currentDirectory.swap(names_.currentDirectory);
    file.fileExtension.swap(names_.fileExtension);
    file.documentTitle.swap(names_.documentTitle);
    file.chosenPath.swap(names_.chosenPath);
    doc_.status.swap(names_.status);
    doc_.undoPath.swap(names_.undoPath);
    doc_.lineBuffer.swap(lists_.lineBuffer);
    doc_.interLine.swap(lists_.joint);
    doc_.beforeIntersection.swap(lists_.before);
    doc_.afterIntersection.swap(lists_.after);
    doc_.capture = std::move(capture_);
    doc_.blockList.fill(-1);
    std::copy(block_.begin(), block_.end(), doc_.blockList.begin());
    doc_.blockCount = static_cast<std::int32_t>(block_.size());
    for (std::size_t i = 0; i < flags_.size(); ++i) {
        doc_.*keptFlags[i] = flags_[i];
    }
}

void CommandGuard::tellViews() noexcept {
    try {
        doc_.ui().showTitle(doc_.modelFile.documentTitle);
        doc_.ShowStatus(std::string(doc_.status));
        doc_.redraw();
    } catch (...) {
        // The next paint finds the model as it is; there is nobody to tell.
        return;
    }
}

} // namespace velmora

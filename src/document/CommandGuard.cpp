#include "CommandGuard.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "VelmoraDoc.h"

namespace velmora {

namespace {

using Flag = bool VelmoraDoc::*;

/// What a command may switch, besides what its snapshot holds. That Undo is ready is settled apart.
constexpr Flag keptFlags[] = {
    &VelmoraDoc::documentModified,  &VelmoraDoc::surfaceMode,      &VelmoraDoc::showBlockOnly,
    &VelmoraDoc::showFirstPoints,   &VelmoraDoc::showDoublePoints, &VelmoraDoc::showBuffer,
    &VelmoraDoc::showZBlockMarkers, &VelmoraDoc::partBefore,       &VelmoraDoc::partAfter,
    &VelmoraDoc::gridNamed,         &VelmoraDoc::fieldLoaded,      &VelmoraDoc::fieldMode,
    &VelmoraDoc::fieldOpening,      &VelmoraDoc::pointUndoReady,   &VelmoraDoc::patchUndoReady,
    &VelmoraDoc::rebuildOnUndo,     &VelmoraDoc::undoModified,
};

} // namespace

std::string causeOf(const std::exception& error) {
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
        return "out of memory";
    }
    return dynamic_cast<const std::length_error*>(&error) != nullptr ? "more than fits" : error.what();
}

CommandGuard::CommandGuard(VelmoraDoc& document)
    : doc_(document), exceptionsBefore_(std::uncaught_exceptions()),
      patchSnapshotsBegun_(document.patchSnapshotsBegun_), patchSnapshots_(document.patchSnapshots_),
      pointSnapshotsBegun_(document.pointSnapshotsBegun_), pointSnapshots_(document.pointSnapshots_),
      guardCopies_(document.guardCopies_), kinds_{document.structureKind, document.fileKind, document.secondKind},
      titleWrong_(document.modelFile.titleWrong), names_{document.modelFile.currentPath,
                                                         document.modelFile.currentDirectory,
                                                         document.modelFile.fileExtension,
                                                         document.modelFile.documentTitle,
                                                         document.status,
                                                         document.modelFile.chosenPath,
                                                         document.undoPath},
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
    if (doc_.guardCopies_ != guardCopies_) {
        doc_.guardCopies_ = guardCopies_;
        PatchList().swap(doc_.guardPatches_);
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
    const bool patchesKept = doc_.patchSnapshots_ != patchSnapshots_;
    const bool pointKept = doc_.pointSnapshots_ != pointSnapshots_;
    if (doc_.guardCopies_ != guardCopies_) {
        doc_.patches.swap(doc_.guardPatches_);
    } else if (patchesKept) {
        doc_.patches.swap(doc_.undoPatches);
        std::swap(doc_.feRegion, doc_.undoRegion);
    } else if (pointKept) {
        doc_.patches.swap(doc_.pointUndoPatches);
        std::swap(doc_.feRegion, doc_.pointUndoRegion);
    } else if (empty_) {
        doc_.patches.clear();
        doc_.feRegion.blocks.clear();
    }
    if (doc_.fieldPatches.empty()) {
        doc_.fieldLoaded = doc_.fieldMode = false; // the values went with the model that was removed
    }
    if (doc_.patchSnapshotsBegun_ != patchSnapshotsBegun_) {
        doc_.undoPatches.clear();
        doc_.undoRegion.blocks.clear();
        doc_.patchUndoReady = false;
    }
    if (doc_.pointSnapshotsBegun_ != pointSnapshotsBegun_) {
        doc_.pointUndoPatches.clear();
        doc_.pointUndoRegion.blocks.clear();
        doc_.pointUndoReady = false;
    }
    // A guard around this one finds nothing left to do.
    doc_.patchSnapshotsBegun_ = patchSnapshotsBegun_;
    doc_.patchSnapshots_ = patchSnapshots_;
    doc_.pointSnapshotsBegun_ = pointSnapshotsBegun_;
    doc_.pointSnapshots_ = pointSnapshots_;
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
        doc_.ui_.showTitle(doc_.modelFile.documentTitle);
        doc_.ShowStatus(std::string(doc_.status));
        doc_.redraw();
    } catch (...) {
        // The next paint finds the model as it is; there is nobody to tell.
        return;
    }
}

} // namespace velmora

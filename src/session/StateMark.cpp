#include "StateMark.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "DialogForm.h"
#include "DialogValues.h"
#include "Digest.h"
#include "DocumentState.h"
#include "parallel.h"

namespace velmora {

namespace {

void addCapture(Digest& digest, const CaptureState& capture) {
    for (const bool flag :
         {capture.pointCaptureArmed, capture.pointCaptured, capture.freePointArmed, capture.freePointHeld,
          capture.patchCaptureArmed, capture.patchCaptured, capture.sectionCaptureArmed, capture.sectionCaptured,
          capture.lineCaptureArmed, capture.lineCaptured, capture.pointDragging, capture.patchRemoving,
          capture.dragCorrectsLine, capture.pointPicked}) {
        digest.add(flag);
    }
    // These count where they name what is captured: a click that found nothing leaves some, too.
    const bool point = capture.pointHeld();
    digest.add(point || capture.curveHeld() || capture.patchCaptured ? capture.capturedPatch : -1);
    digest.add(point ? capture.capturedPointSection : -1);
    digest.add(point ? capture.capturedPoint : -1);
    // These are left by commands alone: Rebreak of a line leaves a section, the next command of the line drops it.
    digest.add(capture.capturedSection);
    digest.add(capture.capturedLine);
    digest.add(point ? capture.pickedPoint : zVec<double>());
    digest.add(point ? capture.capturedPointPos : zVec<double>());
}

// Each by itself, so that they are shared by the threads.
template <class Patch>
void addPatches(Digest& digest, const std::vector<Patch>& patches) {
    constexpr std::size_t chunk = 64;
    std::vector<std::uint64_t> values(patches.size());
    forEachChunk(patches.size(), chunk, [&](std::size_t first, std::size_t last, std::size_t) {
        for (std::size_t k = first; k < last; ++k) {
            Digest patch;
            patch.add(patches[k]);
            values[k] = patch.value();
        }
    });
    digest.add(std::uint64_t{values.size()});
    for (const std::uint64_t value : values) {
        digest.add(value);
    }
}

void addKept(Digest& digest, const KeptPatches& patches, const KeptRegion& region) {
    digest.add(std::uint64_t{patches.size()});
    for (std::size_t k = 0; k < patches.size(); ++k) {
        digest.add(patches[k]);
    }
    digest.add(region.title);
    digest.add(std::uint64_t{region.blocks.size()});
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        digest.add(*region.blocks[k]);
    }
}

void addBuffers(Digest& digest, const DocumentState& doc) {
    digest.add(doc.referencePatches);
    digest.add(doc.referenceRegion);
    digest.add(doc.fieldTitleLine);
    digest.add(doc.fieldVariablesLine);
    digest.add(doc.fieldCount);
    digest.add(doc.blockClipboard);
    digest.add(doc.lineBuffer);
    digest.add(doc.interLine);
    digest.add(doc.sftPoints);
    digest.add(doc.sftTargets);
    digest.add(doc.markers);
    digest.add(doc.pointClipboard);
    for (const bool flag : {doc.pointClipboardFull, doc.lineBufferFull, doc.blockClipboardFull, doc.sftOpen,
                            doc.markersOpen, doc.cbcAppended, doc.fieldLoaded, doc.fieldMode}) {
        digest.add(flag);
    }
}

void addNames(Digest& digest, const DocumentState& doc) {
    digest.add(static_cast<std::int32_t>(doc.structureKind));
    digest.add(static_cast<std::int32_t>(doc.fileKind));
    digest.add(static_cast<std::int32_t>(doc.secondKind));
    digest.add(static_cast<std::int32_t>(doc.blockKind));
    digest.add(doc.modelFile.documentTitle);
    digest.add(doc.modelFile.chosenPath.string());
    digest.add(doc.documentModified);
    digest.add(doc.gridNamed);
}

void addSwitches(Digest& digest, const DocumentState& doc) {
    for (const bool flag :
         {doc.surfaceMode, doc.showBlockOnly, doc.showFirstPoints, doc.showDoublePoints, doc.showBuffer,
          doc.showZBlockMarkers, doc.partBefore, doc.partAfter, doc.fieldOpening, doc.foundComparison.has_value()}) {
        digest.add(flag);
    }
    digest.add(doc.intersectionTolerance);
    digest.add(doc.comparedDigest);
    digest.add(doc.foundComparison ? doc.foundComparison->largest : 0.0);
    digest.add(doc.foundComparison ? doc.foundComparison->mean : 0.0);
}

void addDialogs(Digest& digest, const DocumentState& doc) {
    for (const std::string& name : DialogValues::names()) {
        const auto form = doc.dialogs->form(name);
        for (const DialogField& field : form->fields) {
            if (!field.readOnly) {
                digest.add(fieldText(field));
            }
        }
    }
}

} // namespace

std::uint64_t StateMarker::modelMark(const DocumentState& doc) {
    if (!modelKnown_ || revision_ != doc.geometryRevision()) {
        Digest digest;
        addPatches(digest, doc.patches);
        digest.add(doc.feRegion);
        addPatches(digest, doc.fieldPatches);
        model_ = digest.value();
        revision_ = doc.geometryRevision();
        modelKnown_ = true;
    }
    return model_;
}

std::uint64_t StateMarker::undoMark(const DocumentState& doc) {
    const SnapshotCounts& counts = doc.snapshotCounts;
    const std::array<std::uint64_t, 8> key = {counts.patchBegun,
                                              counts.patchTaken,
                                              counts.pointBegun,
                                              counts.pointTaken,
                                              doc.geometryRevision(),
                                              doc.patchUndoReady ? 1U : 0U,
                                              doc.pointUndoReady ? 1U : 0U,
                                              doc.rebuildOnUndo ? 1U : 0U};
    if (!undoKnown_ || undoKey_ != key) {
        Digest digest;
        digest.add(doc.patchUndoReady);
        digest.add(doc.patchUndoReady && doc.rebuildOnUndo);
        digest.add(doc.pointUndoReady);
        if (doc.patchUndoReady) {
            addKept(digest, doc.undoPatches, doc.undoRegion);
        }
        if (doc.pointUndoReady) {
            addKept(digest, doc.pointUndoPatches, doc.pointUndoRegion);
        }
        undo_ = digest.value();
        undoKey_ = key;
        undoKnown_ = true;
    }
    return undo_;
}

StateMark StateMarker::markOf(const DocumentState& doc) {
    Digest kept;
    kept.add(modelMark(doc));
    addCapture(kept, *doc.capture);
    addBuffers(kept, doc);
    addNames(kept, doc);
    addSwitches(kept, doc);
    kept.add(doc.blockCount);
    for (std::int32_t i = 0; i < doc.blockCount; ++i) {
        kept.add(doc.blockList[static_cast<std::size_t>(i)]);
    }
    Digest beside;
    addDialogs(beside, doc);
    return {kept.value(), undoMark(doc), beside.value()};
}

} // namespace velmora

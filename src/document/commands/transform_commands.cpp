#include <algorithm>
#include <utility>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "exchange.h"
#include "messages.h"
#include "patch_order.h"
#include "show_dialog.h"
#include "zone_nodes.h"

namespace velmora {

// Each command treats the zBlock or, without one, the whole model.

namespace {

std::vector<std::int32_t> chosenZones(const VelmoraDoc& doc) {
    if (doc.blockCount < 1) {
        return doc.chosenPatches();
    }
    return zonesReached(doc.feRegion, {doc.blockList.data(), static_cast<std::size_t>(doc.blockCount)});
}

} // namespace

// ---- Scaling, Move, Rotation, Flip, Symmetric -----------------------------------------------------------------------

namespace {

/// False when the map ended the work; what was done before stays done.
bool transformModel(VelmoraDoc& doc, const PointMap& map) {
    if (doc.structureKind == StructureKind::Unstructured) {
        return transformZones(doc.feRegion, chosenZones(doc), map);
    }
    const std::vector<std::int32_t> chosen = doc.chosenPatches();
    return std::all_of(chosen.begin(), chosen.end(), [&doc, &map](std::int32_t patch) {
        return transformPatch(doc.patches[static_cast<std::size_t>(patch)], map);
    });
}

/// Snapshot, work, new box. The captured point goes with the model, or its capture is dropped.
void runTransformation(VelmoraDoc& doc, bool keepsPoint, const std::function<bool()>& work) {
    doc.beginPatchCommand(Extent::Changes);
    const bool zones = doc.structureKind == StructureKind::Unstructured;
    if (zones && doc.feRegion.blocks.empty()) {
        return;
    }
    if (zones && doc.capture->pointCaptured && keepsPoint) {
        doc.undoNode =
            doc.positionAt(doc.capture->capturedPatch, doc.capture->capturedPointSection, doc.capture->capturedPoint)
                .value_or(doc.undoNode);
    }
    if (!work()) {
        doc.ui().showMessage(message::axisAbsent);
        return;
    }
    if (doc.capture->pointCaptured) {
        followCapturedPoint(doc);
        if (keepsPoint) {
            doc.pointUndoReady = true;
        } else {
            doc.capture.dropPoint();
        }
    }
    doc.updateBounds();
    doc.redraw();
}

} // namespace

void VelmoraDoc::ScaleModel() {
    if (structureKind == StructureKind::None || !showDialog(ui_, dialogs->scaling)) {
        return;
    }
    runTransformation(*this, true, [this] { return transformModel(*this, dialogs->scaling.map()); });
}

void VelmoraDoc::MoveModel() {
    if (structureKind == StructureKind::None || !showDialog(ui_, dialogs->move)) {
        return;
    }
    runTransformation(*this, true, [this] { return transformModel(*this, dialogs->move.map()); });
}

void VelmoraDoc::RotateModel() {
    if (structureKind == StructureKind::None || !showDialog(ui_, dialogs->rotate)) {
        return;
    }
    RotationAxis axis = dialogs->rotate.axis();
    runTransformation(*this, true, [this, &axis] {
        return transformModel(*this, [&axis](const zVec<double>& point) { return rotatePoint(point, axis); });
    });
    dialogs->rotate.takeEnd(axis);
}

void VelmoraDoc::FlipModel() {
    if (structureKind == StructureKind::None || !showDialog(ui_, dialogs->flip)) {
        return;
    }
    runTransformation(*this, false, [this] {
        transformModel(*this, dialogs->flip.map());
        if (structureKind == StructureKind::Structured) {
            // Points in reverse order keep a patch on its side.
            for (const std::int32_t patch : chosenPatches()) {
                if (Patch* const field = fieldOfPatch(patch)) {
                    reverseLines(*field);
                }
                reverseLines(patches[static_cast<std::size_t>(patch)]);
            }
        }
        return true;
    });
}

void VelmoraDoc::TurnRound() {
    if (structureKind == StructureKind::None) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    for (const std::int32_t part : chosenPatches()) {
        const auto k = static_cast<std::size_t>(part);
        if (structureKind == StructureKind::Unstructured) {
            turnTriangles(*feRegion.blocks[k]);
            continue;
        }
        reverseLines(patches[k]);
        if (PatchList* const field = wholeField()) {
            reverseLines((*field)[k]);
        }
        if (part == capture->capturedPatch) {
            renumberCapture(capture, patches[k], false);
        }
    }
    followCapturedPoint(*this);
    redraw();
}

void VelmoraDoc::SymmetricModel() {
    if (structureKind == StructureKind::None || !showDialog(ui_, dialogs->symmetric)) {
        return;
    }
    runTransformation(*this, true, [this] {
        if (structureKind == StructureKind::Unstructured) {
            mirrorZones(feRegion, chosenZones(*this), dialogs->symmetric.chosen());
            return true;
        }
        for (const std::int32_t patch : chosenPatches()) {
            Patch image = patches[static_cast<std::size_t>(patch)];
            transformPatch(image, dialogs->symmetric.map());
            patches.push_back(std::move(image));
        }
        return true;
    });
}

// ---- Sections and lines ---------------------------------------------------------------------------------------------

void VelmoraDoc::Convertation() {
    if (structureKind != StructureKind::Structured) {
        return;
    }
    keepForGuard();
    if (!exchangeSectionsAndLines(*this)) {
        return;
    }
    // No snapshot: the command chosen again takes it back. It is a change all the same, asked about before leaving.
    documentModified = true;
    // With a zBlock that does not hold its patch the capture alone has turned: its numbers may be past the patch's
    // ends.
    keepCaptureInside(*this);
    followCapturedPoint(*this);
    redraw();
}

void VelmoraDoc::LastFirstSwitch() {
    if (structureKind != StructureKind::Structured || !showDialog(ui_, dialogs->lastFirst)) {
        return;
    }
    keepForGuard();
    const bool sections = dialogs->lastFirst.kind == 1;
    const std::vector<bool> mask = chosenMask();
    for (std::size_t k = 0; k < patches.size(); ++k) {
        if (mask[k]) {
            const auto reverse = sections ? reverseSections : reverseLines;
            if (Patch* const field = fieldOfPatch(static_cast<std::int32_t>(k))) {
                reverse(*field);
            }
            reverse(patches[k]);
        }
    }
    // As above: a change without a snapshot.
    documentModified = true;
    if (capture->capturedPatch >= 0 && capture->capturedPatch < countOf(patches)) {
        renumberCapture(capture, patches[static_cast<std::size_t>(capture->capturedPatch)], sections);
        followCapturedPoint(*this);
    }
    redraw();
}

} // namespace velmora

#include <algorithm>
#include <utility>

#include "DialogValues.h"
#include "ModelTrial.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "command_rows.h"
#include "command_rules.h"
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

// ---- Scaling, Move, Rotation, Flip, Symmetric -----------------------------------------------------------------------

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

/// What the status line says of what is still held, once the point is not.
const std::string& statusOfRest(const VelmoraDoc& doc) {
    static const std::string nothing = idlePrompt;
    const CaptureState& held = *doc.capture;
    return held.sectionCaptured ? held.sectionContinueStatus
           : held.lineCaptured  ? held.lineContinueStatus
           : held.patchCaptured ? held.continuePrompt
                                : nothing;
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
            if (!doc.pointUndoReady) {
                doc.dropPointUndo(); // it is of a point that was left since, and must not come back with this one
            }
            doc.pointUndoReady = true;
        } else {
            const bool told = doc.capture->tellsOfPoint(doc.status);
            doc.capture.dropPoint();
            if (told) {
                doc.ShowStatus(statusOfRest(doc));
            }
        }
    }
    doc.updateBounds();
    doc.redraw();
}

/// Shows the dialog, and the model as its values map it. False for Cancel.
template <class Values>
bool askForMap(VelmoraDoc& doc, Values& values) {
    return showDialogTrying(doc, values, [&doc](const Values& tried) { return transformModel(doc, tried.map()); });
}

void ScaleModel(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None || !askForMap(doc, doc.dialogs->scaling)) {
        return;
    }
    runTransformation(doc, true, [&doc] { return transformModel(doc, doc.dialogs->scaling.map()); });
}

void MoveModel(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None || !askForMap(doc, doc.dialogs->move)) {
        return;
    }
    runTransformation(doc, true, [&doc] { return transformModel(doc, doc.dialogs->move.map()); });
}

/// The axis comes out as the turn leaves it.
bool turnModel(VelmoraDoc& doc, RotationAxis& axis) {
    return transformModel(doc, [&axis](const zVec<double>& point) { return rotatePoint(point, axis); });
}

void RotateModel(VelmoraDoc& doc) {
    const auto tryOut = [&doc](const CBlockRotate& values) {
        RotationAxis axis = values.axis();
        return turnModel(doc, axis);
    };
    if (doc.structureKind == StructureKind::None || !showDialogTrying(doc, doc.dialogs->rotate, tryOut)) {
        return;
    }
    RotationAxis axis = doc.dialogs->rotate.axis();
    runTransformation(doc, true, [&doc, &axis] { return turnModel(doc, axis); });
    doc.dialogs->rotate.takeEnd(axis);
}

void FlipModel(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None || !showDialog(doc.ui(), doc.dialogs->flip)) {
        return;
    }
    runTransformation(doc, false, [&doc] {
        transformModel(doc, doc.dialogs->flip.map());
        if (doc.structureKind == StructureKind::Structured) {
            // Points in reverse order keep a patch on its side.
            for (const std::int32_t patch : doc.chosenPatches()) {
                if (Patch* const field = doc.fieldOfPatch(patch)) {
                    reverseLines(*field);
                }
                reverseLines(doc.patches[static_cast<std::size_t>(patch)]);
            }
        }
        return true;
    });
}

void TurnRound(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    for (const std::int32_t part : doc.chosenPatches()) {
        const auto k = static_cast<std::size_t>(part);
        if (doc.structureKind == StructureKind::Unstructured) {
            turnTriangles(*doc.feRegion.blocks[k]);
            continue;
        }
        reverseLines(doc.patches[k]);
        if (PatchList* const field = doc.wholeField()) {
            reverseLines((*field)[k]);
        }
        if (part == doc.capture->capturedPatch) {
            renumberCapture(doc.capture, doc.patches[k], false);
        }
    }
    followCapturedPoint(doc);
    doc.redraw();
}

void SymmetricModel(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None || !showDialog(doc.ui(), doc.dialogs->symmetric)) {
        return;
    }
    runTransformation(doc, true, [&doc] {
        if (doc.structureKind == StructureKind::Unstructured) {
            mirrorZones(doc.feRegion, chosenZones(doc), doc.dialogs->symmetric.chosen());
            return true;
        }
        for (const std::int32_t patch : doc.chosenPatches()) {
            Patch image = doc.patches[static_cast<std::size_t>(patch)];
            transformPatch(image, doc.dialogs->symmetric.map());
            doc.patches.push_back(std::move(image));
        }
        return true;
    });
}

// ---- Sections and lines ---------------------------------------------------------------------------------------------

/// What turns the model round and needs no snapshot, as it is taken back by itself, chosen again. Where Undo stands for
/// a command before it, though, that would take back the two of them: Undo takes back the last thing.
void keepTurned(VelmoraDoc& doc) {
    if (doc.patchUndoReady || doc.pointUndoReady) {
        doc.beginPatchCommand(Extent::Stays);
    } else {
        doc.keepForGuard();
    }
}

/// Exchanges sections and lines, and what is captured with them.
void Convertation(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Structured) {
        return;
    }
    keepTurned(doc);
    if (!exchangeSectionsAndLines(doc)) {
        return;
    }
    // With a snapshot or without one it is a change, asked about before leaving.
    doc.documentModified = true;
    // With a zBlock that does not hold its patch the capture alone has turned: its numbers may be past the patch's
    // ends.
    keepCaptureInside(doc);
    followCapturedPoint(doc);
    doc.redraw();
}

void LastFirstSwitch(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Structured || !showDialog(doc.ui(), doc.dialogs->lastFirst)) {
        return;
    }
    keepTurned(doc);
    const bool sections = doc.dialogs->lastFirst.kind == 1;
    const std::vector<bool> mask = doc.chosenMask();
    for (std::size_t k = 0; k < doc.patches.size(); ++k) {
        if (mask[k]) {
            const auto reverse = sections ? reverseSections : reverseLines;
            if (Patch* const field = doc.fieldOfPatch(static_cast<std::int32_t>(k))) {
                reverse(*field);
            }
            reverse(doc.patches[k]);
        }
    }
    // As above: a change in either case.
    doc.documentModified = true;
    if (doc.capture->capturedPatch >= 0 && doc.capture->capturedPatch < countOf(doc.patches)) {
        renumberCapture(doc.capture, doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)], sections);
        followCapturedPoint(doc);
    }
    doc.redraw();
}

} // namespace

std::span<const Command> transformCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "model.scaling",
         .menuText = "&Scaling...",
         .statusText = "Scale zBlock. If no selections work with geometry",
         .toolTip = "Scaling zBlock or geometry",
         .icon = true,
         .run = &ScaleModel,
         .off = emptyModel,
         .places = {{Transformations, 110}, {TransformationsBar, 210}}},
        {.id = "model.move",
         .menuText = "&Move...",
         .statusText = "Move zBlock. If no selections work with geometry",
         .toolTip = "Move zBlock or geometry",
         .icon = true,
         .run = &MoveModel,
         .off = emptyModel,
         .places = {{Transformations, 120}, {TransformationsBar, 220}}},
        {.id = "model.rotation",
         .menuText = "&Rotation...",
         .statusText = "Rotate zBlock about an axis. If no selections work with geometry",
         .toolTip = "Rotate zBlock or geometry",
         .icon = true,
         .run = &RotateModel,
         .off = emptyModel,
         .places = {{Transformations, 130}, {TransformationsBar, 230}}},
        {.id = "model.flip",
         .menuText = "&Flip...",
         .statusText = "Reflect zBlock in a plane. If no selections work with geometry",
         .toolTip = "Flip zBlock or geometry",
         .icon = true,
         .run = &FlipModel,
         .off = emptyModel,
         .places = {{Transformations, 140}, {TransformationsBar, 240}}},
        {.id = "model.turnRound",
         .menuText = "Turn r&ound",
         .statusText = "Make the other side of zBlock the front. If no selections work with geometry",
         .toolTip = "Turn zBlock or geometry round",
         .icon = true,
         .run = &TurnRound,
         .off = emptyModel,
         .places = {{Transformations, 145}, {TransformationsBar, 245}}},
        {.id = "model.symmetric",
         .menuText = "S&ymmetric...",
         .statusText = "Add the reflection of zBlock in a plane. If no selections work with geometry",
         .toolTip = "Create symmetric geometry",
         .icon = true,
         .run = &SymmetricModel,
         .off = nonOrField,
         .places = {{Transformations, 150}, {TransformationsBar, 250}}},
        {.id = "model.convertation",
         .menuText = "Convertation",
         .statusText = "Exchange sections and lines of zBlock. If no selections work with geometry",
         .toolTip = "Convert sections to lines",
         .icon = true,
         .run = &Convertation,
         .off = notGridOrField,
         .places = {{Transformations, 160}, {TransformationsBar, 260}}},
        {.id = "model.lastFirstSwitch",
         .menuText = "Last/First switch...",
         .statusText = "Reverse the order of sections or lines of zBlock. If no selections work with geometry",
         .toolTip = "Last_First switch",
         .icon = true,
         .run = &LastFirstSwitch,
         .off = notGridOrField,
         .places = {{Transformations, 170}, {TransformationsBar, 270}}},
    };
    return rows;
}

} // namespace velmora

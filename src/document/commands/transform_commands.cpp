#include <algorithm>
#include <utility>

#include "VelmoraDoc.h"
#include "messages.h"
#include "patch_order.h"
#include "zone_nodes.h"

namespace velmora {

// Each command treats the zBlock or, without one, the whole model.

namespace {

std::int32_t turnedRound(std::int32_t index, std::int32_t count) {
    return index >= 0 && index < count ? count - 1 - index : index;
}

} // namespace

std::vector<bool> VelmoraDoc::chosenMask() const {
    return blockCount < 1 ? std::vector<bool>(static_cast<std::size_t>(partCount()), true) : blockMask();
}

std::vector<std::int32_t> VelmoraDoc::chosenPatches() const {
    std::vector<std::int32_t> chosen;
    const std::int32_t candidates = blockCount < 1 ? partCount() : blockCount;
    for (std::int32_t i = 0; i < candidates; ++i) {
        const std::int32_t patch = blockCount < 1 ? i : blockList[static_cast<std::size_t>(i)];
        if (patch >= 0 && patch < partCount()) {
            chosen.push_back(patch);
        }
    }
    return chosen;
}

std::vector<std::int32_t> VelmoraDoc::chosenZones() const {
    if (blockCount < 1) {
        return chosenPatches();
    }
    return zonesReached(feRegion, {blockList.data(), static_cast<std::size_t>(blockCount)});
}

/// What is known of the captured point's place follows the model.
void VelmoraDoc::followCapturedPoint() {
    const auto position = positionAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint);
    if (capture->pointHeld() && position) {
        capture.placePoint(*position);
    }
}

// ---- Scaling, Move, Rotation, Flip, Symmetric -----------------------------------------------------------------------

/// False when the map ended the work; what was done before stays done.
bool VelmoraDoc::transformModel(const PointMap& map) {
    if (structureKind == StructureKind::Unstructured) {
        return transformZones(feRegion, chosenZones(), map);
    }
    const std::vector<std::int32_t> chosen = chosenPatches();
    return std::all_of(chosen.begin(), chosen.end(), [this, &map](std::int32_t patch) {
        return transformPatch(patches[static_cast<std::size_t>(patch)], map);
    });
}

/// Snapshot, work, new box. The captured point goes with the model, or its capture is dropped.
void VelmoraDoc::runTransformation(bool keepsPoint, const std::function<bool()>& work) {
    beginPatchCommand(true);
    const bool zones = structureKind == StructureKind::Unstructured;
    if (zones && feRegion.blocks.empty()) {
        return;
    }
    if (zones && capture->pointCaptured && keepsPoint) {
        undoNode = positionAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint)
                       .value_or(undoNode);
    }
    if (!work()) {
        ui_.showMessage(message::axisAbsent);
        return;
    }
    if (capture->pointCaptured) {
        followCapturedPoint();
        if (keepsPoint) {
            pointUndoReady = true;
        } else {
            capture.dropPoint();
        }
    }
    updateBounds();
    redraw();
}

void VelmoraDoc::ScaleModel() {
    if (structureKind == StructureKind::None || !showDialog(scalingValues)) {
        return;
    }
    runTransformation(true, [this] { return transformModel(scalingValues.map()); });
}

void VelmoraDoc::MoveModel() {
    if (structureKind == StructureKind::None || !showDialog(moveValues)) {
        return;
    }
    runTransformation(true, [this] { return transformModel(moveValues.map()); });
}

void VelmoraDoc::RotateModel() {
    if (structureKind == StructureKind::None || !showDialog(rotateValues)) {
        return;
    }
    RotationAxis axis = rotateValues.axis();
    runTransformation(true, [this, &axis] {
        return transformModel([&axis](const zVec<double>& point) { return rotatePoint(point, axis); });
    });
    rotateValues.takeEnd(axis);
}

void VelmoraDoc::FlipModel() {
    if (structureKind == StructureKind::None || !showDialog(flipValues)) {
        return;
    }
    runTransformation(false, [this] {
        transformModel(flipValues.map());
        if (structureKind == StructureKind::Structured) {
            // Points in reverse order keep a patch on its side.
            for (const std::int32_t patch : chosenPatches()) {
                reverseLines(patches[static_cast<std::size_t>(patch)]);
            }
        }
        return true;
    });
}

void VelmoraDoc::SymmetricModel() {
    if (structureKind == StructureKind::None || !showDialog(symmetricValues)) {
        return;
    }
    runTransformation(true, [this] {
        if (structureKind == StructureKind::Unstructured) {
            mirrorZones(feRegion, chosenZones(), symmetricValues.chosen());
            return true;
        }
        for (const std::int32_t patch : chosenPatches()) {
            Patch image = patches[static_cast<std::size_t>(patch)];
            transformPatch(image, symmetricValues.map());
            patches.push_back(std::move(image));
        }
        return true;
    });
}

// ---- Sections and lines ---------------------------------------------------------------------------------------------

/// Transposes the chosen patches, and the capture with them, whether or not its patch is one of them. False, and
/// nothing is changed, when one of them is no grid.
bool VelmoraDoc::exchangeSectionsAndLines() {
    if (!transposePatches(patches, chosenMask())) {
        return false;
    }
    exchangeCapture();
    return true;
}

/// What is captured keeps its place when sections and lines change their parts.
void VelmoraDoc::exchangeCapture() {
    if (capture->pointHeld()) {
        capture.exchangePointNumbers();
        followCapturedPoint();
    }
    capture.exchangeSectionAndLine();
}

void VelmoraDoc::Convertation() {
    if (structureKind != StructureKind::Structured) {
        return;
    }
    keepForGuard();
    if (!exchangeSectionsAndLines()) {
        return;
    }
    // No snapshot: the command chosen again takes it back. It is a change all the same, asked about before leaving.
    documentModified = true;
    redraw();
}

void VelmoraDoc::LastFirstSwitch() {
    if (structureKind != StructureKind::Structured || !showDialog(lastFirstValues)) {
        return;
    }
    keepForGuard();
    const bool sections = lastFirstValues.kind == 1;
    const std::vector<bool> mask = chosenMask();
    for (std::size_t k = 0; k < patches.size(); ++k) {
        if (mask[k]) {
            (sections ? reverseSections : reverseLines)(patches[k]);
        }
    }
    // As above: a change without a snapshot.
    documentModified = true;
    if (capture->capturedPatch >= 0 && capture->capturedPatch < countOf(patches)) {
        const Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
        const std::int32_t count = sections ? countOf(patch) : lineCount(patch);
        if (capture->pointCaptured) {
            const std::int32_t section = capture->capturedPointSection;
            const std::int32_t point = capture->capturedPoint;
            capture.renumberPoint(sections ? turnedRound(section, count) : section,
                                  sections ? point : turnedRound(point, count));
            followCapturedPoint();
        }
        if (capture->sectionCaptured && sections) {
            capture.renumberSection(turnedRound(capture->capturedSection, count));
        } else if (capture->lineCaptured && !sections) {
            capture.renumberLine(turnedRound(capture->capturedLine, count));
        }
    }
    redraw();
}

} // namespace velmora

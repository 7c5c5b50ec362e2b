#include "given_model.h"

#include <utility>

#include "VelmoraDoc.h"

namespace velmora {

namespace {

void dropFieldOfAnotherShape(VelmoraDoc& doc) {
    if (doc.wholeField() != nullptr) {
        return;
    }
    doc.fieldPatches.clear();
    doc.fieldLoaded = false;
    doc.fieldMode = false;
    doc.fieldOpening = false;
}

void takeKind(VelmoraDoc& doc) {
    if (doc.patches.empty()) {
        doc.structureKind = StructureKind::Unstructured;
        doc.fileKind = FileKind::None;
    } else {
        doc.checkRegularity(doc.patches);
    }
}

/// Triangles may stay in a file of any type that holds them; of patches the kind names the type.
void takeName(VelmoraDoc& doc, StructureKind before) {
    doc.modelFile.titleWrong = false;
    if (before == StructureKind::None) {
        doc.modelFile.nameUntitled(doc.patches.empty() ? "dat" : textOf(doc.fileKind));
    } else if (before == StructureKind::Structured && doc.patches.empty()) {
        doc.modelFile.takeExtension("dat");
    }
    doc.retitle();
}

} // namespace

void takeGivenModel(VelmoraDoc& doc, PatchList&& patches, zRegion_fe&& region) {
    const StructureKind before = doc.structureKind;
    doc.leaveRegimes(); // what they hold is of the model that goes
    if (before != StructureKind::None) {
        doc.beginPatchCommand(Extent::Changes);
    }
    doc.emptyBlock();
    doc.patches = std::move(patches);
    doc.feRegion.blocks = std::move(region.blocks);
    dropFieldOfAnotherShape(doc);
    takeKind(doc);
    takeName(doc, before);
    if (before == StructureKind::None) {
        doc.surfaceMode = doc.fileKind != FileKind::Skl;
    }
    doc.documentModified = true;
    doc.updateBounds();
    doc.redraw();
}

} // namespace velmora

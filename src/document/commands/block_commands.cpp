#include "block_commands.h"

#include <algorithm>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "apt.h"
#include "file_types.h"
#include "messages.h"
#include "patch_order.h"
#include "path_names.h"
#include "regimes.h"
#include "show_dialog.h"
#include "skl.h"
#include "write_files.h"

namespace velmora {

// The zBlock as a whole: what it holds, and what becomes of the parts in it.

void VelmoraDoc::InvertBlock() {
    const std::vector<bool> mask = blockMask();
    std::vector<std::int32_t> rest;
    for (std::int32_t part = 0; part < partCount(); ++part) {
        if (!mask[static_cast<std::size_t>(part)]) {
            rest.push_back(part);
        }
    }
    if (rest.size() > blockList.size()) {
        ui_.showMessage(message::blockIsFull);
        return;
    }
    emptyBlock();
    std::copy(rest.begin(), rest.end(), blockList.begin());
    blockCount = countOf(rest);
    if (rest.empty()) {
        showBlockOnly = false;
    }
    redrawPicture();
}

// ---- Extract and Delete ---------------------------------------------------------------------------------------------

namespace {

/// Keeps the patches whose mark is `kept`, in the order of the model.
void keepPatches(VelmoraDoc& doc, const std::vector<bool>& mask, bool kept) {
    const auto keep = [&mask, kept](PatchList& list) {
        PatchList rest;
        for (std::size_t k = 0; k < list.size(); ++k) {
            if (mask[k] == kept) {
                rest.push_back(std::move(list[k]));
            }
        }
        list.swap(rest);
    };
    if (PatchList* const field = doc.wholeField()) {
        keep(*field);
    }
    keep(doc.patches);
}

/// The model lost its last part: nothing is left to select or to capture.
void endEmptiedModel(VelmoraDoc& doc) {
    doc.forgetKinds();
    doc.emptyBlock();
    doc.capture.forgetPatch();
    doc.EndBlockRegime();
}

/// Ends in the idle state, with no zBlock.
void finishBlockRemoval(VelmoraDoc& doc) {
    if (doc.partCount() == 0) {
        endEmptiedModel(doc);
    }
    doc.emptyBlock();
    doc.capture.dropPatches();
    doc.showBlockOnly = false;
    doc.ShowStatus(idlePrompt);
    doc.resetMouseMode();
    if (doc.structureKind == StructureKind::Structured) {
        doc.retitle();
    }
    doc.redraw();
}

} // namespace

void VelmoraDoc::ExtractBlock() {
    if (structureKind == StructureKind::None) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    const std::vector<bool> mask = blockMask();
    const std::vector<std::int32_t> block(blockList.begin(), blockList.begin() + blockCount);
    leavePointAndCurves(*this);
    if (structureKind == StructureKind::Structured) {
        keepPatches(*this, mask, true);
    } else {
        zRegion_fe extracted;
        for (const std::int32_t zone : block) {
            copyBlock(feRegion, extracted, zone);
        }
        feRegion.blocks.swap(extracted.blocks);
    }
    finishBlockRemoval(*this);
}

void VelmoraDoc::DeleteBlock() {
    if (structureKind == StructureKind::None) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    leavePointAndCurves(*this);
    const std::vector<bool> mask = blockMask();
    if (structureKind == StructureKind::Structured) {
        keepPatches(*this, mask, false);
    } else {
        zRegion_fe rest;
        for (std::size_t zone = 0; zone < mask.size(); ++zone) {
            if (!mask[zone]) {
                rest.blocks.push_back(std::move(feRegion.blocks[zone]));
            }
        }
        feRegion.blocks.swap(rest.blocks);
    }
    finishBlockRemoval(*this);
}

void takePatchOut(VelmoraDoc& doc, std::int32_t patch) {
    doc.patches.erase(doc.patches.begin() + patch);
    const auto end = doc.blockList.begin() + doc.blockCount;
    const auto kept = std::remove(doc.blockList.begin(), end, patch);
    std::fill(kept, end, -1);
    doc.blockCount = static_cast<std::int32_t>(kept - doc.blockList.begin());
    for (std::int32_t& number : doc.blockList) {
        if (number > patch) {
            --number;
        }
    }
    if (doc.patches.empty()) {
        endEmptiedModel(doc);
    }
}

// ---- The paste buffer -----------------------------------------------------------------------------------------------

void VelmoraDoc::CopyBlock() {
    if (structureKind != StructureKind::Structured || blockCount < 1) {
        return;
    }
    blockClipboard.clear();
    for (std::int32_t i = 0; i < blockCount; ++i) {
        const std::int32_t patch = blockList[static_cast<std::size_t>(i)];
        appendPatches(patches, blockClipboard, patch, patch + 1);
    }
    blockClipboardFull = true;
}

void VelmoraDoc::PasteBlock() {
    if (structureKind == StructureKind::Unstructured) {
        return;
    }
    const bool intoNothing = structureKind == StructureKind::None;
    if (!intoNothing) {
        beginPatchCommand(Extent::Stays);
        leavePointAndCurves(*this);
        keepPatches(*this, blockMask(), false);
    }
    emptyBlock();
    const std::int32_t before = countOf(patches);
    if (PatchList* const field = wholeField()) {
        for (const Patch& patch : blockClipboard) {
            Patch& values = field->emplace_back(); // of points that come from elsewhere nothing is known: 0
            for (const PointList& section : patch) {
                values.emplace_back(section.size());
            }
        }
    }
    appendPatches(blockClipboard, patches, 0, countOf(blockClipboard));
    blockCount = std::min(countOf(blockClipboard), blockCapacity);
    for (std::int32_t i = 0; i < blockCount; ++i) {
        blockList[static_cast<std::size_t>(i)] = before + i;
    }
    capture.holdBlock();
    if (intoNothing) {
        structureKind = StructureKind::Structured;
        checkRegularity(patches);
        modelFile.nameUntitled(fileKind == FileKind::Apt ? "apt" : "skl");
        updateBounds();
    } else {
        // Lines may have come into a grid.
        retitle();
    }
    redraw();
}

// ---- Save As --------------------------------------------------------------------------------------------------------

namespace {

/// Writes the zBlock alone; the model keeps its own file.
void writeBlock(VelmoraDoc& doc, const std::filesystem::path& path) {
    const std::span<const std::int32_t> block(doc.blockList.data(), static_cast<std::size_t>(doc.blockCount));
    if (doc.structureKind == StructureKind::Unstructured) {
        zRegion_fe scratch;
        scratch.title = doc.feRegion.title;
        scratch.words = doc.feRegion.words;
        for (const std::int32_t zone : block) {
            copyBlock(doc.feRegion, scratch, zone);
        }
        writeZones(doc, path, {}, scratch);
        return;
    }
    WriteOutcome outcome;
    {
        const BusyScope busy(doc.ui());
        outcome = doc.blockKind == FileKind::Skl
                      ? writeSklBlock(path, doc.patches, block, outputPrecision, progressTo(doc.ui()))
                      : writeAptBlock(path, doc.patches, block, outputPrecision, progressTo(doc.ui()));
    }
    finishWriting(doc, outcome);
}

} // namespace

void VelmoraDoc::SaveBlockAs() {
    if (structureKind == StructureKind::None || blockCount < 1) {
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.proposed = modelFile.chosenPath;
    request.command = "block.saveAs";
    if (structureKind == StructureKind::Structured) {
        PatchList block;
        for (const std::int32_t patch : chosenPatches()) {
            appendPatches(patches, block, patch, patch + 1);
        }
        const Regularity regularity = regularityOf(block);
        if (regularity != Regularity::Undecided) {
            blockKind = regularity == Regularity::Regular ? FileKind::Apt : FileKind::Skl;
        }
        request.types = fileTypesNamed({blockKind == FileKind::Skl ? "skl" : "apt"});
        request.proposed.replace_extension(request.types.front().extension);
    } else {
        request.types = fileTypesNamed({"dat", "wrl", "stl"});
    }
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const std::string extension = extensionOf(path);
    const bool offered = std::any_of(request.types.begin(), request.types.end(),
                                     [&extension](const FileType& type) { return type.extension == extension; });
    if (!offered) {
        ui_.showMessage(message::cannotBeSavedAs(extension));
    } else if (mayOverwrite(*this, path, TargetFrom::Chooser)) {
        writeBlock(*this, path);
    }
}

// ---- Extrapolate ----------------------------------------------------------------------------------------------------

void VelmoraDoc::Extrapolate() {
    if (structureKind != StructureKind::Structured || !showDialog(ui_, dialogs->extrapolation)) {
        return;
    }
    const bool lines = dialogs->extrapolation.kind > 2;
    const bool beyondLast = dialogs->extrapolation.kind % 2 == 0;
    const std::vector<bool> mask = blockMask();
    beginPatchCommand(Extent::Stays);
    if (!lines || transposePatches(patches, mask)) {
        for (std::size_t k = 0; k < patches.size(); ++k) {
            if (mask[k]) {
                extrapolate(patches[k], beyondLast, dialogs->extrapolation.coefficient);
            }
        }
        if (lines) {
            transposePatches(patches, mask);
        }
    }
    leavePointAndCurves(*this);
    redraw();
}

} // namespace velmora

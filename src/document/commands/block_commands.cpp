#include <algorithm>

#include "VelmoraDoc.h"
#include "apt.h"
#include "file_types.h"
#include "messages.h"
#include "patch_order.h"
#include "path_names.h"
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

/// Keeps the patches whose mark is `kept`, in the order of the model.
void VelmoraDoc::keepPatches(const std::vector<bool>& mask, bool kept) {
    PatchList rest;
    for (std::size_t k = 0; k < patches.size(); ++k) {
        if (mask[k] == kept) {
            rest.push_back(std::move(patches[k]));
        }
    }
    patches.swap(rest);
}

/// The model lost its last part: nothing is left to select or to capture.
void VelmoraDoc::endEmptiedModel() {
    forgetKinds();
    emptyBlock();
    capture.forgetPatch();
    EndBlockRegime();
}

/// Ends in the idle state, with no zBlock.
void VelmoraDoc::finishBlockRemoval() {
    if (partCount() == 0) {
        endEmptiedModel();
    }
    emptyBlock();
    capture.dropPatches();
    showBlockOnly = false;
    ShowStatus(idlePrompt);
    resetMouseMode();
    if (structureKind == StructureKind::Structured) {
        retitle();
    }
    redraw();
}

void VelmoraDoc::ExtractBlock() {
    if (structureKind == StructureKind::None) {
        return;
    }
    beginPatchCommand(false);
    const std::vector<bool> mask = blockMask();
    const std::vector<std::int32_t> block(blockList.begin(), blockList.begin() + blockCount);
    leavePointAndCurves();
    if (structureKind == StructureKind::Structured) {
        keepPatches(mask, true);
    } else {
        zRegion_fe extracted;
        for (const std::int32_t zone : block) {
            copyBlock(feRegion, extracted, zone);
        }
        feRegion.blocks.swap(extracted.blocks);
    }
    finishBlockRemoval();
}

void VelmoraDoc::DeleteBlock() {
    if (structureKind == StructureKind::None) {
        return;
    }
    beginPatchCommand(false);
    leavePointAndCurves();
    const std::vector<bool> mask = blockMask();
    if (structureKind == StructureKind::Structured) {
        keepPatches(mask, false);
    } else {
        zRegion_fe rest;
        for (std::size_t zone = 0; zone < mask.size(); ++zone) {
            if (!mask[zone]) {
                rest.blocks.push_back(std::move(feRegion.blocks[zone]));
            }
        }
        feRegion.blocks.swap(rest.blocks);
    }
    finishBlockRemoval();
}

/// Removes a patch of the model, and its number from the zBlock; the numbers above it go down.
void VelmoraDoc::takePatchOut(std::int32_t patch) {
    patches.erase(patches.begin() + patch);
    const auto end = blockList.begin() + blockCount;
    const auto kept = std::remove(blockList.begin(), end, patch);
    std::fill(kept, end, -1);
    blockCount = static_cast<std::int32_t>(kept - blockList.begin());
    for (std::int32_t& number : blockList) {
        if (number > patch) {
            --number;
        }
    }
    if (patches.empty()) {
        endEmptiedModel();
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
        beginPatchCommand(false);
        leavePointAndCurves();
        keepPatches(blockMask(), false);
    }
    emptyBlock();
    const std::int32_t before = countOf(patches);
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
    if (structureKind != StructureKind::Structured || !showDialog(extrapolationValues)) {
        return;
    }
    const bool lines = extrapolationValues.kind > 2;
    const bool beyondLast = extrapolationValues.kind % 2 == 0;
    const std::vector<bool> mask = blockMask();
    beginPatchCommand(false);
    if (!lines || transposePatches(patches, mask)) {
        for (std::size_t k = 0; k < patches.size(); ++k) {
            if (mask[k]) {
                extrapolate(patches[k], beyondLast, extrapolationValues.coefficient);
            }
        }
        if (lines) {
            transposePatches(patches, mask);
        }
    }
    leavePointAndCurves();
    redraw();
}

} // namespace velmora

#include "block_commands.h"

#include <algorithm>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "apt.h"
#include "command_rows.h"
#include "command_rules.h"
#include "file_types.h"
#include "messages.h"
#include "patch_order.h"
#include "path_names.h"
#include "regimes.h"
#include "regularity.h"
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

void ExtractBlock(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    const std::vector<bool> mask = doc.blockMask();
    const std::vector<std::int32_t> block(doc.blockList.begin(), doc.blockList.begin() + doc.blockCount);
    leavePointAndCurves(doc);
    if (doc.structureKind == StructureKind::Structured) {
        keepPatches(doc, mask, true);
    } else {
        zRegion_fe extracted;
        for (const std::int32_t zone : block) {
            copyBlock(doc.feRegion, extracted, zone);
        }
        doc.feRegion.blocks.swap(extracted.blocks);
    }
    finishBlockRemoval(doc);
}

void DeleteBlock(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    leavePointAndCurves(doc);
    const std::vector<bool> mask = doc.blockMask();
    if (doc.structureKind == StructureKind::Structured) {
        keepPatches(doc, mask, false);
    } else {
        zRegion_fe rest;
        for (std::size_t zone = 0; zone < mask.size(); ++zone) {
            if (!mask[zone]) {
                rest.blocks.push_back(std::move(doc.feRegion.blocks[zone]));
            }
        }
        doc.feRegion.blocks.swap(rest.blocks);
    }
    finishBlockRemoval(doc);
}

} // namespace

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

namespace {

void CopyBlock(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Structured || doc.blockCount < 1) {
        return;
    }
    doc.blockClipboard.clear();
    for (std::int32_t i = 0; i < doc.blockCount; ++i) {
        const std::int32_t patch = doc.blockList[static_cast<std::size_t>(i)];
        appendPatches(doc.patches, doc.blockClipboard, patch, patch + 1);
    }
    doc.blockClipboardFull = true;
}

void PasteBlock(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::Unstructured) {
        return;
    }
    const bool intoNothing = doc.structureKind == StructureKind::None;
    if (!intoNothing) {
        doc.beginPatchCommand(Extent::Stays);
        leavePointAndCurves(doc);
        keepPatches(doc, doc.blockMask(), false);
    }
    doc.emptyBlock();
    const std::int32_t before = countOf(doc.patches);
    if (PatchList* const field = doc.wholeField()) {
        for (const Patch& patch : doc.blockClipboard) {
            Patch& values = field->emplace_back(); // of points that come from elsewhere nothing is known: 0
            for (const PointList& section : patch) {
                values.emplace_back(section.size());
            }
        }
    }
    appendPatches(doc.blockClipboard, doc.patches, 0, countOf(doc.blockClipboard));
    doc.blockCount = std::min(countOf(doc.blockClipboard), blockCapacity);
    for (std::int32_t i = 0; i < doc.blockCount; ++i) {
        doc.blockList[static_cast<std::size_t>(i)] = before + i;
    }
    doc.capture.holdBlock();
    if (intoNothing) {
        doc.structureKind = StructureKind::Structured;
        doc.checkRegularity(doc.patches);
        doc.modelFile.nameUntitled(doc.fileKind == FileKind::Apt ? "apt" : "skl");
        doc.updateBounds();
    } else {
        // Lines may have come into a grid.
        doc.retitle();
    }
    doc.redraw();
}

// ---- Save As --------------------------------------------------------------------------------------------------------

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
        writeZones(doc, path, {}, scratch, FileContent::Part);
        return;
    }
    WriteOutcome outcome;
    {
        const BusyScope busy(doc.ui());
        outcome = doc.blockKind == FileKind::Skl
                      ? writeSklBlock(path, doc.patches, block, outputPrecision, progressTo(doc.ui()))
                      : writeAptBlock(path, doc.patches, block, outputPrecision, progressTo(doc.ui()));
    }
    finishWriting(doc, outcome, FileContent::Part);
}

void SaveBlockAs(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None || doc.blockCount < 1) {
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.proposed = doc.modelFile.chosenPath;
    request.command = "block.saveAs";
    if (doc.structureKind == StructureKind::Structured) {
        const Regularity regularity = regularityOfChosen(doc.patches, doc.chosenPatches());
        if (regularity != Regularity::Undecided) {
            doc.blockKind = regularity == Regularity::Regular ? FileKind::Apt : FileKind::Skl;
        }
        request.types = fileTypesNamed({doc.blockKind == FileKind::Skl ? "skl" : "apt"});
        request.proposed.replace_extension(request.types.front().extension);
    } else {
        request.types = fileTypesNamed({"dat", "wrl", "stl"});
    }
    const std::vector<std::filesystem::path> paths = doc.ui().chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const std::string extension = extensionOf(path);
    const bool offered = std::any_of(request.types.begin(), request.types.end(),
                                     [&extension](const FileType& type) { return type.extension == extension; });
    if (!offered) {
        doc.ui().showMessage(message::cannotBeSavedAs(extension));
    } else if (mayOverwrite(doc, path, TargetFrom::Chooser, FileContent::Part)) {
        writeBlock(doc, path);
    }
}

// ---- Extrapolate ----------------------------------------------------------------------------------------------------

void Extrapolate(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Structured || !showDialog(doc.ui(), doc.dialogs->extrapolation)) {
        return;
    }
    const bool lines = doc.dialogs->extrapolation.kind > 2;
    const bool beyondLast = doc.dialogs->extrapolation.kind % 2 == 0;
    const std::vector<bool> mask = doc.blockMask();
    doc.beginPatchCommand(Extent::Stays);
    if (!lines || transposePatches(doc.patches, mask)) {
        for (std::size_t k = 0; k < doc.patches.size(); ++k) {
            if (mask[k]) {
                extrapolate(doc.patches[k], beyondLast, doc.dialogs->extrapolation.coefficient);
            }
        }
        if (lines) {
            transposePatches(doc.patches, mask);
        }
    }
    leavePointAndCurves(doc);
    doc.redraw();
}

} // namespace

std::span<const Command> blockCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "block.invert",
         .menuText = "Invert Selection",
         .statusText = "Select unselected blocks and deselect selected",
         .run = &VelmoraDoc::InvertBlock,
         .places = {{PatchContext, 130}}},
        {.id = "block.extract",
         .menuText = "&Block extract ",
         .statusText = "Extract patches included in zBlock",
         .toolTip = "Extract zBlock",
         .icon = true,
         .run = &ExtractBlock,
         .off = noBlockOrField,
         .places = {{EditPatches, 220}, {PatchContext, 220}, {EditingBar, 150}}},
        {.id = "block.delete",
         .menuText = "Block &delete ",
         .statusText = "Delete selected zBlock from container",
         .toolTip = "Delete zBlock",
         .icon = true,
         .run = &DeleteBlock,
         .off = noBlockOrField,
         .places = {{EditPatches, 210}, {PatchContext, 210}, {EditingBar, 120}}},
        {.id = "block.saveAs",
         .menuText = "Block Sa&ve As ...",
         .statusText = "Save As selected zBlock",
         .run = &SaveBlockAs,
         .off = noBlock,
         .places = {{EditPatches, 230}, {PatchContext, 230}}},
        {.id = "block.copy",
         .menuText = "Block copy ",
         .statusText = "Copy selected zBlock to paste buffer",
         .run = &CopyBlock,
         .off = [](Doc d) { return noBlock(d) || notStrOrField(d); },
         .places = {{EditPatches, 240}, {PatchContext, 240}}},
        {.id = "block.paste",
         .menuText = "Block paste ",
         .statusText = "Replace selected zBlock with zBlock from Paste buffer",
         .run = &PasteBlock,
         .off = [](Doc d) { return !d.blockClipboardFull || notStr(d); },
         .places = {{EditPatches, 250}, {PatchContext, 250}}},
        {.id = "block.extrapolate",
         .menuText = "&Extrapolate...",
         .statusText = "Extrapolate first (last) line to increase limits of patch",
         .run = &Extrapolate,
         .off = [](Doc d) { return notGridOrField(d) || noBlock(d); },
         .places = {{EditPatches, 310}, {PatchContext, 430}}},
    };
    return rows;
}

} // namespace velmora

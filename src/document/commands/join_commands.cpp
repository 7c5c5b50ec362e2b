#include <algorithm>

#include "VelmoraDoc.h"
#include "match_border.h"
#include "merge_patches.h"
#include "merge_zones.h"
#include "messages.h"
#include "split_patch.h"

namespace velmora {

// Commands that cut patches in two, join them, or close the gap between them.

void VelmoraDoc::SplitPatch() {
    beginPatchCommand(false);
    const auto split = [this](PatchList& list) {
        if (capture->sectionCaptured) {
            splitAtSection(list, capture->capturedPatch, capture->capturedSection);
        } else if (capture->lineCaptured) {
            splitAtLine(list, capture->capturedPatch, capture->capturedLine);
        }
    };
    split(patches);
    if (fieldMode) {
        split(fieldPatches);
    }
    retitle();
    if (capture->sectionCaptured) {
        ShowStatus(capture->sectionContinueStatus);
    } else {
        ShowStatus(capture->patchCaptured ? capture->continuePrompt : idlePrompt);
    }
    emptyBlock(); // the patches behind the cut have other numbers now
    showBlockOnly = false;
    redraw();
}

void VelmoraDoc::MergePatches() {
    if (structureKind == StructureKind::Unstructured) {
        mergeZonesOfBlock();
    } else if (!mergePatchesOfBlock()) {
        return;
    }
    letCurveGo();
    leavePointRegime(); // its patch may be gone
    emptyBlock();
    capture.forgetPatch();
    EndBlockRegime();
    showIdlePrompt();
}

bool VelmoraDoc::mergePatchesOfBlock() {
    mergeValues.isApt = fileKind == FileKind::Apt;
    if (!showDialog(mergeValues)) {
        return false;
    }
    showDoublePoints = featuresValues.showDoublePoints = mergeValues.showDouble;
    if (!mergeStructured()) {
        redraw(); // the double points alone
        return false;
    }
    checkRegularity(patches);
    return true;
}

/// The first zone of the zBlock takes in the others, one after the other.
void VelmoraDoc::mergeZonesOfBlock() {
    beginPatchCommand(false);
    for (std::int32_t i = 1; i < blockCount; ++i) {
        const std::int32_t zone = blockList[static_cast<std::size_t>(i)];
        if (zone < 0) {
            continue;
        }
        mergeZones(feRegion, blockList[0], zone);
        for (std::int32_t j = 0; j < blockCount; ++j) {
            std::int32_t& other = blockList[static_cast<std::size_t>(j)];
            other -= other > zone ? 1 : 0;
        }
        blockList[static_cast<std::size_t>(i)] = -1;
    }
}

bool VelmoraDoc::mergeStructured() {
    const bool lines = mergeValues.kind == 2;
    const auto block = std::span<const std::int32_t>(blockList).first(static_cast<std::size_t>(blockCount));
    const MergeMembers members = mergeMembers(patches, block);
    if (members.base < 0) {
        return false;
    }
    if (!canMerge(patches, members, lines)) {
        ui_.showMessage(lines ? message::sectionsDiffer : message::mergeImpossible);
        return false;
    }
    beginPatchCommand(false);
    const auto append = lines ? appendLines : appendSections;
    append(patches, members, {mergeValues.matching, false});
    removeMerged(patches, members);
    const bool fieldFits =
        std::all_of(block.begin(), block.end(), [this](std::int32_t k) { return k < countOf(fieldPatches); });
    if (fieldMode && fieldFits) {
        // The first lines of the field's patches stay unless the user wants them deleted: wanted, also where the
        // geometry has dropped its own.
        append(fieldPatches, members, {false, lines && !mergeValues.deleteDouble});
        removeMerged(fieldPatches, members);
    }
    emptyBlock();
    return true;
}

void VelmoraDoc::MatchBorder() {
    matchBlock(false);
}

void VelmoraDoc::MatchBorderAndGrid() {
    matchBlock(true);
}

/// Matches each patch of the zBlock to the one before it, until a pair does not fit.
void VelmoraDoc::matchBlock(bool grid) {
    beginPatchCommand(false);
    const auto exists = [this](std::int32_t k) { return k >= 0 && k < countOf(patches); };
    for (std::size_t i = 0; i + 1 < static_cast<std::size_t>(blockCount); ++i) {
        const std::int32_t a = blockList[i];
        const std::int32_t b = blockList[i + 1];
        if (!exists(a) || !exists(b)) {
            continue;
        }
        if (!velmora::matchBorder(patches[static_cast<std::size_t>(a)], patches[static_cast<std::size_t>(b)], grid)) {
            ui_.showMessage(message::matchingImpossible);
            break;
        }
    }
    redraw();
}

} // namespace velmora

#include <algorithm>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "match_border.h"
#include "merge_patches.h"
#include "merge_zones.h"
#include "messages.h"
#include "regimes.h"
#include "show_dialog.h"
#include "split_patch.h"

namespace velmora {

// Commands that cut patches in two, join them, or close the gap between them.

namespace {

void SplitPatch(VelmoraDoc& doc) {
    doc.beginPatchCommand(Extent::Stays);
    const auto split = [&doc](PatchList& list) {
        if (doc.capture->sectionCaptured) {
            splitAtSection(list, doc.capture->capturedPatch, doc.capture->capturedSection);
        } else if (doc.capture->lineCaptured) {
            splitAtLine(list, doc.capture->capturedPatch, doc.capture->capturedLine);
        }
    };
    split(doc.patches);
    if (doc.fieldMode) {
        split(doc.fieldPatches);
    }
    doc.retitle();
    if (doc.capture->sectionCaptured) {
        doc.ShowStatus(doc.capture->sectionContinueStatus);
    } else {
        doc.ShowStatus(doc.capture->patchCaptured ? doc.capture->continuePrompt : idlePrompt);
    }
    doc.emptyBlock(); // the patches behind the cut have other numbers now
    doc.showBlockOnly = false;
    doc.redraw();
}

bool mergeStructured(VelmoraDoc& doc) {
    const bool lines = doc.dialogs->merge.kind == 2;
    const auto block = std::span<const std::int32_t>(doc.blockList).first(static_cast<std::size_t>(doc.blockCount));
    const MergeMembers members = mergeMembers(doc.patches, block);
    if (members.base < 0) {
        return false;
    }
    if (!canMerge(doc.patches, members, lines)) {
        doc.ui().showMessage(lines ? message::sectionsDiffer : message::mergeImpossible);
        return false;
    }
    doc.beginPatchCommand(Extent::Stays);
    const auto append = lines ? appendLines : appendSections;
    PatchList* const values = doc.wholeField();
    append(doc.patches, members, {doc.dialogs->merge.matching, false}, values);
    removeMerged(doc.patches, members);
    if (values != nullptr) {
        // The field drops what the grid drops, whatever is said of double sections: a value without its point would
        // belong to its neighbour.
        append(doc.fieldPatches, members, {}, nullptr);
        removeMerged(doc.fieldPatches, members);
    }
    doc.emptyBlock();
    return true;
}

bool mergePatchesOfBlock(VelmoraDoc& doc) {
    doc.dialogs->merge.isApt = doc.fileKind == FileKind::Apt;
    if (!showDialog(doc.ui(), doc.dialogs->merge)) {
        return false;
    }
    doc.showDoublePoints = doc.dialogs->features.showDoublePoints = doc.dialogs->merge.showDouble;
    if (!mergeStructured(doc)) {
        doc.redraw(); // the double points alone
        return false;
    }
    doc.checkRegularity(doc.patches);
    return true;
}

/// The first zone of the zBlock takes in the others, one after the other.
void mergeZonesOfBlock(VelmoraDoc& doc) {
    doc.beginPatchCommand(Extent::Stays);
    for (std::int32_t i = 1; i < doc.blockCount; ++i) {
        const std::int32_t zone = doc.blockList[static_cast<std::size_t>(i)];
        if (zone < 0) {
            continue;
        }
        mergeZones(doc.feRegion, doc.blockList[0], zone);
        for (std::int32_t j = 0; j < doc.blockCount; ++j) {
            std::int32_t& other = doc.blockList[static_cast<std::size_t>(j)];
            other -= other > zone ? 1 : 0;
        }
        doc.blockList[static_cast<std::size_t>(i)] = -1;
    }
}

} // namespace

void VelmoraDoc::MergePatches() {
    if (structureKind == StructureKind::Unstructured) {
        mergeZonesOfBlock(*this);
    } else if (!mergePatchesOfBlock(*this)) {
        return;
    }
    letCurveGo(*this);
    leavePointRegime(*this); // its patch may be gone
    emptyBlock();
    capture.forgetPatch();
    EndBlockRegime();
    redraw();
    showIdlePrompt(*this);
}

namespace {

/// Matches each patch of the zBlock to the one before it, until a pair does not fit.
void matchBlock(VelmoraDoc& doc, bool grid) {
    doc.beginPatchCommand(Extent::Stays);
    const auto exists = [&doc](std::int32_t k) { return k >= 0 && k < countOf(doc.patches); };
    bool matchedAny = false;
    for (std::size_t i = 0; i + 1 < static_cast<std::size_t>(doc.blockCount); ++i) {
        const std::int32_t a = doc.blockList[i];
        const std::int32_t b = doc.blockList[i + 1];
        if (!exists(a) || !exists(b)) {
            continue;
        }
        if (!velmora::matchBorder(doc.patches[static_cast<std::size_t>(a)], doc.patches[static_cast<std::size_t>(b)],
                                  grid, doc.fieldOfPatch(b))) {
            const auto [severity, text] = message::matchingImpossible;
            doc.ui().showMessage({matchedAny ? Severity::Warning : severity, text}); // those before stay matched
            break;
        }
        matchedAny = true;
    }
    doc.redraw();
}

void MatchBorder(VelmoraDoc& doc) {
    matchBlock(doc, false);
}

void MatchBorderAndGrid(VelmoraDoc& doc) {
    matchBlock(doc, true);
}

} // namespace

std::span<const Command> joinCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "block.matchBorder",
         .menuText = "Match border",
         .statusText = "Adjust border of the second patch in zBlock to the first one",
         .run = &MatchBorder,
         .off = noPairOfPatches,
         .places = {{PatchContext, 320}}},
        {.id = "block.matchBorderAndGrid",
         .menuText = "Match border && grid",
         .statusText = "Adjust border of the second patch in zBlock to the first one and rebuld the second one",
         .run = &MatchBorderAndGrid,
         .off = noPairOfPatches,
         .places = {{PatchContext, 330}}},
        {.id = "block.merge",
         .menuText = "&Merge... ",
         .statusText = "Merge patches inside of zBlock using sections or lines",
         .toolTip = "Merge patches",
         .icon = true,
         .run = &VelmoraDoc::MergePatches,
         .off = [](Doc d) { return (d.structureKind == StructureKind::Structured && notApt(d)) || d.blockCount < 2; },
         .places = {{Transformations, 190, "M&erge..."}, {PatchContext, 310}, {TransformationsBar, 290}}},
        {.id = "line.splitPatch",
         .menuText = "S&plit patch in zBlock",
         .statusText = "Split patch using selected line",
         .toolTip = "Split patch",
         .icon = true,
         .run = &SplitPatch,
         .off = noCurveOfGrid,
         .places = {{LineContext, 120}, {EditingBar, 130}}},
    };
    return rows;
}

} // namespace velmora

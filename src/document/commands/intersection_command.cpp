#include <algorithm>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "intersection.h"
#include "joint_curve.h"
#include "messages.h"
#include "patch_order.h"
#include "regimes.h"
#include "show_dialog.h"

namespace velmora {

// Two bodies are cut against each other: the lines of the zBlock pierce the other patches.

namespace {

/// Fills the three lists of the joint. False, with the reason told, when a line pierces nothing; also for a zBlock
/// without lines, as then there is no joint and all other patches would be thrown away.
bool pierceOtherPatches(VelmoraDoc& doc) {
    PiercingPoints piercing;
    PiercingOutcome outcome;
    if (doc.blockCount > 0) {
        const BusyScope busy(doc.ui());
        outcome = findPiercingPoints(doc.patches, doc.chosenPatches(), piercing, progressTo(doc.ui()));
    }
    doc.interLine = std::move(piercing.places);
    doc.beforeIntersection = std::move(piercing.before);
    doc.afterIntersection = std::move(piercing.after);
    if (outcome.failure == PiercingFailure::DoublePoint) {
        doc.ui().showMessage(message::intersectionDoublePoint);
    } else if (outcome.failure == PiercingFailure::NotFound) {
        doc.ui().showMessage(message::lineNotIntersected(outcome.line, outcome.patch));
    }
    return outcome.failure == PiercingFailure::None && (doc.blockCount < 1 || !doc.interLine.empty());
}

/// Runs the grids along the joint, throws away what lies on the unwanted side and re-spaces the rest.
void carryOutIntersection(VelmoraDoc& doc) {
    const CIntersection& v = doc.dialogs->intersection;
    const std::vector<bool> inside = doc.blockMask();
    const JointPoints joint(doc.interLine);
    std::int32_t notFound = 0;
    std::int32_t tooSmall = 0;
    {
        const BusyScope busy(doc.ui());
        notFound =
            placePiercingPoints(doc.patches, inside, {doc.interLine, doc.beforeIntersection, doc.afterIntersection},
                                v.tolerance, doc.interPatches, progressTo(doc.ui()));
        for (std::size_t k = 0; k < doc.patches.size(); ++k) {
            Patch& patch = doc.patches[k];
            if (!inside[k]) {
                keepJointSections(patch, joint);
                trimSections(patch, joint, v.outsideSide == 1);
                respaceSections(patch, v.outsidePoints);
                continue;
            }
            // From here on the sections of the zBlock's patches are their former lines, and stay so.
            patch = transposed(patch);
            snapSections(patch, joint, v.tolerance);
            trimSections(patch, joint, v.insideSide == 1);
            if (patch.size() < 2) {
                ++tooSmall;
            } else {
                respaceSections(patch, v.insidePoints);
            }
        }
    }
    for (std::int32_t i = 0; i < notFound; ++i) {
        doc.ui().showMessage(message::cellNotFound);
    }
    for (std::int32_t i = 0; i < tooSmall; ++i) {
        doc.ui().showMessage(message::compartmentTooSmall);
    }
}

void Intersection(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Structured) {
        doc.redraw();
        return;
    }
    const bool pierced = pierceOtherPatches(doc);
    doc.redraw(); // the piercing points are seen, also when nothing more comes of them
    if (!pierced) {
        doc.ui().showMessage(message::intersectionImpossible);
        return;
    }
    doc.dialogs->intersection.tolerance = doc.intersectionTolerance;
    double lines = 0.0;
    double sections = 0.0;
    const std::vector<bool> inside = doc.blockMask();
    for (std::size_t k = 0; k < doc.patches.size(); ++k) {
        (inside[k] ? lines : sections) += inside[k] ? lineCount(doc.patches[k]) : countOf(doc.patches[k]);
    }
    doc.dialogs->intersection.inside = doc.memoryRoom(lines * bytesOfPoint);
    doc.dialogs->intersection.outside = doc.memoryRoom(sections * bytesOfPoint);
    if (!showDialog(doc.ui(), doc.dialogs->intersection)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    carryOutIntersection(doc);
    doc.intersectionTolerance = doc.dialogs->intersection.tolerance;
    doc.leaveRegimes();
    doc.emptyBlock();
    doc.showBlockOnly = false;
    showIdlePrompt(doc);
    doc.retitle();
    doc.redraw();
}

} // namespace

std::span<const Command> intersectionCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "model.intersection",
         .menuText = "&Intersection...",
         .statusText = "Intersect zBlock (yelow) with the rest part  of geometry (out zBlock patches)",
         .toolTip = "Intersect zBlock",
         .icon = true,
         .run = &Intersection,
         .off =
             [](Doc d) {
                 return notStrOrField(d) || noBlock(d) || d.patches.size() < 2 || d.blockCount >= countOf(d.patches);
             },
         .places = {{Transformations, 320}, {PatchContext, 350}, {TransformationsBar, 330}}},
    };
    return rows;
}

} // namespace velmora

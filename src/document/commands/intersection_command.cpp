#include <algorithm>

#include "VelmoraDoc.h"
#include "intersection.h"
#include "joint_curve.h"
#include "messages.h"
#include "patch_order.h"

namespace velmora {

// Two bodies are cut against each other: the lines of the zBlock pierce the other patches.

void VelmoraDoc::Intersection() {
    beginPatchCommand(false);
    if (structureKind != StructureKind::Structured) {
        redraw();
        return;
    }
    const bool pierced = pierceOtherPatches();
    redraw(); // the piercing points are seen, also when nothing more comes of them
    if (!pierced) {
        ui_.showMessage(message::intersectionImpossible);
        return;
    }
    intersectionValues.tolerance = intersectionTolerance;
    if (!showDialog(intersectionValues)) {
        return;
    }
    intersectionTolerance = intersectionValues.tolerance;
    carryOutIntersection();
    leaveRegimes();
    emptyBlock();
    showBlockOnly = false;
    showIdlePrompt();
    retitle();
    redraw();
}

/// Fills the three lists of the joint. False, with the reason told, when a line pierces nothing; also for a zBlock
/// without lines, as then there is no joint and all other patches would be thrown away.
bool VelmoraDoc::pierceOtherPatches() {
    PiercingPoints piercing;
    PiercingOutcome outcome;
    if (blockCount > 0) {
        const BusyScope busy(ui_);
        outcome = findPiercingPoints(patches, chosenPatches(), piercing, progressTo(ui_));
    }
    interLine = std::move(piercing.places);
    beforeIntersection = std::move(piercing.before);
    afterIntersection = std::move(piercing.after);
    if (outcome.failure == PiercingFailure::DoublePoint) {
        ui_.showMessage(message::intersectionDoublePoint);
    } else if (outcome.failure == PiercingFailure::NotFound) {
        ui_.showMessage(message::lineNotIntersected(outcome.line, outcome.patch));
    }
    return outcome.failure == PiercingFailure::None && (blockCount < 1 || !interLine.empty());
}

/// Runs the grids along the joint, throws away what lies on the unwanted side and re-spaces the rest.
void VelmoraDoc::carryOutIntersection() {
    const CIntersection& v = intersectionValues;
    const std::vector<bool> inside = blockMask();
    const JointPoints joint(interLine);
    std::int32_t notFound = 0;
    std::int32_t tooSmall = 0;
    {
        const BusyScope busy(ui_);
        notFound = placePiercingPoints(patches, inside, {interLine, beforeIntersection, afterIntersection}, v.tolerance,
                                       interPatches, progressTo(ui_));
        for (std::size_t k = 0; k < patches.size(); ++k) {
            Patch& patch = patches[k];
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
        ui_.showMessage(message::cellNotFound);
    }
    for (std::int32_t i = 0; i < tooSmall; ++i) {
        ui_.showMessage(message::compartmentTooSmall);
    }
}

} // namespace velmora

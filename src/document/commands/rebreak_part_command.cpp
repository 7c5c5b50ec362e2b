#include <algorithm>

#include "VelmoraDoc.h"
#include "messages.h"
#include "patch_curves.h"

namespace velmora {

namespace {

/// What happened to the sections that were to be rebuilt.
struct PartsOutcome {
    std::int32_t zeroLength = -1; ///< the first section whose stretch has no length
    std::int32_t unfitted = -1;   ///< the first section for which no compression fits
    bool capturedRebuilt = false;
};

PartsOutcome rebuildParts(Patch& patch, std::int32_t captured, const CRebreakPart& values) {
    PartRebreaker rebreaker(values.law);
    PartsOutcome outcome;
    const bool all = values.regime == 2;
    const std::int32_t end = all ? countOf(patch) : std::min(captured + 1, countOf(patch));
    for (std::int32_t v = all ? 0 : std::max(captured, 0); v < end; ++v) {
        const PartResult result = rebreaker.rebuild(patch[static_cast<std::size_t>(v)]);
        if (!result.hasLength && outcome.zeroLength < 0) {
            outcome.zeroLength = v;
        }
        if (!result.fitted && outcome.unfitted < 0) {
            outcome.unfitted = v;
        }
        outcome.capturedRebuilt = outcome.capturedRebuilt || (v == captured && result.rebuilt);
    }
    return outcome;
}

void tellOutcome(UserInterface& ui, const PartsOutcome& outcome) {
    const bool unfittedFirst = outcome.unfitted >= 0 && outcome.unfitted < outcome.zeroLength;
    if (unfittedFirst) {
        ui.showMessage(message::partsDoNotFit);
    }
    if (outcome.zeroLength >= 0) {
        ui.showMessage(message::zeroLengthLine(outcome.zeroLength + 1));
    }
    if (outcome.unfitted >= 0 && !unfittedFirst) {
        ui.showMessage(message::partsDoNotFit);
    }
}

/// The fit needs two steps that stay beyond the stretch.
bool tooCloseToFit(const CRebreakPart& values) {
    return values.law.fit && (values.pointNumber < 3 || values.pointNumber > values.curveLength - 3);
}

} // namespace

/// False when there is no captured curve with the point on it.
bool VelmoraDoc::prepareRebreakPart() {
    const bool lines = capture->lineCaptured;
    const PointList* section = sectionAt(capture->capturedPatch, lines ? 0 : capture->capturedSection);
    if (structureKind != StructureKind::Structured || section == nullptr) {
        return false;
    }
    const Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    CRebreakPart& values = rebreakPartValues;
    values.lineMode = values.law.keepGrid = lines;
    values.isApt = fileKind == FileKind::Apt;
    values.pointNumber = (lines ? capture->capturedPointSection : capture->capturedPoint) + 1;
    values.curveLength = lines ? countOf(patch) : countOf(*section);
    fillStretch(values);
    return values.pointNumber >= 1 && values.pointNumber <= values.curveLength && (!lines || isGrid(patch));
}

void VelmoraDoc::RebreakPart() {
    if (!prepareRebreakPart() || !showDialog(rebreakPartValues)) {
        return;
    }
    if (tooCloseToFit(rebreakPartValues)) {
        ui_.showMessage(message::fitImpossible);
        return;
    }
    beginPatchCommand(false);
    SavePointUndo();
    pointUndoReady = true;
    capture.savePoint();
    const bool lines = capture->lineCaptured;
    if (lines) {
        turnCapturedPatch();
    }
    const PartsOutcome outcome = rebuildParts(patches[static_cast<std::size_t>(capture->capturedPatch)],
                                              capture->capturedSection, rebreakPartValues);
    // Before the point the stretch may have got longer: the same place has another number. It stays when the point's
    // own section could not be rebuilt.
    if (!rebreakPartValues.law.after && outcome.capturedRebuilt) {
        capture.renumberPoint(capture->capturedPointSection, rebreakPartValues.law.newCount - 1);
    }
    if (lines) {
        turnCapturedPatch();
    }
    tellOutcome(ui_, outcome);
    retitle();
    redraw();
}

} // namespace velmora

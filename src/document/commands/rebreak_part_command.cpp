#include <algorithm>
#include <utility>

#include "DialogValues.h"
#include "ModelTrial.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "captured_curve.h"
#include "command_rows.h"
#include "command_rules.h"
#include "exchange.h"
#include "messages.h"
#include "patch_curves.h"
#include "patch_order.h"

namespace velmora {

namespace {

/// What happened to the sections that were to be rebuilt.
struct PartsOutcome {
    std::int32_t zeroLength = -1; ///< the first section whose stretch has no length
    std::int32_t unfitted = -1;   ///< the first section for which no compression fits
    bool capturedRebuilt = false;
};

/// The points take their field values, if there are any, along.
PartsOutcome rebuildParts(Patch& patch, Patch* field, std::int32_t captured, const CRebreakPart& values) {
    PartRebreaker rebreaker(values.law);
    PartsOutcome outcome;
    const bool all = values.regime == 2;
    const std::int32_t end = all ? countOf(patch) : std::min(captured + 1, countOf(patch));
    for (std::int32_t v = all ? 0 : std::max(captured, 0); v < end; ++v) {
        const auto section = static_cast<std::size_t>(v);
        const PartResult result = rebreaker.rebuild(patch[section], field != nullptr ? &(*field)[section] : nullptr);
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

/// False when there is no captured curve with the point on it.
bool prepareRebreakPart(VelmoraDoc& doc) {
    const bool lines = doc.capture->lineCaptured;
    const PointList* section = doc.sectionAt(doc.capture->capturedPatch, lines ? 0 : doc.capture->capturedSection);
    if (doc.structureKind != StructureKind::Structured || section == nullptr) {
        return false;
    }
    const Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
    CRebreakPart& values = doc.dialogs->rebreakPart;
    values.lineMode = values.law.keepGrid = lines;
    values.isApt = doc.fileKind == FileKind::Apt;
    values.pointNumber = (lines ? doc.capture->capturedPointSection : doc.capture->capturedPoint) + 1;
    values.curveLength = lines ? countOf(patch) : countOf(*section);
    values.curveTotal = lines ? lineCount(patch) : countOf(patch);
    values.room = doc.memoryRoom(bytesOfPoint);
    fillStretch(values);
    return values.pointNumber >= 1 && values.pointNumber <= values.curveLength && (!lines || isGrid(patch));
}

/// What the values make of the captured patch. False where the command would refuse them, or turn no patch to get at
/// its lines.
bool tryPart(VelmoraDoc& doc, const CRebreakPart& values) {
    const std::int32_t k = doc.capture->capturedPatch;
    const bool lines = doc.capture->lineCaptured;
    if (tooCloseToFit(values) || (lines && doc.blockCount > 0 && !doc.inBlock(k)) ||
        static_cast<double>(values.law.newCount) * values.curveTotal > ModelTrial::mostPoints) {
        return false;
    }
    Patch& patch = doc.patches[static_cast<std::size_t>(k)];
    Patch turned = lines ? transposed(patch) : patch;
    rebuildParts(turned, nullptr, lines ? doc.capture->capturedLine : doc.capture->capturedSection, values);
    patch = lines ? transposed(turned) : std::move(turned);
    plotTried(doc, capturedCurvePoints(doc));
    return true;
}

void RebreakPart(VelmoraDoc& doc) {
    const auto tryOut = [&doc](const CRebreakPart& values) { return tryPart(doc, values); };
    if (!prepareRebreakPart(doc) || !showDialogTrying(doc, doc.dialogs->rebreakPart, tryOut)) {
        return;
    }
    if (tooCloseToFit(doc.dialogs->rebreakPart)) {
        doc.ui().showMessage(message::fitImpossible);
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    doc.SavePointUndo();
    doc.pointUndoReady = true;
    doc.capture.savePoint();
    const bool lines = doc.capture->lineCaptured;
    if (lines) {
        turnCapturedPatch(doc);
    }
    const PartsOutcome outcome = rebuildParts(doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)],
                                              doc.fieldOfPatch(doc.capture->capturedPatch),
                                              doc.capture->capturedSection, doc.dialogs->rebreakPart);
    // Before the point the stretch may have got longer: the same place has another number. It stays when the point's
    // own section could not be rebuilt.
    if (!doc.dialogs->rebreakPart.law.after && outcome.capturedRebuilt) {
        doc.capture.renumberPoint(doc.capture->capturedPointSection, doc.dialogs->rebreakPart.law.newCount - 1);
    }
    if (lines) {
        turnCapturedPatch(doc);
    }
    tellOutcome(doc.ui(), outcome);
    doc.retitle();
    doc.redraw();
}

} // namespace

std::span<const Command> rebreakPartCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "point.rebreakPart",
         .menuText = "Rebreak part...",
         .statusText = "Rebreak part of selected section before (after) current point",
         .run = &RebreakPart,
         .off = [](Doc d) { return noPoint(d) || d.capture->freePointHeld || noCurve(d); },
         .places = {{PointContext, 430}}},
    };
    return rows;
}

} // namespace velmora

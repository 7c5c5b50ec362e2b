#include <algorithm>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "show_dialog.h"

namespace velmora {

namespace {

std::int32_t curveCountOf(const Patch& patch, bool lines) {
    return lines ? lineCount(patch) : countOf(patch);
}

std::int32_t curveLengthOf(const Patch& patch, bool lines) {
    return lines ? countOf(patch) : lineCount(patch);
}

/// The curves that the dialog's numbers mean in a patch of `count` curves.
CurveRange curveRange(const CRebreak& values, std::int32_t count, std::int32_t lawCurve) {
    std::int32_t first = values.regime == 1 ? values.capturedNumber - 1 : values.firstCurve - 1;
    std::int32_t last = values.regime == 1 ? std::min(values.capturedNumber, count) : count;
    if (first >= count) {
        first = count - 1;
    }
    if (first > last) {
        first = last - 1;
    }
    if (first < 0) {
        first = 0;
        last = std::min(count, 1);
    }
    return {first, last, lawCurve};
}

void prepareRebreak(VelmoraDoc& doc) {
    const Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
    CRebreak& values = doc.dialogs->rebreak;
    values.lineMode = doc.capture->lineCaptured;
    values.isApt = doc.fileKind == FileKind::Apt;
    values.blockCount = doc.blockCount;
    values.curveCount = doc.capture->lineCaptured
                            ? countOf(patch)
                            : countOf(patch[static_cast<std::size_t>(std::max(doc.capture->capturedSection, 0))]);
    values.law.firstPoint = 1;
    values.law.lastPoint = values.law.newCount = values.curveCount;
    values.patchNumber = doc.capture->capturedPatch + 1;
    values.capturedNumber = (doc.capture->lineCaptured ? doc.capture->capturedLine : doc.capture->capturedSection) + 1;
    values.firstCurve = 1;
    values.lastCurve = curveCountOf(patch, doc.capture->lineCaptured);
    values.patchCurves = values.lastCurve;
    values.blockCurves = 0.0;
    for (const std::int32_t k : doc.blockCount < 1 ? std::vector<std::int32_t>() : doc.chosenPatches()) {
        values.blockCurves += curveCountOf(doc.patches[static_cast<std::size_t>(k)], doc.capture->lineCaptured);
    }
    values.room = doc.memoryRoom(bytesOfPoint);
}

void rebreakOnePatch(VelmoraDoc& doc, std::int32_t patch) {
    Patch& target = doc.patches[static_cast<std::size_t>(patch)];
    const bool lines = doc.capture->lineCaptured;
    const CurveRange curves = curveRange(doc.dialogs->rebreak, curveCountOf(target, lines),
                                         lines ? doc.capture->capturedLine : doc.capture->capturedSection);
    // A stretch that was too long for a curve stays cut, for the patches that follow and in the dialog.
    if (lines) {
        rebreakLines(target, doc.dialogs->rebreak.law, curves);
        if (curves.first > 0) {
            doc.capture.renumberLine(curves.first);
        }
    } else {
        rebreakSections(target, doc.dialogs->rebreak.law, curves);
    }
}

} // namespace

void VelmoraDoc::Rebreak() {
    const bool lines = capture->lineCaptured;
    const std::int32_t curve = lines ? capture->capturedLine : capture->capturedSection;
    if (structureKind != StructureKind::Structured || sectionAt(capture->capturedPatch, lines ? 0 : curve) == nullptr ||
        curve < 0) {
        return;
    }
    prepareRebreak(*this);
    if (!showDialog(ui_, dialogs->rebreak)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    if (dialogs->rebreak.useBlock) {
        for (std::int32_t i = 0; i < blockCount; ++i) {
            const std::int32_t k = blockList[static_cast<std::size_t>(i)];
            if (k >= 0 && k < countOf(patches)) {
                const Patch& patch = patches[static_cast<std::size_t>(k)];
                dialogs->rebreak.law.lastPoint = curveLengthOf(patch, lines);
                dialogs->rebreak.lastCurve = curveCountOf(patch, lines);
                rebreakOnePatch(*this, k);
            }
        }
    } else {
        rebreakOnePatch(*this, capture->capturedPatch);
    }
    const std::int32_t sections = countOf(patches[static_cast<std::size_t>(capture->capturedPatch)]);
    capture.renumberSection(std::clamp(dialogs->rebreak.capturedNumber - 1, 0, std::max(sections - 1, 0)));
    retitle();
    redraw();
}

} // namespace velmora

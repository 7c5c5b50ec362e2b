#include <algorithm>

#include "VelmoraDoc.h"

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

} // namespace

void VelmoraDoc::prepareRebreak() {
    const Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    CRebreak& values = rebreakValues;
    values.lineMode = capture->lineCaptured;
    values.isApt = fileKind == FileKind::Apt;
    values.blockCount = blockCount;
    values.curveCount = capture->lineCaptured
                            ? countOf(patch)
                            : countOf(patch[static_cast<std::size_t>(std::max(capture->capturedSection, 0))]);
    values.law.firstPoint = 1;
    values.law.lastPoint = values.law.newCount = values.curveCount;
    values.patchNumber = capture->capturedPatch + 1;
    values.capturedNumber = (capture->lineCaptured ? capture->capturedLine : capture->capturedSection) + 1;
    values.firstCurve = 1;
    values.lastCurve = curveCountOf(patch, capture->lineCaptured);
}

void VelmoraDoc::Rebreak() {
    const bool lines = capture->lineCaptured;
    const std::int32_t curve = lines ? capture->capturedLine : capture->capturedSection;
    if (structureKind != StructureKind::Structured || sectionAt(capture->capturedPatch, lines ? 0 : curve) == nullptr ||
        curve < 0) {
        return;
    }
    prepareRebreak();
    if (!showDialog(rebreakValues)) {
        return;
    }
    beginPatchCommand(false);
    if (rebreakValues.useBlock) {
        for (std::int32_t i = 0; i < blockCount; ++i) {
            const std::int32_t k = blockList[static_cast<std::size_t>(i)];
            if (k >= 0 && k < countOf(patches)) {
                const Patch& patch = patches[static_cast<std::size_t>(k)];
                rebreakValues.law.lastPoint = curveLengthOf(patch, lines);
                rebreakValues.lastCurve = curveCountOf(patch, lines);
                rebreakOnePatch(k);
            }
        }
    } else {
        rebreakOnePatch(capture->capturedPatch);
    }
    const std::int32_t sections = countOf(patches[static_cast<std::size_t>(capture->capturedPatch)]);
    capture.renumberSection(std::clamp(rebreakValues.capturedNumber - 1, 0, std::max(sections - 1, 0)));
    retitle();
    redraw();
}

void VelmoraDoc::rebreakOnePatch(std::int32_t patch) {
    Patch& target = patches[static_cast<std::size_t>(patch)];
    const bool lines = capture->lineCaptured;
    const CurveRange curves = curveRange(rebreakValues, curveCountOf(target, lines),
                                         lines ? capture->capturedLine : capture->capturedSection);
    // A stretch that was too long for a curve stays cut, for the patches that follow and in the dialog.
    if (lines) {
        rebreakLines(target, rebreakValues.law, curves);
        if (curves.first > 0) {
            capture.renumberLine(curves.first);
        }
    } else {
        rebreakSections(target, rebreakValues.law, curves);
    }
}

} // namespace velmora

#include <algorithm>
#include <optional>

#include "DialogValues.h"
#include "ModelTrial.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "captured_curve.h"
#include "command_rows.h"
#include "command_rules.h"

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

/// Re-spaces the curves of the captured patch, or of the zBlock. Gives the place to which a captured line came, if it
/// has another one.
std::optional<std::int32_t> rebreakCurves(VelmoraDoc& doc, CRebreak& values) {
    const bool lines = doc.capture->lineCaptured;
    std::optional<std::int32_t> moved;
    const auto rebreakPatch = [&](std::int32_t k) {
        Patch& patch = doc.patches[static_cast<std::size_t>(k)];
        const CurveRange curves =
            curveRange(values, curveCountOf(patch, lines),
                       lines ? moved.value_or(doc.capture->capturedLine) : doc.capture->capturedSection);
        // A stretch that was too long for a curve stays cut, for the patches that follow and in the dialog.
        (lines ? rebreakLines : rebreakSections)(patch, values.law, curves);
        if (lines && curves.first > 0) {
            moved = curves.first;
        }
    };
    if (!values.useBlock) {
        rebreakPatch(doc.capture->capturedPatch);
        return moved;
    }
    for (std::int32_t i = 0; i < doc.blockCount; ++i) {
        const std::int32_t k = doc.blockList[static_cast<std::size_t>(i)];
        if (k >= 0 && k < countOf(doc.patches)) {
            const Patch& patch = doc.patches[static_cast<std::size_t>(k)];
            values.law.lastPoint = curveLengthOf(patch, lines);
            values.lastCurve = curveCountOf(patch, lines);
            rebreakPatch(k);
        }
    }
    return moved;
}

/// What the values make of the captured curve, which stays. Empty for the curves of the zBlock and for counts too large
/// to be plotted: those are not tried.
PointList triedCurve(VelmoraDoc& doc, const CRebreak& values) {
    constexpr std::int32_t mostTried = 100'000;
    if (values.useBlock || values.law.newCount > mostTried) {
        return {};
    }
    const bool lines = doc.capture->lineCaptured;
    const std::int32_t captured = lines ? doc.capture->capturedLine : doc.capture->capturedSection;
    PointList points = capturedCurvePoints(doc);
    const std::int32_t count = curveCountOf(doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)], lines);
    const CurveRange curves = curveRange(values, count, captured);
    if (captured < curves.first || captured >= curves.last) {
        return points;
    }
    // The curve as a patch of its own.
    RebreakLaw law = values.law;
    if (!lines) {
        Patch alone = {std::move(points)};
        rebreakSections(alone, law, {0, 1, 0});
        return std::move(alone.front());
    }
    Patch alone;
    for (const zVec<double>& point : points) {
        alone.push_back({point});
    }
    rebreakLines(alone, law, {0, 1, 0});
    points.clear();
    for (const PointList& section : alone) {
        points.push_back(section.front());
    }
    return points;
}

/// Asks for the values; model and plot show meanwhile what they come to.
bool askRebreak(VelmoraDoc& doc) {
    CRebreak& values = doc.dialogs->rebreak;
    const auto plot = [&doc](const CRebreak& tried) {
        if (doc.dialogs->onCurveTried) {
            PointList curve;
            doc.withoutTrial([&] { curve = triedCurve(doc, tried); });
            plotTried(doc, curve);
        }
    };
    values.tried = plot;
    const auto tryOut = [&doc](const CRebreak& tried) {
        CRebreak working = tried;
        const double curves = tried.useBlock ? tried.blockCurves : tried.patchCurves;
        if (curves * tried.law.newCount > ModelTrial::mostPoints) {
            return false;
        }
        rebreakCurves(doc, working);
        return true;
    };
    const bool agreed = showDialogTrying<CRebreak>(doc, values, tryOut, plot);
    values.tried = nullptr;
    return agreed;
}

void Rebreak(VelmoraDoc& doc) {
    const bool lines = doc.capture->lineCaptured;
    const std::int32_t curve = lines ? doc.capture->capturedLine : doc.capture->capturedSection;
    if (doc.structureKind != StructureKind::Structured ||
        doc.sectionAt(doc.capture->capturedPatch, lines ? 0 : curve) == nullptr || curve < 0) {
        return;
    }
    prepareRebreak(doc);
    if (!askRebreak(doc)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    if (const auto moved = rebreakCurves(doc, doc.dialogs->rebreak)) {
        doc.capture.renumberLine(*moved);
    }
    const std::int32_t sections = countOf(doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)]);
    doc.capture.renumberSection(std::clamp(doc.dialogs->rebreak.capturedNumber - 1, 0, std::max(sections - 1, 0)));
    doc.retitle();
    doc.redraw();
}

} // namespace

std::span<const Command> rebreakCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "line.rebreak",
         .menuText = "Rebre&ak...",
         .statusText = "Rebreak selected section (line or zBlock) in accordance with prescribed law",
         .toolTip = "Rebreak",
         .icon = true,
         .run = &Rebreak,
         .off = [](Doc d) { return noCurveOrField(d) || d.structureKind == StructureKind::Unstructured; },
         .places = {{LineContext, 330}, {EditingBar, 210}}},
    };
    return rows;
}

} // namespace velmora

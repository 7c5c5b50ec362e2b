#include "held_marks.h"

#include <algorithm>
#include <limits>

#include "DocumentState.h"
#include "status_texts.h"

namespace velmora {

namespace {

constexpr Colour white{1.0F, 1.0F, 1.0F, 1.0F};
constexpr Colour red{1.0F, 0.0F, 0.0F, 1.0F};
constexpr Colour yellow{1.0F, 1.0F, 0.0F, 1.0F};
constexpr Colour green{0.0F, 1.0F, 0.0F, 1.0F};
constexpr Colour bufferBlue{0.2F, 0.2F, 1.0F, 1.0F};
constexpr Colour blockYellow{1.0F, 1.0F, 0.1F, 1.0F};
/// Of what the mouse points at: no patch, mark or capture has it.
constexpr Colour orange{1.0F, 0.6F, 0.0F, 1.0F};

constexpr float curveWidth = 2.0F;
constexpr float curvePointSize = 5.0F;

/// A point with a frame around it; the frame goes first, as marks do not see each other's depth.
void addFramed(DrawList& list, const zVec<double>& at, float size, const Colour& colour, float frameSize,
               const Colour& frameColour) {
    list.point(at, frameSize, frameColour);
    list.point(at, size, colour);
}

void addFramed(DrawList& list, const PointList& points) {
    for (const zVec<double>& point : points) {
        addFramed(list, point, 5.0F, white, 8.0F, bufferBlue);
    }
}

void addPoints(DrawList& list, const PointList& points, float size, const Colour& colour) {
    if (!points.empty()) {
        list.begin(Primitive::Points, colour).pointSize = size;
        list.addVertices(points);
    }
}

PointList lineOf(const Patch& patch, std::size_t index) {
    PointList points;
    for (const PointList& section : patch) {
        if (index < section.size()) {
            points.push_back(section[index]);
        }
    }
    return points;
}

void addStrip(DrawList& list, const PointList& points, const Colour& colour) {
    if (points.size() > 1) {
        list.begin(Primitive::LineStrip, colour).lineWidth = curveWidth;
        list.addVertices(points);
    }
}

void addCurve(DrawList& list, const PointList& points, const Colour& colour) {
    addStrip(list, points, colour);
    addPoints(list, points, curvePointSize, colour);
}

const Patch* patchAt(const DocumentState& document, std::int32_t k) {
    return k >= 0 && k < countOf(document.patches) ? &document.patches[static_cast<std::size_t>(k)] : nullptr;
}

void addSection(DrawList& list, const DocumentState& document, std::int32_t k, std::int32_t n, const Colour& colour) {
    const Patch* patch = patchAt(document, k);
    if (patch != nullptr && n >= 0 && n < countOf(*patch)) {
        addCurve(list, (*patch)[static_cast<std::size_t>(n)], colour);
    }
}

void addLine(DrawList& list, const DocumentState& document, std::int32_t k, std::int32_t m, const Colour& colour) {
    const Patch* patch = patchAt(document, k);
    if (patch != nullptr && m >= 0) {
        addCurve(list, lineOf(*patch, static_cast<std::size_t>(m)), colour);
    }
}

/// The four sides of a patch.
void addOutline(DrawList& list, const Patch& patch, const Colour& colour) {
    if (patch.empty() || patch.front().empty()) {
        return;
    }
    addStrip(list, patch.front(), colour);
    addStrip(list, patch.back(), colour);
    addStrip(list, lineOf(patch, 0), colour);
    addStrip(list, lineOf(patch, patch.front().size() - 1), colour);
}

/// The box about a zone: its own border may be long, or none.
void addBox(DrawList& list, const zBlock_fe& zone, const Colour& colour) {
    const ZoneCoordinates at = coordinatesOf(zone.variables);
    if (!at || at.x->data.empty()) {
        return;
    }
    const auto range = [](const zArray<double>& values) {
        const auto [least, most] = std::minmax_element(values.data.begin(), values.data.end());
        return std::pair(*least, *most);
    };
    const auto [x0, x1] = range(*at.x);
    const auto [y0, y1] = range(*at.y);
    const auto [z0, z1] = range(*at.z);
    list.begin(Primitive::Lines, colour).lineWidth = curveWidth;
    for (int i = 0; i < 4; ++i) {
        const double x = i % 2 == 0 ? x0 : x1;
        const double y = i % 2 == 0 ? y0 : y1;
        list.vertex({x0, y, i / 2 == 0 ? z0 : z1});
        list.vertex({x1, y, i / 2 == 0 ? z0 : z1});
        list.vertex({x, y0, i / 2 == 0 ? z0 : z1});
        list.vertex({x, y1, i / 2 == 0 ? z0 : z1});
        list.vertex({x, i / 2 == 0 ? y0 : y1, z0});
        list.vertex({x, i / 2 == 0 ? y0 : y1, z1});
    }
}

void addPart(DrawList& list, const DocumentState& document, std::int32_t k, const Colour& colour) {
    if (document.structureKind != StructureKind::Unstructured) {
        if (const Patch* patch = patchAt(document, k)) {
            addOutline(list, *patch, colour);
        }
    } else if (k >= 0 && k < document.partCount()) {
        addBox(list, *document.feRegion.blocks[static_cast<std::size_t>(k)], colour);
    }
}

} // namespace

DrawList heldMarks(const DocumentState& document) {
    const CaptureState& capture = *document.capture;
    DrawList list;
    if (capture.patchCaptureArmed && !document.inBlock(capture.capturedPatch)) {
        addPart(list, document, capture.capturedPatch, blockYellow);
    }
    for (std::int32_t i = 0; i < document.blockCount; ++i) {
        addPart(list, document, document.blockList[static_cast<std::size_t>(i)], blockYellow);
    }
    if (document.showBuffer) {
        addFramed(list, document.lineBuffer);
        addPoints(list, document.sftPoints, 6.0F, red);
        addPoints(list, document.sftTargets, 6.0F, yellow);
        addFramed(list, document.interLine);
        if (document.pointClipboardFull) {
            addFramed(list, document.pointClipboard, 5.0F, white, 8.0F, green);
        }
    }
    if (document.markersOpen) {
        addFramed(list, document.markers);
    }
    const bool shown = !document.showBlockOnly || document.inBlock(capture.capturedPatch);
    if (shown && (capture.sectionCaptureArmed || capture.sectionCaptured)) {
        addSection(list, document, capture.capturedPatch, capture.capturedSection, white);
    }
    if (shown && (capture.lineCaptureArmed || capture.lineCaptured)) {
        addLine(list, document, capture.capturedPatch, capture.capturedLine, white);
    }
    return list;
}

void addCapturedPoint(DrawList& list, const DocumentState& document) {
    if (document.capture->pointPicked) {
        addFramed(list, document.capture->capturedPointPos, 6.0F, white, 8.0F, red);
    }
}

void addCandidate(DrawList& list, const DocumentState& document, const Pick& pick) {
    switch (pick.target) {
    case Pick::Target::Section:
        addSection(list, document, pick.patch, pick.section, orange);
        break;
    case Pick::Target::Line:
        addLine(list, document, pick.patch, pick.point, orange);
        break;
    case Pick::Target::WholePatch:
    case Pick::Target::Removal:
        addPart(list, document, pick.patch, orange);
        break;
    default:
        addFramed(list, pick.position, 4.0F, white, 8.0F, orange);
        break;
    }
}

std::string candidateText(const DocumentState& document, const Pick& pick) {
    const auto number = [](std::int32_t index) { return std::to_string(index + 1); };
    std::string place =
        "X=" + fixedText(pick.position.x) + ", Y=" + fixedText(pick.position.y) + ", Z=" + fixedText(pick.position.z);
    std::string text = "Patch K=" + number(pick.patch);
    switch (pick.target) {
    case Pick::Target::PlanePlace:
        return place;
    case Pick::Target::Section:
        return text + ", Section N=" + number(pick.section) + ", Points M=" + std::to_string(pick.points);
    case Pick::Target::Line:
        return text + ", Line N=" + number(pick.point) + ", Points M=" + std::to_string(pick.points);
    case Pick::Target::WholePatch:
    case Pick::Target::Removal:
        return text + (document.inBlock(pick.patch) ? ", in the zBlock" : "");
    case Pick::Target::Node:
        text += ", Point M=" + number(pick.point);
        break;
    default:
        text += ", Section N=" + number(pick.section) + ", Point M=" + number(pick.point);
        break;
    }
    return text + "  " + place;
}

} // namespace velmora

#include <algorithm>
#include <array>

#include "Act.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "drag_correction.h"
#include "finite_model.h"
#include "rebreak_kernels.h"

namespace velmora {

namespace {

/// Side of the grid on which a point is dragged.
constexpr std::int32_t dragSide = 100;
constexpr double dragExactness = 1.0;

/// The indices around `index` that exist among `count`: two at a border, three inside; none when there is one only.
std::vector<std::int32_t> neighbours(std::int32_t index, std::int32_t count) {
    if (count < 2 || index < 0 || index >= count) {
        return {};
    }
    std::vector<std::int32_t> found;
    for (std::int32_t i = std::max(index - 1, 0); i <= std::min(index + 1, count - 1); ++i) {
        found.push_back(i);
    }
    return found;
}

/// Two or three points spread out to the side of the drag grid.
PointList spread(const PointList& points) {
    const auto n = points.size();
    std::array<std::array<double, 3>, 3> in{};
    for (std::size_t i = 0; i < n; ++i) {
        in[0][i] = points[i].x;
        in[1][i] = points[i].y;
        in[2][i] = points[i].z;
    }
    std::array<std::array<double, dragSide>, 3> out{};
    SplineRebreak(in[0].data(), in[1].data(), in[2].data(), static_cast<std::int32_t>(n), out[0].data(), out[1].data(),
                  out[2].data(), dragSide, dragExactness);
    PointList result;
    result.reserve(dragSide);
    for (std::size_t i = 0; i < dragSide; ++i) {
        result.push_back({out[0][i], out[1][i], out[2][i]});
    }
    return result;
}

} // namespace

void VelmoraDoc::DragPoint() {
    dragStart = capture->pickedPoint;
    const PointList* section = sectionAt(capture->capturedPatch, capture->capturedPointSection);
    if (section == nullptr) {
        return;
    }
    const Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    const auto rows = neighbours(capture->capturedPointSection, countOf(patch));
    const auto columns = neighbours(capture->capturedPoint, countOf(*section));
    if (rows.empty() || columns.empty()) {
        return;
    }
    std::vector<PointList> spreadColumns;
    for (const std::int32_t column : columns) {
        PointList points;
        for (const std::int32_t row : rows) {
            const zVec<double>* point = pointAt(capture->capturedPatch, row, column);
            if (point == nullptr) {
                return;
            }
            points.push_back(*point);
        }
        spreadColumns.push_back(spread(points));
    }
    Patch grid;
    for (std::size_t i = 0; i < dragSide; ++i) {
        PointList across;
        for (const PointList& column : spreadColumns) {
            across.push_back(column[i]);
        }
        grid.push_back(spread(across));
    }
    dragPatches.clear();
    dragPatches.push_back(std::move(grid));
    capture.savePoint();
    SavePointUndo();
    pointUndoReady = true;
    capture.armDrag();
    ShowStatus(capture->dragStatus);
    redraw();
}

void VelmoraDoc::placeDraggedPoint(const zVec<double>& position) {
    bool moved = false;
    if (zVec<double>* point = pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint)) {
        moved = !(*point == position);
        *point = position;
    }
    ShowStatus(capture->dragStatus);
    redraw();
    if (moved) {
        ui_.tellAct({.kind = Act::Kind::Drag, .place = position});
    }
}

void VelmoraDoc::prepareDragCorrection() {
    capture.armCorrection();
    lastBend_.reset();
    beginPatchCommand(Extent::Stays);
    SavePointUndo();
    capture.savePoint();
    pointUndoReady = true;
}

namespace {

DragPlane planeOf(int number) {
    return number == 1   ? DragPlane{&zVec<double>::y, &zVec<double>::z}
           : number == 2 ? DragPlane{&zVec<double>::x, &zVec<double>::z}
                         : DragPlane{&zVec<double>::x, &zVec<double>::y};
}

/// False when the section is not there, or its shape would not be finite.
bool bendSection(VelmoraDoc& doc, const zVec<double>& delta, const DragPlane& plane) {
    PointList* section = doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection);
    if (section == nullptr) {
        return false;
    }
    PointList bent = *section;
    bendCurve(bent, doc.capture->capturedPoint, delta, plane);
    if (!isFinite(PatchList{{bent}}) || bent == *section) {
        return false;
    }
    section->swap(bent);
    return true;
}

bool bendLine(VelmoraDoc& doc, const zVec<double>& delta, const DragPlane& plane) {
    const std::int32_t sections = countOf(doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)]);
    PointList line;
    for (std::int32_t n = 0; n < sections; ++n) {
        const zVec<double>* point = doc.pointAt(doc.capture->capturedPatch, n, doc.capture->capturedPoint);
        if (point == nullptr) {
            return false;
        }
        line.push_back(*point);
    }
    const PointList before = line;
    bendCurve(line, doc.capture->capturedPointSection, delta, plane);
    if (!isFinite(PatchList{{line}}) || line == before) {
        return false;
    }
    for (std::int32_t n = 0; n < sections; ++n) {
        if (zVec<double>* point = doc.pointAt(doc.capture->capturedPatch, n, doc.capture->capturedLine)) {
            *point = line[static_cast<std::size_t>(n)];
        }
    }
    return true;
}

} // namespace

void VelmoraDoc::bendCapturedCurve(const zVec<double>& target, int plane) {
    const zVec<double>* captured =
        pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint);
    if (captured == nullptr || plane == 0) {
        return;
    }
    const zVec<double> delta = target - *captured;
    const bool bent = capture->sectionCaptured ? bendSection(*this, delta, planeOf(plane))
                                               : capture->lineCaptured && bendLine(*this, delta, planeOf(plane));
    if (bent) {
        captured = pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint);
        lastBend_ = Bend{target, *captured};
        ui_.tellAct({.kind = Act::Kind::Drag, .place = target, .plane = plane});
    }
}

void VelmoraDoc::endDragCorrection(int plane) {
    capture.releaseCorrection();
    const zVec<double>* captured =
        pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint);
    const bool isThere = captured != nullptr && lastBend_ && lastBend_->target == capture->capturedPointPos &&
                         lastBend_->point == *captured;
    if (!isThere) {
        bendCapturedCurve(capture->capturedPointPos, plane);
    }
    redraw();
    ui_.tellAct({.kind = Act::Kind::Release, .plane = plane});
}

std::span<const Command> pointDragCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "point.drag",
         .menuText = "D&rag",
         .statusText = "Drag captured point",
         .toolTip = "Drag point",
         .icon = true,
         .run = &VelmoraDoc::DragPoint,
         .off = [](Doc d) { return noPointOrUns(d) || notApt(d); },
         .places = {{EditPoint, 160}, {PointContext, 140, "D&rag point"}, {EditingBar, 440}}},
    };
    return rows;
}

} // namespace velmora

#include <algorithm>
#include <array>

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
    if (zVec<double>* point = pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint)) {
        *point = position;
    }
    ShowStatus(capture->dragStatus);
    redraw();
}

void VelmoraDoc::prepareDragCorrection() {
    capture.armCorrection();
    beginPatchCommand(Extent::Stays);
    SavePointUndo();
    capture.savePoint();
    pointUndoReady = true;
}

void VelmoraDoc::bendCapturedCurve(const zVec<double>& target, int plane) {
    const zVec<double>* captured =
        pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint);
    if (captured == nullptr || plane == 0) {
        return;
    }
    const DragPlane axes = plane == 1   ? DragPlane{&zVec<double>::y, &zVec<double>::z}
                           : plane == 2 ? DragPlane{&zVec<double>::x, &zVec<double>::z}
                                        : DragPlane{&zVec<double>::x, &zVec<double>::y};
    const zVec<double> delta = target - *captured;
    if (capture->sectionCaptured) {
        if (PointList* section = sectionAt(capture->capturedPatch, capture->capturedSection)) {
            PointList bent = *section;
            bendCurve(bent, capture->capturedPoint, delta, axes);
            if (isFinite(PatchList{{bent}})) {
                section->swap(bent);
            }
        }
        return;
    }
    if (!capture->lineCaptured) {
        return;
    }
    const Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    PointList line;
    for (std::int32_t n = 0; n < countOf(patch); ++n) {
        const zVec<double>* point = pointAt(capture->capturedPatch, n, capture->capturedPoint);
        if (point == nullptr) {
            return;
        }
        line.push_back(*point);
    }
    bendCurve(line, capture->capturedPointSection, delta, axes);
    if (!isFinite(PatchList{{line}})) {
        return;
    }
    for (std::int32_t n = 0; n < countOf(patch); ++n) {
        if (zVec<double>* point = pointAt(capture->capturedPatch, n, capture->capturedLine)) {
            *point = line[static_cast<std::size_t>(n)];
        }
    }
}

void VelmoraDoc::endDragCorrection(int plane) {
    capture.releaseCorrection();
    bendCapturedCurve(capture->capturedPointPos, plane);
    redraw();
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

#include <algorithm>
#include <array>

#include "VelmoraDoc.h"
#include "rebreak_kernels.h"
#include "status_texts.h"

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
    dragStart = pickedPoint;
    const PointList* section = sectionAt(capturedPatch, capturedPointSection);
    if (section == nullptr) {
        return;
    }
    const Patch& patch = patches[static_cast<std::size_t>(capturedPatch)];
    const auto rows = neighbours(capturedPointSection, countOf(patch));
    const auto columns = neighbours(capturedPoint, countOf(*section));
    if (rows.empty() || columns.empty()) {
        return;
    }
    std::vector<PointList> spreadColumns;
    for (const std::int32_t column : columns) {
        PointList points;
        for (const std::int32_t row : rows) {
            const zVec<double>* point = pointAt(capturedPatch, row, column);
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
    rememberPointAddress();
    SavePointUndo();
    pointUndoReady = true;
    pointDragging = true;
    dragStatus = dragPrompt;
    ShowStatus(dragStatus);
    redraw();
}

void VelmoraDoc::placeDraggedPoint(const zVec<double>& position) {
    if (zVec<double>* point = pointAt(capturedPatch, capturedPointSection, capturedPoint)) {
        *point = position;
    }
    ShowStatus(dragStatus);
    redraw();
}

void VelmoraDoc::prepareDragCorrection() {
    dragCorrectsLine = true;
    beginPatchCommand(false);
    SavePointUndo();
    rememberPointAddress();
    pointUndoReady = true;
}

} // namespace velmora

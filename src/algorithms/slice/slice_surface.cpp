#include "slice_surface.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "PlaneCutter.h"
#include "ProgressCounter.h"
#include "SegmentChainer.h"
#include "corner_box.h"
#include "line_joiner.h"
#include "vectors.h"

namespace velmora {

namespace {

/// Where the planes stand. One plane makes the step a division by zero: it stands nowhere.
std::vector<double> planeValues(const zRegion_fe& region, const SlicePlan& plan) {
    const CornerBox box = plan.manual ? CornerBox{} : cornerBox(region);
    const double low = plan.manual ? plan.lower : along(box.lower, plan.axis);
    const double high = plan.manual ? plan.upper : along(box.upper, plan.axis);
    const double border = plan.manual ? 0.0 : plan.border;
    const double step = (high - low) / static_cast<double>(plan.planes - 1);
    std::vector<double> values;
    for (std::int32_t i = 0; i < plan.planes; ++i) {
        if (i == 0) {
            values.push_back(low + step * border);
        } else if (i == plan.planes - 1) {
            values.push_back(high - step * border);
        } else {
            values.push_back(low + i * step);
        }
    }
    return values;
}

Patch sectionsOf(const std::vector<SliceLine>& lines) {
    Patch sections;
    sections.reserve(lines.size());
    for (const SliceLine& line : lines) {
        PointList& section = sections.emplace_back();
        section.reserve(line.size());
        for (const SlicePoint& point : line) {
            section.emplace_back(point[0], point[1], point[2]);
        }
    }
    return sections;
}

} // namespace

double cutsOfPlane(const zRegion_fe& region, int axis, double lower, double upper) {
    double cuts = 0.0;
    for (const auto& zone : region.blocks) {
        const double* const values = zoneAxes(*zone)[static_cast<std::size_t>(axis)];
        for (std::int32_t element = 0; values != nullptr && element < zone->elementCount; ++element) {
            const std::int32_t* const corners = &zone->connectivity[4 * static_cast<std::size_t>(element)];
            const auto [low, high] = std::minmax({values[corners[0]], values[corners[1]], values[corners[2]]});
            const double shared = std::min(high, upper) - std::max(low, lower);
            if (shared > 0.0) {
                cuts += shared / (upper - lower);
            } else if (lower == upper && low <= lower && lower <= high) {
                cuts += 1.0; // all planes stand at one place
            }
        }
    }
    return cuts;
}

SliceResult sliceSurface(const zRegion_fe& region, const SlicePlan& plan, const ReportProgress& progress) {
    const std::vector<double> planes = planeValues(region, plan);
    std::vector<std::vector<SliceLine>> linesOfPlanes(planes.size());
    SegmentChainer chainer(plan.axis);
    PlaneCutter(region, plan.axis, planes)
        .cut([&](std::size_t plane,
                 std::span<const SliceSegment> segments) { chainer.chain(segments, linesOfPlanes[plane]); },
             progress);
    std::vector<SliceLine> lines;
    for (std::vector<SliceLine>& ofPlane : linesOfPlanes) {
        std::move(ofPlane.begin(), ofPlane.end(), std::back_inserter(lines));
    }
    JoinedLines joined = joinLines(std::move(lines), plan.axis, plan.precision, partOfProgress(progress, 0.9, 1.0));
    orientLines(joined.lines);
    if (progress) {
        progress(1.0);
    }
    return {sectionsOf(joined.lines), joined.left};
}

} // namespace velmora

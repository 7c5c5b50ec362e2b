#include "slice_surface.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

#include "PlaneCutter.h"
#include "ProgressCounter.h"
#include "SegmentChainer.h"
#include "corner_box.h"
#include "line_joiner.h"
#include "parallel.h"

namespace velmora {

namespace {

/// Where the planes stand. One plane makes the step a division by zero: it stands nowhere.
std::vector<double> planeValues(const zRegion_fe& region, const SlicePlan& plan) {
    const CornerRange range = plan.manual ? CornerRange{plan.lower, plan.upper} : cornerRange(region, plan.axis);
    const auto [low, high] = range;
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

/// What a thread needs to cut and chain one group of planes after the other.
struct Slicer {
    explicit Slicer(int axis) : chainer(axis) {}

    PlaneCutter::Workplace workplace;
    SegmentChainer chainer;
    SliceLines lines;
};

/// Gives the lines of each plane to `take(plane, lines)`; several threads at a time, each other planes.
template <class Take>
void chainPlanes(const PlaneCutter& cutter, int axis, const Take& take, const ReportProgress& progress) {
    std::vector<Slicer> slicers(workersFor(cutter.groups(), 1), Slicer(axis));
    forEachChunk(
        cutter.groups(), 1,
        [&](std::size_t group, std::size_t, std::size_t worker) {
            Slicer& slicer = slicers[worker];
            cutter.cutGroup(group, slicer.workplace, [&](std::size_t plane, std::span<const SliceSegment> segments) {
                slicer.lines.clear();
                slicer.chainer.chain(segments, slicer.lines);
                take(plane, slicer.lines);
            });
        },
        [&progress](double fraction) {
            if (progress) {
                progress(0.3 + 0.6 * fraction);
            }
        });
}

/// The lines of each plane are joined as soon as they are there.
SliceResult joinedPlaneByPlane(const PlaneCutter& cutter, const SlicePlan& plan, const ReportProgress& progress) {
    std::vector<JoinedLines> ofPlanes(static_cast<std::size_t>(std::max(plan.planes, 0)));
    chainPlanes(
        cutter, plan.axis,
        [&](std::size_t plane, const SliceLines& lines) {
            ofPlanes[plane] = joinLines(lines, plan.axis, plan.precision);
        },
        progress);
    SliceResult result;
    std::size_t sections = 0;
    for (const JoinedLines& ofPlane : ofPlanes) {
        sections += ofPlane.sections.size();
    }
    result.sections.reserve(sections);
    for (JoinedLines& ofPlane : ofPlanes) {
        std::move(ofPlane.sections.begin(), ofPlane.sections.end(), std::back_inserter(result.sections));
        result.linesLeft += ofPlane.left;
    }
    return result;
}

/// For planes of which some count as one: lines of several of them may join.
SliceResult joinedOverPlanes(const PlaneCutter& cutter, const SlicePlan& plan, const ReportProgress& progress) {
    std::vector<SliceLines> ofPlanes(static_cast<std::size_t>(std::max(plan.planes, 0)));
    chainPlanes(
        cutter, plan.axis, [&](std::size_t plane, const SliceLines& lines) { ofPlanes[plane] = lines; }, progress);
    SliceLines all;
    for (SliceLines& lines : ofPlanes) {
        const std::size_t before = all.points.size();
        all.points.insert(all.points.end(), lines.points.begin(), lines.points.end());
        for (const std::size_t end : lines.ends) {
            all.ends.push_back(before + end);
        }
        lines = {};
    }
    JoinedLines joined = joinLines(all, plan.axis, plan.precision, partOfProgress(progress, 0.9, 1.0));
    return {std::move(joined.sections), joined.left};
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
    const PlaneCutter cutter(region, plan.axis, planeValues(region, plan), progress);
    SliceResult result =
        cutter.planesApart() ? joinedPlaneByPlane(cutter, plan, progress) : joinedOverPlanes(cutter, plan, progress);
    orientLines(result.sections);
    if (progress) {
        progress(1.0);
    }
    return result;
}

} // namespace velmora

#include "lines_to_grid.h"

#include <algorithm>
#include <cstddef>

#include "polyline.h"
#include "rebreak_kernels.h"
#include "vectors.h"

namespace velmora {

namespace {

/// The coordinates of points, each in a sequence of its own.
struct Coordinates {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> z;

    explicit Coordinates(std::size_t count) : x(count), y(count), z(count) {}
};

PointList resampled(const PointList& section, std::int32_t points, bool spline) {
    constexpr std::int32_t fewestToClean = 4;
    const auto wanted = static_cast<std::size_t>(std::max(points, 0));
    if (section.size() < 2 || points < 2) {
        return {points < 2 ? 0 : wanted, section.empty() ? zVec<double>() : section.front()};
    }
    Coordinates in(section.size());
    for (std::size_t i = 0; i < section.size(); ++i) {
        in.x[i] = section[i].x;
        in.y[i] = section[i].y;
        in.z[i] = section[i].z;
    }
    std::int32_t count = countOf(section);
    if (count >= fewestToClean) {
        RemoveCoincidentPoints(in.x.data(), in.y.data(), in.z.data(), count);
    }
    Coordinates out(wanted);
    if (spline) {
        SplineRebreak(in.x.data(), in.y.data(), in.z.data(), count, out.x.data(), out.y.data(), out.z.data(), points,
                      0);
    } else {
        LinearRebreak(in.x.data(), in.y.data(), in.z.data(), count, out.x.data(), out.y.data(), out.z.data(), points,
                      1);
    }
    PointList result;
    result.reserve(wanted);
    for (std::size_t i = 0; i < wanted; ++i) {
        result.emplace_back(out.x[i], out.y[i], out.z[i]);
    }
    return result;
}

} // namespace

PatchList linesToGrid(const PatchList& lines, std::int32_t points, bool spline) {
    PatchList grid;
    grid.reserve(lines.size());
    for (const Patch& patch : lines) {
        Patch& sections = grid.emplace_back();
        sections.reserve(patch.size());
        for (const PointList& section : patch) {
            sections.push_back(resampled(section, points, spline));
        }
        for (std::size_t j = 0; j + 1 < sections.size(); ++j) {
            alignWithPrevious(sections[j], sections[j + 1]);
        }
    }
    return grid;
}

void alignWithPrevious(const PointList& previous, PointList& next) {
    const std::size_t count = next.size();
    if (previous.size() != count) {
        return;
    }
    double forward = 0.0;
    double backward = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        forward += squaredDistance(previous[i], next[i]);
        backward += squaredDistance(previous[i], next[count - 1 - i]);
    }
    if (backward < forward) {
        std::reverse(next.begin(), next.end());
    }
}

} // namespace velmora

#include "corner_box.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "parallel.h"
#include "vectors.h"

namespace velmora {

std::array<const double*, 3> zoneAxes(const zBlock_fe& zone) {
    const ZoneCoordinates at = coordinatesOf(zone.variables);
    if (zone.variables.size() < 3 || !at) {
        return {};
    }
    return {at.x->data.data(), at.y->data.data(), at.z->data.data()};
}

namespace {

constexpr std::size_t trianglesOfChunk = std::size_t{1} << 16;

/// Of equal numbers, as of zeros of either sign, the first one stays.
void widen(CornerRange& range, double lower, double upper) {
    range.upper = std::max(range.upper, upper);
    range.lower = std::min(range.lower, lower);
}

/// Each of the three corners widens a range of its own, so that none waits for another.
CornerRange rangeOf(const std::int32_t* corners, std::size_t triangles, const double* values) {
    std::array<CornerRange, 3> ranges;
    for (std::size_t i = 0; i < triangles; ++i, corners += 4) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const double value = values[corners[corner]];
            widen(ranges[corner], value, value);
        }
    }
    CornerRange range;
    for (const CornerRange& part : ranges) {
        widen(range, part.lower, part.upper);
    }
    return range;
}

/// Which of two zeros came first, the ranges of single corners do not tell.
CornerRange rangeInOrder(const std::int32_t* corners, std::size_t triangles, const double* values) {
    CornerRange range = rangeOf(corners, triangles, values);
    if (range.lower == 0.0 || range.upper == 0.0) {
        range = {};
        for (std::size_t i = 0; i < triangles; ++i, corners += 4) {
            for (int corner = 0; corner < 3; ++corner) {
                const double value = values[corners[corner]];
                widen(range, value, value);
            }
        }
    }
    return range;
}

} // namespace

CornerRange cornerRange(const zRegion_fe& region, int axis) {
    CornerRange range;
    for (const auto& zone : region.blocks) {
        const double* const values = zoneAxes(*zone)[static_cast<std::size_t>(axis)];
        if (values == nullptr || zone->elementCount <= 0) {
            continue;
        }
        const auto triangles = static_cast<std::size_t>(zone->elementCount);
        std::vector<CornerRange> ranges((triangles + trianglesOfChunk - 1) / trianglesOfChunk);
        forEachChunk(triangles, trianglesOfChunk, [&](std::size_t first, std::size_t last, std::size_t) {
            ranges[first / trianglesOfChunk] =
                rangeInOrder(zone->connectivity.data() + 4 * first, last - first, values);
        });
        for (const CornerRange& part : ranges) {
            widen(range, part.lower, part.upper);
        }
    }
    return range;
}

CornerBox cornerBox(const zRegion_fe& region) {
    CornerBox box;
    for (int axis = 0; axis < 3; ++axis) {
        const CornerRange range = cornerRange(region, axis);
        along(box.lower, axis) = range.lower;
        along(box.upper, axis) = range.upper;
    }
    return box;
}

} // namespace velmora

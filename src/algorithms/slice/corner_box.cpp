#include "corner_box.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
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

/// Several of the values widen ranges of their own, so that none waits for another.
CornerRange rangeOf(std::span<const double> values) {
    std::array<CornerRange, 4> ranges;
    std::size_t i = 0;
    for (; i + ranges.size() <= values.size(); i += ranges.size()) {
        for (std::size_t k = 0; k < ranges.size(); ++k) {
            widen(ranges[k], values[i + k], values[i + k]);
        }
    }
    for (; i < values.size(); ++i) {
        widen(ranges[0], values[i], values[i]);
    }
    CornerRange range;
    for (const CornerRange& part : ranges) {
        widen(range, part.lower, part.upper);
    }
    return range;
}

/// Whether both nodes are corners of triangles. Those of a node often stand near one end of a zone, or anywhere: the
/// search goes on from both ends.
bool areCorners(const zBlock_fe& zone, std::int32_t one, std::int32_t other) {
    bool foundOne = false;
    bool foundOther = false;
    const std::int32_t* front = zone.connectivity.data();
    const std::int32_t* back = front + 4 * static_cast<std::size_t>(zone.elementCount);
    while (front < back && !(foundOne && foundOther)) {
        back -= 4;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            foundOne |= front[corner] == one || back[corner] == one;
            foundOther |= front[corner] == other || back[corner] == other;
        }
        front += 4;
    }
    return foundOne && foundOther;
}

/// The range of all nodes, if it is that of the triangles' corners for certain: nodes at both ends are corners, and
/// neither end is a zero that has two signs. Nothing else when there are more nodes to look at than triangles.
std::optional<CornerRange> rangeOfNodes(const zBlock_fe& zone, const double* first) {
    if (zone.nodeCount > zone.elementCount) {
        return std::nullopt;
    }
    const std::span<const double> values(first, static_cast<std::size_t>(zone.nodeCount));
    const CornerRange range = rangeOf(values);
    const auto lowest = std::find(values.begin(), values.end(), range.lower);
    const auto highest = std::find(values.begin(), values.end(), range.upper);
    if (lowest == values.end() || highest == values.end()) {
        return std::nullopt;
    }
    const auto isNegativeZero = [](double value) {
        return std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(-0.0);
    };
    if ((range.lower == 0.0 || range.upper == 0.0) && std::any_of(values.begin(), values.end(), isNegativeZero)) {
        return std::nullopt;
    }
    if (!areCorners(zone, static_cast<std::int32_t>(lowest - values.begin()),
                    static_cast<std::int32_t>(highest - values.begin()))) {
        return std::nullopt;
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
        if (const std::optional<CornerRange> ofNodes = rangeOfNodes(*zone, values)) {
            widen(range, ofNodes->lower, ofNodes->upper);
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

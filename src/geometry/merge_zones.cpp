#include "merge_zones.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace velmora {

namespace {

bool haveRoom(const zBlock_fe& a, const zBlock_fe& b) {
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    return std::int64_t{a.nodeCount} + b.nodeCount <= most &&
           4 * (std::int64_t{a.elementCount} + b.elementCount) <= most;
}

void appendZone(zBlock_fe& a, const zBlock_fe& b) {
    const std::int32_t nodesBefore = a.nodeCount;
    a.nodeCount += b.nodeCount;
    a.elementCount += b.elementCount;
    a.connectivitySize = 4 * a.elementCount;
    for (auto& variable : a.variables) {
        std::vector<double> values = std::move(variable->data);
        values.resize(static_cast<std::size_t>(nodesBefore));
        if (const zArray<double>* added = variableNamed(b.variables, variable->name)) {
            values.insert(values.end(), added->data.begin(), added->data.end());
        }
        values.resize(static_cast<std::size_t>(a.nodeCount));
        variable = std::make_unique<zArray<double>>(a.nodeCount, 1, 1, variable->name, std::move(values));
    }
    std::transform(b.connectivity.begin(), b.connectivity.end(), std::back_inserter(a.connectivity),
                   [nodesBefore](std::int32_t node) { return node == -1 ? -1 : node + nodesBefore; });
}

} // namespace

bool mergeZones(zRegion_fe& region, std::ptrdiff_t a, std::ptrdiff_t b) {
    const auto count = static_cast<std::ptrdiff_t>(region.blocks.size());
    if (a < 0 || b < 0 || a >= count || b >= count || a == b) {
        return false;
    }
    zBlock_fe& base = *region.blocks[static_cast<std::size_t>(a)];
    const zBlock_fe& added = *region.blocks[static_cast<std::size_t>(b)];
    if (added.elementCount < 1 || !haveRoom(base, added)) {
        return false;
    }
    appendZone(base, added);
    std::vector<std::unique_ptr<zBlock_fe>> merged;
    for (std::ptrdiff_t k = 0; k < count; ++k) {
        auto& zone = region.blocks[static_cast<std::size_t>(k)];
        if (k != b && zone->elementCount > 0) {
            merged.push_back(std::move(zone));
        }
    }
    region.blocks = std::move(merged);
    return true;
}

} // namespace velmora

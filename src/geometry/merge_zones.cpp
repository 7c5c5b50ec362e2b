#include "merge_zones.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

/// Puts the entries behind `offset` of the connectivity, node numbers raised by `nodes`.
void placeElements(const zBlock_fe& from, std::size_t offset, std::int32_t nodes, zBlock_fe& to) {
    for (std::size_t i = 0; i < from.connectivity.size() && offset + i < to.connectivity.size(); ++i) {
        const std::int32_t node = from.connectivity[i];
        to.connectivity[offset + i] = node == -1 ? -1 : node + nodes;
    }
}

void placeValues(const zArray<double>& from, std::size_t offset, zArray<double>& to) {
    const std::size_t count = std::min(from.data.size(), to.data.size() - std::min(offset, to.data.size()));
    std::copy_n(from.data.begin(), count, to.data.begin() + static_cast<std::ptrdiff_t>(offset));
}

} // namespace

std::unique_ptr<zBlock_fe> joinedZone(const zBlock_fe& a, const zBlock_fe& b) {
    const std::int32_t elements = a.elementCount + b.elementCount;
    auto joined = std::make_unique<zBlock_fe>(a.nodeCount + b.nodeCount, 4 * elements, elements);
    joined->title = a.title;
    for (const auto& variable : a.variables) {
        zArray<double>* field = joined->addVariable(variable->name);
        placeValues(*variable, 0, *field);
        if (const zArray<double>* other = variableNamed(b.variables, variable->name)) {
            placeValues(*other, static_cast<std::size_t>(a.nodeCount), *field);
        }
    }
    joined->title = a.title; // a lookup by name may have changed it
    placeElements(a, 0, 0, *joined);
    placeElements(b, static_cast<std::size_t>(a.elementCount) * 4, a.nodeCount, *joined);
    return joined;
}

bool mergeZones(zRegion_fe& region, std::ptrdiff_t a, std::ptrdiff_t b) {
    const auto count = static_cast<std::ptrdiff_t>(region.blocks.size());
    if (a < 0 || b < 0 || a >= count || b >= count || a == b ||
        region.blocks[static_cast<std::size_t>(b)]->elementCount < 1) {
        return false;
    }
    std::vector<std::unique_ptr<zBlock_fe>> merged;
    for (std::ptrdiff_t k = 0; k < count; ++k) {
        auto& zone = region.blocks[static_cast<std::size_t>(k)];
        if (k == a) {
            merged.push_back(joinedZone(*zone, *region.blocks[static_cast<std::size_t>(b)]));
        } else if (k != b && zone->elementCount > 0) {
            merged.push_back(std::move(zone));
        }
    }
    region.blocks = std::move(merged);
    return true;
}

} // namespace velmora

#include "triangle_zone.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace velmora {

namespace {

std::unique_ptr<zBlock_fe> buildZone(VertexList&& vertices, const std::vector<Triangle>& triangles) {
    const auto nodes = static_cast<std::int32_t>(vertices.size());
    const auto elements = static_cast<std::int32_t>(triangles.size());
    auto zone = std::make_unique<zBlock_fe>(nodes, 4 * elements, elements);
    const auto add = [&zone, nodes](const char* name, std::vector<double>&& values) {
        zone->variables.push_back(std::make_unique<zArray<double>>(nodes, 1, 1, name, std::move(values)));
    };
    add("x", std::move(vertices.x));
    add("y", std::move(vertices.y));
    add("z", std::move(vertices.z));
    auto entry = zone->connectivity.begin();
    for (const Triangle& triangle : triangles) {
        for (const std::int64_t corner : triangle) {
            *entry++ = static_cast<std::int32_t>(corner);
        }
        *entry++ = -1;
    }
    return zone;
}

} // namespace

std::unique_ptr<zBlock_fe> makeTriangleZone(VertexList&& vertices, const std::vector<Triangle>& triangles,
                                            const std::string& title) {
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    if (vertices.size() > most || triangles.size() > most / 4) {
        return nullptr;
    }
    try {
        std::unique_ptr<zBlock_fe> zone = buildZone(std::move(vertices), triangles);
        zone->title = title;
        return zone;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool coversNodes(const zArray<double>& variable, const zBlock_fe& zone) {
    return variable.data.size() >= static_cast<std::size_t>(std::max(zone.nodeCount, 0));
}

} // namespace velmora

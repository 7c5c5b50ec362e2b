#include "triangle_zone.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace velmora {

namespace {

constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t entriesPerTriangle = 4;

std::vector<std::int32_t> connectivityOf(const std::vector<Triangle>& triangles) {
    std::vector<std::int32_t> connectivity;
    connectivity.reserve(entriesPerTriangle * triangles.size());
    for (const Triangle& triangle : triangles) {
        for (const std::int64_t corner : triangle) {
            connectivity.push_back(static_cast<std::int32_t>(corner));
        }
        connectivity.push_back(-1);
    }
    return connectivity;
}

std::unique_ptr<zBlock_fe> buildZone(VertexList&& vertices, std::vector<std::int32_t>&& connectivity) {
    const auto nodes = static_cast<std::int32_t>(vertices.size());
    const std::size_t elements = connectivity.size() / entriesPerTriangle;
    auto zone = std::make_unique<zBlock_fe>(nodes, 0, static_cast<std::int32_t>(elements));
    const auto add = [&zone, nodes](const char* name, std::vector<double>&& values) {
        zone->variables.push_back(std::make_unique<zArray<double>>(nodes, 1, 1, name, std::move(values)));
    };
    add("x", std::move(vertices.x));
    add("y", std::move(vertices.y));
    add("z", std::move(vertices.z));
    zone->connectivitySize = static_cast<std::int32_t>(connectivity.size());
    zone->connectivity = std::move(connectivity);
    return zone;
}

} // namespace

std::unique_ptr<zBlock_fe> makeTriangleZone(VertexList&& vertices, const std::vector<Triangle>& triangles,
                                            const std::string& title) {
    if (vertices.size() > most || triangles.size() > most / entriesPerTriangle) {
        return nullptr;
    }
    try {
        return makeTriangleZone(std::move(vertices), connectivityOf(triangles), title);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::unique_ptr<zBlock_fe> makeTriangleZone(VertexList&& vertices, std::vector<std::int32_t>&& connectivity,
                                            const std::string& title) {
    if (vertices.size() > most || connectivity.size() > most) {
        return nullptr;
    }
    try {
        std::unique_ptr<zBlock_fe> zone = buildZone(std::move(vertices), std::move(connectivity));
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

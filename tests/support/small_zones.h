#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "zRegion.h"

namespace velmora::test {

/// A zone of triangles over the given nodes: three node numbers for each.
inline std::unique_ptr<zBlock_fe> triangleZone(const std::string& title, const std::vector<zVec<double>>& nodes,
                                               const std::vector<std::int32_t>& corners) {
    const auto elements = static_cast<std::int32_t>(corners.size() / 3);
    auto zone = std::make_unique<zBlock_fe>(static_cast<std::int32_t>(nodes.size()), 4 * elements, elements);
    zone->title = title;
    const char* const names[] = {"x", "y", "z"};
    double zVec<double>::*const axes[] = {&zVec<double>::x, &zVec<double>::y, &zVec<double>::z};
    for (int i = 0; i < 3; ++i) {
        auto field = std::make_unique<zArray<double>>(zone->nodeCount, 1, 1, names[i]);
        for (std::size_t node = 0; node < nodes.size(); ++node) {
            field->data[node] = nodes[node].*axes[i];
        }
        zone->variables.push_back(std::move(field));
    }
    for (std::size_t element = 0; element < corners.size() / 3; ++element) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            zone->connectivity[4 * element + corner] = corners[3 * element + corner];
        }
        zone->connectivity[4 * element + 3] = -1;
    }
    return zone;
}

/// One triangle (x, 0, z), (x + 1, 0, z), (x, 1, z).
inline std::unique_ptr<zBlock_fe> oneTriangle(double x, double z = 0.0, const std::string& title = "zone") {
    return triangleZone(title, {{x, 0, z}, {x + 1, 0, z}, {x, 1, z}}, {0, 1, 2});
}

/// A region of one such zone.
inline zRegion_fe triangleRegion(const std::vector<zVec<double>>& nodes, const std::vector<std::int32_t>& corners) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("body", nodes, corners));
    return region;
}

/// The coordinates of a node.
inline zVec<double> nodeOf(const zRegion_fe& region, int zone, int node) {
    zVec<double> p;
    EXPECT_EQ(region.getNode(zone, node, p.x, p.y, p.z), 0);
    return p;
}

} // namespace velmora::test

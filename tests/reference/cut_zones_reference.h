#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "zRegion.h"

// The knife's splitting as the rule has it: the zone is built anew for every triangle that is split.

namespace velmora::reference {

inline std::unique_ptr<zBlock_fe> grownZone(const zBlock_fe& zone, int nodes, int elements) {
    auto grown = std::make_unique<zBlock_fe>(zone.nodeCount + nodes, zone.connectivitySize + 4 * elements,
                                             zone.elementCount + elements);
    for (const auto& variable : zone.variables) {
        zArray<double>* const values = grown->addVariable(variable->name);
        for (std::size_t i = 0; i < variable->data.size(); ++i) {
            values->data[i] = variable->data[i];
        }
    }
    for (std::size_t i = 0; i < zone.connectivity.size(); ++i) {
        grown->connectivity[i] = zone.connectivity[i];
    }
    return grown;
}

inline void setNode(zBlock_fe& zone, std::int32_t node, const zVec<double>& p) {
    zone.findVariable("x")->data[static_cast<std::size_t>(node)] = p.x;
    zone.findVariable("y")->data[static_cast<std::size_t>(node)] = p.y;
    zone.findVariable("z")->data[static_cast<std::size_t>(node)] = p.z;
}

inline void setTriangle(zBlock_fe& zone, std::size_t entry, std::int32_t a, std::int32_t b, std::int32_t c) {
    zone.connectivity[entry] = a;
    zone.connectivity[entry + 1] = b;
    zone.connectivity[entry + 2] = c;
    zone.connectivity[entry + 3] = -1;
}

inline void renameCorner(zBlock_fe& zone, std::int32_t element, std::int32_t from, std::int32_t to) {
    for (std::int32_t i = 4 * element; i < 4 * element + 3; ++i) {
        std::int32_t& corner = zone.connectivity[static_cast<std::size_t>(i)];
        if (corner == from) {
            corner = to;
            return;
        }
    }
}

/// Corner b becomes a node at p1 and corner c one at p2; two triangles come behind.
inline void splitTriangle(zRegion_fe& region, std::size_t zone, std::int32_t element, std::int32_t b, std::int32_t c,
                          const zVec<double>& p1, const zVec<double>& p2) {
    const zBlock_fe& old = *region.blocks[zone];
    const std::int32_t n = old.nodeCount;
    const auto end = static_cast<std::size_t>(old.connectivitySize);
    auto grown = grownZone(old, 2, 2);
    setNode(*grown, n, p1);
    setNode(*grown, n + 1, p2);
    renameCorner(*grown, element, b, n);
    renameCorner(*grown, element, c, n + 1);
    setTriangle(*grown, end, n, b, c);
    setTriangle(*grown, end + 4, n, c, n + 1);
    region.blocks[zone] = std::move(grown);
}

/// The edge to corner b is cut at p; c is the corner opposite to it.
inline void splitInTwo(zRegion_fe& region, std::size_t zone, std::int32_t element, std::int32_t b, std::int32_t c,
                       const zVec<double>& p) {
    const zBlock_fe& old = *region.blocks[zone];
    const std::int32_t n = old.nodeCount;
    const auto end = static_cast<std::size_t>(old.connectivitySize);
    auto grown = grownZone(old, 1, 1);
    setNode(*grown, n, p);
    renameCorner(*grown, element, b, n);
    setTriangle(*grown, end, n, b, c);
    region.blocks[zone] = std::move(grown);
}

/// Cuts every original triangle of a region whose triangles have three corners each. `cutOf(p, q)` is the cut of the
/// edge from p to q, if any.
template <class CutOf>
void splitZonesOneByOne(zRegion_fe& region, CutOf cutOf) {
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const std::int32_t elements = region.blocks[k]->elementCount;
        for (std::int32_t element = 0; element < elements; ++element) {
            std::int32_t node[3];
            zVec<double> at[3];
            for (std::int32_t i = 0; i < 3; ++i) {
                node[i] =
                    region.blocks[k]->connectivity[4 * static_cast<std::size_t>(element) + static_cast<std::size_t>(i)];
                region.getNode(static_cast<std::ptrdiff_t>(k), node[i], at[i].x, at[i].y, at[i].z);
            }
            const std::optional<zVec<double>> ab = cutOf(at[0], at[1]);
            const std::optional<zVec<double>> bc = cutOf(at[1], at[2]);
            const std::optional<zVec<double>> ca = cutOf(at[2], at[0]);
            if (ab && ca) {
                splitTriangle(region, k, element, node[1], node[2], *ab, *ca);
            } else if (ab && bc) {
                splitTriangle(region, k, element, node[2], node[0], *bc, *ab);
            } else if (bc && ca) {
                splitTriangle(region, k, element, node[0], node[1], *ca, *bc);
            } else if (ab) {
                splitInTwo(region, k, element, node[1], node[2], *ab);
            } else if (bc) {
                splitInTwo(region, k, element, node[2], node[0], *bc);
            } else if (ca) {
                splitInTwo(region, k, element, node[0], node[1], *ca);
            }
        }
    }
}

} // namespace velmora::reference

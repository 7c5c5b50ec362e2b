#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zBlock.h"
#include "zTriangulator.h"

namespace velmora {

/// A zone with the fields x, y, z at a node for each vertex, and an element for each triangle, whose numbers must be
/// those of vertices. Null when the counts have no room in a zone or memory is short.
std::unique_ptr<zBlock_fe> makeTriangleZone(VertexList&& vertices, const std::vector<Triangle>& triangles,
                                            const std::string& title);
/// The same with the rows of the zone's connectivity: three numbers and -1 for each triangle.
std::unique_ptr<zBlock_fe> makeTriangleZone(VertexList&& vertices, std::vector<std::int32_t>&& connectivity,
                                            const std::string& title);

/// Whether a field has a value for each of the zone's nodes.
bool coversNodes(const zArray<double>& variable, const zBlock_fe& zone);

/// Calls `visit(nodes)` with the three node numbers of every element in order; elements that name nodes which are not
/// there are passed over.
template <class Visit>
void forEachTriangle(const zBlock_fe& zone, Visit&& visit) {
    for (std::int32_t element = 0; element < zone.elementCount; ++element) {
        if (elementInRange(zone, element)) {
            visit(zone.connectivity.data() + std::size_t{4} * static_cast<std::size_t>(element));
        }
    }
}

} // namespace velmora

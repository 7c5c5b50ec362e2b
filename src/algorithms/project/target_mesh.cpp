#include "target_mesh.h"

#include <algorithm>

#include "zone_elements.h"

namespace velmora {

std::int32_t cellCount(const PointList& section, const PointList& next) {
    return std::max(0, std::min(countOf(section), countOf(next)) - 1);
}

CellMesh::CellMesh(const PatchList& patches, const std::vector<bool>& left) {
    for (std::int32_t k = 0; k < countOf(patches); ++k) {
        if (!left[static_cast<std::size_t>(k)]) {
            addPatch(k, patches[static_cast<std::size_t>(k)]);
        }
    }
}

void CellMesh::addPatch(std::int32_t K, const Patch& patch) {
    std::int32_t start = points_;
    for (std::int32_t n = 0; n < countOf(patch); ++n) {
        const PointList& section = patch[static_cast<std::size_t>(n)];
        for (const zVec<double>& point : section) {
            mesh_.addPoint(point);
        }
        points_ += countOf(section);
        const std::int32_t next = start + countOf(section);
        const bool last = n + 1 == countOf(patch);
        const std::int32_t cells = last ? 0 : cellCount(section, patch[static_cast<std::size_t>(n) + 1]);
        if (cells > 0) {
            rows_.push_back({cells_, K, n});
        }
        for (std::int32_t m = 0; m < cells; ++m) {
            mesh_.addTriangle(start + m, start + m + 1, next + m);
            mesh_.addTriangle(start + m + 1, next + m, next + m + 1);
        }
        cells_ += cells;
        start = next;
    }
}

CellAddress CellMesh::cellOf(std::int32_t triangle) const {
    const std::int32_t cell = triangle / 2;
    const auto behind =
        std::partition_point(rows_.begin(), rows_.end(), [cell](const Row& row) { return row.firstCell <= cell; });
    const Row& row = *(behind - 1);
    return {row.K, row.N, cell - row.firstCell};
}

TriangleMesh zoneMesh(const zRegion_fe& region, const std::vector<bool>& left) {
    TriangleMesh mesh;
    std::int32_t base = 0;
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const zBlock_fe& zone = *region.blocks[k];
        const ZoneCoordinates at = coordinatesOf(zone.variables);
        if (left[k] || !at) {
            continue;
        }
        const std::size_t nodes = std::min({at.x->data.size(), at.y->data.size(), at.z->data.size()});
        for (std::size_t node = 0; node < nodes; ++node) {
            mesh.addPoint({at.x->data[node], at.y->data[node], at.z->data[node]});
        }
        for (std::int32_t element = 0; element < zone.elementCount; ++element) {
            const bool whole = isCorner(elementCorner(zone, at, element, 0)) &&
                               isCorner(elementCorner(zone, at, element, 1)) &&
                               isCorner(elementCorner(zone, at, element, 2));
            if (whole) {
                const std::int32_t* const corners = zone.connectivity.data() + 4 * static_cast<std::size_t>(element);
                mesh.addTriangle(base + corners[0], base + corners[1], base + corners[2]);
            }
        }
        base += static_cast<std::int32_t>(nodes);
    }
    return mesh;
}

} // namespace velmora

#pragma once

#include "line_triangle_strict.h"
#include "picking.h"
#include "zRegion.h"

namespace velmora::reference {

/// Calls `visit` with each hit of a line with a zone, triangle by triangle, until it answers true.
template <class Visit>
bool anyHit(const zBlock_fe& zone, const zVec<double>& origin, const zVec<double>& direction, Visit visit) {
    const ZoneCoordinates at = coordinatesOf(zone.variables);
    const auto corner = [&](std::int32_t entry) {
        const auto node = static_cast<std::size_t>(zone.connectivity[static_cast<std::size_t>(entry)]);
        return zVec<double>(at.x->data[node], at.y->data[node], at.z->data[node]);
    };
    for (std::int32_t element = 0; element < zone.elementCount; ++element) {
        const TriangleHit hit =
            LineHitsTriangle(corner(4 * element), corner(4 * element + 1), corner(4 * element + 2), direction, origin);
        if (hit.code != 0 && visit(hit.point)) {
            return true;
        }
    }
    return false;
}

/// The plain rule: every triangle of every zone, and for each hit every triangle of every other zone.
inline std::int32_t pickZone(const zRegion_fe& region, const PixelLine& line) {
    const zVec<double> direction = line.farPoint - line.nearPoint;
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const bool visible = anyHit(*region.blocks[k], line.nearPoint, direction, [&](const zVec<double>& hit) {
            for (std::size_t other = 0; other < region.blocks.size(); ++other) {
                if (other != k && anyHit(*region.blocks[other], hit, direction, [&](const zVec<double>& behind) {
                        return dot(behind - hit, direction) < 0.0;
                    })) {
                    return false;
                }
            }
            return true;
        });
        if (visible) {
            return static_cast<std::int32_t>(k);
        }
    }
    return -1;
}

} // namespace velmora::reference

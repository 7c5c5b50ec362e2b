#pragma once

#include "PatchList.h"
#include "line_triangle_strict.h"
#include "picking.h"

namespace velmora::reference {

/// Calls `visit` with each hit of a line with a patch, cell by cell, until it answers true.
template <class Visit>
bool anyHit(const Patch& patch, const zVec<double>& origin, const zVec<double>& direction, Visit visit) {
    for (std::size_t n = 0; n + 1 < patch.size(); ++n) {
        for (std::size_t m = 0; m + 1 < patch.front().size(); ++m) {
            if (m + 1 >= patch[n].size() || m + 1 >= patch[n + 1].size()) {
                continue;
            }
            const TriangleHit first =
                LineHitsTriangle(patch[n][m], patch[n][m + 1], patch[n + 1][m + 1], direction, origin);
            if (first.code != 0 && visit(first.point)) {
                return true;
            }
            const TriangleHit second =
                LineHitsTriangle(patch[n][m], patch[n + 1][m + 1], patch[n + 1][m], direction, origin);
            if (second.code != 0 && visit(second.point)) {
                return true;
            }
        }
    }
    return false;
}

/// The plain rule: every triangle of every patch, and for each hit every triangle of every other patch.
inline std::int32_t pickPatch(const PatchList& list, const PixelLine& line) {
    const zVec<double> direction = line.farPoint - line.nearPoint;
    for (std::size_t k = 0; k < list.size(); ++k) {
        const bool visible = anyHit(list[k], line.nearPoint, direction, [&](const zVec<double>& hit) {
            for (std::size_t other = 0; other < list.size(); ++other) {
                if (other != k && anyHit(list[other], hit, direction, [&](const zVec<double>& behind) {
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

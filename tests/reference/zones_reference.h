#pragma once

#include <cstddef>
#include <cstdint>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora::reference {

/// Thins complete zones of the fields x, y, z, in this order, into patches, one point after the other.
inline PatchList thinnedZones(const zRegion& region) {
    std::int64_t total = 0;
    for (const auto& zone : region.blocks) {
        total += std::int64_t{zone->imax} * zone->jmax;
    }
    std::int64_t factor = total / 2010000;
    factor += total - factor * 2010000 > 201000 ? 1 : 0;
    const int period = factor >= 10 ? 4 : factor >= 5 ? 3 : factor >= 1 ? 2 : 1;
    PatchList patches;
    int pointPhase = 0;
    int sectionPhase = 0;
    std::int64_t kept = 0;
    for (const auto& zone : region.blocks) {
        Patch patch;
        std::size_t index = 0;
        for (int j = 0; j < zone->jmax; ++j) {
            PointList section;
            for (int i = 0; i < zone->imax; ++i, ++index) {
                double values[3];
                for (std::size_t c = 0; c < 3; ++c) {
                    values[c] = zone->variables[c]->data[index];
                    values[c] = values[c] < -1e8 ? 0.0 : values[c];
                }
                if (pointPhase == 0 || i == zone->imax - 1 || zone->imax <= 65) {
                    section.emplace_back(values[0], values[1], values[2]);
                }
                pointPhase = (pointPhase + 1) % period;
            }
            if (sectionPhase == 0 || j == zone->jmax - 1 || zone->jmax <= 65) {
                kept += static_cast<std::int64_t>(section.size());
                patch.push_back(section);
            }
            sectionPhase = (sectionPhase + 1) % period;
            if (kept >= 2412000) {
                break;
            }
        }
        patches.push_back(patch);
    }
    return patches;
}

} // namespace velmora::reference

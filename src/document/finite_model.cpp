#include "finite_model.h"

#include <algorithm>
#include <cmath>

namespace velmora {

bool isFinite(const PatchList& patches) {
    const auto finite = [](const zVec<double>& p) {
        return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
    };
    return std::all_of(patches.begin(), patches.end(), [&finite](const Patch& patch) {
        return std::all_of(patch.begin(), patch.end(), [&finite](const PointList& section) {
            return std::all_of(section.begin(), section.end(), finite);
        });
    });
}

bool isFinite(const zRegion_fe& zones) {
    return std::all_of(zones.blocks.begin(), zones.blocks.end(), [](const auto& zone) {
        return std::all_of(zone->variables.begin(), zone->variables.end(), [](const auto& values) {
            return std::all_of(values->data.begin(), values->data.end(),
                               [](double value) { return std::isfinite(value); });
        });
    });
}

} // namespace velmora

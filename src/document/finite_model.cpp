#include "finite_model.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>

namespace velmora {

namespace {

bool isFinite(const Patch& patch) {
    return std::all_of(patch.begin(), patch.end(), [](const PointList& section) {
        return std::all_of(section.begin(), section.end(), [](const zVec<double>& p) {
            return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
        });
    });
}

bool isFinite(const std::unique_ptr<zBlock_fe>& zone) {
    return std::all_of(zone->variables.begin(), zone->variables.end(), [](const auto& values) {
        return std::all_of(values->data.begin(), values->data.end(), [](double value) { return std::isfinite(value); });
    });
}

template <class Parts>
bool areFinite(const Parts& parts) {
    std::size_t k = 0;
    while (k < parts.size() && isFinite(parts[k])) {
        ++k;
    }
    return k == parts.size();
}

} // namespace

bool isFinite(const PatchList& patches) {
    return areFinite(patches);
}

bool isFinite(const zRegion_fe& zones) {
    return areFinite(zones.blocks);
}

bool isFinite(const KeptPatches& patches) {
    return areFinite(patches);
}

bool isFinite(const KeptZones& zones) {
    return areFinite(zones);
}

} // namespace velmora

#include "corner_box.h"

#include <algorithm>

namespace velmora {

std::array<const double*, 3> zoneAxes(const zBlock_fe& zone) {
    const ZoneCoordinates at = coordinatesOf(zone.variables);
    if (zone.variables.size() < 3 || !at) {
        return {};
    }
    return {at.x->data.data(), at.y->data.data(), at.z->data.data()};
}

namespace {

void widen(const zBlock_fe& zone, const double* values, double& lower, double& upper) {
    double low = lower;
    double high = upper;
    const std::int32_t* corners = zone.connectivity.data();
    for (std::int32_t element = 0; element < zone.elementCount; ++element, corners += 4) {
        for (int corner = 0; corner < 3; ++corner) {
            const double value = values[corners[corner]];
            high = std::max(high, value);
            low = std::min(low, value);
        }
    }
    lower = low;
    upper = high;
}

} // namespace

CornerBox cornerBox(const zRegion_fe& region) {
    CornerBox box;
    for (const auto& zone : region.blocks) {
        const auto axes = zoneAxes(*zone);
        if (axes[0] != nullptr) {
            widen(*zone, axes[0], box.lower.x, box.upper.x);
            widen(*zone, axes[1], box.lower.y, box.upper.y);
            widen(*zone, axes[2], box.lower.z, box.upper.z);
        }
    }
    return box;
}

} // namespace velmora

#include "zone_elements.h"

namespace velmora {

namespace {

const zBlock_fe* zoneAt(const zRegion_fe& region, std::int32_t zone) {
    const bool exists = zone >= 0 && static_cast<std::size_t>(zone) < region.blocks.size();
    return exists ? region.blocks[static_cast<std::size_t>(zone)].get() : nullptr;
}

bool holds(const zArray<double>* field, std::size_t node) {
    return node < field->data.size();
}

} // namespace

bool isCorner(const zVec<double>& corner) {
    return !(corner.x < leastCoordinate || corner.y < leastCoordinate || corner.z < leastCoordinate);
}

zVec<double> elementCorner(const zBlock_fe& zone, const ZoneCoordinates& at, std::int32_t element,
                           std::int32_t corner) {
    const zVec<double> absent(absentCorner, absentCorner, absentCorner);
    if (!at || corner < 0 || corner > 2 || element < 0 || element >= zone.elementCount) {
        return absent;
    }
    const std::size_t entry = 4 * static_cast<std::size_t>(element) + static_cast<std::size_t>(corner);
    if (entry >= zone.connectivity.size()) {
        return absent;
    }
    const std::int32_t node = zone.connectivity[entry];
    if (node < 0 || node >= zone.nodeCount) {
        return absent;
    }
    const auto index = static_cast<std::size_t>(node);
    if (!holds(at.x, index) || !holds(at.y, index) || !holds(at.z, index)) {
        return absent;
    }
    return {at.x->data[index], at.y->data[index], at.z->data[index]};
}

zVec<double> getElementCorner(const zRegion_fe& region, std::int32_t zone, std::int32_t element, std::int32_t corner) {
    const zBlock_fe* const found = zoneAt(region, zone);
    return found != nullptr ? elementCorner(*found, coordinatesOf(found->variables), element, corner)
                            : zVec<double>(absentCorner, absentCorner, absentCorner);
}

zVec<double> elementNormal(const zBlock_fe& zone, const ZoneCoordinates& at, std::int32_t element) {
    const zVec<double> a = elementCorner(zone, at, element, 0);
    const zVec<double> b = elementCorner(zone, at, element, 1);
    const zVec<double> c = elementCorner(zone, at, element, 2);
    return isCorner(a) && isCorner(c) ? cross(c - a, b - a) : zVec<double>();
}

zVec<double> elementNormal(const zRegion_fe& region, std::int32_t zone, std::int32_t element) {
    const zBlock_fe* const found = zoneAt(region, zone);
    return found != nullptr ? elementNormal(*found, coordinatesOf(found->variables), element) : zVec<double>();
}

} // namespace velmora

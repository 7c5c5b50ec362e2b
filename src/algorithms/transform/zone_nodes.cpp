#include "zone_nodes.h"

#include <algorithm>

namespace velmora {

namespace {

bool holdsNode(const zRegion_fe& region, std::int32_t zone, std::int32_t node) {
    if (zone < 0 || zone >= countOf(region.blocks)) {
        return false;
    }
    const zBlock_fe& block = *region.blocks[static_cast<std::size_t>(zone)];
    return block.variables.size() >= 3 && node >= 0 && node < block.nodeCount;
}

/// Which coordinate a field carries: 0, 1, 2, or -1 for none.
int coordinateOf(const std::string& name) {
    static const std::string letters = "xyzXYZ";
    const std::size_t found = name.size() == 1 ? letters.find(name) : std::string::npos;
    return found == std::string::npos ? -1 : static_cast<int>(found % 3);
}

/// Calls the action with each coordinate's number and its place in the zone's fields.
template <class Action>
void forCoordinates(const zRegion_fe& region, std::int32_t zone, std::int32_t node, Action action) {
    for (const auto& field : region.blocks[static_cast<std::size_t>(zone)]->variables) {
        const int coordinate = coordinateOf(field->name);
        if (coordinate >= 0 && static_cast<std::size_t>(node) < field->data.size()) {
            action(coordinate, field->data[static_cast<std::size_t>(node)]);
        }
    }
}

std::int32_t nodeCountOf(const zRegion_fe& region, std::int32_t zone) {
    return region.blocks[static_cast<std::size_t>(zone)]->nodeCount;
}

} // namespace

int zoneNodeCoords(const zRegion_fe& region, std::int32_t zone, std::int32_t node, double& x, double& y, double& z) {
    if (!holdsNode(region, zone, node)) {
        return -1;
    }
    double* const targets[] = {&x, &y, &z};
    forCoordinates(region, zone, node, [&targets](int coordinate, double value) { *targets[coordinate] = value; });
    return 0;
}

int setZoneNodeCoords(zRegion_fe& region, std::int32_t zone, std::int32_t node, double x, double y, double z) {
    if (!holdsNode(region, zone, node)) {
        return -1;
    }
    const double sources[] = {x, y, z};
    forCoordinates(region, zone, node, [&sources](int coordinate, double& value) { value = sources[coordinate]; });
    return 0;
}

std::int32_t cloneZoneMirror(zRegion_fe& region, std::int32_t zone) {
    if (zone >= 0 && zone < countOf(region.blocks)) {
        const zBlock_fe& source = *region.blocks[static_cast<std::size_t>(zone)];
        auto copy = std::make_unique<zBlock_fe>(source.nodeCount, source.connectivitySize, source.elementCount);
        copy->connectivity = source.connectivity;
        const std::size_t fields = std::min<std::size_t>(source.variables.size(), 3);
        for (std::size_t i = 0; i < fields; ++i) {
            copy->variables.push_back(
                std::make_unique<zArray<double>>(source.nodeCount, 1, 1, source.variables[i]->name));
        }
        copy->title = source.title + "_simm";
        region.blocks.push_back(std::move(copy));
    }
    return countOf(region.blocks);
}

std::vector<std::int32_t> zonesReached(const zRegion_fe& region, std::span<const std::int32_t> block) {
    std::vector<std::int32_t> zones;
    std::size_t position = 0;
    while (position < block.size()) {
        const std::int32_t zone = block[position];
        std::size_t next = position + 1;
        if (zone >= 0 && zone < countOf(region.blocks)) {
            zones.push_back(zone);
            next = static_cast<std::size_t>(nodeCountOf(region, zone)) + 1;
        }
        if (next <= position) {
            break;
        }
        position = next;
    }
    return zones;
}

bool transformZones(zRegion_fe& region, const std::vector<std::int32_t>& zones, const PointMap& map) {
    for (const std::int32_t zone : zones) {
        const std::int32_t nodes = nodeCountOf(region, zone);
        for (std::int32_t node = 0; node < nodes; ++node) {
            zVec<double> at;
            if (zoneNodeCoords(region, zone, node, at.x, at.y, at.z) != 0) {
                break; // a zone without coordinates
            }
            const auto target = map(at);
            if (!target) {
                return false;
            }
            setZoneNodeCoords(region, zone, node, target->x, target->y, target->z);
        }
    }
    return true;
}

void turnTriangles(zBlock_fe& zone) {
    constexpr std::size_t entriesOfTriangle = 4;
    for (std::size_t corner = 0; corner + 2 < zone.connectivity.size(); corner += entriesOfTriangle) {
        std::swap(zone.connectivity[corner + 1], zone.connectivity[corner + 2]);
    }
}

void mirrorZones(zRegion_fe& region, const std::vector<std::int32_t>& zones, const CoordinatePlane& plane) {
    for (const std::int32_t zone : zones) {
        const std::int32_t clone = cloneZoneMirror(region, zone) - 1;
        const std::int32_t nodes = nodeCountOf(region, zone);
        for (std::int32_t node = 0; node < nodes; ++node) {
            zVec<double> at;
            if (zoneNodeCoords(region, zone, node, at.x, at.y, at.z) != 0) {
                break;
            }
            const zVec<double> image = reflectedPoint(at, plane);
            setZoneNodeCoords(region, clone, node, image.x, image.y, image.z);
        }
    }
}

} // namespace velmora

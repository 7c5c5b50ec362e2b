#include "zone_conversion.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

namespace velmora {

namespace {

// Every array of the zone holds a value for each point of the first layer, and the triangles can be counted.
bool hasSurface(const zBlock& zone) {
    const std::int32_t points = gridSize(zone.imax, zone.jmax, 1);
    if (zone.imax < 2 || zone.jmax < 2 || points == 0 || points > std::numeric_limits<std::int32_t>::max() / 8) {
        return false;
    }
    return std::all_of(zone.variables.begin(), zone.variables.end(), [points](const auto& variable) {
        return variable->data.size() >= static_cast<std::size_t>(points);
    });
}

// Two triangles for each cell, split from a + 1 to a + imax.
void connectGrid(std::int32_t imax, std::int32_t jmax, std::vector<std::int32_t>& connectivity) {
    auto entry = connectivity.begin();
    const auto put = [&entry](std::int32_t a, std::int32_t b, std::int32_t c) {
        for (const std::int32_t node : {a, b, c, -1}) {
            *entry++ = node;
        }
    };
    for (std::int32_t i = 0; i + 1 < imax; ++i) {
        for (std::int32_t j = 0; j + 1 < jmax; ++j) {
            const std::int32_t a = i + j * imax;
            put(a, a + 1, a + imax);
            put(a + imax, a + 1, a + imax + 1);
        }
    }
}

std::unique_ptr<zBlock_fe> surfaceOf(const zBlock& zone, std::size_t number) {
    const std::int32_t points = gridSize(zone.imax, zone.jmax, 1);
    const std::int32_t elements = 2 * (zone.jmax - 1) * (zone.imax - 1);
    auto surface = std::make_unique<zBlock_fe>(points, 4 * elements, elements);
    surface->title = "Patch___" + std::to_string(number);
    for (const auto& variable : zone.variables) {
        zArray<double>* const copy = surface->addVariable(variable->name);
        std::copy_n(variable->data.begin(), points, copy->data.begin());
    }
    connectGrid(zone.imax, zone.jmax, surface->connectivity);
    return surface;
}

std::int32_t firstSectionSize(const Patch& patch) {
    return patch.empty() ? 0 : countOf(patch.front());
}

// The patch's points as the fields x, y, z.
std::unique_ptr<zBlock> zoneOf(const Patch& patch) {
    auto zone = std::make_unique<zBlock>(firstSectionSize(patch), countOf(patch), 1);
    zArray<double>* const x = zone->addVariable("x");
    zArray<double>* const y = zone->addVariable("y");
    zArray<double>* const z = zone->addVariable("z");
    const auto imax = static_cast<std::size_t>(zone->imax);
    for (std::size_t n = 0; zone->total > 0 && n < patch.size(); ++n) {
        const PointList& section = patch[n];
        for (std::size_t m = 0; m < std::min(imax, section.size()); ++m) {
            x->data[m + n * imax] = section[m].x;
            y->data[m + n * imax] = section[m].y;
            z->data[m + n * imax] = section[m].z;
        }
    }
    return zone;
}

} // namespace

bool patchesToRegion(const PatchList& patches, zRegion& region) {
    if (patches.empty()) {
        return true;
    }
    constexpr std::size_t coordinateCount = 3;
    const std::size_t fields = region.blocks.empty() ? coordinateCount : region.blocks.front()->variables.size();
    if (fields < coordinateCount) {
        return false;
    }
    for (std::size_t k = 0; k < patches.size(); ++k) {
        std::unique_ptr<zBlock> zone = zoneOf(patches[k]);
        zone->title = "Patch_add" + std::to_string(k);
        for (std::size_t function = 0; function < fields - coordinateCount; ++function) {
            zone->addVariable("Func_" + std::to_string(function));
        }
        region.blocks.push_back(std::move(zone));
    }
    return true;
}

bool regionToSurface(const zRegion& region, zRegion_fe& surface) {
    if (region.blocks.empty() || region.blocks.front()->variables.size() < 3 ||
        !coordinatesOf(region.blocks.front()->variables)) {
        return true;
    }
    for (std::size_t number = 0; number < region.blocks.size(); ++number) {
        const zBlock& zone = *region.blocks[number];
        if (hasSurface(zone)) {
            surface.blocks.push_back(surfaceOf(zone, number));
        }
    }
    return true;
}

void patchesToZones(const PatchList& patches, zRegion& region) {
    for (const Patch& patch : patches) {
        region.blocks.push_back(zoneOf(patch));
        region.blocks.back()->title = "z";
    }
}

} // namespace velmora

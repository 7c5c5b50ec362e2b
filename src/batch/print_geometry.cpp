#include <algorithm>
#include <iterator>

#include "print_values.h"

namespace velmora {

namespace {

struct NamedPatches {
    const char* name;
    PatchList VelmoraDoc::*list;
};

struct NamedPoints {
    const char* name;
    PointList VelmoraDoc::*list;
};

constexpr NamedPatches patchLists[] = {
    {"patches", &VelmoraDoc::patches},
    {"fieldPatches", &VelmoraDoc::fieldPatches},
    {"referencePatches", &VelmoraDoc::referencePatches},
    {"blockClipboard", &VelmoraDoc::blockClipboard},
    {"undoPatches", &VelmoraDoc::undoPatches},
    {"pointUndoPatches", &VelmoraDoc::pointUndoPatches},
    {"dragPatches", &VelmoraDoc::dragPatches},
    {"interPatches", &VelmoraDoc::interPatches},
};

constexpr NamedPoints pointLists[] = {
    {"lineBuffer", &VelmoraDoc::lineBuffer},
    {"markers", &VelmoraDoc::markers},
    {"sftPoints", &VelmoraDoc::sftPoints},
    {"sftTargets", &VelmoraDoc::sftTargets},
    {"interLine", &VelmoraDoc::interLine},
    {"beforeIntersection", &VelmoraDoc::beforeIntersection},
    {"afterIntersection", &VelmoraDoc::afterIntersection},
};

struct NamedZones {
    const char* name;
    zRegion_fe VelmoraDoc::*region;
};

constexpr NamedZones zoneLists[] = {
    {"region", &VelmoraDoc::feRegion},
    {"referenceRegion", &VelmoraDoc::referenceRegion},
    {"undoRegion", &VelmoraDoc::undoRegion},
};

Json zoneValue(const zBlock_fe& zone) {
    Json variables = Json::array();
    for (const auto& variable : zone.variables) {
        variables.push_back({{"name", variable->name}, {"values", numbersValue(variable->data)}});
    }
    Json triangles = Json::array();
    for (std::size_t entry = 0; entry + 3 < zone.connectivity.size(); entry += 4) {
        triangles.push_back({zone.connectivity[entry], zone.connectivity[entry + 1], zone.connectivity[entry + 2]});
    }
    return {{"title", zone.title}, {"variables", std::move(variables)}, {"triangles", std::move(triangles)}};
}

Json zonesValue(const zRegion_fe& region) {
    Json zones = Json::array();
    for (const auto& zone : region.blocks) {
        zones.push_back(zoneValue(*zone));
    }
    return zones;
}

} // namespace

namespace {

double numbersOf(const zRegion_fe& region) {
    double numbers = 0.0;
    for (const auto& zone : region.blocks) {
        numbers += 3.0 * zone->elementCount;
        for (const auto& variable : zone->variables) {
            numbers += static_cast<double>(variable->data.size());
        }
    }
    return numbers;
}

} // namespace

double printedBytes(std::string_view name, const VelmoraDoc& doc, VelmoraView& view) {
    constexpr double bytesOfNumber = 150.0; // the value, its share of the lists around it, and its digits twice
    double numbers = 0.0;
    for (const NamedPatches& known : patchLists) {
        numbers += name == known.name ? 3.0 * static_cast<double>(pointTotal(doc.*known.list)) : 0.0;
    }
    for (const NamedPoints& known : pointLists) {
        numbers += name == known.name ? 3.0 * static_cast<double>((doc.*known.list).size()) : 0.0;
    }
    for (const NamedZones& known : zoneLists) {
        numbers += name == known.name ? numbersOf(doc.*known.region) : 0.0;
    }
    if (name == "scene") {
        numbers += 3.0 * static_cast<double>(view.list().vertices.size() + view.list().normals.size());
    }
    return numbers * bytesOfNumber;
}

std::optional<Json> geometryValue(std::string_view name, const VelmoraDoc& doc) {
    const auto named = [name](const auto& entry) { return name == entry.name; };
    if (const auto* patches = std::find_if(std::begin(patchLists), std::end(patchLists), named);
        patches != std::end(patchLists)) {
        return patchesValue(doc.*patches->list);
    }
    if (const auto* points = std::find_if(std::begin(pointLists), std::end(pointLists), named);
        points != std::end(pointLists)) {
        return pointsValue(doc.*points->list);
    }
    if (const auto* zones = std::find_if(std::begin(zoneLists), std::end(zoneLists), named);
        zones != std::end(zoneLists)) {
        return zonesValue(doc.*zones->region);
    }
    return std::nullopt;
}

} // namespace velmora

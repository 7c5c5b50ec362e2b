#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "DocumentState.h"
#include "print_values.h"

namespace velmora {

namespace {

template <class List>
struct Named {
    const char* name;
    List DocumentState::*list;
};

constexpr Named<PatchList> patchLists[] = {
    {"patches", &DocumentState::patches},
    {"fieldPatches", &DocumentState::fieldPatches},
    {"referencePatches", &DocumentState::referencePatches},
    {"blockClipboard", &DocumentState::blockClipboard},
    {"dragPatches", &DocumentState::dragPatches},
    {"interPatches", &DocumentState::interPatches},
};

constexpr Named<KeptPatches> keptLists[] = {
    {"undoPatches", &DocumentState::undoPatches},
    {"pointUndoPatches", &DocumentState::pointUndoPatches},
};

constexpr Named<PointList> pointLists[] = {
    {"lineBuffer", &DocumentState::lineBuffer},
    {"markers", &DocumentState::markers},
    {"sftPoints", &DocumentState::sftPoints},
    {"sftTargets", &DocumentState::sftTargets},
    {"interLine", &DocumentState::interLine},
    {"beforeIntersection", &DocumentState::beforeIntersection},
    {"afterIntersection", &DocumentState::afterIntersection},
};

constexpr Named<zRegion_fe> zoneLists[] = {
    {"region", &DocumentState::feRegion},
    {"referenceRegion", &DocumentState::referenceRegion},
};

constexpr Named<KeptRegion> keptZones[] = {
    {"undoRegion", &DocumentState::undoRegion},
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

template <class Region>
Json zonesValue(const Region& region) {
    Json zones = Json::array();
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        zones.push_back(zoneValue(*region.blocks[k]));
    }
    return zones;
}

template <class Patches>
double numbersOfPatches(const Patches& patches) {
    double numbers = 0.0;
    for (std::size_t k = 0; k < patches.size(); ++k) {
        for (const PointList& section : patches[k]) {
            numbers += 3.0 * static_cast<double>(section.size());
        }
    }
    return numbers;
}

template <class Region>
double numbersOfZones(const Region& region) {
    double numbers = 0.0;
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        numbers += 3.0 * region.blocks[k]->elementCount;
        for (const auto& variable : region.blocks[k]->variables) {
            numbers += static_cast<double>(variable->data.size());
        }
    }
    return numbers;
}

/// What `work` makes of the list of that name among `lists`; `otherwise` without such a one.
template <class Lists, class Work, class Value>
Value ofNamed(const Lists& lists, std::string_view name, const DocumentState& doc, Work work, Value otherwise) {
    const auto found =
        std::find_if(std::begin(lists), std::end(lists), [name](const auto& entry) { return name == entry.name; });
    return found != std::end(lists) ? Value(work(doc.*found->list)) : std::move(otherwise);
}

} // namespace

double printedBytes(std::string_view name, const DocumentState& doc, VelmoraView& view) {
    constexpr double bytesOfNumber = 150.0; // the value, its share of the lists around it, and its digits twice
    double numbers = 0.0;
    const auto ofPatches = [](const auto& list) { return numbersOfPatches(list); };
    const auto ofPoints = [](const PointList& list) { return 3.0 * static_cast<double>(list.size()); };
    const auto ofZones = [](const auto& region) { return numbersOfZones(region); };
    numbers += ofNamed(patchLists, name, doc, ofPatches, 0.0) + ofNamed(keptLists, name, doc, ofPatches, 0.0);
    numbers += ofNamed(pointLists, name, doc, ofPoints, 0.0);
    numbers += ofNamed(zoneLists, name, doc, ofZones, 0.0) + ofNamed(keptZones, name, doc, ofZones, 0.0);
    if (name == "scene") {
        numbers += 3.0 * static_cast<double>(view.list().vertices.size() + view.list().normals.size());
    }
    return numbers * bytesOfNumber;
}

std::optional<Json> geometryValue(std::string_view name, const DocumentState& doc) {
    const auto ofPatches = [](const auto& list) { return patchesValue(list); };
    const auto ofPoints = [](const PointList& list) { return pointsValue(list); };
    const auto ofZones = [](const auto& region) { return zonesValue(region); };
    std::optional<Json> value;
    value = ofNamed(patchLists, name, doc, ofPatches, std::move(value));
    value = ofNamed(keptLists, name, doc, ofPatches, std::move(value));
    value = ofNamed(pointLists, name, doc, ofPoints, std::move(value));
    value = ofNamed(zoneLists, name, doc, ofZones, std::move(value));
    return ofNamed(keptZones, name, doc, ofZones, std::move(value));
}

} // namespace velmora

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

/// Lists of zones. Documents are structured: they hold no zone.
constexpr const char* zoneLists[] = {"region", "referenceRegion", "undoRegion"};

} // namespace

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
    if (std::find(std::begin(zoneLists), std::end(zoneLists), name) != std::end(zoneLists)) {
        return Json::array();
    }
    return std::nullopt;
}

} // namespace velmora

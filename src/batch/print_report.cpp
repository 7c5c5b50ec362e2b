#include "model_report.h"
#include "print_values.h"

namespace velmora {

namespace {

Json placeValue(std::size_t patch, const std::optional<PatchPlace>& place) {
    return place ? Json::array({patch + 1, place->section + 1, place->point + 1}) : Json();
}

Json gapsValue(const std::vector<BorderGap>& gaps) {
    Json list = Json::array();
    for (const BorderGap& gap : gaps) {
        list.push_back(
            {{"patches", Json::array({gap.patch + 1, gap.other + 1})}, {"largest", numberValue(gap.largest)}});
    }
    return list;
}

/// Each value under its name, and its place under the same name in "at".
Json qualityValue(std::size_t patch, const PatchQuality& quality) {
    Json value = {{"area", numberValue(quality.area)}};
    Json at = Json::object();
    const auto add = [&](const char* name, Json number, const std::optional<PatchPlace>& place) {
        value[name] = std::move(number);
        at[name] = placeValue(patch, place);
    };
    add("smallestStep", maybeNumberValue(quality.smallestStep.value), quality.smallestStep.at);
    add("largestStep", maybeNumberValue(quality.largestStep.value), quality.largestStep.at);
    add("growth", maybeNumberValue(quality.growth.value), quality.growth.at);
    add("aspect", maybeNumberValue(quality.aspect.value), quality.aspect.at);
    add("skew", maybeNumberValue(quality.skew.value), quality.skew.at);
    add("warp", maybeNumberValue(quality.warp.value), quality.warp.at);
    add("repeatedPoints", quality.repeatedPoints.count, quality.repeatedPoints.at);
    add("collapsedCells", quality.collapsedCells.count, quality.collapsedCells.at);
    add("foldedCells", quality.foldedCells.count, quality.foldedCells.at);
    value["at"] = std::move(at);
    return value;
}

Json zoneReportValue(const ZoneReport& zone) {
    return {{"title", zone.title},
            {"nodes", zone.nodes},
            {"triangles", zone.triangles},
            {"area", numberValue(zone.area)},
            {"degenerate", zone.degenerate}};
}

} // namespace

Json reportValue(const VelmoraDoc& doc) {
    const ModelReport report = modelReport(doc.patches, doc.feRegion, doc.modelRadius);
    Json patches = Json::array();
    for (std::size_t k = 0; k < report.patches.size(); ++k) {
        patches.push_back(qualityValue(k, report.patches[k]));
    }
    Json zones = Json::array();
    for (const ZoneReport& zone : report.zones) {
        zones.push_back(zoneReportValue(zone));
    }
    return {{"box", report.box ? Json::array({pointValue((*report.box)[0]), pointValue((*report.box)[1])}) : Json()},
            {"patches", report.patches.size()},
            {"sections", report.sections},
            {"points", report.points},
            {"cells", report.cells},
            {"zones", report.zones.size()},
            {"nodes", report.nodes},
            {"triangles", report.triangles},
            {"area", numberValue(report.area)},
            {"volume", maybeNumberValue(report.body.volume)},
            {"components", report.body.components},
            {"openBorder", numberValue(report.body.openBorder)},
            {"badEdges", report.body.badEdges},
            {"gaps", gapsValue(report.gaps)},
            {"patch", std::move(patches)},
            {"zone", std::move(zones)}};
}

} // namespace velmora

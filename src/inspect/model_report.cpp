#include "model_report.h"

#include <limits>

#include "EdgeTable.h"
#include "cell_folds.h"
#include "model_faces.h"
#include "vectors.h"

namespace velmora {

namespace {

std::optional<std::array<zVec<double>, 2>> boxOf(const PatchList& patches, const zRegion_fe& region) {
    constexpr double far = std::numeric_limits<double>::infinity();
    zVec<double> lower(far, far, far);
    zVec<double> upper(-far, -far, -far);
    patchBounds(patches, lower, upper);
    zoneBounds(region, lower, upper);
    const bool holdsPoints = lower.x <= upper.x && lower.y <= upper.y && lower.z <= upper.z;
    return holdsPoints ? std::optional(std::array{lower, upper}) : std::nullopt;
}

ZoneReport zoneReport(const zBlock_fe& zone, std::size_t first, std::size_t end, const ModelFaces& model) {
    ZoneReport report;
    report.title = zone.title;
    report.nodes = zone.nodeCount;
    report.triangles = static_cast<std::int64_t>(end - first);
    for (std::size_t face = first; face < end; ++face) {
        const auto& corners = model.faces[face].corners;
        const zVec<double> normal =
            doubleArea(model.points.at(corners[0]), model.points.at(corners[1]), model.points.at(corners[2]));
        report.area += 0.5 * lengthOf(normal);
        report.degenerate += normal == zVec<double>() ? 1 : 0;
    }
    return report;
}

} // namespace

ModelReport modelReport(const PatchList& patches, const zRegion_fe& region, double radius) {
    ModelReport report;
    report.box = boxOf(patches, region);
    const ModelFaces model = modelFaces(patches, region);
    const EdgeTable edges(model.points.count(), model.faces);
    const zVec<double> centre = report.box ? ((*report.box)[0] + (*report.box)[1]) * 0.5 : zVec<double>();
    report.body = surfaceBody(model, edges, centre);
    report.gaps = borderGaps(model, edges, gapPart * radius);
    report.points = pointTotal(patches);
    const std::vector<bool> folded = foldedCells(model, edges);
    for (std::size_t k = 0; k < patches.size(); ++k) {
        report.sections += countOf(patches[k]);
        report.cells += static_cast<std::int64_t>(model.patches[k].cellCount());
        report.patches.push_back(patchQuality(patches[k], k, model, folded));
        report.area += report.patches.back().area;
    }
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        report.zones.push_back(
            zoneReport(*region.blocks[k], model.firstTriangle[k], model.firstTriangle[k + 1], model));
        report.nodes += report.zones.back().nodes;
        report.triangles += report.zones.back().triangles;
        report.area += report.zones.back().area;
    }
    return report;
}

} // namespace velmora

#include "model_faces.h"

#include "patch_curves.h"

namespace velmora {

namespace {

std::size_t pointsOf(const PatchList& patches, const zRegion_fe& region) {
    std::size_t total = static_cast<std::size_t>(pointTotal(patches));
    for (const auto& zone : region.blocks) {
        total += static_cast<std::size_t>(zone->nodeCount);
    }
    return total;
}

void addPatch(const Patch& patch, ModelFaces& model) {
    PatchCells cells;
    cells.firstFace = model.faces.size();
    cells.firstPoint = model.patchPoints.size();
    if (isGrid(patch) && countOf(patch) > 1 && lineCount(patch) > 1) {
        cells.sections = countOf(patch);
        cells.points = lineCount(patch);
        for (const PointList& section : patch) {
            for (const zVec<double>& point : section) {
                model.patchPoints.push_back(model.points.numberOf(point));
            }
        }
    }
    model.patches.push_back(cells);
    for (std::int32_t i = 0; i + 1 < cells.sections; ++i) {
        for (std::int32_t j = 0; j + 1 < cells.points; ++j) {
            model.faces.push_back({{model.patchPoint(cells, i, j), model.patchPoint(cells, i + 1, j),
                                    model.patchPoint(cells, i + 1, j + 1), model.patchPoint(cells, i, j + 1)}});
        }
    }
}

void addZone(const zBlock_fe& zone, ModelFaces& model) {
    model.firstTriangle.push_back(model.faces.size());
    const ZoneCoordinates at = coordinatesOf(zone.variables);
    if (!at) {
        return;
    }
    std::vector<std::int32_t> numbers;
    numbers.reserve(static_cast<std::size_t>(zone.nodeCount));
    for (std::size_t node = 0; node < static_cast<std::size_t>(zone.nodeCount); ++node) {
        numbers.push_back(model.points.numberOf({at.x->data[node], at.y->data[node], at.z->data[node]}));
    }
    for (std::int32_t element = 0; element < zone.elementCount; ++element) {
        if (elementInRange(zone, element)) {
            const std::int32_t* const nodes = zone.connectivity.data() + 4 * static_cast<std::size_t>(element);
            const auto number = [&](int corner) { return numbers[static_cast<std::size_t>(nodes[corner])]; };
            model.faces.push_back({{number(0), number(1), number(2), -1}});
        }
    }
}

} // namespace

FaceEdges::FaceEdges(const Face& face) {
    const std::size_t corners = face.isCell() ? 4 : 3;
    for (std::size_t i = 0; i < corners; ++i) {
        const FaceEdge edge{face.corners[i], face.corners[i + 1 < corners ? i + 1 : 0]};
        if (edge.from != edge.to) {
            edges_[count_++] = edge;
        }
    }
    const auto& [a, b, c, d] = face.corners;
    if (count_ < 3 || (a == c && b == d)) {
        count_ = 0; // the outline runs to and fro between two points, or stands still
    }
}

ModelFaces modelFaces(const PatchList& patches, const zRegion_fe& region) {
    ModelFaces model;
    model.points = SharedPoints(pointsOf(patches, region));
    for (const Patch& patch : patches) {
        addPatch(patch, model);
    }
    for (const auto& zone : region.blocks) {
        addZone(*zone, model);
    }
    model.firstTriangle.push_back(model.faces.size());
    return model;
}

} // namespace velmora

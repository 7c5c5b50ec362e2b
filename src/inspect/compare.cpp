#include "compare.h"

#include <cmath>

#include "ProgressCounter.h"

namespace velmora {

namespace {

class Comparer {
public:
    Comparer(const NearestTree& surface, const std::vector<bool>& chosen, const ReportProgress& report,
             std::int64_t total)
        : surface_(surface), progress_(report, total) {
        result_.chosen = chosen;
    }

    void add(const zVec<double>& point, const ComparedPlace& at) {
        progress_.advance();
        const double value = surface_.distanceFrom(point);
        result_.values.push_back(value);
        result_.mean += value;
        squares_ += value * value;
        if (!result_.at || value > result_.largest) {
            result_.largest = value;
            result_.at = at;
        }
    }

    Comparison finish() {
        if (!result_.values.empty()) {
            const auto count = static_cast<double>(result_.values.size());
            result_.mean /= count;
            result_.rms = std::sqrt(squares_ / count);
        }
        return std::move(result_);
    }

private:
    const NearestTree& surface_;
    ProgressCounter progress_;
    Comparison result_;
    double squares_ = 0.0;
};

} // namespace

Comparison comparePatches(const PatchList& patches, const std::vector<bool>& chosen, const NearestTree& surface,
                          const ReportProgress& report) {
    std::int64_t total = 0;
    for (std::size_t k = 0; k < patches.size(); ++k) {
        for (const PointList& section : patches[k]) {
            total += chosen[k] ? countOf(section) : 0;
        }
    }
    Comparer comparer(surface, chosen, report, total);
    for (std::int32_t k = 0; k < countOf(patches); ++k) {
        const Patch& patch = patches[static_cast<std::size_t>(k)];
        for (std::int32_t n = 0; chosen[static_cast<std::size_t>(k)] && n < countOf(patch); ++n) {
            const PointList& section = patch[static_cast<std::size_t>(n)];
            for (std::int32_t m = 0; m < countOf(section); ++m) {
                comparer.add(section[static_cast<std::size_t>(m)], {k, n, m});
            }
        }
    }
    return comparer.finish();
}

Comparison compareZones(const zRegion_fe& region, const std::vector<bool>& chosen, const NearestTree& surface,
                        const ReportProgress& report) {
    std::int64_t total = 0;
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        total += chosen[k] ? region.blocks[k]->nodeCount : 0;
    }
    Comparer comparer(surface, chosen, report, total);
    for (std::int32_t k = 0; k < countOf(region.blocks); ++k) {
        const zBlock_fe& zone = *region.blocks[static_cast<std::size_t>(k)];
        const ZoneCoordinates at = coordinatesOf(zone.variables);
        const std::int32_t nodes = chosen[static_cast<std::size_t>(k)] && at ? zone.nodeCount : 0;
        for (std::int32_t node = 0; node < nodes; ++node) {
            const auto index = static_cast<std::size_t>(node);
            comparer.add({at.x->data[index], at.y->data[index], at.z->data[index]}, {k, -1, node});
        }
    }
    return comparer.finish();
}

TriangleMesh surfaceTriangles(const PatchList& patches, const zRegion_fe& region, const std::vector<bool>& left) {
    const ModelFaces model = modelFaces(patches, region);
    TriangleMesh mesh;
    for (std::int32_t point = 0; point < model.points.count(); ++point) {
        mesh.addPoint(model.points.at(point));
    }
    const auto add = [&](std::size_t first, std::size_t end) {
        for (std::size_t face = first; face < end; ++face) {
            const auto& [a, b, c, d] = model.faces[face].corners;
            mesh.addTriangle(a, b, c);
            if (model.faces[face].isCell()) {
                mesh.addTriangle(a, c, d);
            }
        }
    };
    for (std::size_t k = 0; k < model.patches.size(); ++k) {
        const PatchCells& cells = model.patches[k];
        add(cells.firstFace, left[k] ? cells.firstFace : cells.firstFace + cells.cellCount());
    }
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        add(model.firstTriangle[k], left[k] ? model.firstTriangle[k] : model.firstTriangle[k + 1]);
    }
    return mesh;
}

} // namespace velmora

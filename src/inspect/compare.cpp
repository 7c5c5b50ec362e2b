#include "compare.h"

#include <cmath>

#include "ProgressCounter.h"
#include "parallel.h"

namespace velmora {

namespace {

constexpr std::size_t sectionsOfChunk = 8;
constexpr std::size_t nodesOfChunk = 512;

/// Takes one distance after the other.
class Comparer {
public:
    explicit Comparer(const std::vector<bool>& chosen) { result_.chosen = chosen; }

    /// Room for the distances of more points, which the caller fills in before they are added.
    double* room(std::size_t points) {
        result_.values.resize(result_.values.size() + points);
        return result_.values.data() + result_.values.size() - points;
    }

    void add(double value, const ComparedPlace& at) {
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
    Comparison result_;
    double squares_ = 0.0;
};

void fillDistances(const Patch& patch, const NearestTree& surface, double* values, const ReportProgress& report) {
    std::vector<std::size_t> begins;
    std::size_t points = 0;
    for (const PointList& section : patch) {
        begins.push_back(points);
        points += section.size();
    }
    forEachChunk(
        patch.size(), sectionsOfChunk,
        [&](std::size_t first, std::size_t last, std::size_t) {
            for (std::size_t n = first; n < last; ++n) {
                double* value = values + begins[n];
                for (const zVec<double>& point : patch[n]) {
                    *value++ = surface.distanceFrom(point);
                }
            }
        },
        report);
}

void fillDistances(const ZoneCoordinates& at, std::size_t nodes, const NearestTree& surface, double* values,
                   const ReportProgress& report) {
    forEachChunk(
        nodes, nodesOfChunk,
        [&](std::size_t first, std::size_t last, std::size_t) {
            for (std::size_t node = first; node < last; ++node) {
                values[node] = surface.distanceFrom({at.x->data[node], at.y->data[node], at.z->data[node]});
            }
        },
        report);
}

} // namespace

Comparison comparePatches(const PatchList& patches, const std::vector<bool>& chosen, const NearestTree& surface,
                          const ReportProgress& report) {
    std::int64_t total = 0;
    for (std::size_t k = 0; k < patches.size(); ++k) {
        for (const PointList& section : patches[k]) {
            total += chosen[k] ? countOf(section) : 0;
        }
    }
    ProgressOfParts progress(report, total);
    Comparer comparer(chosen);
    for (std::int32_t k = 0; k < countOf(patches); ++k) {
        if (!chosen[static_cast<std::size_t>(k)]) {
            continue;
        }
        const Patch& patch = patches[static_cast<std::size_t>(k)];
        std::size_t points = 0;
        for (const PointList& section : patch) {
            points += section.size();
        }
        double* value = comparer.room(points);
        fillDistances(patch, surface, value, progress.next(static_cast<std::int64_t>(points)));
        for (std::int32_t n = 0; n < countOf(patch); ++n) {
            for (std::int32_t m = 0; m < countOf(patch[static_cast<std::size_t>(n)]); ++m) {
                comparer.add(*value++, {k, n, m});
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
    ProgressOfParts progress(report, total);
    Comparer comparer(chosen);
    for (std::int32_t k = 0; k < countOf(region.blocks); ++k) {
        const zBlock_fe& zone = *region.blocks[static_cast<std::size_t>(k)];
        const ZoneCoordinates at = coordinatesOf(zone.variables);
        const std::int32_t nodes = chosen[static_cast<std::size_t>(k)] && at ? zone.nodeCount : 0;
        double* const values = comparer.room(static_cast<std::size_t>(nodes));
        fillDistances(at, static_cast<std::size_t>(nodes), surface, values, progress.next(nodes));
        for (std::int32_t node = 0; node < nodes; ++node) {
            comparer.add(values[node], {k, -1, node});
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

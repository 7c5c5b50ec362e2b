#include "grid_builder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>

#include "read_record.h"

namespace velmora {

namespace {

bool allFinite(const std::vector<double>& values) {
    return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

/// A part of a block: where its first point stands, and the steps and counts along a section and from one to the next.
struct GridFace {
    std::int64_t start = 0;
    std::int64_t pointStep = 1;
    std::int64_t points = 1;
    std::int64_t sectionStep = 1;
    std::int64_t sections = 1;
    bool turned = false; ///< each section runs backwards
};

Patch patchOf(const GridBlock& block, const GridFace& face, double scale) {
    Patch patch(static_cast<std::size_t>(face.sections));
    std::int64_t start = face.start;
    for (PointList& section : patch) {
        section.reserve(static_cast<std::size_t>(face.points));
        for (std::int64_t m = 0; m < face.points; ++m) {
            const auto at = static_cast<std::size_t>(start + m * face.pointStep);
            section.emplace_back(block.x[at] * scale, block.y[at] * scale, block.z[at] * scale);
        }
        if (face.turned) {
            std::reverse(section.begin(), section.end());
        }
        start += face.sectionStep;
    }
    return patch;
}

/// The one face of a surface, whose indices of length 1 are dropped, or the six of a volume. A face that has the first
/// two indices looks, by the right hand, towards the third; that of j and k towards i; that of i and k against j.
std::vector<GridFace> facesOf(const GridBlock& block) {
    const std::int64_t i = block.i;
    const std::int64_t j = block.j;
    const std::int64_t k = block.k;
    const std::int64_t layer = i * j;
    if (!block.isVolume()) {
        const std::int64_t points = i > 1 ? i : j > 1 ? j : k;
        return {{0, 1, points, points, block.pointCount() / points, false}};
    }
    return {{0, i, j, layer, k, true},         {i - 1, i, j, layer, k, false}, {0, 1, i, layer, k, false},
            {layer - i, 1, i, layer, k, true}, {0, 1, i, i, j, true},          {layer * (k - 1), 1, i, i, j, false}};
}

bool isFinite(const zVec<double>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool isFinite(const Patch& patch) {
    return std::all_of(patch.begin(), patch.end(), [](const PointList& section) {
        return std::all_of(section.begin(), section.end(), [](const zVec<double>& p) { return isFinite(p); });
    });
}

} // namespace

PatchList patchesOf(const GridBlock& block, const ImportOptions& options, GridTally& tally) {
    PatchList patches;
    if (block.isVolume() && !options.volumeFaces) {
        ++tally.volumes;
        return patches;
    }
    bool finite = allFinite(block.x) && allFinite(block.y) && allFinite(block.z);
    for (const GridFace& face : finite ? facesOf(block) : std::vector<GridFace>()) {
        patches.push_back(patchOf(block, face, options.scale));
        finite = finite && isFinite(patches.back());
    }
    if (!finite) {
        ++tally.notFinite;
        patches.clear();
    }
    tally.hollow += block.isVolume() && finite ? 1 : 0;
    return patches;
}

void countPatches(const PatchList& patches, Counts& counts) {
    std::int64_t sections = 0;
    for (const Patch& patch : patches) {
        sections += countOf(patch);
    }
    countOf(counts, "patches") += countOf(patches);
    countOf(counts, "sections") += sections;
    countOf(counts, "points") += pointTotal(patches);
}

void countBlock(const GridBlock& block, Counts& counts) {
    std::int64_t patches = 0;
    std::int64_t sections = 0;
    std::int64_t points = 0;
    for (const GridFace& face : facesOf(block)) {
        ++patches;
        sections += face.sections;
        points += face.sections * face.points;
    }
    countOf(counts, "patches") += patches;
    countOf(counts, "sections") += sections;
    countOf(counts, "points") += points;
}

void tellGrids(const GridTally& tally, const ImportOptions& options, FileRead& record) {
    tellMissing(record, "Volume zones, whose faces were not asked for", tally.volumes);
    tellMissing(record, "Grids with coordinates that are not finite", tally.notFinite);
    tellAltered(record, volumesWithoutInside, tally.hollow);
    tellAltered(record, "Grids that became triangles", tally.triangles);
    tellScale(options, record);
}

std::unique_ptr<zBlock_fe> trianglesOfPatch(const Patch& patch, const std::string& title) {
    const std::size_t sections = patch.size();
    const std::size_t points = sections == 0 ? 0 : patch.front().size();
    const bool regular = std::all_of(patch.begin(), patch.end(),
                                     [points](const PointList& section) { return section.size() == points; });
    if (!regular || sections < 2 || points < 2 ||
        sections * points > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()) / 8) {
        return nullptr;
    }
    std::array<std::vector<double>, 3> at;
    for (const PointList& section : patch) {
        for (const zVec<double>& point : section) {
            at[0].push_back(point.x);
            at[1].push_back(point.y);
            at[2].push_back(point.z);
        }
    }
    std::vector<std::int32_t> corners;
    corners.reserve(6 * (sections - 1) * (points - 1));
    const auto step = static_cast<std::int32_t>(points);
    for (std::int32_t i = 0; i + 1 < static_cast<std::int32_t>(sections); ++i) {
        for (std::int32_t j = 0; j + 1 < step; ++j) {
            const std::int32_t a = i * step + j;
            const std::int32_t b = a + step;
            for (const std::int32_t corner : {a, b + 1, b, a, a + 1, b + 1}) {
                corners.push_back(corner);
            }
        }
    }
    return makeZone(title, std::move(at), corners);
}

bool addTriangles(const PatchList& patches, FileMesh& mesh) {
    bool any = false;
    for (const Patch& patch : patches) {
        const std::unique_ptr<zBlock_fe> triangles = trianglesOfPatch(patch, {});
        if (triangles == nullptr) {
            continue;
        }
        any = true;
        const auto offset = static_cast<std::int64_t>(mesh.pointCount());
        for (std::size_t node = 0; node < static_cast<std::size_t>(triangles->nodeCount); ++node) {
            mesh.addPoint(triangles->variables[0]->data[node], triangles->variables[1]->data[node],
                          triangles->variables[2]->data[node]);
        }
        for (std::size_t entry = 0; entry < triangles->connectivity.size(); entry += 4) {
            mesh.addPolygon({offset + triangles->connectivity[entry], offset + triangles->connectivity[entry + 1],
                             offset + triangles->connectivity[entry + 2]});
        }
    }
    return any;
}

} // namespace velmora

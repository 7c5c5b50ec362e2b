#include "projection.h"

#include <algorithm>
#include <utility>

#include "ProgressCounter.h"
#include "same_point.h"
#include "target_mesh.h"
#include "vectors.h"
#include "zone_elements.h"

namespace velmora {

namespace {

constexpr double farthestHit = 1e8;
constexpr double farthestSquare = 1e20;
/// A node does not move to a place closer than this in each coordinate.
constexpr double samePlace = 1e-6;

bool hasPatch(const PatchList& patches, std::int32_t k) {
    return k >= 0 && k < countOf(patches);
}

std::int64_t pointsOf(const Patch& patch) {
    std::int64_t points = 0;
    for (const PointList& section : patch) {
        points += countOf(section);
    }
    return points;
}

} // namespace

zVec<double> nearestCellHit(const zVec<double>& origin, const std::vector<LineHit>& hits) {
    const LineHit* best = &hits.front();
    double least = farthestHit;
    for (std::size_t i = 0; i < hits.size(); ++i) {
        const std::int32_t triangle = hits[i].triangle;
        const bool firstOfCellHit = i > 0 && triangle % 2 == 1 && hits[i - 1].triangle == triangle - 1;
        const double apart = distance(hits[i].place, origin);
        if (!firstOfCellHit && apart < least) {
            best = &hits[i];
            least = apart;
        }
    }
    return best->place;
}

zVec<double> nearestElementHit(const zVec<double>& origin, const std::vector<LineHit>& hits) {
    const LineHit* best = &hits.front();
    double least = farthestSquare;
    for (const LineHit& hit : hits) {
        const double square = squaredDistance(hit.place, origin);
        if (square <= least) {
            best = &hit;
            least = square;
        }
    }
    return best->place;
}

// ---- Patches --------------------------------------------------------------------------------------------------------

std::optional<zVec<double>> gridDirection(const Patch& patch, std::int32_t N, std::int32_t M) {
    const auto at = [&patch](std::int32_t n, std::int32_t m) -> const zVec<double>* {
        if (n < 0 || n >= countOf(patch) || m < 0 || m >= countOf(patch[static_cast<std::size_t>(n)])) {
            return nullptr;
        }
        return &patch[static_cast<std::size_t>(n)][static_cast<std::size_t>(m)];
    };
    // Towards the next one; where there is none, from the one before.
    const auto step = [&at, N, M](std::int32_t dn, std::int32_t dm) -> std::optional<zVec<double>> {
        const zVec<double>* const here = at(N, M);
        const zVec<double>* const next = at(N + dn, M + dm);
        const zVec<double>* const before = at(N - dn, M - dm);
        if (here == nullptr || (next == nullptr && before == nullptr)) {
            return std::nullopt;
        }
        return next != nullptr ? *next - *here : *here - *before;
    };
    const auto alongSection = step(0, 1);
    const auto acrossSections = step(1, 0);
    if (!alongSection || !acrossSections) {
        return std::nullopt;
    }
    return unitOf(cross(*acrossSections, *alongSection));
}

void projectPatches(PatchList& patches, const std::vector<std::int32_t>& chosen, const TriangleTree& target,
                    const HitChoice& choice, PointList& missed, const std::function<void()>& firstMiss,
                    const ReportProgress& progress) {
    std::int64_t total = 0;
    for (const std::int32_t k : chosen) {
        total += hasPatch(patches, k) ? pointsOf(patches[static_cast<std::size_t>(k)]) : 0;
    }
    ProgressCounter counter(progress, total);
    bool sawMiss = false;
    std::vector<LineHit> hits;
    std::vector<std::pair<std::size_t, Patch>> moved;
    for (const std::int32_t k : chosen) {
        if (!hasPatch(patches, k)) {
            continue;
        }
        const Patch& patch = patches[static_cast<std::size_t>(k)];
        Patch work = patch;
        for (std::int32_t n = 0; n < countOf(patch); ++n) {
            PointList& section = work[static_cast<std::size_t>(n)];
            for (std::int32_t m = 0; m < countOf(section); ++m) {
                counter.advance();
                const auto direction = gridDirection(patch, n, m);
                if (!direction) {
                    continue;
                }
                zVec<double>& point = section[static_cast<std::size_t>(m)];
                target.findHits(*direction, point, hits);
                if (!hits.empty()) {
                    point = choice(point, hits);
                    continue;
                }
                missed.push_back(point);
                if (!std::exchange(sawMiss, true)) {
                    firstMiss();
                }
            }
        }
        moved.emplace_back(static_cast<std::size_t>(k), std::move(work));
    }
    for (auto& [k, work] : moved) {
        patches[k] = std::move(work);
    }
}

// ---- Zones ----------------------------------------------------------------------------------------------------------

namespace {

struct NodeNormals {
    zVec<double> sum;
    std::int32_t count = 0;
};

/// Per node the normals of its elements. Normals with a very low x count as missing.
std::vector<NodeNormals> normalsOf(const zBlock_fe& zone, const ZoneCoordinates& at) {
    std::vector<NodeNormals> normals(static_cast<std::size_t>(zone.nodeCount));
    for (std::int32_t element = 0; element < zone.elementCount; ++element) {
        const zVec<double> normal = elementNormal(zone, at, element);
        if (!elementInRange(zone, element) || normal.x < leastCoordinate) {
            continue;
        }
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const auto node =
                static_cast<std::size_t>(zone.connectivity[4 * static_cast<std::size_t>(element) + corner]);
            normals[node].sum = normals[node].sum + normal;
            ++normals[node].count;
        }
    }
    return normals;
}

/// The nearest place other than the origin's own.
const zVec<double>* nearestOtherPlace(const zVec<double>& origin, const std::vector<LineHit>& hits) {
    const zVec<double>* best = nullptr;
    double least = farthestSquare;
    for (const LineHit& hit : hits) {
        const double square = squaredDistance(hit.place, origin);
        if (!withinReach(hit.place, origin, samePlace) && square < least) {
            best = &hit.place;
            least = square;
        }
    }
    return best;
}

void projectZone(zRegion_fe& region, std::int32_t number, const TriangleTree& target, ProgressCounter& counter) {
    const zBlock_fe& zone = *region.blocks[static_cast<std::size_t>(number)];
    const ZoneCoordinates at = coordinatesOf(zone.variables);
    if (!at) {
        return;
    }
    const std::vector<NodeNormals> normals = normalsOf(zone, at);
    std::vector<LineHit> hits;
    for (std::int32_t node = 0; node < zone.nodeCount; ++node) {
        counter.advance();
        const NodeNormals& found = normals[static_cast<std::size_t>(node)];
        zVec<double> origin;
        if (found.count < 2 || region.getNode(number, node, origin.x, origin.y, origin.z) != 0) {
            continue;
        }
        target.findHits(unitOf(found.sum * (1.0 / found.count)), origin, hits);
        if (const zVec<double>* const place = nearestOtherPlace(origin, hits)) {
            region.setNode(number, node, place->x, place->y, place->z);
        }
    }
}

} // namespace

void projectZones(zRegion_fe& region, const std::vector<std::int32_t>& chosen, const ReportProgress& progress) {
    std::vector<bool> mask(region.blocks.size(), false);
    std::vector<std::int32_t> zones;
    std::int64_t total = 0;
    for (const std::int32_t zone : chosen) {
        if (zone >= 0 && static_cast<std::size_t>(zone) < mask.size()) {
            mask[static_cast<std::size_t>(zone)] = true;
            zones.push_back(zone);
            total += region.blocks[static_cast<std::size_t>(zone)]->nodeCount;
        }
    }
    const bool others = std::find(mask.begin(), mask.end(), false) != mask.end();
    if (zones.empty() || !others || !coordinatesOf(region.blocks.front()->variables)) {
        return;
    }
    const TriangleTree target(zoneMesh(region, mask));
    ProgressCounter counter(progress, total);
    for (const std::int32_t zone : zones) {
        projectZone(region, zone, target, counter);
    }
}

} // namespace velmora

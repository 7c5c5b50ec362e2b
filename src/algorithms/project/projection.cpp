#include "projection.h"

#include <algorithm>
#include <utility>

#include "parallel.h"
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
/// So many points or nodes are one chunk of the work.
constexpr std::size_t pointsOfChunk = 64;
constexpr std::size_t nodesOfChunk = 256;

bool hasPatch(const PatchList& patches, std::int32_t k) {
    return k >= 0 && k < countOf(patches);
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

namespace {

/// A section that is moved, and how many points the sections before it have.
struct MovedSection {
    const Patch& patch; ///< as it was
    std::int32_t number;
    PointList& work;
    std::size_t begin;
};

/// Moves some points of a section; those whose lines meet nothing are put behind `missed`.
void projectPoints(const MovedSection& section, std::size_t from, std::size_t to, const TriangleTree& target,
                   const HitChoice& choice, std::vector<LineHit>& hits, PointList& missed) {
    for (std::size_t m = from; m < to; ++m) {
        const auto direction = gridDirection(section.patch, section.number, static_cast<std::int32_t>(m));
        if (!direction) {
            continue;
        }
        zVec<double>& point = section.work[m];
        target.findHits(*direction, point, hits);
        if (hits.empty()) {
            missed.push_back(point);
        } else {
            point = choice(point, hits);
        }
    }
}

} // namespace

void projectPatches(PatchList& patches, const std::vector<std::int32_t>& chosen, const TriangleTree& target,
                    const HitChoice& choice, PointList& missed, const std::function<void()>& firstMiss,
                    const ReportProgress& progress) {
    std::vector<std::pair<std::size_t, Patch>> moved;
    for (const std::int32_t k : chosen) {
        if (hasPatch(patches, k)) {
            moved.emplace_back(static_cast<std::size_t>(k), patches[static_cast<std::size_t>(k)]);
        }
    }
    std::vector<MovedSection> sections;
    std::size_t points = 0;
    for (auto& [k, work] : moved) {
        for (std::int32_t n = 0; n < countOf(work); ++n) {
            PointList& section = work[static_cast<std::size_t>(n)];
            if (!section.empty()) {
                sections.push_back({patches[k], n, section, points});
                points += section.size();
            }
        }
    }
    std::vector<std::vector<LineHit>> hits(workersFor(points, pointsOfChunk));
    std::vector<PointList> missedOfChunks((points + pointsOfChunk - 1) / pointsOfChunk);
    forEachChunk(
        points, pointsOfChunk,
        [&](std::size_t first, std::size_t last, std::size_t worker) {
            auto section = std::upper_bound(sections.begin(), sections.end(), first,
                                            [](std::size_t point, const MovedSection& s) { return point < s.begin; }) -
                           1;
            for (; section != sections.end() && section->begin < last; ++section) {
                const std::size_t from = std::max(first, section->begin) - section->begin;
                const std::size_t to = std::min(last - section->begin, section->work.size());
                projectPoints(*section, from, to, target, choice, hits[worker], missedOfChunks[first / pointsOfChunk]);
            }
        },
        progress);
    const std::size_t before = missed.size();
    for (const PointList& ofChunk : missedOfChunks) {
        missed.insert(missed.end(), ofChunk.begin(), ofChunk.end());
    }
    if (missed.size() > before) {
        firstMiss();
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

void projectZone(zRegion_fe& region, std::int32_t number, const TriangleTree& target, const ReportProgress& progress) {
    const zBlock_fe& zone = *region.blocks[static_cast<std::size_t>(number)];
    const ZoneCoordinates at = coordinatesOf(zone.variables);
    if (!at || zone.nodeCount <= 0) {
        return;
    }
    const std::vector<NodeNormals> normals = normalsOf(zone, at);
    const auto nodes = static_cast<std::size_t>(zone.nodeCount);
    std::vector<std::vector<LineHit>> hitsOfWorkers(workersFor(nodes, nodesOfChunk));
    forEachChunk(
        nodes, nodesOfChunk,
        [&](std::size_t first, std::size_t last, std::size_t worker) {
            std::vector<LineHit>& hits = hitsOfWorkers[worker];
            for (std::size_t node = first; node < last; ++node) {
                const NodeNormals& found = normals[node];
                const auto place = static_cast<std::ptrdiff_t>(node);
                zVec<double> origin;
                if (found.count < 2 || region.getNode(number, place, origin.x, origin.y, origin.z) != 0) {
                    continue;
                }
                target.findHits(unitOf(found.sum * (1.0 / found.count)), origin, hits);
                if (const zVec<double>* const hit = nearestOtherPlace(origin, hits)) {
                    region.setNode(number, place, hit->x, hit->y, hit->z);
                }
            }
        },
        progress);
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
    std::int64_t done = 0;
    for (const std::int32_t zone : zones) {
        const std::int64_t nodes = region.blocks[static_cast<std::size_t>(zone)]->nodeCount;
        projectZone(region, zone, target, [&](double fraction) {
            if (progress) {
                progress((static_cast<double>(done) + fraction * static_cast<double>(nodes)) /
                         static_cast<double>(std::max<std::int64_t>(total, 1)));
            }
        });
        done += nodes;
    }
}

} // namespace velmora

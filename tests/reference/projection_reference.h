#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "PatchList.h"
#include "line_triangle_bounded.h"
#include "zRegion.h"
#include "zone_elements.h"

/// Projection and the search for piercing points and cells in their plainest form: every line is tested with every
/// triangle, every point compared with every grid point. The shipped ones must give the same bits.
namespace velmora::reference {

using Place = zVec<double>;
using Corners3 = std::array<Place, 3>;

inline bool hits(const Corners3& t, const Place& direction, const Place& origin, Place& hit) {
    if (!std::isfinite(direction.x) || !std::isfinite(direction.y) || !std::isfinite(direction.z)) {
        return false;
    }
    const double a[] = {t[0].x, t[0].y, t[0].z};
    const double b[] = {t[1].x, t[1].y, t[1].z};
    const double c[] = {t[2].x, t[2].y, t[2].z};
    const double d[] = {direction.x, direction.y, direction.z};
    const double o[] = {origin.x, origin.y, origin.z};
    double h[3];
    if (!hitsWithinReach(a, b, c, d, o, h)) {
        return false;
    }
    hit = {h[0], h[1], h[2]};
    return true;
}

inline double span(const Place& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

inline Place unitOf(const Place& v) {
    const double l = span(v);
    return {v.x / l, v.y / l, v.z / l};
}

inline bool contains(const std::vector<std::int32_t>& numbers, std::size_t k) {
    return std::find(numbers.begin(), numbers.end(), static_cast<std::int32_t>(k)) != numbers.end();
}

inline Place normalAt(const Patch& p, std::size_t n, std::size_t m) {
    const Place along = m + 1 < p[n].size() ? p[n][m + 1] - p[n][m] : p[n][m] - p[n][m - 1];
    const Place across = n + 1 < p.size() ? p[n + 1][m] - p[n][m] : p[n][m] - p[n - 1][m];
    return unitOf(cross(across, along));
}

/// All points of regular patches of two by two points at least.
inline PointList projectToPatches(PatchList& patches, const std::vector<std::int32_t>& block) {
    PatchList work = patches;
    PointList missed;
    for (const std::int32_t number : block) {
        const auto k = static_cast<std::size_t>(number);
        for (std::size_t n = 0; n < patches[k].size(); ++n) {
            for (std::size_t m = 0; m < patches[k][n].size(); ++m) {
                const Place origin = patches[k][n][m];
                const Place direction = normalAt(patches[k], n, m);
                PointList found;
                Place hit;
                for (std::size_t t = 0; t < patches.size(); ++t) {
                    if (contains(block, t)) {
                        continue;
                    }
                    const Patch& p = patches[t];
                    for (std::size_t i = 0; i + 1 < p.size(); ++i) {
                        for (std::size_t j = 0; j + 1 < p[i].size(); ++j) {
                            if (hits({p[i][j], p[i][j + 1], p[i + 1][j]}, direction, origin, hit) ||
                                hits({p[i][j + 1], p[i + 1][j], p[i + 1][j + 1]}, direction, origin, hit)) {
                                found.push_back(hit);
                            }
                        }
                    }
                }
                if (found.empty()) {
                    missed.push_back(origin);
                    continue;
                }
                std::size_t best = 0;
                double least = 100000000;
                for (std::size_t h = 0; h < found.size(); ++h) {
                    if (span(found[h] - origin) < least) {
                        least = span(found[h] - origin);
                        best = h;
                    }
                }
                work[k][n][m] = found[best];
            }
        }
    }
    patches = work;
    return missed;
}

inline std::vector<Corners3> elementsOf(const zRegion_fe& region, const std::vector<std::int32_t>& without) {
    std::vector<Corners3> triangles;
    for (std::size_t zone = 0; zone < region.blocks.size(); ++zone) {
        for (std::int32_t e = 0; !contains(without, zone) && e < region.blocks[zone]->elementCount; ++e) {
            const auto z = static_cast<std::int32_t>(zone);
            triangles.push_back({getElementCorner(region, z, e, 0), getElementCorner(region, z, e, 1),
                                 getElementCorner(region, z, e, 2)});
        }
    }
    return triangles;
}

inline PointList projectToZones(PatchList& patches, const std::vector<std::int32_t>& block, const zRegion_fe& region) {
    const std::vector<Corners3> triangles = elementsOf(region, {});
    PatchList work = patches;
    PointList missed;
    for (const std::int32_t number : block) {
        const auto k = static_cast<std::size_t>(number);
        for (std::size_t n = 0; n < patches[k].size(); ++n) {
            for (std::size_t m = 0; m < patches[k][n].size(); ++m) {
                const Place origin = patches[k][n][m];
                const Place direction = normalAt(patches[k], n, m);
                bool found = false;
                double least = 100000000000000000000.0;
                Place hit;
                for (const Corners3& t : triangles) {
                    if (!hits(t, direction, origin, hit)) {
                        continue;
                    }
                    found = true;
                    const Place d = hit - origin;
                    if (dot(d, d) <= least) {
                        least = dot(d, d);
                        work[k][n][m] = hit;
                    }
                }
                if (!found) {
                    missed.push_back(origin);
                }
            }
        }
    }
    patches = work;
    return missed;
}

inline void projectZones(zRegion_fe& region, const std::vector<std::int32_t>& block) {
    const std::vector<Corners3> targets = elementsOf(region, block);
    for (const std::int32_t zone : block) {
        const zBlock_fe& z = *region.blocks[static_cast<std::size_t>(zone)];
        std::vector<PointList> normals(static_cast<std::size_t>(z.nodeCount));
        for (std::int32_t e = 0; e < z.elementCount; ++e) {
            for (std::size_t corner = 0; corner < 3; ++corner) {
                const auto entry = 4 * static_cast<std::size_t>(e) + corner;
                normals[static_cast<std::size_t>(z.connectivity[entry])].push_back(elementNormal(region, zone, e));
            }
        }
        for (std::int32_t node = 0; node < z.nodeCount; ++node) {
            const PointList& own = normals[static_cast<std::size_t>(node)];
            if (own.size() < 2) {
                continue;
            }
            Place sum;
            for (const Place& normal : own) {
                sum = sum + normal;
            }
            const Place direction = unitOf(sum * (1.0 / static_cast<double>(own.size())));
            Place origin;
            region.getNode(zone, node, origin.x, origin.y, origin.z);
            std::optional<Place> best;
            double least = 1e20;
            for (const Corners3& t : targets) {
                Place hit;
                if (!hits(t, direction, origin, hit)) {
                    continue;
                }
                const Place d = hit - origin;
                const bool same = std::abs(d.x) < 0.000001 && std::abs(d.y) < 0.000001 && std::abs(d.z) < 0.000001;
                if (!same && dot(d, d) < least) {
                    least = dot(d, d);
                    best = hit;
                }
            }
            if (best) {
                region.setNode(zone, node, best->x, best->y, best->z);
            }
        }
    }
}

// ---- Intersection ---------------------------------------------------------------------------------------------------

inline double largest(const Place& a, const Place& b) {
    return std::max({std::abs(a.x), std::abs(a.y), std::abs(a.z), std::abs(b.x), std::abs(b.y), std::abs(b.z)});
}

inline bool same(const Place& a, const Place& b, double tolerance) {
    if (largest(a, b) == 0) {
        return true;
    }
    const double by = 1 / largest(a, b);
    return std::abs(a.x - b.x) * by < tolerance && std::abs(a.y - b.y) * by < tolerance &&
           std::abs(a.z - b.z) * by < tolerance;
}

inline bool productsFit(const Place& p, const Place& a, const Place& b) {
    return (p.x - a.x) * (p.x - b.x) <= 1e-8 && (p.y - a.y) * (p.y - b.y) <= 1e-8 && (p.z - a.z) * (p.z - b.z) <= 1e-8;
}

/// The parameter of a point that is on a segment.
inline std::optional<double> onSegment(const Place& a, const Place& b, const Place& p, double tolerance) {
    const double l = span(b - a);
    if (l < 1e-8 || !productsFit(p, a, b)) {
        return std::nullopt;
    }
    const Place e = (b - a) * (1 / l);
    const Place across = (p - a) - e * dot(p - a, e);
    if (!(l * tolerance > span(across)) || span(p - a) < 1e-8) {
        return std::nullopt;
    }
    return span(p - a) / l;
}

struct Found {
    std::size_t k, n, m;
    Place hit;
};

inline std::optional<Found> findCell(const PatchList& patches, const std::vector<std::int32_t>& block, const Place& a,
                                     const Place& b) {
    const Place direction = unitOf(b - a);
    for (std::size_t k = 0; k < patches.size(); ++k) {
        const Patch& p = patches[k];
        for (std::size_t i = 0; !contains(block, k) && i + 1 < p.size(); ++i) {
            for (std::size_t j = 0; j + 1 < p[i].size(); ++j) {
                for (const Corners3& t : {Corners3{p[i][j], p[i][j + 1], p[i + 1][j]},
                                          Corners3{p[i][j + 1], p[i + 1][j], p[i + 1][j + 1]}}) {
                    Place hit;
                    if (hits(t, direction, a, hit) &&
                        (same(hit, a, 1e-10) || same(hit, b, 1e-10) || productsFit(hit, a, b))) {
                        return Found{k, i, j, hit};
                    }
                }
            }
        }
    }
    return std::nullopt;
}

/// The first grid point that is the same as `p`.
inline std::optional<Found> findPoint(const PatchList& patches, const std::vector<std::int32_t>& block, const Place& p,
                                      double tolerance) {
    for (std::size_t k = 0; k < patches.size(); ++k) {
        for (std::size_t n = 0; !contains(block, k) && n < patches[k].size(); ++n) {
            for (std::size_t m = 0; m < patches[k][n].size(); ++m) {
                if (same(p, patches[k][n][m], tolerance)) {
                    return Found{k, n, m, p};
                }
            }
        }
    }
    return std::nullopt;
}

/// The first edge across sections, or along one, that `p` is on, and its parameter.
inline std::optional<std::pair<Found, double>> findEdge(const PatchList& patches,
                                                        const std::vector<std::int32_t>& block, const Place& p,
                                                        double tolerance, bool across) {
    for (std::size_t k = 0; k < patches.size(); ++k) {
        const Patch& list = patches[k];
        for (std::size_t n = 0; !contains(block, k) && n < list.size(); ++n) {
            for (std::size_t m = 0; m < list[n].size(); ++m) {
                if (across ? n + 1 == list.size() : m + 1 == list[n].size()) {
                    continue;
                }
                const Place& end = across ? list[n + 1][m] : list[n][m + 1];
                if (const auto t = onSegment(list[n][m], end, p, tolerance)) {
                    return std::pair(Found{k, n, m, p}, *t);
                }
            }
        }
    }
    return std::nullopt;
}

} // namespace velmora::reference

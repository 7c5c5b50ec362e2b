#include "PatchIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "camera.h"
#include "line_triangle_strict.h"
#include "pick_boxes.h"

namespace velmora {

namespace {

using Vec = zVec<double>;

constexpr std::int32_t tileSide = 8;
std::size_t at(std::int32_t index) {
    return static_cast<std::size_t>(index);
}

/// The corners of half 0 or 1 of the cell between sections n and n + 1 and points m and m + 1; null where a section is
/// too short.
TriangleCorners cellCorners(const Patch& patch, std::int32_t n, std::int32_t m, int half) {
    const PointList& lower = patch[at(n)];
    const PointList& upper = patch[at(n) + 1];
    if (at(m) + 1 >= lower.size() || at(m) + 1 >= upper.size()) {
        return {nullptr, nullptr, nullptr};
    }
    return half == 0 ? TriangleCorners{&lower[at(m)], &lower[at(m) + 1], &upper[at(m) + 1]}
                     : TriangleCorners{&lower[at(m)], &upper[at(m) + 1], &upper[at(m)]};
}

/// The same for the same model only.
std::uint64_t fingerprintOf(const PatchList& list) {
    Fingerprint print(list.size());
    for (const Patch& patch : list) {
        print.mix(patch.size());
        for (const PointList& section : patch) {
            print.mix(section.size());
            for (const Vec& p : section) {
                print.mix(p);
            }
        }
    }
    return print.value();
}

} // namespace

// ---- Taking a model in ----------------------------------------------------------------------------------------------

void PatchIndex::refresh(const PatchList& list) {
    const std::uint64_t fingerprint = fingerprintOf(list);
    if (filled_ && fingerprint == fingerprint_) {
        return;
    }
    fingerprint_ = fingerprint;
    filled_ = true;
    patches_.clear();
    tiles_.clear();
    odd_.clear();
    for (const Patch& patch : list) {
        addPatch(patch);
    }
}

void PatchIndex::addPatch(const Patch& patch) {
    PatchEntry entry;
    entry.firstTile = tiles_.size();
    std::size_t longest = 0;
    for (const PointList& section : patch) {
        longest = std::max(longest, section.size());
    }
    // The last tile of a row may be one point wide: patches of one section or point have points to find too.
    for (std::int32_t n = 0; n == 0 || n + 1 < countOf(patch); n += tileSide) {
        for (std::int32_t m = 0; m == 0 || at(m) + 1 < longest; m += tileSide) {
            addTile(patch, {n,
                            std::min(n + tileSide, countOf(patch) - 1),
                            m,
                            std::min(m + tileSide, static_cast<std::int32_t>(longest) - 1),
                            {}});
        }
    }
    entry.lastTile = tiles_.size();
    entry.firstOdd = odd_.size();
    addOddTriangles(patch);
    entry.lastOdd = odd_.size();
    PickExtent extent;
    for (std::size_t i = entry.firstTile; i < entry.lastTile; ++i) {
        extent.add(tiles_[i].box);
    }
    entry.box = extent.boxOfBoxes();
    patches_.push_back(entry);
}

void PatchIndex::addTile(const Patch& patch, Tile tile) {
    PickExtent extent;
    bool empty = true;
    for (std::int32_t n = tile.n0; n <= tile.n1; ++n) {
        const PointList& section = patch[at(n)];
        for (std::int32_t m = tile.m0; m <= tile.m1 && m < countOf(section); ++m) {
            extent.add(section[at(m)]);
            empty = false;
        }
    }
    if (empty) {
        return;
    }
    tile.box = extent.triangleBox();
    tiles_.push_back(tile);
}

void PatchIndex::addOddTriangles(const Patch& patch) {
    const std::int32_t lines = lineCount(patch);
    for (std::int32_t n = 0; n + 1 < countOf(patch); ++n) {
        for (std::int32_t m = 0; m + 1 < lines; ++m) {
            for (int half = 0; half < 2; ++half) {
                const TriangleCorners corners = cellCorners(patch, n, m, half);
                if (corners.a != nullptr && isOddTriangle(corners)) {
                    odd_.push_back({n, m, half});
                }
            }
        }
    }
}

// ---- Points ---------------------------------------------------------------------------------------------------------

std::optional<NearestPoint> PatchIndex::nearest(const PatchList& list, const PixelLine& line,
                                                const PickFilter& filter) const {
    const LineDistance distanceTo(line);
    if (!distanceTo.isLine() || patches_.size() != list.size()) {
        return nearestGridPoint(list, line, filter);
    }
    // How near some point of the tiles must be, from the tiles' centres; then only tiles that can hold a nearer one.
    const auto passes = [&](std::size_t k, const Tile& tile) {
        return (filter.section < 0 || (tile.n0 <= filter.section && filter.section <= tile.n1)) &&
               (filter.point < 0 || (tile.m0 <= filter.point && filter.point <= tile.m1)) &&
               (filter.patch < 0 || k == at(filter.patch)) && (filter.patches.empty() || filter.patches[k]);
    };
    const bool whole = filter.section < 0 && filter.point < 0;
    double bound = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; whole && k < patches_.size(); ++k) {
        for (std::size_t i = patches_[k].firstTile; i < patches_[k].lastTile; ++i) {
            if (passes(k, tiles_[i])) {
                const double reach = distanceTo(tiles_[i].box.centre) + tiles_[i].box.radius;
                bound = reach < bound ? reach : bound;
            }
        }
    }
    NearestSearch search(distanceTo);
    for (std::size_t k = 0; k < patches_.size(); ++k) {
        for (std::size_t i = patches_[k].firstTile; i < patches_[k].lastTile; ++i) {
            const Tile& tile = tiles_[i];
            if (!passes(k, tile) ||
                distanceTo(tile.box.centre) - tile.box.radius > bound + distanceTo.slack(tile.box.centre)) {
                continue;
            }
            const std::int32_t n0 = filter.section < 0 ? tile.n0 : filter.section;
            const std::int32_t n1 = filter.section < 0 ? tile.n1 : filter.section;
            const std::int32_t m0 = filter.point < 0 ? tile.m0 : filter.point;
            const std::int32_t m1 = filter.point < 0 ? tile.m1 : filter.point;
            for (std::int32_t n = n0; n <= n1; ++n) {
                const PointList& section = list[k][at(n)];
                for (std::int32_t m = m0; m <= m1 && m < countOf(section); ++m) {
                    search.look(static_cast<std::int32_t>(k), n, m, section[at(m)]);
                }
            }
        }
    }
    return search.result();
}

// ---- Patches --------------------------------------------------------------------------------------------------------

template <class Visit>
bool PatchIndex::anyHit(const PatchList& list, std::size_t patch, const Vec& origin, const Vec& direction,
                        Visit visit) const {
    const Patch& sections = list[patch];
    const PatchEntry& entry = patches_[patch];
    const auto visitTriangle = [&](std::int32_t n, std::int32_t m, int half) {
        const TriangleCorners t = cellCorners(sections, n, m, half);
        if (t.a == nullptr) {
            return false;
        }
        const TriangleHit hit = LineHitsTriangle(*t.a, *t.b, *t.c, direction, origin);
        return hit.code != 0 && visit(hit.point);
    };
    for (std::size_t i = entry.firstOdd; i < entry.lastOdd; ++i) {
        if (visitTriangle(odd_[i].n, odd_[i].m, odd_[i].half)) {
            return true;
        }
    }
    if (entry.box.missedBy(origin, direction)) {
        return false;
    }
    const std::int32_t lines = lineCount(sections);
    for (std::size_t i = entry.firstTile; i < entry.lastTile; ++i) {
        const Tile& tile = tiles_[i];
        if (tile.box.missedBy(origin, direction)) {
            continue;
        }
        for (std::int32_t n = tile.n0; n < tile.n1; ++n) {
            for (std::int32_t m = tile.m0; m < tile.m1 && m + 1 < lines; ++m) {
                if (visitTriangle(n, m, 0) || visitTriangle(n, m, 1)) {
                    return true;
                }
            }
        }
    }
    return false;
}

bool PatchIndex::isVisible(const PatchList& list, std::size_t patch, const Vec& hit, const Vec& direction) const {
    for (std::size_t k = 0; k < list.size(); ++k) {
        if (k != patch &&
            anyHit(list, k, hit, direction, [&](const Vec& other) { return dot(other - hit, direction) < 0.0; })) {
            return false;
        }
    }
    return true;
}

std::int32_t PatchIndex::pickPatch(const PatchList& list, const PixelLine& line) const {
    const Vec direction = line.farPoint - line.nearPoint;
    for (std::size_t k = 0; k < list.size() && k < patches_.size(); ++k) {
        if (anyHit(list, k, line.nearPoint, direction,
                   [&](const Vec& hit) { return isVisible(list, k, hit, direction); })) {
            return static_cast<std::int32_t>(k);
        }
    }
    return -1;
}

} // namespace velmora

#include "cell_search.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "line_triangle_bounded.h"
#include "same_point.h"
#include "segment_tests.h"
#include "vectors.h"

namespace velmora {

namespace {

using Corners = std::array<const zVec<double>*, 3>;

/// The two triangles of a cell, in the order in which they are tested.
std::array<Corners, 2> trianglesOf(const Patch& patch, std::int32_t N, std::int32_t M) {
    const PointList& section = patch[static_cast<std::size_t>(N)];
    const PointList& next = patch[static_cast<std::size_t>(N) + 1];
    const auto m = static_cast<std::size_t>(M);
    return {{{&section[m], &section[m + 1], &next[m]}, {&section[m + 1], &next[m], &next[m + 1]}}};
}

std::array<double, 3> triple(const zVec<double>& p) {
    return {p.x, p.y, p.z};
}

std::optional<zVec<double>> hitOf(const Corners& triangle, const zVec<double>& direction, const zVec<double>& origin) {
    double place[3];
    const bool hit =
        hitsWithinReach(triple(*triangle[0]).data(), triple(*triangle[1]).data(), triple(*triangle[2]).data(),
                        triple(direction).data(), triple(origin).data(), place);
    return hit ? std::optional(zVec<double>(place[0], place[1], place[2])) : std::nullopt;
}

CellAddress addressOf(std::size_t k, std::size_t n, std::size_t m) {
    return {static_cast<std::int32_t>(k), static_cast<std::int32_t>(n), static_cast<std::int32_t>(m)};
}

std::optional<EdgePlace> placeOnEdge(const zVec<double>& a, const zVec<double>& b, const zVec<double>& p,
                                     double tolerance, const CellAddress& begin) {
    const SegmentPlace at = pointOnSegment(a, b, p, tolerance);
    return at.kind == SegmentPlace::On ? std::optional(EdgePlace{begin, at.t}) : std::nullopt;
}

} // namespace

std::optional<PiercedCell> CellTree::pierced(const zVec<double>& from, const zVec<double>& to) const {
    std::vector<LineHit> hits;
    tree_.findHits(unitOf(to - from), from, hits);
    for (const LineHit& hit : hits) {
        if (liesBetween(hit.place, from, to)) {
            return PiercedCell{cells_.cellOf(hit.triangle), hit.place};
        }
    }
    return std::nullopt;
}

// ---- Boxes ----------------------------------------------------------------------------------------------------------

GrowingGrid::Box::Box() {
    constexpr double far = std::numeric_limits<double>::infinity();
    lower.fill(far);
    upper.fill(-far);
}

void GrowingGrid::Box::take(const zVec<double>& p) {
    const std::array<double, 3> at = triple(p);
    for (std::size_t i = 0; i < 3; ++i) {
        lower[i] = std::min(lower[i], at[i]);
        upper[i] = std::max(upper[i], at[i]);
    }
}

void GrowingGrid::Box::take(const Box& other) {
    for (std::size_t i = 0; i < 3; ++i) {
        lower[i] = std::min(lower[i], other.lower[i]);
        upper[i] = std::max(upper[i], other.upper[i]);
    }
}

double GrowingGrid::Box::largest() const {
    double largest = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        largest = std::max({largest, std::abs(lower[i]), std::abs(upper[i])});
    }
    return largest;
}

bool GrowingGrid::Box::meets(const Box& other, double slack) const {
    for (std::size_t i = 0; i < 3; ++i) {
        if (lower[i] - slack > other.upper[i] || upper[i] + slack < other.lower[i]) {
            return false;
        }
    }
    return true;
}

GrowingGrid::GrowingGrid(PatchList patches, std::vector<bool> left)
    : patches_(std::move(patches)), left_(std::move(left)), sections_(patches_.size()) {
    for (std::int32_t k = 0; k < countOf(patches_); ++k) {
        const auto index = static_cast<std::size_t>(k);
        if (left_[index]) {
            continue;
        }
        sections_[index].resize(patches_[index].size());
        for (std::int32_t n = 0; n < countOf(patches_[index]); ++n) {
            measureSection(k, n);
            measureRow(k, n);
        }
    }
}

void GrowingGrid::measureSection(std::int32_t K, std::int32_t N) {
    const auto k = static_cast<std::size_t>(K);
    const auto n = static_cast<std::size_t>(N);
    Box box;
    for (const zVec<double>& point : patches_[k][n]) {
        box.take(point);
    }
    sections_[k][n].box = box;
}

/// Whether a line can hit one of the cell's triangles anywhere.
bool GrowingGrid::hasOpenCell(const Patch& patch, std::int32_t N, std::int32_t M) const {
    for (const Corners& triangle : trianglesOf(patch, N, M)) {
        if (hitReach(triple(*triangle[0]).data(), triple(*triangle[1]).data(), triple(*triangle[2]).data()).anywhere) {
            return true;
        }
    }
    return false;
}

void GrowingGrid::measureRow(std::int32_t K, std::int32_t N) {
    const Patch& patch = patches_[static_cast<std::size_t>(K)];
    bool anywhere = false;
    if (N + 1 < countOf(patch)) {
        const auto n = static_cast<std::size_t>(N);
        const std::int32_t cells = cellCount(patch[n], patch[n + 1]);
        for (std::int32_t m = 0; m < cells && !anywhere; ++m) {
            anywhere = hasOpenCell(patch, N, m);
        }
    }
    sections_[static_cast<std::size_t>(K)][static_cast<std::size_t>(N)].anywhere = anywhere;
}

// ---- Searches -------------------------------------------------------------------------------------------------------

/// Calls look(K, N) for the sections of the patches that count, until it gives true.
template <class Look>
bool GrowingGrid::lookThrough(Look look) const {
    for (std::int32_t k = 0; k < countOf(patches_); ++k) {
        const auto index = static_cast<std::size_t>(k);
        for (std::int32_t n = 0; !left_[index] && n < countOf(patches_[index]); ++n) {
            if (look(index, static_cast<std::size_t>(n))) {
                return true;
            }
        }
    }
    return false;
}

std::optional<CellAddress> GrowingGrid::pointAt(const zVec<double>& p, double tolerance) const {
    Box place;
    place.take(p);
    const double reach = samePointReach(p, tolerance);
    std::optional<CellAddress> found;
    lookThrough([&](std::size_t k, std::size_t n) {
        if (!sections_[k][n].box.meets(place, reach)) {
            return false;
        }
        const PointList& section = patches_[k][n];
        const auto same = std::find_if(section.begin(), section.end(), [&p, tolerance](const zVec<double>& point) {
            return samePoint(p, point, tolerance);
        });
        if (same != section.end()) {
            found = addressOf(k, n, static_cast<std::size_t>(same - section.begin()));
        }
        return found.has_value();
    });
    return found;
}

std::optional<EdgePlace> GrowingGrid::edgeAcross(const zVec<double>& p, double tolerance) const {
    Box place;
    place.take(p);
    const double reach = betweenSlack(p, p);
    std::optional<EdgePlace> found;
    lookThrough([&](std::size_t k, std::size_t n) {
        if (n + 1 == patches_[k].size()) {
            return false;
        }
        Box row = sections_[k][n].box;
        row.take(sections_[k][n + 1].box);
        if (!row.meets(place, reach)) {
            return false;
        }
        const PointList& section = patches_[k][n];
        const PointList& next = patches_[k][n + 1];
        for (std::size_t m = 0; m < std::min(section.size(), next.size()) && !found; ++m) {
            found = placeOnEdge(section[m], next[m], p, tolerance, addressOf(k, n, m));
        }
        return found.has_value();
    });
    return found;
}

std::optional<EdgePlace> GrowingGrid::edgeAlong(const zVec<double>& p, double tolerance) const {
    Box place;
    place.take(p);
    const double reach = betweenSlack(p, p);
    std::optional<EdgePlace> found;
    lookThrough([&](std::size_t k, std::size_t n) {
        const PointList& section = patches_[k][n];
        if (!sections_[k][n].box.meets(place, reach)) {
            return false;
        }
        for (std::size_t m = 0; m + 1 < section.size() && !found; ++m) {
            found = placeOnEdge(section[m], section[m + 1], p, tolerance, addressOf(k, n, m));
        }
        return found.has_value();
    });
    return found;
}

std::optional<PiercedCell> GrowingGrid::piercedInRow(std::int32_t K, std::int32_t N, const zVec<double>& from,
                                                     const zVec<double>& to, const Box& segment, double slack) const {
    const auto k = static_cast<std::size_t>(K);
    const auto n = static_cast<std::size_t>(N);
    const Patch& patch = patches_[k];
    const bool anywhere = sections_[k][n].anywhere;
    const zVec<double> direction = unitOf(to - from);
    const std::int32_t cells = cellCount(patch[n], patch[n + 1]);
    for (std::int32_t m = 0; m < cells; ++m) {
        const std::array<Corners, 2> triangles = trianglesOf(patch, N, m);
        Box cell;
        for (const zVec<double>* corner : {triangles[0][0], triangles[0][1], triangles[0][2], triangles[1][2]}) {
            cell.take(*corner);
        }
        const double extents =
            cell.upper[0] - cell.lower[0] + cell.upper[1] - cell.lower[1] + cell.upper[2] - cell.lower[2];
        if (!anywhere && !cell.meets(segment, slack + hitMargin * extents)) {
            continue;
        }
        for (const Corners& triangle : triangles) {
            const auto hit = hitOf(triangle, direction, from);
            if (hit && liesBetween(*hit, from, to)) {
                return PiercedCell{{K, N, m}, *hit};
            }
        }
    }
    return std::nullopt;
}

std::optional<PiercedCell> GrowingGrid::pierced(const zVec<double>& from, const zVec<double>& to) const {
    Box segment;
    segment.take(from);
    segment.take(to);
    // A place as far as its rounding outside of a cell's margin is taken too.
    const double between = betweenSlack(from, to);
    const double slack = between + 2.0 * hitRounding * (segment.largest() + between);
    std::optional<PiercedCell> found;
    lookThrough([&](std::size_t k, std::size_t n) {
        if (n + 1 == patches_[k].size()) {
            return false;
        }
        Box row = sections_[k][n].box;
        row.take(sections_[k][n + 1].box);
        const double extents = row.upper[0] - row.lower[0] + row.upper[1] - row.lower[1] + row.upper[2] - row.lower[2];
        if (sections_[k][n].anywhere || row.meets(segment, slack + hitMargin * extents)) {
            found = piercedInRow(static_cast<std::int32_t>(k), static_cast<std::int32_t>(n), from, to, segment, slack);
        }
        return found.has_value();
    });
    return found;
}

// ---- Growth ---------------------------------------------------------------------------------------------------------

void GrowingGrid::setPoint(const CellAddress& at, const zVec<double>& p) {
    const auto k = static_cast<std::size_t>(at.K);
    const auto n = static_cast<std::size_t>(at.N);
    patches_[k][n][static_cast<std::size_t>(at.M)] = p;
    sections_[k][n].box.take(p);
    measureRow(at.K, at.N);
    if (at.N > 0) {
        measureRow(at.K, at.N - 1);
    }
}

void GrowingGrid::insertSection(std::int32_t K, std::int32_t N, PointList section) {
    const auto k = static_cast<std::size_t>(K);
    patches_[k].insert(patches_[k].begin() + N + 1, std::move(section));
    sections_[k].insert(sections_[k].begin() + N + 1, Section());
    measureSection(K, N + 1);
    measureRow(K, N);
    measureRow(K, N + 1);
}

void GrowingGrid::insertLine(std::int32_t K, std::int32_t M, const PointList& points) {
    const auto k = static_cast<std::size_t>(K);
    Patch& patch = patches_[k];
    for (std::size_t n = 0; n < patch.size(); ++n) {
        if (M + 1 < countOf(patch[n])) {
            patch[n].insert(patch[n].begin() + M + 1, points[n]);
            sections_[k][n].box.take(points[n]);
        }
    }
    for (std::int32_t n = 0; n + 1 < countOf(patch); ++n) {
        const auto index = static_cast<std::size_t>(n);
        const std::int32_t cells = cellCount(patch[index], patch[index + 1]);
        for (std::int32_t m = M; m <= std::min(M + 1, cells - 1); ++m) {
            sections_[k][index].anywhere = sections_[k][index].anywhere || hasOpenCell(patch, n, m);
        }
    }
}

} // namespace velmora

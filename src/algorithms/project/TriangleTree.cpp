#include "TriangleTree.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "line_triangle_bounded.h"
#include "parallel.h"
#include "vectors.h"

namespace velmora {

namespace {

constexpr std::int32_t leafSize = 4;
constexpr std::int32_t inner = -1;
constexpr std::int32_t none = 0;
/// In the place of a piece: the triangle is held by one box.
constexpr std::int32_t whole = -1;
/// Cells per axis of the curve along which the triangles are sorted: 2 to this power.
constexpr int curveBits = 20;

/// Rounding of a place on a line, as a part of the coordinates in question.
constexpr double roundingPart = 1e-14;
/// The same for the single-precision numbers of the nodes.
constexpr double singlePart = 4e-6;

using Triple = std::array<double, 3>;

/// Triangles that one thread takes at a time.
constexpr std::size_t chunk = 4096;

/// The lowest bits of `value`, each followed by two zeros: one coordinate of a Morton code.
std::uint64_t spread(std::uint64_t value) {
    value &= 0x1fffff;
    value = (value | value << 32) & 0x1f00000000ffff;
    value = (value | value << 16) & 0x1f0000ff0000ff;
    value = (value | value << 8) & 0x100f00f00f00f00f;
    value = (value | value << 4) & 0x10c30c30c30c30c3;
    return (value | value << 2) & 0x1249249249249249;
}

/// So that it holds the other one too.
void widen(FrameBox& box, const FrameBox& other) {
    for (std::size_t i = 0; i < 3; ++i) {
        box.lower[i] = std::min(box.lower[i], other.lower[i]);
        box.upper[i] = std::max(box.upper[i], other.upper[i]);
    }
}

} // namespace

// ---- Building -------------------------------------------------------------------------------------------------------

TriangleTree::TriangleTree(TriangleMesh mesh) : mesh_(std::move(mesh)) {
    const std::int32_t count = mesh_.triangleCount();
    margins_.resize(static_cast<std::size_t>(count));
    std::vector<std::uint8_t> reachesAll(margins_.size());
    forEachChunk(margins_.size(), chunk, [&](std::size_t first, std::size_t last, std::size_t) {
        for (std::size_t t = first; t < last; ++t) {
            const auto number = static_cast<std::int32_t>(t);
            const HitReach reach = hitReach(mesh_.corner(number, 0), mesh_.corner(number, 1), mesh_.corner(number, 2));
            margins_[t] = reach.margin;
            reachesAll[t] = reach.anywhere ? 1 : 0;
        }
    });
    std::vector<std::int32_t> bounded;
    bounded.reserve(margins_.size());
    for (std::int32_t t = 0; t < count; ++t) {
        (reachesAll[static_cast<std::size_t>(t)] != 0 ? anywhere_ : bounded).push_back(t);
    }
    keyTriangles(bounded);
    std::vector<std::int32_t>().swap(bounded);
    if (!keyed_.empty()) {
        sortAlongCurve();
        nodes_.reserve(keyed_.size() / 2 + 1);
        nodes_.emplace_back();
        build(0, 0, static_cast<std::int32_t>(keyed_.size()));
    }
    order_.reserve(keyed_.size());
    for (const Keyed& entry : keyed_) {
        order_.push_back(entry.triangle);
    }
    std::vector<Keyed>().swap(keyed_);
    std::vector<double>().swap(margins_);
    std::vector<TrianglePiece>().swap(close_.pieces);
}

std::array<zVec<double>, 3> TriangleTree::cornersOf(std::int32_t triangle) const {
    return {vectorAt(mesh_.corner(triangle, 0)), vectorAt(mesh_.corner(triangle, 1)),
            vectorAt(mesh_.corner(triangle, 2))};
}

/// An entry for each triangle, or for each of its pieces. A hit is no further from the triangle than its margin, in
/// whatever direction: so it is no further from one of the pieces.
void TriangleTree::keyTriangles(const std::vector<std::int32_t>& bounded) {
    close_ = closeBoxes(bounded, [this](std::int32_t triangle) { return cornersOf(triangle); });
    keyed_.reserve(bounded.size() + close_.pieces.size());
    std::int32_t piece = 0;
    const auto pieces = static_cast<std::int32_t>(close_.pieces.size());
    for (const std::int32_t triangle : bounded) {
        const std::int32_t first = piece;
        for (; piece < pieces && close_.pieces[static_cast<std::size_t>(piece)].triangle == triangle; ++piece) {
            keyed_.push_back({0, triangle, piece});
        }
        if (piece == first) {
            keyed_.push_back({0, triangle, whole});
        }
    }
}

TriangleTree::Box TriangleTree::boxOf(const Keyed& entry, double margin) const {
    Box box = entry.piece == whole ? close_.frame.boxOf(cornersOf(entry.triangle))
                                   : close_.pieces[static_cast<std::size_t>(entry.piece)].box;
    for (std::size_t i = 0; i < 3; ++i) {
        box.lower[i] -= margin;
        box.upper[i] += margin;
    }
    return box;
}

/// The box about the boxes of all triangles.
TriangleTree::Box TriangleTree::boxOfAll() const {
    std::vector<Box> parts((keyed_.size() + chunk - 1) / chunk);
    forEachChunk(keyed_.size(), chunk, [&](std::size_t first, std::size_t last, std::size_t) {
        Box part = boxOf(keyed_[first], 0.0);
        for (std::size_t k = first; k < last; ++k) {
            widen(part, boxOf(keyed_[k], margins_[static_cast<std::size_t>(keyed_[k].triangle)]));
        }
        parts[first / chunk] = part;
    });
    Box all = parts.front();
    for (const Box& part : parts) {
        widen(all, part);
    }
    return all;
}

/// Sorts the triangles by the Morton codes of their middles, along a space-filling curve, and sets centre and radius.
void TriangleTree::sortAlongCurve() {
    const Box all = boxOfAll();
    Triple scale{};
    double square = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        const double extent = all.upper[i] - all.lower[i];
        centre_[i] = all.lower[i] + 0.5 * extent;
        scale[i] = extent > 0.0 ? (std::ldexp(1.0, curveBits) - 1.0) / extent : 0.0;
        square += extent * extent;
        magnitude_ = std::max({magnitude_, std::abs(all.lower[i]), std::abs(all.upper[i])});
    }
    radius_ = 0.5 * std::sqrt(square) * (1.0 + roundingPart);
    forEachChunk(keyed_.size(), chunk, [&](std::size_t first, std::size_t last, std::size_t) {
        for (std::size_t k = first; k < last; ++k) {
            const Box box = boxOf(keyed_[k], 0.0);
            for (std::size_t i = 0; i < 3; ++i) {
                const double middle = 0.5 * box.lower[i] + 0.5 * box.upper[i] - all.lower[i];
                const double cell = std::clamp(middle * scale[i], 0.0, std::ldexp(1.0, curveBits) - 1.0);
                keyed_[k].key |= spread(static_cast<std::uint64_t>(cell)) << i;
            }
        }
    });
    sortByKey();
}

/// Sorts by rising keys; equal ones stay in their order. Digit by digit from the lowest one on, each time in order.
void TriangleTree::sortByKey() {
    constexpr int digitBits = 12;
    constexpr std::size_t digits = std::size_t{1} << digitBits;
    constexpr std::size_t few = digits / 2; // sorted faster by comparing them
    if (keyed_.size() < few) {
        std::stable_sort(keyed_.begin(), keyed_.end(), [](const Keyed& a, const Keyed& b) { return a.key < b.key; });
        return;
    }
    std::vector<Keyed> sorted(keyed_.size());
    for (int shift = 0; shift < 3 * curveBits; shift += digitBits) {
        const auto digitOf = [shift](const Keyed& entry) { return entry.key >> shift & (digits - 1); };
        std::array<std::size_t, digits> places{};
        for (const Keyed& entry : keyed_) {
            ++places[digitOf(entry)];
        }
        std::exclusive_scan(places.begin(), places.end(), places.begin(), std::size_t{0});
        for (const Keyed& entry : keyed_) {
            sorted[places[digitOf(entry)]++] = entry;
        }
        keyed_.swap(sorted);
    }
}

/// Where a stretch of the curve is split: at the highest bit in which its keys differ, or in the middle.
std::int32_t TriangleTree::splitOf(std::int32_t begin, std::int32_t end) const {
    const auto at = keyed_.begin();
    const std::uint64_t differing = (at + begin)->key ^ (at + end - 1)->key;
    if (differing == 0) {
        return begin + (end - begin) / 2;
    }
    std::uint64_t bit = std::uint64_t{1} << 63;
    while ((differing & bit) == 0) {
        bit >>= 1;
    }
    const auto split = std::partition_point(at + begin, at + end, [bit](const Keyed& k) { return (k.key & bit) == 0; });
    return static_cast<std::int32_t>(split - at);
}

TriangleTree::Box TriangleTree::build(std::int32_t node, std::int32_t begin, std::int32_t end) {
    std::array<std::int32_t, width + 1> cuts{begin, begin, begin, end, end};
    if (end - begin > 1) {
        cuts[2] = splitOf(begin, end);
        cuts[1] = cuts[2] - begin > 1 ? splitOf(begin, cuts[2]) : begin;
        cuts[3] = end - cuts[2] > 1 ? splitOf(cuts[2], end) : end;
    }
    constexpr double far = std::numeric_limits<double>::infinity();
    Box all{{far, far, far}, {-far, -far, -far}};
    for (std::size_t slot = 0; slot < width; ++slot) {
        if (cuts[slot] == cuts[slot + 1]) {
            continue;
        }
        widen(all, fillSlot(node, slot, cuts[slot], cuts[slot + 1]));
    }
    return all;
}

TriangleTree::Box TriangleTree::fillSlot(std::int32_t node, std::size_t slot, std::int32_t begin, std::int32_t end) {
    Box box;
    std::int32_t first = begin;
    std::int32_t count = end - begin;
    if (count <= leafSize) {
        for (std::int32_t k = begin; k < end; ++k) {
            const Keyed& entry = keyed_[static_cast<std::size_t>(k)];
            const Box one = boxOf(entry, margins_[static_cast<std::size_t>(entry.triangle)]);
            for (std::size_t i = 0; i < 3; ++i) {
                box.lower[i] = k == begin ? one.lower[i] : std::min(box.lower[i], one.lower[i]);
                box.upper[i] = k == begin ? one.upper[i] : std::max(box.upper[i], one.upper[i]);
            }
        }
    } else {
        first = static_cast<std::int32_t>(nodes_.size());
        count = inner;
        nodes_.emplace_back();
        box = build(first, begin, end);
    }
    Node& stored = nodes_[static_cast<std::size_t>(node)];
    stored.first[slot] = first;
    stored.count[slot] = count;
    storeBox(stored, slot, box);
    return box;
}

void TriangleTree::storeBox(Node& node, std::size_t slot, const Box& box) const {
    for (std::size_t i = 0; i < 3; ++i) {
        node.middle[i][slot] = static_cast<float>(0.5 * (box.lower[i] + box.upper[i]) - centre_[i]);
        node.half[i][slot] = static_cast<float>(0.5 * (box.upper[i] - box.lower[i]));
    }
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

/// A line, once as it was given and once as the nodes need it.
struct TriangleTree::Ray {
    Triple direction{};
    Triple origin{};
    std::array<float, 3> along{};
    std::array<float, 3> extent{}; ///< absolute values of `along`
    std::array<float, 3> from{};   ///< the point of the line that is next to the centre, about the centre
    float slack = 0.0F;
};

void TriangleTree::judge(std::int32_t triangle, const Ray& ray, std::vector<LineHit>& hits) const {
    double place[3];
    if (hitsWithinReach(mesh_.corner(triangle, 0), mesh_.corner(triangle, 1), mesh_.corner(triangle, 2),
                        ray.direction.data(), ray.origin.data(), place)) {
        hits.push_back({triangle, {place[0], place[1], place[2]}});
    }
}

void TriangleTree::findHits(const zVec<double>& direction, const zVec<double>& origin,
                            std::vector<LineHit>& hits) const {
    hits.clear();
    if (!(std::isfinite(direction.x) && std::isfinite(direction.y) && std::isfinite(direction.z))) {
        return;
    }
    Ray ray;
    ray.direction = {direction.x, direction.y, direction.z};
    ray.origin = {origin.x, origin.y, origin.z};
    const zVec<double> centre(centre_[0], centre_[1], centre_[2]);
    const zVec<double> from = close_.frame.in(origin);
    const zVec<double> along = close_.frame.in(direction);
    const zVec<double> next = from + along * dot(centre - from, along) - centre;
    // Rounding moves places on the line by this much, on the way to the point next to the centre too.
    const double rounding =
        roundingPart * (std::abs(origin.x) + std::abs(origin.y) + std::abs(origin.z) + magnitude_ + radius_);
    if (!nodes_.empty() && !(lengthOf(next) > radius_ + rounding)) {
        ray.along = {static_cast<float>(along.x), static_cast<float>(along.y), static_cast<float>(along.z)};
        ray.from = {static_cast<float>(next.x), static_cast<float>(next.y), static_cast<float>(next.z)};
        for (std::size_t i = 0; i < 3; ++i) {
            ray.extent[i] = std::abs(ray.along[i]);
        }
        ray.slack =
            static_cast<float>(2.0 * rounding + singlePart * (radius_ + rounding)) + std::numeric_limits<float>::min();
        walk(ray, hits);
    }
    for (const std::int32_t triangle : anywhere_) {
        judge(triangle, ray, hits);
    }
    std::sort(hits.begin(), hits.end(), [](const LineHit& a, const LineHit& b) { return a.triangle < b.triangle; });
    // A triangle may be met by several of its pieces.
    const auto same = [](const LineHit& a, const LineHit& b) { return a.triangle == b.triangle; };
    hits.erase(std::unique(hits.begin(), hits.end(), same), hits.end());
}

/// A line misses a box when one of the cross products of the line with the three axes separates them. What
/// cannot be told from rounding, and what is not a number, counts as met.
void TriangleTree::walk(const Ray& ray, std::vector<LineHit>& hits) const {
    // Four slots a node and at most 64 levels: two splits of the curve's 60 bits a level, then halves of equal keys.
    std::array<std::int32_t, 256> stack;
    std::size_t depth = 0;
    stack[depth++] = 0;
    while (depth > 0) {
        const Node& node = nodes_[static_cast<std::size_t>(stack[--depth])];
        std::array<int, width> missed{};
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t j = (i + 1) % 3;
            const std::size_t k = (i + 2) % 3;
            for (std::size_t slot = 0; slot < width; ++slot) {
                const float apart = ray.along[j] * (node.middle[k][slot] - ray.from[k]) -
                                    ray.along[k] * (node.middle[j][slot] - ray.from[j]);
                const float reach = ray.extent[j] * node.half[k][slot] + ray.extent[k] * node.half[j][slot] + ray.slack;
                missed[slot] |= std::abs(apart) > reach ? 1 : 0;
            }
        }
        for (std::size_t slot = 0; slot < width; ++slot) {
            const std::int32_t count = node.count[slot];
            if (missed[slot] != 0 || count == none) {
                continue;
            }
            if (count == inner) {
                stack[depth++] = node.first[slot];
                continue;
            }
            for (std::int32_t k = 0; k < count; ++k) {
                judge(order_[static_cast<std::size_t>(node.first[slot]) + static_cast<std::size_t>(k)], ray, hits);
            }
        }
    }
}

} // namespace velmora

#include "PatchIndex.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "camera.h"
#include "pick_boxes.h"
#include "vectors.h"

namespace velmora {

namespace {

using Vec = zVec<double>;

constexpr std::int32_t tileSide = 8;
constexpr std::size_t childrenOfNode = 8;
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

} // namespace

// ---- Taking a model in ----------------------------------------------------------------------------------------------

void PatchIndex::takeIn(const PatchList& list) {
    patches_.clear();
    nodes_.clear();
    odd_.clear();
    for (const Patch& patch : list) {
        addPatch(patch);
    }
}

void PatchIndex::addPatch(const Patch& patch) {
    PatchEntry entry;
    const std::size_t firstTile = nodes_.size();
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
                            {},
                            0,
                            0});
        }
    }
    if (nodes_.size() > firstTile) {
        addNodesAbove(firstTile);
        entry.root = nodes_.size() - 1;
    }
    entry.firstOdd = odd_.size();
    addOddTriangles(patch);
    entry.lastOdd = odd_.size();
    patches_.push_back(entry);
}

void PatchIndex::addNodesAbove(std::size_t first) {
    std::size_t last = nodes_.size();
    while (last - first > 1) {
        for (std::size_t child = first; child < last; child += childrenOfNode) {
            Node node = nodes_[child];
            node.firstChild = child;
            node.lastChild = std::min(child + childrenOfNode, last);
            PickExtent extent;
            for (std::size_t i = node.firstChild; i < node.lastChild; ++i) {
                const Node& part = nodes_[i];
                extent.add(part.box);
                node.n0 = std::min(node.n0, part.n0);
                node.n1 = std::max(node.n1, part.n1);
                node.m0 = std::min(node.m0, part.m0);
                node.m1 = std::max(node.m1, part.m1);
            }
            node.box = extent.boxOfBoxes();
            nodes_.push_back(node);
        }
        first = last;
        last = nodes_.size();
    }
}

void PatchIndex::addTile(const Patch& patch, Node tile) {
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
    nodes_.push_back(tile);
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

/// Looks for the nearest point from the roots down, the nearer parts first: what lies farther away than some point that
/// is known is left out.
class PatchIndex::PointSearch {
public:
    PointSearch(const PatchIndex& index, const PatchList& list, const LineDistance& distanceTo,
                const PickFilter& filter)
        : index_(index), list_(list), distanceTo_(distanceTo), filter_(filter), search_(distanceTo) {}

    std::optional<NearestPoint> run();

private:
    /// Some place of the model, not nearer to the line than `distance`.
    struct Part {
        std::size_t node = 0;
        std::int32_t patch = 0;
        double distance = 0.0;
    };

    bool passes(std::int32_t patch) const {
        return (filter_.patch < 0 || patch == filter_.patch) && (filter_.patches.empty() || filter_.patches[at(patch)]);
    }
    bool passes(const Node& node) const {
        return (filter_.section < 0 || (node.n0 <= filter_.section && filter_.section <= node.n1)) &&
               (filter_.point < 0 || (node.m0 <= filter_.point && filter_.point <= node.m1));
    }
    Part partOf(std::size_t node, std::int32_t patch);
    void look(const Part& part);
    void lookAtTile(const Node& tile, std::int32_t patch);

    const PatchIndex& index_;
    const PatchList& list_;
    const LineDistance& distanceTo_;
    const PickFilter& filter_;
    NearestSearch search_;
    double bound_ = std::numeric_limits<double>::infinity(); ///< some point is as near as this
};

PatchIndex::PointSearch::Part PatchIndex::PointSearch::partOf(std::size_t node, std::int32_t patch) {
    const PickBox& box = index_.nodes_[node].box;
    const double distance = distanceTo_(box.centre);
    const double reach = distance + box.radius;
    if (filter_.section < 0 && filter_.point < 0 && reach < bound_) {
        bound_ = reach;
    }
    // A box that cannot be told is looked into first: nothing leaves it out.
    const double nearest = distance - box.radius - distanceTo_.slack(box.centre);
    return {node, patch, std::isnan(nearest) ? -std::numeric_limits<double>::infinity() : nearest};
}

std::optional<NearestPoint> PatchIndex::PointSearch::run() {
    std::vector<Part> roots;
    for (std::int32_t k = 0; k < countOf(list_); ++k) {
        const auto root = index_.patches_[at(k)].root;
        if (root && passes(k) && passes(index_.nodes_[*root])) {
            roots.push_back(partOf(*root, k));
        }
    }
    const auto nearer = [](const Part& a, const Part& b) { return a.distance < b.distance; };
    const auto first = std::min_element(roots.begin(), roots.end(), nearer);
    if (first != roots.end()) {
        std::iter_swap(roots.begin(), first);
    }
    for (const Part& root : roots) {
        look(root);
    }
    return search_.result();
}

void PatchIndex::PointSearch::look(const Part& part) {
    if (part.distance > bound_) {
        return;
    }
    const Node& node = index_.nodes_[part.node];
    if (node.isTile()) {
        lookAtTile(node, part.patch);
        return;
    }
    std::array<Part, childrenOfNode> parts;
    std::size_t count = 0;
    for (std::size_t child = node.firstChild; child < node.lastChild; ++child) {
        if (!passes(index_.nodes_[child])) {
            continue;
        }
        const Part found = partOf(child, part.patch);
        std::size_t place = count++;
        for (; place > 0 && found.distance < parts.at(place - 1).distance; --place) {
            parts.at(place) = parts.at(place - 1);
        }
        parts.at(place) = found;
    }
    for (std::size_t i = 0; i < count; ++i) {
        look(parts.at(i));
    }
}

void PatchIndex::PointSearch::lookAtTile(const Node& tile, std::int32_t patch) {
    const std::int32_t n0 = filter_.section < 0 ? tile.n0 : filter_.section;
    const std::int32_t n1 = filter_.section < 0 ? tile.n1 : filter_.section;
    const std::int32_t m0 = filter_.point < 0 ? tile.m0 : filter_.point;
    const std::int32_t m1 = filter_.point < 0 ? tile.m1 : filter_.point;
    for (std::int32_t n = n0; n <= n1; ++n) {
        const PointList& section = list_[at(patch)][at(n)];
        for (std::int32_t m = m0; m <= m1 && m < countOf(section); ++m) {
            search_.look(patch, n, m, section[at(m)]);
        }
    }
    if (const auto nearest = search_.result()) {
        bound_ = std::min(bound_, nearest->distance);
    }
}

std::optional<NearestPoint> PatchIndex::nearest(const PatchList& list, const PixelLine& line,
                                                const PickFilter& filter) const {
    const LineDistance distanceTo(line);
    if (!distanceTo.isLine() || patches_.size() != list.size()) {
        return nearestGridPoint(list, line, filter);
    }
    return PointSearch(*this, list, distanceTo, filter).run();
}

// ---- Patches --------------------------------------------------------------------------------------------------------

/// Whether `visit` says yes to some tile whose box the line may enter.
template <class Visit>
bool PatchIndex::anyTile(const Node& node, const Vec& origin, const Vec& direction, Visit visit) const {
    if (node.box.missedBy(origin, direction)) {
        return false;
    }
    if (node.isTile()) {
        return visit(node);
    }
    for (std::size_t child = node.firstChild; child < node.lastChild; ++child) {
        if (anyTile(nodes_[child], origin, direction, visit)) {
            return true;
        }
    }
    return false;
}

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
        const TriangleHit hit = sightHitsTriangle(t, direction, origin);
        return hit.code != 0 && visit(hit.point, n, m);
    };
    for (std::size_t i = entry.firstOdd; i < entry.lastOdd; ++i) {
        if (visitTriangle(odd_[i].n, odd_[i].m, odd_[i].half)) {
            return true;
        }
    }
    const std::int32_t lines = lineCount(sections);
    const auto visitTile = [&](const Node& tile) {
        for (std::int32_t n = tile.n0; n < tile.n1; ++n) {
            for (std::int32_t m = tile.m0; m < tile.m1 && m + 1 < lines; ++m) {
                if (visitTriangle(n, m, 0) || visitTriangle(n, m, 1)) {
                    return true;
                }
            }
        }
        return false;
    };
    return entry.root && anyTile(nodes_[*entry.root], origin, direction, visitTile);
}

bool PatchIndex::isVisible(const PatchList& list, std::size_t patch, const Vec& hit, const Vec& direction) const {
    for (std::size_t k = 0; k < list.size(); ++k) {
        if (k != patch && anyHit(list, k, hit, direction, [&](const Vec& other, std::int32_t, std::int32_t) {
                return dot(other - hit, direction) < 0.0;
            })) {
            return false;
        }
    }
    return true;
}

std::int32_t PatchIndex::pickPatch(const PatchList& list, const PixelLine& line) const {
    const Vec direction = sightDirection(line.nearPoint, line.farPoint);
    for (std::size_t k = 0; k < list.size() && k < patches_.size(); ++k) {
        if (anyHit(list, k, line.nearPoint, direction,
                   [&](const Vec& hit, std::int32_t, std::int32_t) { return isVisible(list, k, hit, direction); })) {
            return static_cast<std::int32_t>(k);
        }
    }
    return -1;
}

std::optional<FirstCell> PatchIndex::firstCell(const PatchList& list, const PixelLine& line) const {
    const Vec direction = line.farPoint - line.nearPoint;
    std::optional<FirstCell> first;
    double depth = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k < list.size() && k < patches_.size(); ++k) {
        anyHit(list, k, line.nearPoint, direction, [&](const Vec& hit, std::int32_t n, std::int32_t m) {
            const double behind = dot(hit - line.nearPoint, direction);
            if (behind >= 0.0 && behind < depth) {
                depth = behind;
                first = FirstCell{static_cast<std::int32_t>(k), n, m, hit};
            }
            return false; // all are looked at
        });
    }
    return first;
}

bool PatchIndex::hides(const PatchList& list, const PixelLine& line, const Vec& point, double margin) const {
    const Vec direction = line.farPoint - line.nearPoint;
    const double least = margin * lengthOf(direction);
    for (std::size_t k = 0; k < list.size() && k < patches_.size(); ++k) {
        if (anyHit(list, k, point, direction,
                   [&](const Vec& hit, std::int32_t, std::int32_t) { return dot(point - hit, direction) > least; })) {
            return true;
        }
    }
    return false;
}

} // namespace velmora

#include "NearestTree.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "nearest_on_triangle.h"
#include "vectors.h"

namespace velmora {

namespace {

std::size_t placeOf(std::int32_t number) {
    return static_cast<std::size_t>(number);
}

/// The triangle that a negative child of a node stands for.
std::size_t triangleOf(std::int32_t child) {
    const std::int32_t triangle = ~child;
    return static_cast<std::size_t>(triangle);
}

constexpr std::int32_t none = std::numeric_limits<std::int32_t>::min();
/// Rounding of a distance, as a part of the coordinates in question.
constexpr double roundingPart = 1e-14;
/// The same for the single-precision numbers of the nodes.
constexpr double singlePart = 1e-6;
constexpr double infinite = std::numeric_limits<double>::infinity();

using Triple = std::array<double, 3>;

Triple tripleOf(const zVec<double>& p) {
    return {p.x, p.y, p.z};
}

bool isFinite(const zVec<double>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

double largestCoordinate(const zVec<double>& p) {
    return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)});
}

/// Puts the part that stands lower along the longest side of all middles before the place that is given back.
template <class Seed>
Seed* halved(Seed* begin, Seed* end) {
    if (end - begin < 2) {
        return end;
    }
    std::array<float, 3> lower = begin->middle;
    std::array<float, 3> upper = lower;
    for (const Seed* seed = begin; seed != end; ++seed) {
        for (std::size_t i = 0; i < 3; ++i) {
            lower[i] = std::min(lower[i], seed->middle[i]);
            upper[i] = std::max(upper[i], seed->middle[i]);
        }
    }
    std::size_t axis = 0;
    for (const std::size_t i : {1, 2}) {
        axis = upper[i] - lower[i] > upper[axis] - lower[axis] ? i : axis;
    }
    Seed* const middle = begin + (end - begin) / 2;
    std::nth_element(begin, middle, end,
                     [axis](const Seed& a, const Seed& b) { return a.middle[axis] < b.middle[axis]; });
    return middle;
}

} // namespace

// ---- Building -------------------------------------------------------------------------------------------------------

NearestTree::NearestTree(const TriangleMesh& mesh) {
    takeTriangles(mesh);
    if (triangles_.empty()) {
        return;
    }
    std::vector<Seed> all = seeds();
    nodes_.reserve(all.size() / 2 + 1);
    nodes_.emplace_back();
    build(0, all.data(), all.data() + all.size());
    std::vector<TrianglePiece>().swap(close_.pieces);
}

void NearestTree::takeTriangles(const TriangleMesh& mesh) {
    triangles_.reserve(static_cast<std::size_t>(mesh.triangleCount()));
    for (std::int32_t t = 0; t < mesh.triangleCount(); ++t) {
        Triangle triangle;
        for (std::size_t i = 0; i < 3; ++i) {
            triangle[i] = vectorAt(mesh.corner(t, i));
        }
        if (std::all_of(triangle.begin(), triangle.end(), isFinite)) {
            triangles_.push_back(triangle);
        }
    }
}

/// All triangles, or the pieces of those that are cut into some.
std::vector<std::int32_t> NearestTree::parts() {
    std::vector<std::int32_t> parts(triangles_.size());
    std::iota(parts.begin(), parts.end(), 0);
    close_ =
        closeBoxes(parts, [this](std::int32_t triangle) { return triangles_[static_cast<std::size_t>(triangle)]; });
    if (close_.pieces.empty()) {
        return parts;
    }
    std::vector<bool> cut(triangles_.size(), false);
    for (const TrianglePiece& piece : close_.pieces) {
        cut[static_cast<std::size_t>(piece.triangle)] = true;
    }
    std::erase_if(parts, [&cut](std::int32_t triangle) { return cut[static_cast<std::size_t>(triangle)]; });
    for (std::int32_t piece = 0; piece < static_cast<std::int32_t>(close_.pieces.size()); ++piece) {
        parts.push_back(~piece);
    }
    return parts;
}

/// Sets centre, scale and magnitude on the way.
std::vector<NearestTree::Seed> NearestTree::seeds() {
    const std::vector<std::int32_t> all = parts();
    Box whole{{infinite, infinite, infinite}, {-infinite, -infinite, -infinite}};
    for (const std::int32_t part : all) {
        const Box box = boxOf(part);
        for (std::size_t i = 0; i < 3; ++i) {
            whole.lower[i] = std::min(whole.lower[i], box.lower[i]);
            whole.upper[i] = std::max(whole.upper[i], box.upper[i]);
        }
    }
    double radius = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        centre_[i] = 0.5 * whole.lower[i] + 0.5 * whole.upper[i];
        radius = std::max(radius, 0.5 * whole.upper[i] - 0.5 * whole.lower[i]);
        magnitude_ = std::max({magnitude_, std::abs(whole.lower[i]), std::abs(whole.upper[i])});
    }
    scale_ = radius > 0.0 ? 1.0 / radius : 0.0;
    std::vector<Seed> seeds(all.size());
    for (std::size_t k = 0; k < seeds.size(); ++k) {
        const Box box = boxOf(all[k]);
        for (std::size_t i = 0; i < 3; ++i) {
            const double middle = 0.5 * box.lower[i] + 0.5 * box.upper[i];
            seeds[k].middle[i] = static_cast<float>((middle - centre_[i]) * scale_);
        }
        seeds[k].part = all[k];
    }
    return seeds;
}

NearestTree::Box NearestTree::boxOf(std::int32_t part) const {
    return part < 0 ? close_.pieces[placeOf(~part)].box : close_.frame.boxOf(triangles_[placeOf(part)]);
}

std::int32_t NearestTree::triangleOfPart(std::int32_t part) const {
    return part < 0 ? close_.pieces[placeOf(~part)].triangle : part;
}

NearestTree::Box NearestTree::build(std::int32_t node, Seed* begin, Seed* end) {
    Seed* const middle = halved(begin, end);
    const std::array<Seed*, width + 1> cuts{begin, halved(begin, middle), middle, halved(middle, end), end};
    Box all{{infinite, infinite, infinite}, {-infinite, -infinite, -infinite}};
    for (std::size_t slot = 0; slot < width; ++slot) {
        const auto count = cuts[slot + 1] - cuts[slot];
        if (count == 0) {
            nodes_[static_cast<std::size_t>(node)].child[slot] = none;
            continue;
        }
        std::int32_t child = ~triangleOfPart(cuts[slot]->part);
        if (count > 1) {
            child = static_cast<std::int32_t>(nodes_.size());
            nodes_.emplace_back();
        }
        const Box box = count > 1 ? build(child, cuts[slot], cuts[slot + 1]) : boxOf(cuts[slot]->part);
        Node& stored = nodes_[static_cast<std::size_t>(node)];
        stored.child[slot] = child;
        storeBox(stored, slot, box);
        for (std::size_t i = 0; i < 3; ++i) {
            all.lower[i] = std::min(all.lower[i], box.lower[i]);
            all.upper[i] = std::max(all.upper[i], box.upper[i]);
        }
    }
    return all;
}

void NearestTree::storeBox(Node& node, std::size_t slot, const Box& box) const {
    for (std::size_t i = 0; i < 3; ++i) {
        const double middle = 0.5 * box.lower[i] + 0.5 * box.upper[i];
        node.middle[i][slot] = static_cast<float>((middle - centre_[i]) * scale_);
        node.half[i][slot] = static_cast<float>((0.5 * box.upper[i] - 0.5 * box.lower[i]) * scale_);
    }
}

// ---- Searching ------------------------------------------------------------------------------------------------------

/// A search for the place nearest to a point, once in the model's measure and once in that of the nodes.
struct NearestTree::Search {
    struct Visit {
        float squared;
        std::int32_t node;
    };

    zVec<double> point;
    double least = infinite; ///< square of the distance
    std::array<float, 3> from{};
    double scale = 0.0;
    double slack = 0.0; ///< a box further than the least distance by this much cannot hold what is nearer
    float reach = std::numeric_limits<float>::infinity(); ///< square of the two together
    std::array<Visit, 64> stack;                          ///< three nodes wait at each of up to 16 levels
    std::size_t depth = 0;

    void offer(const Triangle& triangle) {
        const double squared = squaredDistance(point, nearestOnTriangle(point, triangle[0], triangle[1], triangle[2]));
        if (squared < least) {
            least = squared;
            const double widened = std::sqrt(least) * scale + slack;
            reach = static_cast<float>(widened * widened);
        }
    }
};

/// Tests the node's triangles, and puts its nodes on the stack, the nearest one on top. What cannot be told from
/// rounding, and what is not a number, counts as near.
void NearestTree::look(const Node& node, Search& search) const {
    std::array<float, width> squared{};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t slot = 0; slot < width; ++slot) {
            const float off = std::abs(search.from[i] - node.middle[i][slot]) - node.half[i][slot];
            const float outside = off > 0.0F ? off : 0.0F;
            squared[slot] += outside * outside;
        }
    }
    const std::size_t first = search.depth;
    for (std::size_t slot = 0; slot < width; ++slot) {
        const std::int32_t child = node.child[slot];
        if (child == none || squared[slot] > search.reach) {
            continue;
        }
        if (child < 0) {
            search.offer(triangles_[triangleOf(child)]);
            continue;
        }
        std::size_t place = search.depth++;
        for (; place > first && search.stack[place - 1].squared < squared[slot]; --place) {
            search.stack[place] = search.stack[place - 1];
        }
        search.stack[place] = {squared[slot], child};
    }
}

double NearestTree::distanceFrom(const zVec<double>& point) const {
    if (!isFinite(point)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (nodes_.empty()) {
        return infinite;
    }
    Search search;
    search.point = point;
    const Triple p = tripleOf(close_.frame.in(point));
    double away = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        const double from = (p[i] - centre_[i]) * scale_;
        search.from[i] = static_cast<float>(from);
        away = std::max(away, std::abs(from));
    }
    search.scale = scale_;
    search.slack = singlePart * (1.0 + away) + roundingPart * scale_ * (magnitude_ + largestCoordinate(point));
    search.stack[search.depth++] = {0.0F, 0};
    while (search.depth > 0) {
        const Search::Visit visit = search.stack[--search.depth];
        if (!(visit.squared > search.reach)) {
            look(nodes_[static_cast<std::size_t>(visit.node)], search);
        }
    }
    return std::sqrt(search.least);
}

} // namespace velmora

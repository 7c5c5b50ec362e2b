#include "border_gaps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <tuple>

#include "NearestTree.h"

namespace velmora {

namespace {

/// An open side of a patch as a line of points, neighbours being different.
struct Side {
    std::int32_t patch = 0;
    std::int32_t number = 0; ///< 0 to 3
    std::vector<zVec<double>> points;
    zVec<double> lower;
    zVec<double> upper;
    double key = 0.0; ///< of sides that match it differs by no more than `keySpread` times their largest distance
    std::optional<NearestTree> tree;
};

/// Weights of a box's corner in the key: odd ones, so that sides in one coordinate plane have different keys.
constexpr std::array<double, 3> keyWeights{0.61, 0.83, 1.17};
constexpr double keySpread = keyWeights[0] + keyWeights[1] + keyWeights[2];

/// The numbers of a side's points.
std::vector<std::int32_t> sidePoints(const ModelFaces& model, const PatchCells& patch, int side) {
    const bool section = side < 2;
    const bool last = side % 2 != 0;
    std::vector<std::int32_t> numbers;
    for (std::int32_t i = 0; i < (section ? patch.points : patch.sections); ++i) {
        numbers.push_back(section ? model.patchPoint(patch, last ? patch.sections - 1 : 0, i)
                                  : model.patchPoint(patch, i, last ? patch.points - 1 : 0));
    }
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

bool openAllAlong(const EdgeTable& edges, const std::vector<std::int32_t>& numbers) {
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        if (!edges.isOpen(numbers[i - 1], numbers[i])) {
            return false;
        }
    }
    return numbers.size() > 1;
}

void measureBox(Side& side) {
    constexpr double far = std::numeric_limits<double>::infinity();
    side.lower = {far, far, far};
    side.upper = {-far, -far, -far};
    patchBounds({{side.points}}, side.lower, side.upper);
    side.key = keyWeights[0] * side.lower.x + keyWeights[1] * side.lower.y + keyWeights[2] * side.lower.z;
}

std::vector<Side> openSides(const ModelFaces& model, const EdgeTable& edges) {
    std::vector<Side> sides;
    for (std::size_t k = 0; k < model.patches.size(); ++k) {
        for (int number = 0; number < (model.patches[k].cellCount() > 0 ? 4 : 0); ++number) {
            const std::vector<std::int32_t> points = sidePoints(model, model.patches[k], number);
            if (openAllAlong(edges, points)) {
                Side side;
                side.patch = static_cast<std::int32_t>(k);
                side.number = number;
                for (const std::int32_t point : points) {
                    side.points.push_back(model.points.at(point));
                }
                measureBox(side);
                sides.push_back(std::move(side));
            }
        }
    }
    return sides;
}

/// Whether the boxes of two sides allow that neither leaves the other by more than `reach`.
bool boxesMatch(const Side& a, const Side& b, double reach) {
    const auto near = [reach](const zVec<double>& p, const zVec<double>& q) {
        return std::abs(p.x - q.x) <= reach && std::abs(p.y - q.y) <= reach && std::abs(p.z - q.z) <= reach;
    };
    return near(a.lower, b.lower) && near(a.upper, b.upper);
}

const NearestTree& treeOf(Side& side) {
    if (!side.tree) {
        TriangleMesh segments;
        for (const zVec<double>& point : side.points) {
            segments.addPoint(point);
        }
        for (std::int32_t i = 1; i < countOf(side.points); ++i) {
            segments.addTriangle(i - 1, i, i);
        }
        side.tree.emplace(segments);
    }
    return *side.tree;
}

/// The largest distance of the points of `side` from `other`; none when it is above `reach`.
std::optional<double> largestWithin(const Side& side, Side& other, double reach) {
    const NearestTree& tree = treeOf(other);
    double largest = 0.0;
    for (const zVec<double>& point : side.points) {
        const double distance = tree.distanceFrom(point);
        if (!(distance <= reach)) {
            return std::nullopt;
        }
        largest = std::max(largest, distance);
    }
    return largest;
}

struct FoundGap {
    BorderGap gap;
    std::int32_t side;
    std::int32_t otherSide;
};

std::optional<FoundGap> gapBetween(Side& a, Side& b, double reach) {
    if (a.patch == b.patch || !boxesMatch(a, b, reach)) {
        return std::nullopt;
    }
    const auto there = largestWithin(a, b, reach);
    const auto back = there ? largestWithin(b, a, reach) : std::nullopt;
    if (!back) {
        return std::nullopt;
    }
    const bool ordered = a.patch < b.patch;
    const Side& first = ordered ? a : b;
    const Side& second = ordered ? b : a;
    return FoundGap{{first.patch, second.patch, std::max(*there, *back)}, first.number, second.number};
}

} // namespace

std::vector<BorderGap> borderGaps(const ModelFaces& model, const EdgeTable& edges, double reach) {
    std::vector<Side> sides = openSides(model, edges);
    std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) { return a.key < b.key; });
    // The window is a little wider than needed: keys are rounded.
    const double window = keySpread * reach * 1.001;
    std::vector<FoundGap> found;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        for (std::size_t j = i + 1; j < sides.size() && sides[j].key - sides[i].key <= window; ++j) {
            if (const auto gap = gapBetween(sides[i], sides[j], reach)) {
                found.push_back(*gap);
            }
        }
    }
    std::sort(found.begin(), found.end(), [](const FoundGap& a, const FoundGap& b) {
        return std::tie(a.gap.patch, a.gap.other, a.side, a.otherSide) <
               std::tie(b.gap.patch, b.gap.other, b.side, b.otherSide);
    });
    std::vector<BorderGap> gaps;
    for (const FoundGap& each : found) {
        gaps.push_back(each.gap);
    }
    return gaps;
}

} // namespace velmora

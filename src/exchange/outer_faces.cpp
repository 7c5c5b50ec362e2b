#include "outer_faces.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr std::size_t mostSides = 6;
constexpr std::int64_t noNode = -1;
using Sides = std::vector<std::vector<std::size_t>>;

/// The faces of an element, each turned so that it looks outwards when the element is right-handed.
const Sides& sidesOf(VolumeShape shape) {
    static const Sides tetrahedron = {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}};
    static const Sides pyramid = {{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}};
    static const Sides prism = {{0, 2, 1}, {3, 4, 5}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}};
    static const Sides brick = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
    switch (shape) {
    case VolumeShape::Tetrahedron:
        return tetrahedron;
    case VolumeShape::Pyramid:
        return pyramid;
    case VolumeShape::Prism:
        return prism;
    default:
        return brick;
    }
}

} // namespace

std::size_t cornersOf(VolumeShape shape) {
    constexpr std::array<std::size_t, 4> corners = {4, 5, 6, 8};
    return corners.at(static_cast<std::size_t>(shape));
}

std::vector<std::int64_t> withoutRepeats(std::span<const std::int64_t> corners) {
    std::vector<std::int64_t> result;
    for (const std::int64_t corner : corners) {
        if (result.empty() || result.back() != corner) {
            result.push_back(corner);
        }
    }
    while (result.size() > 1 && result.back() == result.front()) {
        result.pop_back();
    }
    return result;
}

void OuterFaces::add(VolumeShape shape, std::span<const std::int64_t> nodes) {
    const std::size_t element = elements_.size();
    elements_.push_back({shape, nodes_.size()});
    nodes_.insert(nodes_.end(), nodes.begin(), nodes.end());
    for (std::size_t side = 0; side < sidesOf(shape).size(); ++side) {
        const std::size_t number = element * mostSides + side;
        const std::vector<std::int64_t> face = faceAt(number);
        if (face.size() >= 3) {
            Seen seen = {{noNode, noNode, noNode, noNode}, number};
            std::copy(face.begin(), face.end(), seen.key.begin());
            std::sort(seen.key.begin(), seen.key.end());
            seen_.push_back(seen);
        }
    }
}

std::vector<std::int64_t> OuterFaces::faceAt(std::size_t number) const {
    const Element& element = elements_[number / mostSides];
    std::vector<std::int64_t> face;
    for (const std::size_t corner : sidesOf(element.shape)[number % mostSides]) {
        face.push_back(nodes_[element.first + corner]);
    }
    return withoutRepeats(face);
}

void OuterFaces::forEach(const std::function<void(std::span<const std::int64_t> face)>& take) {
    std::sort(seen_.begin(), seen_.end(), [](const Seen& a, const Seen& b) { return a.key < b.key; });
    std::vector<std::size_t> outer;
    for (std::size_t i = 0; i < seen_.size(); ++i) {
        const bool before = i > 0 && seen_[i - 1].key == seen_[i].key;
        const bool behind = i + 1 < seen_.size() && seen_[i + 1].key == seen_[i].key;
        if (!before && !behind) {
            outer.push_back(seen_[i].number);
        }
    }
    std::sort(outer.begin(), outer.end());
    for (const std::size_t number : outer) {
        take(faceAt(number));
    }
}

} // namespace velmora

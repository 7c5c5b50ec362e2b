#include "outer_faces.h"

#include <algorithm>
#include <bit>
#include <numeric>

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

// Faces of the same corners come into the same one of many short lists, chosen by a corner, so that what lies side by
// side in the file does so here; sorted by their corners they stand one behind the other then.
std::vector<std::size_t> OuterFaces::outerFaces(const ReportProgress& report) const {
    constexpr std::size_t step = 1 << 16;
    const std::size_t lists = std::bit_ceil(seen_.size() / 2 + 1);
    std::vector<std::size_t> ends(lists + 1, 0); // of the list before, as long as they are filled
    const auto listOf = [lists](const Seen& seen) { return static_cast<std::size_t>(seen.key.back()) & (lists - 1); };
    for (const Seen& seen : seen_) {
        ++ends[listOf(seen) + 1];
    }
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    std::vector<std::size_t> order(seen_.size());
    for (std::size_t i = 0; i < seen_.size(); ++i) {
        order[ends[listOf(seen_[i])]++] = i;
    }
    std::vector<std::size_t> outer;
    std::size_t begin = 0;
    for (std::size_t list = 0; list < lists; ++list) {
        const std::span<std::size_t> faces(order.data() + begin, ends[list] - begin);
        std::sort(faces.begin(), faces.end(),
                  [this](std::size_t a, std::size_t b) { return seen_[a].key < seen_[b].key; });
        const auto same = [&](std::size_t a, std::size_t b) {
            return a < faces.size() && b < faces.size() && seen_[faces[a]].key == seen_[faces[b]].key;
        };
        for (std::size_t i = 0; i < faces.size(); ++i) {
            if (!same(i - 1, i) && !same(i, i + 1)) {
                outer.push_back(seen_[faces[i]].number);
            }
        }
        begin = ends[list];
        if (report && list % step == 0) {
            report(static_cast<double>(list) / static_cast<double>(lists));
        }
    }
    std::sort(outer.begin(), outer.end());
    return outer;
}

void OuterFaces::forEach(const std::function<void(std::span<const std::int64_t> face)>& take,
                         const ReportProgress& report) {
    for (const std::size_t number : outerFaces(report)) {
        take(faceAt(number));
    }
}

} // namespace velmora

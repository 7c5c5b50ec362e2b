#include "EdgeTable.h"

#include <algorithm>

namespace velmora {

EdgeTable::EdgeTable(std::int32_t pointCount, const std::vector<Face>& faces) {
    first_.assign(static_cast<std::size_t>(pointCount) + 1, 0);
    for (const Face& face : faces) {
        for (const FaceEdge& edge : FaceEdges(face)) {
            ++first_[static_cast<std::size_t>(std::min(edge.from, edge.to)) + 1];
        }
    }
    for (std::size_t point = 1; point < first_.size(); ++point) {
        first_[point] += first_[point - 1];
    }
    uses_.resize(first_.back());
    std::vector<std::size_t> next(first_.begin(), first_.end() - 1);
    for (std::size_t face = 0; face < faces.size(); ++face) {
        for (const FaceEdge& edge : FaceEdges(faces[face])) {
            const auto [lower, higher] = std::minmax(edge.from, edge.to);
            const std::uint32_t down = edge.from > edge.to ? 1 : 0;
            uses_[next[static_cast<std::size_t>(lower)]++] = {higher, 2 * static_cast<std::uint32_t>(face) + down};
        }
    }
    for (std::size_t point = 0; point + 1 < first_.size(); ++point) {
        std::sort(uses_.begin() + static_cast<std::ptrdiff_t>(first_[point]),
                  uses_.begin() + static_cast<std::ptrdiff_t>(first_[point + 1]),
                  [](const EdgeUse& a, const EdgeUse& b) {
                      return a.higher != b.higher ? a.higher < b.higher : a.use < b.use;
                  });
    }
}

bool EdgeTable::isOpen(std::int32_t a, std::int32_t b) const {
    const auto [lower, higher] = std::minmax(a, b);
    const std::span<const EdgeUse> all = usesFrom(static_cast<std::size_t>(lower));
    const auto found = std::partition_point(all.begin(), all.end(),
                                            [wanted = higher](const EdgeUse& use) { return use.higher < wanted; });
    const bool occurs = found != all.end() && found->higher == higher;
    return occurs && (found + 1 == all.end() || (found + 1)->higher != higher);
}

/// How many of the first entries belong to the edge of the very first.
std::size_t EdgeTable::sameEdge(std::span<const EdgeUse> uses) {
    std::size_t count = 1;
    while (count < uses.size() && uses[count].higher == uses.front().higher) {
        ++count;
    }
    return count;
}

} // namespace velmora

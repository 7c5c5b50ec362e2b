#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "model_faces.h"

namespace velmora {

/// One occurrence of an edge in the outline of a face.
struct EdgeUse {
    std::int32_t higher = 0; ///< the edge's point of the higher number
    std::uint32_t use = 0;   ///< twice the face's number, plus 1 when the outline runs from the higher number

    std::uint32_t face() const { return use / 2; }
    bool runsDown() const { return use % 2 != 0; }
};

/// The edges of all faces, each with its occurrences, sorted by their faces.
class EdgeTable {
public:
    EdgeTable(std::int32_t pointCount, const std::vector<Face>& faces);

    /// Calls visit(lower, higher, uses) for each edge, where `uses` is a span of its occurrences.
    template <class Visit>
    void forEach(Visit visit) const {
        for (std::size_t lower = 0; lower + 1 < first_.size(); ++lower) {
            for (std::span<const EdgeUse> rest = usesFrom(lower); !rest.empty();) {
                const std::span<const EdgeUse> edge = rest.first(sameEdge(rest));
                visit(static_cast<std::int32_t>(lower), edge.front().higher, edge);
                rest = rest.subspan(edge.size());
            }
        }
    }

    /// Whether the edge between two points, in either direction, occurs once.
    bool isOpen(std::int32_t a, std::int32_t b) const;

private:
    std::span<const EdgeUse> usesFrom(std::size_t lower) const {
        return std::span(uses_).subspan(first_[lower], first_[lower + 1] - first_[lower]);
    }
    static std::size_t sameEdge(std::span<const EdgeUse> uses);

    std::vector<std::size_t> first_; ///< for each point the first of its entries in uses_, and their number behind
    std::vector<EdgeUse> uses_;      ///< by the edge's point of the lower number, then by the higher one
};

} // namespace velmora

#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "pick_boxes.h"
#include "picking.h"

namespace velmora {

/// The cell of a patch that a line meets first: its corner with the lowest numbers, and where the line meets it.
struct FirstCell {
    std::int32_t patch = -1;
    std::int32_t section = -1;
    std::int32_t point = -1;
    zVec<double> place;
};

/// Boxes over the patches of a model and over tiles of their points, so that a pick looks only at what lies near the
/// line of sight. Every answer is the one of the plain rule, to the last bit.
class PatchIndex {
public:
    /// Takes the model in. Linear in the points.
    void takeIn(const PatchList& list);

    /// The same as nearestGridPoint over the model that was taken in. What it costs grows with the patches and hardly
    /// with the points.
    std::optional<NearestPoint> nearest(const PatchList& list, const PixelLine& line, const PickFilter& filter) const;

    /// The first patch in list order with a triangle hit that no other patch hides; -1 for none. Each cell of a patch
    /// is two triangles; a hit is hidden by a hit of another patch that lies nearer to the line's near point.
    std::int32_t pickPatch(const PatchList& list, const PixelLine& line) const;

    /// What the line meets first beyond its near point; none when it meets nothing.
    std::optional<FirstCell> firstCell(const PatchList& list, const PixelLine& line) const;
    /// Whether a cell lies before `point`, seen along the line, by more than `margin`.
    bool hides(const PatchList& list, const PixelLine& line, const zVec<double>& point, double margin) const;

private:
    /// A tile: points n0 to n1 of m0 to m1, both included, of one patch; neighbouring tiles share a row of points. Or
    /// what holds the tiles, or such nodes, from firstChild up to lastChild.
    struct Node {
        std::int32_t n0 = 0;
        std::int32_t n1 = 0;
        std::int32_t m0 = 0;
        std::int32_t m1 = 0;
        PickBox box;
        std::size_t firstChild = 0;
        std::size_t lastChild = 0;

        bool isTile() const { return firstChild == lastChild; }
    };
    /// A triangle that may be hit outside its box, for what its corners do to the inside test: tested by every line.
    struct OddTriangle {
        std::int32_t n = 0;
        std::int32_t m = 0;
        int half = 0;
    };
    struct PatchEntry {
        std::optional<std::size_t> root; ///< none for a patch without points
        std::size_t firstOdd = 0;
        std::size_t lastOdd = 0;
    };

    void addPatch(const Patch& patch);
    void addTile(const Patch& patch, Node tile);
    /// Nodes above those from `first` on, up to one root.
    void addNodesAbove(std::size_t first);
    void addOddTriangles(const Patch& patch);
    class PointSearch;
    template <class Visit>
    bool anyTile(const Node& node, const zVec<double>& origin, const zVec<double>& direction, Visit visit) const;
    template <class Visit>
    bool anyHit(const PatchList& list, std::size_t patch, const zVec<double>& origin, const zVec<double>& direction,
                Visit visit) const;
    bool isVisible(const PatchList& list, std::size_t patch, const zVec<double>& hit,
                   const zVec<double>& direction) const;

    std::vector<PatchEntry> patches_;
    std::vector<Node> nodes_;
    std::vector<OddTriangle> odd_;
};

} // namespace velmora

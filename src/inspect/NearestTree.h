#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "TriangleTree.h"
#include "close_boxes.h"
#include "zVec.h"

namespace velmora {

/// Finds the distance from a point to the nearest place of many triangles: the result is that of nearestOnTriangle for
/// every triangle, to the bit, as the tree only spares those that are too far away.
class NearestTree {
public:
    /// Triangles with a corner that is not finite are left out; segments and points as triangles are taken. n log n.
    explicit NearestTree(const TriangleMesh& mesh);

    bool empty() const { return triangles_.empty(); }
    /// Not a number for a point that is not finite; infinite without a triangle.
    double distanceFrom(const zVec<double>& point) const;

private:
    static constexpr std::size_t width = 4;

    using Triangle = std::array<zVec<double>, 3>;
    using Box = FrameBox;
    /// Four boxes about the tree's centre in multiples of its radius, and what stands in each.
    struct alignas(64) Node {
        std::array<std::array<float, width>, 3> middle{};
        std::array<std::array<float, width>, 3> half{};
        std::array<std::int32_t, width> child{}; ///< a node, a triangle by its complement, or none
    };
    /// A triangle, or a piece of one, while the tree is built.
    struct Seed {
        std::array<float, 3> middle;
        std::int32_t part; ///< a triangle, or a piece by its complement
    };
    struct Search;

    Box boxOf(std::int32_t part) const;
    std::int32_t triangleOfPart(std::int32_t part) const;
    void takeTriangles(const TriangleMesh& mesh);
    std::vector<std::int32_t> parts();
    std::vector<Seed> seeds();
    Box build(std::int32_t node, Seed* begin, Seed* end);
    void storeBox(Node& node, std::size_t slot, const Box& box) const;
    void look(const Node& node, Search& search) const;

    std::vector<Triangle> triangles_;
    CloseBoxes close_; ///< its pieces only while the tree is built
    std::vector<Node> nodes_;
    std::array<double, 3> centre_{};
    double scale_ = 0.0;     ///< one by the radius, half of the box's longest side
    double magnitude_ = 0.0; ///< largest coordinate
};

} // namespace velmora

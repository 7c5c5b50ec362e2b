#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "close_boxes.h"
#include "zVec.h"

namespace velmora {

/// Triangles over shared points: three coordinates a point, three point numbers from 0 a triangle.
struct TriangleMesh {
    std::vector<double> coordinates;
    std::vector<std::int32_t> corners;

    std::int32_t triangleCount() const { return static_cast<std::int32_t>(corners.size() / 3); }
    void addPoint(const zVec<double>& p) { coordinates.insert(coordinates.end(), {p.x, p.y, p.z}); }
    void addTriangle(std::int32_t a, std::int32_t b, std::int32_t c) { corners.insert(corners.end(), {a, b, c}); }
    /// The three coordinates of corner 0, 1 or 2.
    const double* corner(std::int32_t triangle, std::size_t number) const {
        const auto entry = 3 * static_cast<std::size_t>(triangle) + number;
        return coordinates.data() + 3 * static_cast<std::size_t>(corners[entry]);
    }
};

/// A triangle that a line hits, by its number from 0, and where.
struct LineHit {
    std::int32_t triangle = 0;
    zVec<double> place;
};

/// Finds the triangles that an infinite line hits, by hitsWithinReach itself: the tree only spares the tests that
/// cannot succeed, so the result is that of testing every triangle.
class TriangleTree {
public:
    /// The mesh's corners must name points that exist. n log n.
    explicit TriangleTree(TriangleMesh mesh);

    const TriangleMesh& mesh() const { return mesh_; }

    /// Fills `hits`, emptied first, by rising triangle number. `direction` is of unit length; one that is not a number
    /// finds none.
    void findHits(const zVec<double>& direction, const zVec<double>& origin, std::vector<LineHit>& hits) const;

private:
    static constexpr std::size_t width = 4;

    /// Four boxes about the tree's centre, and what stands in each: an inner node (its number), triangles (a stretch
    /// of order_) or nothing.
    struct alignas(64) Node {
        std::array<std::array<float, width>, 3> middle{};
        std::array<std::array<float, width>, 3> half{};
        std::array<std::int32_t, width> first{};
        std::array<std::int32_t, width> count{}; ///< triangles; inner for a node, none for nothing
    };
    using Box = FrameBox;
    struct Keyed {
        std::uint64_t key;
        std::int32_t triangle;
        std::int32_t piece; ///< none for a triangle that is held by one box
    };
    struct Ray;

    std::array<zVec<double>, 3> cornersOf(std::int32_t triangle) const;
    void keyTriangles(const std::vector<std::int32_t>& bounded);
    Box boxOf(const Keyed& entry, double margin) const;
    Box boxOfAll() const;
    void sortAlongCurve();
    void sortByKey();
    Box build(std::int32_t node, std::int32_t begin, std::int32_t end);
    std::int32_t splitOf(std::int32_t begin, std::int32_t end) const;
    Box fillSlot(std::int32_t node, std::size_t slot, std::int32_t begin, std::int32_t end);
    void storeBox(Node& node, std::size_t slot, const Box& box) const;
    void walk(const Ray& ray, std::vector<LineHit>& hits) const;
    void judge(std::int32_t triangle, const Ray& ray, std::vector<LineHit>& hits) const;

    TriangleMesh mesh_;
    std::vector<std::int32_t> anywhere_; ///< triangles that every line is tested with
    std::vector<double> margins_;        ///< while the tree is built
    std::vector<Keyed> keyed_;           ///< while the tree is built
    CloseBoxes close_;                   ///< its pieces only while the tree is built
    std::vector<std::int32_t> order_;    ///< the other triangles along the space-filling curve, once for each piece
    std::vector<Node> nodes_;
    std::array<double, 3> centre_{};
    double radius_ = 0.0;    ///< of a ball about the centre that holds all boxes
    double magnitude_ = 0.0; ///< largest coordinate of all boxes
};

} // namespace velmora

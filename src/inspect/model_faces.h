#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "PatchList.h"
#include "SharedPoints.h"
#include "zRegion.h"

namespace velmora {

/// A cell (four corners) or a triangle (three, the fourth being -1) by the numbers of its points.
struct Face {
    std::array<std::int32_t, 4> corners{-1, -1, -1, -1};

    bool isCell() const { return corners[3] >= 0; }
};

/// An edge of a face in the direction in which its outline runs.
struct FaceEdge {
    std::int32_t from = 0;
    std::int32_t to = 0;
};

/// The edges of a face, in the order of its corners. Two equal corners one behind the other make no edge, and a face
/// with fewer than three different points has none.
class FaceEdges {
public:
    explicit FaceEdges(const Face& face);
    const FaceEdge* begin() const { return edges_.data(); }
    const FaceEdge* end() const { return edges_.data() + count_; }

private:
    std::array<FaceEdge, 4> edges_;
    std::size_t count_ = 0;
};

/// Cell i, j of a patch stands between sections i and i + 1 and points j and j + 1 and has the corners (i, j),
/// (i + 1, j), (i + 1, j + 1), (i, j + 1). A patch whose sections differ in their numbers of points has no cells.
struct PatchCells {
    std::int32_t sections = 0; ///< rows of cells, plus one; 0 for a patch without cells
    std::int32_t points = 0;   ///< cells of a row, plus one
    std::size_t firstFace = 0;
    std::size_t firstPoint = 0; ///< of the patch's stretch of ModelFaces::patchPoints

    std::size_t cellCount() const {
        return sections < 2 ? 0 : static_cast<std::size_t>(sections - 1) * static_cast<std::size_t>(points - 1);
    }
};

/// All cells and triangles of a model over numbered points: the cells patch by patch, in each section by section, then
/// the triangles zone by zone. A triangle that names a node that is not there is left out.
struct ModelFaces {
    SharedPoints points;
    std::vector<Face> faces;
    std::vector<PatchCells> patches;        ///< one for each patch
    std::vector<std::int32_t> patchPoints;  ///< the numbers of the points of patches with cells, section by section
    std::vector<std::size_t> firstTriangle; ///< of each zone in `faces`, and behind them the number of faces

    /// The number of the patch's point.
    std::int32_t patchPoint(const PatchCells& patch, std::int32_t section, std::int32_t point) const {
        return patchPoints[patch.firstPoint +
                           static_cast<std::size_t>(section) * static_cast<std::size_t>(patch.points) +
                           static_cast<std::size_t>(point)];
    }
};

ModelFaces modelFaces(const PatchList& patches, const zRegion_fe& region);

/// (b - a) x (c - a): twice the area of the triangle a, b, c along its normal.
inline zVec<double> doubleArea(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c) {
    return cross(b - a, c - a);
}

} // namespace velmora

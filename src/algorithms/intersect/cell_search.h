#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "PatchList.h"
#include "TriangleTree.h"
#include "target_mesh.h"

namespace velmora {

/// A line from one point to another meets a cell.
struct PiercedCell {
    CellAddress cell;
    zVec<double> place;
};

/// Finds the cells that pieces of lines pierce, in patches that do not change while it is in use.
class CellTree {
public:
    /// Takes the patches that `left` does not mark; one mark a patch.
    CellTree(const PatchList& patches, const std::vector<bool>& left)
        : cells_(patches, left), tree_(cells_.takeMesh()) {}

    /// The first cell, in the order of patches, sections and points, that the line from `from` to `to` hits between
    /// them; of its two triangles the first one that it does.
    std::optional<PiercedCell> pierced(const zVec<double>& from, const zVec<double>& to) const;

private:
    CellMesh cells_;
    TriangleTree tree_;
};

/// A place on an edge of a grid that begins at the point addressed.
struct EdgePlace {
    CellAddress begin;
    double t = 0.0;
};

/// A copy of patches that grows section by section and line by line, and finds points, edges and cells in them. All
/// searches give the first in the order of patches, sections and points; boxes about the sections spare most of the
/// work.
class GrowingGrid {
public:
    /// Searches pass over the patches that `left` marks; one mark a patch.
    GrowingGrid(PatchList patches, std::vector<bool> left);

    const PatchList& patches() const { return patches_; }
    PatchList takePatches() { return std::move(patches_); }

    /// The point that `samePoint` takes for `p`.
    std::optional<CellAddress> pointAt(const zVec<double>& p, double tolerance) const;
    /// The edge from section N to N + 1 at point M, or from point M to M + 1 of section N, that `p` is on.
    std::optional<EdgePlace> edgeAcross(const zVec<double>& p, double tolerance) const;
    std::optional<EdgePlace> edgeAlong(const zVec<double>& p, double tolerance) const;
    /// The same as CellTree's.
    std::optional<PiercedCell> pierced(const zVec<double>& from, const zVec<double>& to) const;

    void setPoint(const CellAddress& at, const zVec<double>& p);
    /// Puts a section between N and N + 1.
    void insertSection(std::int32_t K, std::int32_t N, PointList section);
    /// Puts `points`, one a section, between the points M and M + 1; a section without point M + 1 gets none.
    void insertLine(std::int32_t K, std::int32_t M, const PointList& points);

private:
    struct Box {
        std::array<double, 3> lower{};
        std::array<double, 3> upper{};

        Box();
        void take(const zVec<double>& p);
        void take(const Box& other);
        double largest() const;
        bool meets(const Box& other, double slack) const;
    };
    /// What is known of a section, and of the row of cells behind it.
    struct Section {
        Box box;
        bool anywhere = false; ///< a triangle of the row can be hit anywhere
    };

    template <class Look>
    bool lookThrough(Look look) const;
    void measureSection(std::int32_t K, std::int32_t N);
    void measureRow(std::int32_t K, std::int32_t N);
    bool hasOpenCell(const Patch& patch, std::int32_t N, std::int32_t M) const;
    std::optional<PiercedCell> piercedInRow(std::int32_t K, std::int32_t N, const zVec<double>& from,
                                            const zVec<double>& to, const Box& segment, double slack) const;

    PatchList patches_;
    std::vector<bool> left_;
    std::vector<std::vector<Section>> sections_;
};

} // namespace velmora

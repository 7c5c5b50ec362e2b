#pragma once

#include <cstdint>
#include <vector>

#include "PatchList.h"
#include "TriangleTree.h"
#include "zRegion.h"

namespace velmora {

/// A cell between sections N and N + 1 and points M and M + 1 of patch K.
struct CellAddress {
    std::int32_t K = 0;
    std::int32_t N = 0;
    std::int32_t M = 0;
};

/// The number of cells between two sections: a cell has all four corners, so the shorter section decides.
std::int32_t cellCount(const PointList& section, const PointList& next);

/// The cells of patches as triangles, cell by cell in order: triangle 2 c is P[N][M], P[N][M+1], P[N+1][M] of cell c,
/// triangle 2 c + 1 is P[N][M+1], P[N+1][M], P[N+1][M+1].
class CellMesh {
public:
    /// Takes the patches that `left` does not mark; one mark a patch.
    CellMesh(const PatchList& patches, const std::vector<bool>& left);

    /// Gives the mesh away; the addresses stay.
    TriangleMesh takeMesh() { return std::move(mesh_); }
    /// The cell that a triangle of the mesh belongs to.
    CellAddress cellOf(std::int32_t triangle) const;

private:
    struct Row {
        std::int32_t firstCell;
        std::int32_t K;
        std::int32_t N;
    };

    void addPatch(std::int32_t K, const Patch& patch);

    TriangleMesh mesh_;
    std::vector<Row> rows_; ///< by rising firstCell
    std::int32_t cells_ = 0;
    std::int32_t points_ = 0;
};

/// The elements of zones that have three corners, zone by zone in order. `left` marks the zones to be passed over; one
/// mark a zone.
TriangleMesh zoneMesh(const zRegion_fe& region, const std::vector<bool>& left);

} // namespace velmora

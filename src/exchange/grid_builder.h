#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "FileRecord.h"
#include "exchange_model.h"
#include "mesh_builder.h"

namespace velmora {

/// A block of i by j by k points, the first index fastest, whole: each array holds that many values.
struct GridBlock {
    std::int64_t i = 1;
    std::int64_t j = 1;
    std::int64_t k = 1;
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> z;

    std::int64_t pointCount() const { return i * j * k; }
    bool isVolume() const { return i > 1 && j > 1 && k > 1; }
};

/// What became of the blocks of a file.
struct GridTally {
    std::int64_t notFinite = 0; ///< blocks left out for it
    std::int64_t volumes = 0;   ///< blocks left out because faces were not asked for
    std::int64_t hollow = 0;    ///< blocks of which only the faces are kept
    std::int64_t triangles = 0; ///< grids that became triangles
};

/// The patches of a block: one of j sections of i points for a surface, an index of length 1 being dropped, or, if they
/// are asked for, the six faces of a volume in the order i, j, k, low before high, which all look outwards when the
/// block is right-handed. None, and a count in `tally`, when it holds coordinates that are not finite, or is a volume
/// without that. Coordinates are scaled.
PatchList patchesOf(const GridBlock& block, const ImportOptions& options, GridTally& tally);

/// Counts `patches`, `sections` and `points` of what a block gives or would give.
void countPatches(const PatchList& patches, Counts& counts);
void countBlock(const GridBlock& block, Counts& counts);

/// Tells of what was left out.
void tellGrids(const GridTally& tally, const ImportOptions& options, FileRead& record);

/// The triangles of a regular patch, of which the corners a (i, j), b (i+1, j), c (i+1, j+1), d (i, j+1) of each cell
/// give (a, c, b) and (a, d, c), i counting sections and j points: so the side that the window shows as the front is
/// outside. A patch that is not regular, or has no cell, gives none.
std::unique_ptr<zBlock_fe> trianglesOfPatch(const Patch& patch, const std::string& title);

/// Puts the triangles of patches behind those of a mesh, whose zones are the caller's. False when there are none.
bool addTriangles(const PatchList& patches, FileMesh& mesh);

} // namespace velmora

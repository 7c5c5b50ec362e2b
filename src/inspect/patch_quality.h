#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "PatchList.h"
#include "model_faces.h"

namespace velmora {

/// Whether two neighbouring sections of a patch have two points each: there is something to be drawn as a surface.
bool hasCell(const PatchList& patches);

/// A point of a patch by its section and its place in it, from 0.
struct PatchPlace {
    std::int32_t section = 0;
    std::int32_t point = 0;
};

/// The worst value of a kind and where it stands first: sections before lines, in each curve by rising place, cells
/// section by section.
struct WorstValue {
    std::optional<double> value; ///< none when nothing has such a value
    std::optional<PatchPlace> at;
};

/// How many there are of a kind, and the first of them.
struct FoundPlaces {
    std::int64_t count = 0;
    std::optional<PatchPlace> at;
};

/// The quality of a patch's grid. Steps and growth are taken along its sections, and in a patch with sections of equal
/// length along its lines; the others are of cells.
struct PatchQuality {
    double area = 0.0;
    WorstValue smallestStep;    ///< at its first point
    WorstValue largestStep;     ///< at its first point
    WorstValue growth;          ///< of neighbouring steps, at the point between; 1 where there is none
    WorstValue aspect;          ///< longest edge of a cell by its shortest one, edges of 0 left out; at its corner a
    WorstValue skew;            ///< largest |angle - 90 degrees| / 90 degrees of a cell's corners
    WorstValue warp;            ///< degrees between the normals of a cell's two triangles
    FoundPlaces repeatedPoints; ///< that equal the one before them in their section or line
    FoundPlaces collapsedCells; ///< with an area of exactly 0
    /// Cells whose triangles point against each other, or that point against a cell of the patch at one of their edges.
    FoundPlaces foldedCells;
};

/// `number`: which of the model's patches `patch` is; `folded`: what foldedCells says of the model.
PatchQuality patchQuality(const Patch& patch, std::size_t number, const ModelFaces& model,
                          const std::vector<bool>& folded);

/// What can be told of each cell, or of each point, of a patch.
enum class GridValue {
    Aspect, ///< of a cell, as are the next two
    Skew,
    Warp,
    Growth, ///< of a point: the largest in its section and its line, 1 where there is none
};
inline constexpr GridValue gridValueKinds[] = {GridValue::Aspect, GridValue::Skew, GridValue::Warp, GridValue::Growth};

inline bool isOfCells(GridValue kind) {
    return kind != GridValue::Growth;
}

/// The values of `patch`, number `number` of the model: one for each cell, or for each point, section by section. What
/// a cell has not is not a number.
std::vector<double> gridValues(GridValue kind, const Patch& patch, std::size_t number, const ModelFaces& model);

} // namespace velmora

#pragma once

#include <cstdint>

#include "PatchList.h"

namespace velmora {

/// Gives every section of every patch `points` points, at equal steps along the spline through its points or along its
/// chords, and turns the sections of a patch to run the same way. Of a section of more than three points those closer
/// than `coincidentDistance` to the next are left out first. A section of one point becomes copies of it, one without
/// points copies of the origin. With `points` below 2 the sections are empty. `values`, if there are any, have the
/// shape of `lines`; they go along with the points.
PatchList linesToGrid(const PatchList& lines, std::int32_t points, bool spline, PatchList* values = nullptr);

/// Reverses `next` if it then lies closer to `previous`, by the sum of the squared distances point by point, and tells
/// whether it did. A tie leaves it, as do lists of different lengths or without points.
bool alignWithPrevious(const PointList& previous, PointList& next);

} // namespace velmora

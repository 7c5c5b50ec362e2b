#pragma once

#include <cstdint>
#include <vector>

#include "PatchList.h"
#include "progress.h"

namespace velmora {

/// Gives every section of every patch `points` points, at equal steps along the spline through its points or along its
/// chords, and turns the sections of a patch to run the same way. Of a section of more than three points those closer
/// than `coincidentDistance` to the next are left out first. A section of one point becomes copies of it, one without
/// points copies of the origin. With `points` below 2 the sections are empty. `values`, if there are any, have the
/// shape of `lines`; they go along with the points.
PatchList linesToGrid(const PatchList& lines, std::int32_t points, bool spline, PatchList* values = nullptr,
                      const ReportProgress& report = {});

/// Reverses `next` if it then lies closer to `previous`, by the sum of the squared distances point by point, and tells
/// whether it did. A tie leaves it, as do lists of different lengths or without points.
bool alignWithPrevious(const PointList& previous, PointList& next);

/// Lets each section of a patch follow the one before. A closed one begins at the point, and runs the way, for which
/// the sum of the distances from its points to those of the section before is least; an open one is turned round if
/// that makes the sum less. A tie leaves it as it is, and so does a section before of another number of points. A
/// section of more than three points is closed when its first and last one are the same point by `samePoint`; that
/// point counts once. Sections of n points that resemble each other take about n to the power of 1.5 distances, others
/// n squared at worst. `values`, if there are any, have the shape of `patch`; they go along with the points.
void alignSections(Patch& patch, Patch* values = nullptr, const ReportProgress& report = {});

/// The sections of a patch, from 0, that begin elsewhere along the ring than the one before, by more than an eighth of
/// it, or run the other way: those that alignSections would turn with a gain of a tenth of the distances at least. A
/// grid twists there. Of long sections every so manieth point is looked at.
std::vector<std::int32_t> twistedSections(const Patch& patch);

} // namespace velmora

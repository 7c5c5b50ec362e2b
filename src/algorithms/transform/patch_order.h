#pragma once

#include <vector>

#include "PatchList.h"

namespace velmora {

/// Whether all sections have as many points as the first: only such a patch can be transposed.
bool hasEqualSections(const Patch& patch);

/// Sections and lines exchanged: point i of section j of the result is point j of section i. A patch of sections
/// without points becomes one without sections. The patch must have equal sections; of others the points past the
/// end of the shortest section are left out.
Patch transposed(const Patch& patch);

/// Transposes the patches that `chosen` marks, one mark a patch. False, and nothing is changed, when one of them has
/// sections of different lengths. A patch without points stays as it is, as it could not be brought back.
bool transposePatches(PatchList& list, const std::vector<bool>& chosen);

/// Turns round the order of the sections.
void reverseSections(Patch& patch);
/// Turns round the order of the points in each section.
void reverseLines(Patch& patch);

/// Thins each section by every second point: points 0, 2, 4 and so on, and the last point in place of the last but
/// one. A section of 2 points keeps its last point alone.
void weed(Patch& patch);

/// A new section beyond the first of the patch, or beyond the last: as far away as `coefficient` times the step to
/// the neighbour. False, and nothing is changed, with fewer than 2 sections. The new section has as many points as
/// the shorter of the two.
bool extrapolate(Patch& patch, bool beyondLast, double coefficient);

/// The body of revolution of `profile` about the x axis: a section of 73 points for each point, 5 degrees apart, from
/// -90 to 270 degrees.
Patch revolved(const PointList& profile);

} // namespace velmora

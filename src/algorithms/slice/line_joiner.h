#pragma once

#include "PatchList.h"
#include "progress.h"
#include "slice_points.h"

namespace velmora {

/// What came of the lines of all planes.
struct JoinedLines {
    Patch sections;
    int left = 0; ///< lines that came into none
};

/// Joins lines of one plane whose ends are not farther apart than `precision`; `axis` is the one across the planes, and
/// all points of a line have one coordinate along it.
///
/// The first line of a plane is the first to grow. It takes the first line in order of which an end is near to one of
/// its own: the first point to its last one, then last to last, first to first and last to first, itself being reversed
/// for the latter two, and the line taken for the second and the last; meeting points stay doubled. When none is near,
/// the last of the lines left in the plane grows next. Fewer than two lines stay as they are. No line may be empty.
///
/// Close to linear, unless lines of different planes count as one plane, or come in turns: quadratic then.
JoinedLines joinLines(const SliceLines& lines, int axis, double precision, const ReportProgress& report = {});

/// Reverses each section from the second on that starts in the direction in which the one before it starts less than
/// the way back from its last point does. Sections of one point turn nothing.
void orientLines(Patch& sections);

} // namespace velmora

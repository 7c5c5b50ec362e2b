#pragma once

#include "PatchList.h"
#include "progress.h"

namespace velmora {

/// Moves the points of the inner sections along them, to a spacing that goes over from the first section's to the last
/// one's. A border shorter than `shortLineLength` counts as equally spaced. `spline` false goes along the chords; it
/// becomes false, and stays so, at the first section with coincident neighbours among its first points, as many as the
/// patch has sections (more than 3). A section with a repeated point behind these goes along its chords by itself. Only
/// grids are changed.
void smoothSections(Patch& patch, bool& spline, const ReportProgress& report = {});

/// The same with lines for sections; all points of a line are looked at for coincident neighbours.
void smoothLines(Patch& patch, bool& spline, const ReportProgress& report = {});

} // namespace velmora

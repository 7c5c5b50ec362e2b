#pragma once

#include <cstdint>
#include <vector>

#include "PatchList.h"
#include "progress.h"

namespace velmora {

/// Where the lines of patches pierce the other ones: for each line the place, and the point of the line on either side.
struct PiercingPoints {
    PointList places;
    PointList before;
    PointList after;
};

enum class PiercingFailure {
    None,
    DoublePoint, ///< from some point on a line only repeats it
    NotFound,    ///< a line pierces nothing
};

struct PiercingOutcome {
    PiercingFailure failure = PiercingFailure::None;
    std::int32_t line = 0; ///< the line that failed and its patch
    std::int32_t patch = 0;
};

/// Follows each line of the patches `chosen` (numbers of patches that exist) from section to section until it pierces
/// one of the others, and appends what it finds to `piercing`. Ends at the first line that fails. A patch has as many
/// lines as its shortest section has points. `progress` may be empty.
PiercingOutcome findPiercingPoints(const PatchList& patches, const std::vector<std::int32_t>& chosen,
                                   PiercingPoints& piercing, const ReportProgress& progress);

/// Puts every piercing point on a grid point of the patches that `left` does not mark, inserting sections and lines
/// where there is none yet: first where a point is a grid point or on an edge across sections, then where it is on an
/// edge along a section, at last inside cells. `working` is left as the copy in which the last lines were inserted.
/// Gives the number of times that a cell was looked for and not found; such a point gets no place. `progress` may be
/// empty.
std::int32_t placePiercingPoints(PatchList& patches, const std::vector<bool>& left, const PiercingPoints& piercing,
                                 double tolerance, PatchList& working, const ReportProgress& progress);

} // namespace velmora

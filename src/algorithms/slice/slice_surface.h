#pragma once

#include <cstdint>

#include "PatchList.h"
#include "progress.h"
#include "zRegion.h"

namespace velmora {

/// Where the planes of a slicing stand, and how near line ends join.
struct SlicePlan {
    int axis = 0;            ///< 0 x, 1 y, 2 z
    std::int32_t planes = 0; ///< how many
    bool manual = false;     ///< the end planes stand at `lower` and `upper`; else at the body's ends
    double lower = 0.0;
    double upper = 0.0;
    double border = 0.0; ///< by how many steps the end planes move inward, when not manual
    double precision = 0.0001;
};

/// The section lines of a surface.
struct SliceResult {
    Patch sections;             ///< in the order of the planes, lines of one plane next to each other
    std::int32_t linesLeft = 0; ///< chained lines that came into no section
};

/// How many triangles a plane across `axis` between `lower` and `upper` cuts on the average: what the section of a
/// plane has of points. Beside the body 0.
double cutsOfPlane(const zRegion_fe& region, int axis, double lower, double upper);

/// Cuts the triangles of all zones by planes across an axis and chains the cuts of each plane to lines. Lines of one
/// plane whose ends are not farther apart than the precision are joined, and each section is turned to start in the
/// direction in which the one before it starts.
///
/// One plane makes no step, so it cuts nothing. Zones without coordinates are left out. A plane that only touches a
/// corner leaves a line of that point twice.
///
/// Takes the time of one look at each triangle and a constant one for each cut (planes times cut triangles in all), if
/// the cuts' ends are spread over the plane; memory, beside the result, for a few planes' cuts on each thread. Lines of
/// different planes that count as one plane (closer than 1e-10 of their coordinate) are joined in quadratic time.
SliceResult sliceSurface(const zRegion_fe& region, const SlicePlan& plan, const ReportProgress& progress = {});

} // namespace velmora

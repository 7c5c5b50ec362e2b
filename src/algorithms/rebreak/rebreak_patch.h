#pragma once

#include <cstdint>

#include "PatchList.h"

namespace velmora {

/// How the points of a curve are re-spaced. They count from 1.
struct RebreakLaw {
    bool linear = false;         ///< along the chords; else along the spline
    bool fitToLawCurve = false;  ///< the spacing of the law curve; else geometric by `compression`
    std::int32_t exactness = 0;  ///< percent of the curve's length, spline only
    std::int32_t newCount = 2;   ///< points of each new stretch, at least 2
    double compression = 1.0;    ///< last step divided by first step
    std::int32_t firstPoint = 1; ///< the stretch that is rebuilt; points outside it stay
    std::int32_t lastPoint = 1;
};

/// Which curves of a patch a law is for. They count from 0.
struct CurveRange {
    std::int32_t first = 0; ///< from here up to but not including `last`
    std::int32_t last = 0;
    /// The captured curve of the patch as it was before. Its spacing is one of equal steps when it has no length.
    std::int32_t lawCurve = 0;
};

/// Re-spaces sections of `patch`. A `firstPoint` beyond a section's end becomes its last point but one, a `lastPoint`
/// beyond it its last, and both stay so for the sections that follow and in `law`. Behind the new stretch come the old
/// points up to the length of the law section, or to the section's own end where that is shorter. A section whose
/// stretch has fewer than two points stays as it is. Indices outside the patch are cut to it.
void rebreakSections(Patch& patch, RebreakLaw& law, CurveRange curves);

/// Re-spaces lines of a regular `patch`: the sections of the stretch give way to `newCount` new ones. Lines outside
/// the range keep their points section by section. Both ends of the stretch are capped at the number of sections, in
/// `law` too. A stretch of fewer than two sections, or an irregular patch, stays as it is.
void rebreakLines(Patch& patch, RebreakLaw& law, CurveRange curves);

} // namespace velmora

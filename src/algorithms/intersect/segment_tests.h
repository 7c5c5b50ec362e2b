#pragma once

#include "same_point.h"
#include "zVec.h"

namespace velmora {

/// The distance of `q` from the infinite line through `a` and `b`; from `a` when the two are closer than `nearZero`.
double lineDistance(const zVec<double>& a, const zVec<double>& b, const zVec<double>& q);

/// Where a point stands to a segment.
struct SegmentPlace {
    enum Kind { Coincident, Off, On };
    Kind kind = Off;
    double t = 0.0; ///< the part of the segment up to the point, with On
};

/// Coincident: the segment is shorter than `nearZero`, or the point on its first end to within that. On: between the
/// ends and closer to the line than `tolerance` times the segment's length. On each axis the product of the distances
/// to both ends may come up to `nearZero`: of a direction in which the segment is flat rounding may leave anything.
SegmentPlace pointOnSegment(const zVec<double>& a, const zVec<double>& b, const zVec<double>& p, double tolerance);

/// Whether a hit of the line from `a` to `b` counts as lying between them: the same point as one of the two, or on each
/// axis between them by the same products.
bool liesBetween(const zVec<double>& hit, const zVec<double>& a, const zVec<double>& b);

/// How far outside the box of a and b a point can be, on each axis, that `pointOnSegment` or `liesBetween` accepts.
double betweenSlack(const zVec<double>& a, const zVec<double>& b);

/// How far apart, on each axis, points can be that `samePoint` takes for the same as `p`; infinite for a tolerance of
/// one half or more.
double samePointReach(const zVec<double>& p, double tolerance);

} // namespace velmora

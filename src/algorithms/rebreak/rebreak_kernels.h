#pragma once

#include <cstdint>

namespace velmora {

// Re-spacing of the points of a polyline. Every kernel reads n points from x, y, z and writes m points to outX, outY,
// outZ, which the caller has made large enough and which must not overlap the input. No kernel fails: the results tell
// which way a call ended and may be ignored.

/// `lawKind` of `SplineRebreakLaw`: steps in geometric progression, last divided by first = compression.
inline constexpr int lawCompression = 1;
/// `lawKind` of `SplineRebreakLaw`: positions taken from an array. Any kind but these two means equal steps.
inline constexpr int lawPrescribed = 3;

/// Re-spaces by equal steps along the spline through the points, then fits the result in a band of `exactness` percent
/// of the polyline's length in each coordinate.
///
/// With n or m below 4 the points come from `LinearRebreak` with compression 1; with n below 2 nothing is written. A
/// polyline of no length gives m copies of its first point. Otherwise coincident neighbours must have been removed:
/// they divide by zero. Always returns 1. Linear in n + m.
int SplineRebreak(const double* x, const double* y, const double* z, std::int32_t n, double* outX, double* outY,
                  double* outZ, std::int32_t m, double exactness);

/// Re-spaces along the spline through the points by a law, then fits the result in a band as `SplineRebreak` does.
///
/// With `lawPrescribed` the m entries of `law` are divided in place by the last one, and are then the targets in parts
/// of the length; a null `law` means equal steps. With n or m below 4, or a polyline shorter than `shortLineLength`,
/// the points come from `LinearRebreak` with compression 1, and `law` is neither read nor changed; with n below 2
/// nothing is written. Coincident neighbours divide by zero. Always returns 1. Linear in n + m while the law rises.
int SplineRebreakLaw(const double* x, const double* y, const double* z, std::int32_t n, double* outX, double* outY,
                     double* outZ, std::int32_t m, double exactness, int lawKind, double compression, double* law);

/// Re-spaces along the chords by steps in geometric progression; `compression`, clamped to [`compressionMin`,
/// `compressionMax`], is the last step divided by the first. The last output is exactly the last input point.
///
/// A polyline not longer than `coincidentDistance` gives m copies of its first point. Returns 0, or 1 when m is below 2
/// or n below 1 and nothing is written. Linear in n + m.
int LinearRebreak(const double* x, const double* y, const double* z, std::int32_t n, double* outX, double* outY,
                  double* outZ, std::int32_t m, double compression);

/// Re-spaces along the chords to the m positions law[k]/law[m-1] in parts of the length; law[0] is not read, the first
/// output is the first point. The law may fall. Where a target lies behind the last point, that output is the last
/// point and those after it are not written.
///
/// A polyline not longer than `coincidentDistance` gives m copies of its first point. Returns 0, or 1 when n or m is
/// below 2 and nothing is written. Linear in n + m while the law rises; an output that falls costs log n.
int LinearRebreakLaw(const double* x, const double* y, const double* z, std::int32_t n, double* outX, double* outY,
                     double* outZ, std::int32_t m, const double* law);

} // namespace velmora

#pragma once

#include <cstdint>

namespace velmora {

// No command calls the first two: FitSplineInBand works on its knots alone. They stay for callers who look at the
// spline that a fit left.

/// As `SplineMoments`, but on arrays that stay where they are: writes only the n second derivatives.
void BandMoments(std::int32_t n, const double* t, const double* y, double* momentsOut, std::int32_t capacity);

/// Value, first and second derivative at the parameter s of the spline through (t[i], y[i]), i from 0 to n-1, with the
/// moments from `BandMoments`.
///
/// s belongs to the first interval that ends at or behind it, to the last one if there is none. One point gives its
/// value and no slope or curvature; with no point nothing is written. Linear in n.
void BandSplineAt(std::int32_t n, const double* t, const double* y, const double* moments, double s, double& value,
                  double& slope, double& curvature);

/// The spline of least bending that stays in the band y[i] plus or minus halfWidth[i] at each of the n parameters t[i].
///
/// The values of that spline at t go to `out`, which may be the same array as `y`. A point with a half-width not above
/// `bandFreeTolerance` keeps its value. The pinned points, of which at most `capacity` are held, are the spline's
/// knots. The first and the last knot stay pinned whatever their half-width; pinned points that found no room among the
/// knots do not move. Without any pinned point at the start every point becomes one, and the fit goes on from there.
/// With n below 1 nothing is written and the result is 0.
///
/// Returns 0 when it ended without pinning any point on the way, otherwise 1. At most eleven passes, each of n log n or
/// better.
int FitSplineInBand(std::int32_t n, const double* t, const double* y, const double* halfWidth, double* out,
                    std::int32_t capacity);

} // namespace velmora

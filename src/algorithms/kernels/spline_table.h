#pragma once

#include <cstdint>

namespace velmora {

// No command calls these two: re-spacing shares one SplineSystem among the three coordinates. They stay as the plain
// way to a spline for other callers.

/// The cubic spline through (t[i], y[i]), i from 0 to n-1.
///
/// Copies t and y to `knotsOut` and `valuesOut` and leaves the second derivatives in `momentsOut`; that of the first
/// point is 0, that of the last is minus half that of the point before it. The output arrays hold `capacity` elements
/// each: with n above it, or below 1, nothing is written. Fewer than three points have no bending, all moments 0. Equal
/// neighbours in t give infinities or not-a-number. The arrays must not overlap. Linear in n.
void SplineMoments(std::int32_t n, const double* t, const double* y, double* knotsOut, double* valuesOut,
                   double* momentsOut, std::int32_t capacity);

/// Evaluates a spline of n knots, with the values and moments from `SplineMoments`, at s[0..m-1] into out[0..m-1].
///
/// A parameter belongs to the first interval that ends at or behind it. One behind all knots, or that is not a
/// number, is evaluated on the interval of the parameter before it (the first interval, if there is none). `s` and
/// `out` may be the same array. With fewer than two knots nothing is written. Linear in n + m while parameters rise;
/// a falling one costs log n.
void SplineValues(std::int32_t m, const double* s, double* out, std::int32_t n, const double* knots,
                  const double* values, const double* moments);

} // namespace velmora

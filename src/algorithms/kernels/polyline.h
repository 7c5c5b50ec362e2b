#pragma once

#include <cmath>
#include <cstdint>

namespace velmora {

// A polyline is three parallel arrays of coordinates and a count. Its only parameter is the running chord length.

/// Length of the chord that ends at point `i`, which must be above 0.
inline double chordLength(const double* x, const double* y, const double* z, std::int32_t i) {
    const double dx = x[i] - x[i - 1];
    const double dy = y[i] - y[i - 1];
    const double dz = z[i] - z[i - 1];
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

/// Sum of the chords of n points; 0 for fewer than two.
double polylineLength(const double* x, const double* y, const double* z, std::int32_t n);

/// Writes the running chord length of each of n points to `t` (n entries, from 0) and gives the last one, the
/// polyline's length; 0 for fewer than two points.
double chordParameters(const double* x, const double* y, const double* z, std::int32_t n, double* t);

/// Drops repeated neighbours in place and lowers `count`.
///
/// Of two neighbours closer than `coincidentDistance` the earlier is deleted, and the scan starts again from the
/// first point, until no such pair is left or two points remain. Fewer than three points stay as they are; so
/// does a pair whose distance is not a number. Linear in `count`.
void RemoveCoincidentPoints(double* x, double* y, double* z, std::int32_t& count);

/// Whether RemoveCoincidentPoints would drop one of the first `count` points. Linear in `count`.
bool hasCoincidentPoints(const double* x, const double* y, const double* z, std::int32_t count);

} // namespace velmora

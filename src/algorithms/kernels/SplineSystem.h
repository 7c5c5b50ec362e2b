#pragma once

#include <cstdint>
#include <vector>

namespace velmora {

/// The tridiagonal system for the second derivatives (moments) of a cubic spline, made ready for one set of knots.
///
/// Everything that depends on the knots alone is worked out once in `factor`; `solve` then serves any number of
/// value columns. The two ends are not alike: the first moment is 0, the last is minus half the one before it.
class SplineSystem {
public:
    /// Makes the system for the knots t[0..n-1]. Equal neighbours divide by zero: the moments come out as infinities
    /// or not-a-number.
    void factor(std::int32_t n, const double* t);

    /// Writes the moments of the values y[0..n-1] to `moments`, n of each as in the last `factor`. The two arrays
    /// must not overlap.
    void solve(const double* y, double* moments) const;

private:
    std::vector<double> gap_;   ///< [i]: t[i] - t[i-1]; [0] unused
    std::vector<double> lower_; ///< [k]: the factor of moment k-1 in row k
    std::vector<double> pivot_; ///< [k]: the divisor of row k in the forward sweep
    std::vector<double> carry_; ///< [k]: the factor of moment k in the row before it, after the sweep; [0] is 0
};

/// One interval of a spline as seen from a parameter within it.
struct SplinePiece {
    double width;  ///< h, of the interval
    double ahead;  ///< A, from the parameter to the interval's end
    double behind; ///< B, from the interval's start to the parameter

    SplinePiece(double start, double end, double s) : width(end - start), ahead(end - s), behind(s - start) {}

    /// The spline's value from the values and moments at the interval's start, [0], and end, [1].
    double value(const double* values, const double* moments) const {
        const double square = width * width;
        const double bending = (moments[0] * (ahead * ahead * ahead) + moments[1] * (behind * behind * behind)) / 6;
        const double fromStart = (values[0] - moments[0] * square / 6) * ahead;
        const double fromEnd = (values[1] - moments[1] * square / 6) * behind;
        return (bending + fromStart + fromEnd) / width;
    }

    double slope(const double* values, const double* moments) const {
        return (moments[1] * (behind * behind) - moments[0] * (ahead * ahead)) / (2 * width) +
               (values[1] - values[0]) / width - (moments[1] - moments[0]) * width / 6;
    }

    double curvature(const double* moments) const { return (moments[0] * ahead + moments[1] * behind) / width; }
};

} // namespace velmora

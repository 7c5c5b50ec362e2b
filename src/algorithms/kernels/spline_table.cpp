#include "spline_table.h"

#include <algorithm>

#include "IntervalFinder.h"
#include "SplineSystem.h"

namespace velmora {

void SplineMoments(std::int32_t n, const double* t, const double* y, double* knotsOut, double* valuesOut,
                   double* momentsOut, std::int32_t capacity) {
    if (n < 1 || n > capacity) {
        return;
    }
    std::copy_n(t, n, knotsOut);
    std::copy_n(y, n, valuesOut);
    SplineSystem system;
    system.factor(n, knotsOut);
    system.solve(valuesOut, momentsOut);
}

void SplineValues(std::int32_t m, const double* s, double* out, std::int32_t n, const double* knots,
                  const double* values, const double* moments) {
    if (n < 2) {
        return;
    }
    IntervalFinder finder(knots, n);
    for (std::int32_t i = 0; i < m; ++i) {
        const std::int32_t j = finder.findOrStay(s[i]);
        out[i] = SplinePiece(knots[j], knots[j + 1], s[i]).value(values + j, moments + j);
    }
}

} // namespace velmora

#include "polyline.h"

#include "curve_tolerances.h"

namespace velmora {

double polylineLength(const double* x, const double* y, const double* z, std::int32_t n) {
    double length = 0;
    for (std::int32_t i = 1; i < n; ++i) {
        length += chordLength(x, y, z, i);
    }
    return length;
}

double chordParameters(const double* x, const double* y, const double* z, std::int32_t n, double* t) {
    double length = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        length += i > 0 ? chordLength(x, y, z, i) : 0;
        t[i] = length;
    }
    return length;
}

void RemoveCoincidentPoints(double* x, double* y, double* z, std::int32_t& count) {
    // The first `kept` points hold no close pair. A new point that is close to the last of them takes its place,
    // and is then compared with the one before: the only pair that a new start of the scan could find.
    const std::int32_t total = count;
    std::int32_t kept = 0;
    for (std::int32_t i = 0; i < total; ++i) {
        x[kept] = x[i];
        y[kept] = y[i];
        z[kept] = z[i];
        while (kept > 0 && count >= 3 && chordLength(x, y, z, kept) < coincidentDistance) {
            --kept;
            --count;
            x[kept] = x[i];
            y[kept] = y[i];
            z[kept] = z[i];
        }
        ++kept;
    }
}

bool hasCoincidentPoints(const double* x, const double* y, const double* z, std::int32_t count) {
    for (std::int32_t i = 1; i < count && count >= 3; ++i) {
        if (chordLength(x, y, z, i) < coincidentDistance) {
            return true;
        }
    }
    return false;
}

} // namespace velmora

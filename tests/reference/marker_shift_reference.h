#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

#include "marker_shift.h"

/// The marker shift in its plainest form: every marker measured for every point, the blend written out, and least
/// squares by orthogonal columns in extended precision, which forms no normal matrix.
namespace velmora::reference {

inline double distanceToMarkers(const std::vector<PlanePoint>& markers, double a, double b) {
    double nearest = std::numeric_limits<double>::infinity();
    for (const PlanePoint& m : markers) {
        const double d = std::sqrt((m.a - a) * (m.a - a) + (m.b - b) * (m.b - b));
        if (d < nearest) {
            nearest = d;
        }
    }
    return nearest;
}

inline std::array<double, 2> evaluated(const ShiftFit& fit, int order, double x, double y) {
    std::array<double, 2> value{x, y};
    fit.EvalShift(order, x, y, value[0], value[1]);
    return value;
}

/// The three marks of the blend in one plain double loop.
struct Marks {
    double dMin = std::numeric_limits<double>::infinity();
    double dMid = 0.0;
    double dMean = 0.0;

    explicit Marks(const std::vector<PlanePoint>& m) {
        double sum = 0.0;
        double count = 0.0;
        for (std::size_t i = 0; i < m.size(); ++i) {
            for (std::size_t j = 0; j < m.size(); ++j) {
                if (i == j) {
                    continue;
                }
                const double da = double{static_cast<float>(m[i].a)} - double{static_cast<float>(m[j].a)};
                const double db = double{static_cast<float>(m[i].b)} - double{static_cast<float>(m[j].b)};
                const auto d = static_cast<float>(std::sqrt(da * da + db * db));
                dMin = std::min(dMin, double{d});
                sum += d;
                count += 1.0;
            }
        }
        dMean = sum / count;
        dMid = (dMean + dMin) * 0.5;
    }
};

inline double clamped(double value) {
    return value < 0.0 ? 0.0 : value > 1.0 ? 1.0 : value;
}

/// Where a point of the plane goes at order 10.
inline std::array<double, 2> moved(const MarkerShift& shift, const Marks& marks, double d, double a, double b) {
    const auto by10 = evaluated(shift.shiftFit10, 10, a, b);
    const auto by6 = evaluated(shift.shiftFit6, 6, a, b);
    const auto by3 = evaluated(shift.shiftFit3, 3, a, b);
    if (d < marks.dMin) {
        return by10;
    }
    if (d > marks.dMean) {
        return by3;
    }
    if (d >= marks.dMid) {
        const double w6 = clamped((d - marks.dMean) / (marks.dMid - marks.dMean));
        const double w3 = clamped((d - marks.dMid) / (marks.dMean - marks.dMid));
        return {w6 * by6[0] + w3 * by3[0], w6 * by6[1] + w3 * by3[1]};
    }
    const double w10 = clamped((d - marks.dMid) / (marks.dMin - marks.dMid));
    const double w6 = clamped((d - marks.dMin) / (marks.dMid - marks.dMin));
    return {w10 * by10[0] + w6 * by6[0], w10 * by10[1] + w6 * by6[1]};
}

/// Plane 3, both coordinates, point by point.
inline void applyInXY(const MarkerShift& shift, const PointList& shifted, PointList& points) {
    std::vector<PlanePoint> markers;
    for (const zVec<double>& p : shifted) {
        const auto m = evaluated(shift.inverseFit, 10, p.x, p.y);
        markers.push_back({m[0], m[1]});
    }
    const Marks marks(markers);
    for (zVec<double>& p : points) {
        const auto target = moved(shift, marks, distanceToMarkers(markers, p.x, p.y), p.x, p.y);
        p.x = target[0];
        p.y = target[1];
    }
}

/// The least-squares coefficients of the first `terms` of 1, x, y, xy, x^2, y^2, x^2 y, x y^2, x^3, y^3 for one output,
/// by modified Gram-Schmidt, twice over.
inline std::vector<long double> leastSquares(const std::vector<double>& x, const std::vector<double>& y,
                                             const std::vector<double>& out, std::size_t terms) {
    using Wide = long double;
    const std::size_t n = x.size();
    std::vector<std::vector<Wide>> columns(terms, std::vector<Wide>(n));
    for (std::size_t i = 0; i < n; ++i) {
        const Wide a = x[i];
        const Wide b = y[i];
        const Wide all[] = {1, a, b, a * b, a * a, b * b, a * a * b, a * b * b, a * a * a, b * b * b};
        for (std::size_t t = 0; t < terms; ++t) {
            columns[t][i] = all[t];
        }
    }
    const auto product = [n](const std::vector<Wide>& p, const std::vector<Wide>& q) {
        Wide sum = 0;
        for (std::size_t i = 0; i < n; ++i) {
            sum += p[i] * q[i];
        }
        return sum;
    };
    std::vector<std::vector<Wide>> r(terms, std::vector<Wide>(terms, 0));
    for (std::size_t t = 0; t < terms; ++t) {
        for (int pass = 0; pass < 2; ++pass) {
            for (std::size_t k = 0; k < t; ++k) {
                const Wide share = product(columns[k], columns[t]);
                r[k][t] += share;
                for (std::size_t i = 0; i < n; ++i) {
                    columns[t][i] -= share * columns[k][i];
                }
            }
        }
        r[t][t] = std::sqrt(product(columns[t], columns[t]));
        for (Wide& value : columns[t]) {
            value /= r[t][t];
        }
    }
    const std::vector<Wide> side(out.begin(), out.end());
    std::vector<Wide> coefficients(terms);
    for (std::size_t t = terms; t-- > 0;) {
        Wide sum = product(columns[t], side);
        for (std::size_t k = t + 1; k < terms; ++k) {
            sum -= r[t][k] * coefficients[k];
        }
        coefficients[t] = sum / r[t][t];
    }
    return coefficients;
}

} // namespace velmora::reference

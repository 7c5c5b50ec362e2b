#include "curve_values.h"

#include <algorithm>

#include "vectors.h"

namespace velmora {

MaybeValue growthOf(double step, double next) {
    if (step == 0.0 || next == 0.0) {
        return std::nullopt;
    }
    return std::max(step, next) / std::min(step, next);
}

MaybeValue curvatureOf(const zVec<double>& before, const zVec<double>& point, const zVec<double>& behind) {
    const double sides = distance(before, point) * distance(point, behind) * distance(behind, before);
    if (sides == 0.0) {
        return std::nullopt;
    }
    // The circle's radius is the product of the triangle's sides by four times its area.
    return 2.0 * lengthOf(cross(point - before, behind - before)) / sides;
}

CurveValues curveValues(PointList points) {
    CurveValues values;
    values.points = std::move(points);
    const PointList& p = values.points;
    values.growth.resize(p.size());
    values.curvature.resize(p.size());
    for (std::size_t i = 0; i < p.size(); ++i) {
        if (i > 0) {
            values.steps.push_back(distance(p[i - 1], p[i]));
        }
        values.length.push_back(i > 0 ? values.length.back() + values.steps.back() : 0.0);
    }
    for (std::size_t i = 1; i + 1 < p.size(); ++i) {
        values.growth[i] = growthOf(values.steps[i - 1], values.steps[i]);
        values.curvature[i] = curvatureOf(p[i - 1], p[i], p[i + 1]);
    }
    return values;
}

} // namespace velmora

#include "drag_correction.h"

#include <cmath>

namespace velmora {

namespace {

// The exponent of a point's share falls from the first number, at the curve's end, by up to the second.
constexpr double exponentAtEnd = 0.7;
constexpr double exponentFall = 0.6;

void move(zVec<double>& point, double share, const zVec<double>& delta, const DragPlane& plane) {
    point.*plane.first += share * (delta.*plane.first);
    point.*plane.second += share * (delta.*plane.second);
}

/// Moves the `count` points that `at(0)`, ... address from a curve's end up to the one before the bend, which is
/// `at(count)`; the exponent falls by steps of 1 / `divisor`.
template <class At>
void bendSide(std::int32_t count, double divisor, const zVec<double>& delta, const DragPlane& plane, At at) {
    std::vector<double> s(static_cast<std::size_t>(count) + 1, 0.0);
    for (std::int32_t k = 0; k < count; ++k) {
        const double first = at(k + 1).*plane.first - at(k).*plane.first;
        const double second = at(k + 1).*plane.second - at(k).*plane.second;
        s[static_cast<std::size_t>(k) + 1] =
            s[static_cast<std::size_t>(k)] + std::sqrt(first * first + second * second);
    }
    const double length = s.back();
    if (!(length > 0.0)) {
        return; // seen end-on, this side is one point: there is nothing to bend
    }
    for (std::int32_t k = 0; k < count; ++k) {
        const double exponent = exponentAtEnd - (k / divisor) * exponentFall;
        move(at(k), std::pow(s[static_cast<std::size_t>(k)] / length, exponent), delta, plane);
    }
}

} // namespace

void bendCurve(PointList& curve, std::int32_t index, const zVec<double>& delta, const DragPlane& plane) {
    const std::int32_t count = countOf(curve);
    if (index < 0 || index >= count) {
        return;
    }
    bendSide(index, index, delta, plane,
             [&curve](std::int32_t k) -> zVec<double>& { return curve[static_cast<std::size_t>(k)]; });
    // One more than the number of steps on this side, unlike on the other: wanted.
    bendSide(count - 1 - index, count - index, delta, plane, [&curve, count](std::int32_t k) -> zVec<double>& {
        return curve[static_cast<std::size_t>(count - 1 - k)];
    });
    move(curve[static_cast<std::size_t>(index)], 1.0, delta, plane);
}

} // namespace velmora

#include "nearest_on_triangle.h"

#include "model_faces.h"
#include "vectors.h"

namespace velmora {

namespace {

/// A square of twice the area below this part of the product of the squares of two sides makes a triangle thin: where
/// a point's foot stands in it is then a matter of rounding.
constexpr double thinPart = 1e-12;

zVec<double> nearestOnSegment(const zVec<double>& point, const zVec<double>& a, const zVec<double>& b) {
    const zVec<double> along = b - a;
    const double ahead = dot(point - a, along);
    if (!(ahead > 0.0)) {
        return a;
    }
    const double whole = dot(along, along);
    return ahead < whole ? a + along * (ahead / whole) : b;
}

/// Keeps the nearest of the places that it is shown.
struct Nearest {
    const zVec<double>& point;
    double squared;
    zVec<double> place;

    void onSegment(const zVec<double>& a, const zVec<double>& b) {
        const zVec<double> other = nearestOnSegment(point, a, b);
        const double otherSquared = squaredDistance(point, other);
        if (otherSquared < squared) {
            squared = otherSquared;
            place = other;
        }
    }
};

} // namespace

zVec<double> nearestOnTriangle(const zVec<double>& point, const zVec<double>& a, const zVec<double>& b,
                               const zVec<double>& c) {
    const zVec<double> sideB = b - a;
    const zVec<double> sideC = c - a;
    const zVec<double> fromA = point - a;
    const zVec<double> normal = cross(sideB, sideC);
    const double whole = dot(normal, normal);
    const bool thin = !(whole > thinPart * dot(sideB, sideB) * dot(sideC, sideC));
    // The weights of b, c and a at the point's foot, times the whole; below 0 when it stands beyond the side opposite.
    const double partB = dot(cross(fromA, sideC), normal);
    const double partC = dot(cross(sideB, fromA), normal);
    const double partA = whole - partB - partC;
    if (!thin && partA > 0.0 && partB > 0.0 && partC > 0.0) {
        return a + sideB * (partB / whole) + sideC * (partC / whole);
    }
    // The nearest place of a triangle is on a side that the foot stands beyond.
    Nearest nearest{point, squaredDistance(point, a), a};
    if (thin || partC <= 0.0) {
        nearest.onSegment(a, b);
    }
    if (thin || partA <= 0.0) {
        nearest.onSegment(b, c);
    }
    if (thin || partB <= 0.0) {
        nearest.onSegment(c, a);
    }
    return nearest.place;
}

} // namespace velmora

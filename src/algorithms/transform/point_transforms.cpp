#include "point_transforms.h"

#include <cmath>

#include "vectors.h"

namespace velmora {

namespace {

/// Radians of a degree, to as many digits as turned models have always been made with.
constexpr double radiansPerDegree = 0.01745329;
/// Lengths below this are no axis, and no arm from a foot to the end of the axis.
constexpr double shortestAxis = 1e-6;
/// A point this close to the axis lies on it: 1e-4 in single precision.
constexpr double onAxis = 9.999999747378752e-05;
/// The cosine below which a point stands upright over an end of the axis.
constexpr double uprightCosine = 0.0001;

float single(double value) {
    return static_cast<float>(value);
}

} // namespace

zVec<double> scaledPoint(const zVec<double>& point, const zVec<double>& centre, double scale) {
    return centre + (point - centre) * scale;
}

zVec<double> reflectedPoint(const zVec<double>& point, const CoordinatePlane& plane) {
    zVec<double> image = point;
    image.*plane.axis = plane.value - (point.*plane.axis - plane.value);
    return image;
}

int axisFoot(const zVec<double>& a, const zVec<double>& b, const zVec<double>& point, zVec<double>& foot,
             double& distance) {
    const double toA = lengthOf(point - a);
    const double toB = lengthOf(point - b);
    const double axis = lengthOf(a - b);
    if (axis < shortestAxis) {
        return 0;
    }
    const double cosineA = dot(b - a, point - a) / toA / axis;
    const double cosineB = dot(a - b, point - b) / toB / axis;
    if (std::abs(cosineA) < uprightCosine) {
        foot = a;
        distance = toA;
        return 2;
    }
    if (std::abs(cosineB) < uprightCosine) {
        foot = b;
        distance = toB;
        return 2;
    }
    if (cosineA > 0.0 && cosineB > 0.0) {
        const double t = (toA * toA - toB * toB + axis * axis) * 0.5 / axis / axis;
        foot = a + (b - a) * t;
        distance = lengthOf(point - foot);
        return -1;
    }
    // Single precision is wanted beyond the ends: saved models have been turned so.
    if (cosineA > 0.0 && cosineB < 0.0) {
        const float beyond = single((toA * toA - toB * toB - axis * axis) * 0.5 / axis);
        const float t = (beyond + single(axis)) / single(axis);
        foot = a + (b - a) * static_cast<double>(t);
        distance = single(lengthOf(point - foot));
        return 1;
    }
    if (cosineA < 0.0 && cosineB > 0.0) {
        const float before = single((toB * toB - axis * axis - toA * toA) * 0.5 / axis);
        const float t = before / single(axis);
        foot = a + (a - b) * static_cast<double>(t);
        distance = single(lengthOf(point - foot));
    }
    return -1;
}

std::optional<zVec<double>> rotatePoint(const zVec<double>& point, RotationAxis& axis) {
    const double angle = axis.degrees * radiansPerDegree;
    while (true) {
        // A point in an end of the axis is its own foot.
        zVec<double> foot = point;
        double distance = 0.0;
        const int code = axisFoot(axis.from, axis.to, point, foot, distance);
        if (code == 0) {
            return std::nullopt;
        }
        zVec<double> along = axis.to - foot;
        const double alongLength = lengthOf(along);
        if (alongLength < shortestAxis) {
            // No direction can be taken from here: the end of the axis moves away, for all points that follow.
            axis.to = axis.from + (axis.to - axis.from) * 1.5;
            continue;
        }
        const zVec<double> arm = point - foot;
        const double radius = lengthOf(arm);
        if (!(radius >= onAxis)) {
            return point;
        }
        along = (code == 1 ? along * -1.0 : along) / alongLength;
        const zVec<double> out = arm / radius;
        const zVec<double> across = unitOf(cross(along, out));
        return foot + out * (distance * std::cos(angle)) + across * (distance * std::sin(angle));
    }
}

bool transformPoints(PointList& points, const PointMap& map) {
    PointList moved;
    moved.reserve(points.size());
    for (const zVec<double>& point : points) {
        const auto target = map(point);
        if (!target) {
            return false;
        }
        moved.push_back(*target);
    }
    points.swap(moved);
    return true;
}

bool transformPatch(Patch& patch, const PointMap& map) {
    Patch moved = patch;
    for (PointList& section : moved) {
        if (!transformPoints(section, map)) {
            return false;
        }
    }
    patch.swap(moved);
    return true;
}

} // namespace velmora

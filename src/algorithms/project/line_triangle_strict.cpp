#include "line_triangle_strict.h"

#include <cmath>
#include <optional>

#include "same_point.h"
#include "vectors.h"

namespace velmora {

namespace {

using Vec = zVec<double>;

constexpr double sameCoordinate = 2.5e-12;
constexpr double insideTolerance = 5e-12;
constexpr double third = 0.3333333333333333;

bool isZero(const Vec& v) {
    return v == Vec();
}

bool onLine(const Vec& point, const Vec& direction, const Vec& origin) {
    return isZero(cross(point - origin, direction));
}

/// An origin on the straight line of the edge u, w: a hit between its ends, none beyond them. No value where the origin
/// is not on that line.
std::optional<TriangleHit> originOnEdge(const Vec& u, const Vec& w, const Vec& origin) {
    if (!isZero(cross(origin - u, origin - w)) || isZero(u - w)) {
        return std::nullopt;
    }
    if (dot(origin - u, origin - w) <= 0.0) {
        return TriangleHit{2, origin};
    }
    return TriangleHit{};
}

/// A degenerate triangle, the segment u, w. The hit may lie beyond its ends.
TriangleHit hitSegment(const Vec& u, const Vec& w, const Vec& direction, const Vec& origin) {
    const double segment = lengthOf(u - w);
    if (std::abs(dot(u - w, direction)) == segment) {
        const bool along = std::abs(dot(origin - w, direction)) == lengthOf(origin - w);
        return along ? TriangleHit{1, u} : TriangleHit{};
    }
    if (dot(direction, cross(origin - u, origin - w)) != 0.0) {
        return {};
    }
    const Vec e = (w - u) * (1.0 / segment);
    const Vec v((1.0 - e.x) * direction.x, (1.0 - e.y) * direction.y, (1.0 - e.z) * direction.z);
    const double denominator = dot(direction, v);
    if (denominator == 0.0) {
        return {};
    }
    return {2, origin + direction * (dot(u - origin, v) / denominator)};
}

TriangleHit hitInside(const Vec& a, const Vec& b, const Vec& c, const Vec& direction, const Vec& origin) {
    const Vec normal = cross(b - a, c - a);
    const double slope = dot(direction, normal);
    if (slope == 0.0) {
        return {};
    }
    const Vec hit = origin + direction * (dot(a - origin, normal) / slope);
    const double parts =
        lengthOf(cross(b - hit, c - hit)) + lengthOf(cross(a - hit, c - hit)) + lengthOf(cross(a - hit, b - hit));
    const double whole = lengthOf(normal);
    const double divisor = whole == 0.0 ? parts : whole;
    const bool inside = parts == whole || std::abs(parts - whole) / divisor < insideTolerance;
    return inside ? TriangleHit{3, hit} : TriangleHit{};
}

} // namespace

bool sameVertex(const Vec& a, const Vec& b) {
    return sameCoordinates(a, b, sameCoordinate);
}

TriangleHit LineHitsTriangle(const Vec& a, const Vec& b, const Vec& c, const Vec& direction, const Vec& origin) {
    for (const Vec* vertex : {&a, &b, &c}) {
        if (onLine(*vertex, direction, origin)) {
            return {1, *vertex};
        }
    }
    const bool ab = sameVertex(a, b);
    const bool ac = sameVertex(a, c);
    const bool bc = sameVertex(b, c);
    if (ab && ac && bc) {
        const Vec centroid = (a + b + c) * third;
        return onLine(centroid, direction, origin) ? TriangleHit{1, centroid} : TriangleHit{};
    }
    const Vec* const edges[3][2] = {{&a, &b}, {&a, &c}, {&b, &c}};
    for (const auto& edge : edges) {
        if (const auto hit = originOnEdge(*edge[0], *edge[1], origin)) {
            return *hit;
        }
    }
    if (ab) {
        return hitSegment(a, c, direction, origin);
    }
    if (ac) {
        return hitSegment(a, b, direction, origin);
    }
    if (bc) {
        return hitSegment(a, b, direction, origin);
    }
    return hitInside(a, b, c, direction, origin);
}

} // namespace velmora

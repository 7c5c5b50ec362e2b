#include "line_triangle_loose.h"

#include <cmath>
#include <initializer_list>

#include "same_point.h"
#include "vectors.h"
#include "zVec.h"

namespace velmora {

namespace {

using Vector = zVec<double>;

constexpr int noHit = 0;
constexpr int vertexHit = 1;
constexpr int edgeHit = 2;
constexpr int insideHit = 3;
/// The way on to the next test.
constexpr int undecided = -1;

/// A hit is inside when the three areas about it exceed the triangle's by less than this part.
constexpr double areaTolerance = 5e-6;

struct Line {
    Vector direction;
    Vector origin;

    bool passesThrough(const Vector& p) const { return cross(p - origin, direction) == Vector(); }
};

bool nearEqual(const Vector& p, const Vector& q) {
    return sameCoordinates(p, q, nearEqualPart);
}

/// Decides for an origin on the straight line of an edge: between its ends it is the hit, outside there is none.
int meetOriginOnEdge(const Vector& first, const Vector& second, const Vector& origin, Vector& hit) {
    if (!(cross(origin - first, origin - second) == Vector()) || lengthOf(first - second) == 0) {
        return undecided;
    }
    if (dot(first - origin, second - origin) > 0) {
        return noHit;
    }
    hit = origin;
    return edgeHit;
}

/// The line against the segment from q1 to q2, in place of a triangle that degenerates to it: two vertices coincide.
int meetSegment(const Vector& q1, const Vector& q2, const Line& line, Vector& hit) {
    const Vector& o = line.origin;
    const Vector& along = line.direction;
    if (std::abs(dot(along, q1 - q2)) == lengthOf(q1 - q2)) {
        if (std::abs(dot(along, o - q2)) != lengthOf(o - q2)) {
            return noHit;
        }
        hit = q1;
        return vertexHit;
    }
    const double a = o.y - q1.y;
    const double b = o.z - q2.z;
    const double c = o.z - q1.z;
    const double e = o.y - q2.y;
    const double f = o.x - q2.x;
    const double g = o.x - q1.x;
    // Not the determinant that it resembles: the direction enters only one product of each pair.
    if (a * along.x * b - c * e + c * along.y * f - g * b + g * along.z * e - a * f != 0) {
        return noHit;
    }
    const Vector u = unitOf(q2 - q1);
    const Vector w((1 - u.x) * along.x, (1 - u.y) * along.y, (1 - u.z) * along.z);
    const double across = dot(w, along);
    if (across == 0) {
        return noHit;
    }
    hit = o + along * (dot(q1 - o, w) / across);
    return edgeHit;
}

/// The line against the plane of a proper triangle, and the place in the plane against the triangle by areas.
int meetPlane(const Vector& a, const Vector& b, const Vector& c, const Line& line, Vector& hit) {
    const Vector normal = cross(a - b, a - c);
    const double across = dot(line.direction, normal);
    if (across == 0) {
        return noHit;
    }
    hit = line.origin + line.direction * (dot(a - line.origin, normal) / across);
    const double whole = lengthOf(cross(b - a, c - a));
    const double parts =
        lengthOf(cross(b - hit, c - hit)) + lengthOf(cross(a - hit, c - hit)) + lengthOf(cross(a - hit, b - hit));
    if (whole == parts) {
        return insideHit;
    }
    const double excess = std::abs((whole - parts) / (whole == 0 ? parts : whole));
    return excess < areaTolerance ? insideHit : noHit;
}

int meetTriangle(const Vector& a, const Vector& b, const Vector& c, const Line& line, Vector& hit) {
    for (const Vector* vertex : {&a, &b, &c}) {
        if (line.passesThrough(*vertex)) {
            hit = *vertex;
            return vertexHit;
        }
    }
    const bool abOne = nearEqual(a, b);
    const bool acOne = nearEqual(a, c);
    if (abOne && acOne) {
        hit = (a + b + c) / 3;
        return line.passesThrough(hit) ? vertexHit : noHit;
    }
    const Vector* const edges[3][2] = {{&a, &b}, {&a, &c}, {&b, &c}};
    for (const auto& edge : edges) {
        const int result = meetOriginOnEdge(*edge[0], *edge[1], line.origin, hit);
        if (result != undecided) {
            return result;
        }
    }
    if (abOne || acOne) {
        return abOne ? meetSegment(a, c, line, hit) : meetSegment(a, b, line, hit);
    }
    return nearEqual(b, c) ? meetSegment(c, b, line, hit) : meetPlane(a, b, c, line, hit);
}

} // namespace

int IntersectLineTriangle(const double* a, const double* b, const double* c, const double* direction,
                          const double* origin, double* hit) {
    const Line line{vectorAt(direction), vectorAt(origin)};
    Vector place;
    const int result = meetTriangle(vectorAt(a), vectorAt(b), vectorAt(c), line, place);
    if (result != noHit) {
        hit[0] = place.x;
        hit[1] = place.y;
        hit[2] = place.z;
    }
    return result;
}

} // namespace velmora

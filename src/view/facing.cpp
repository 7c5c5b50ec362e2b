#include "facing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "vectors.h"

namespace velmora {

namespace {

constexpr double rightAngle = std::numbers::pi / 2;
/// What rounding to single precision may turn a face by, in radians, unless it is next to nothing: then anything.
constexpr double slack = 1e-3;

/// Adds the way that the front of a triangle looks; false when it has none.
bool addNormal(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c,
               std::vector<zVec<double>>& normals) {
    const zVec<double> n = cross(b - a, c - a);
    const double longest = std::max({squaredDistance(a, b), squaredDistance(b, c), squaredDistance(c, a)});
    const double size = lengthOf(n);
    if (longest == 0.0) {
        return true; // a single place is drawn by nobody
    }
    if (!(size > 1e-6 * longest)) {
        return false; // a needle: rounding decides which side it shows
    }
    normals.push_back(n / size);
    return true;
}

/// The ways that all faces look; none when one of them is uncertain.
std::vector<zVec<double>> normalsOf(const DrawList& list, Primitive primitive, std::size_t first, std::size_t count) {
    std::vector<zVec<double>> normals;
    const auto at = [&](std::size_t i) -> const zVec<double>& { return list.vertices[first + i]; };
    if (primitive == Primitive::Triangles) {
        for (std::size_t i = 0; i + 2 < count; i += 3) {
            if (!addNormal(at(i), at(i + 1), at(i + 2), normals)) {
                return {};
            }
        }
        return normals;
    }
    for (std::size_t i = 0; i + 3 < count; i += 2) {
        // Whichever way the context parts the quad.
        const std::array<const zVec<double>*, 4> q = {&at(i), &at(i + 1), &at(i + 3), &at(i + 2)};
        if (!addNormal(*q[0], *q[1], *q[2], normals) || !addNormal(*q[0], *q[2], *q[3], normals) ||
            !addNormal(*q[0], *q[1], *q[3], normals) || !addNormal(*q[1], *q[2], *q[3], normals)) {
            return {};
        }
    }
    return normals;
}

} // namespace

Eye eyeOf(const Matrix4& m, const Matrix4& projection) {
    // The inverse of a turn is its transpose.
    const auto turnedBack = [&m](const zVec<double>& v) {
        return zVec<double>(m[0] * v.x + m[1] * v.y + m[2] * v.z, m[4] * v.x + m[5] * v.y + m[6] * v.z,
                            m[8] * v.x + m[9] * v.y + m[10] * v.z);
    };
    const bool parallel = projection[15] == 1.0;
    return {parallel, parallel ? turnedBack({0.0, 0.0, 1.0}) : turnedBack({-m[12], -m[13], -m[14]})};
}

FaceCone faceCone(const DrawList& list, Primitive primitive, std::size_t first, std::size_t count) {
    FaceCone cone;
    zVec<double> sum;
    for (std::size_t i = 0; i < count; ++i) {
        sum = sum + list.vertices[first + i];
    }
    cone.centre = sum / static_cast<double>(std::max<std::size_t>(1, count));
    for (std::size_t i = 0; i < count; ++i) {
        cone.radius = std::max(cone.radius, distance(cone.centre, list.vertices[first + i]));
    }
    const auto normals = normalsOf(list, primitive, first, count);
    zVec<double> middle;
    for (const zVec<double>& normal : normals) {
        middle = middle + normal;
    }
    if (normals.empty() || !(lengthOf(middle) > 0.0)) {
        return cone;
    }
    cone.axis = unitOf(middle);
    double least = 1.0;
    for (const zVec<double>& normal : normals) {
        least = std::min(least, dot(normal, cone.axis));
    }
    cone.angle = std::acos(std::clamp(least, -1.0, 1.0));
    return cone;
}

Facing facingOf(const FaceCone& cone, const Eye& eye) {
    const zVec<double> towards = eye.parallel ? eye.place : eye.place - cone.centre;
    const double away = lengthOf(towards);
    const double seen = eye.parallel ? 0.0 : cone.radius / away;
    if (!(seen < 1.0) || !(cone.angle < rightAngle)) {
        return Facing::Mixed;
    }
    const double angle = std::acos(std::clamp(dot(cone.axis, towards) / away, -1.0, 1.0));
    const double spread = cone.angle + std::asin(seen) + slack;
    if (angle + spread < rightAngle) {
        return Facing::Front;
    }
    return angle - spread > rightAngle ? Facing::Back : Facing::Mixed;
}

} // namespace velmora

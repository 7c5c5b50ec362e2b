#pragma once

#include <array>
#include <cmath>
#include <numbers>
#include <optional>

#include "PatchList.h"

/// Slow, plain forms of what the view computes, written on row vectors and angles instead of OpenGL's matrices.
namespace velmora::reference {

/// A 3 by 3 matrix as rows.
using Rows = std::array<std::array<double, 3>, 3>;

inline zVec<double> apply(const Rows& m, const zVec<double>& v) {
    return {m[0][0] * v.x + m[0][1] * v.y + m[0][2] * v.z, m[1][0] * v.x + m[1][1] * v.y + m[1][2] * v.z,
            m[2][0] * v.x + m[2][1] * v.y + m[2][2] * v.z};
}

inline double length(const zVec<double>& v) {
    return std::hypot(v.x, v.y, v.z);
}

/// `v` turned by `degrees` about `axis` by the right-hand rule: its part along the axis stays, the rest turns.
inline zVec<double> turned(const zVec<double>& v, double degrees, const zVec<double>& axis) {
    const double radians = degrees * std::numbers::pi / 180.0;
    const zVec<double> u = axis * (1.0 / length(axis));
    const zVec<double> along = u * dot(u, v);
    const zVec<double> across = v - along;
    return along + across * std::cos(radians) + cross(u, across) * std::sin(radians);
}

/// `v` turned by x degrees about X, then y about the fixed Y, then z about the fixed Z.
inline zVec<double> eulerTurned(const zVec<double>& v, const zVec<double>& degrees) {
    return turned(turned(turned(v, degrees.x, {1, 0, 0}), degrees.y, {0, 1, 0}), degrees.z, {0, 0, 1});
}

/// A turn of the model about an axis of the screen: x to the right, y up, z to the viewer.
struct ScreenTurn {
    double degrees = 0.0;
    zVec<double> axis;
};

/// The turn of a mouse drag in one of the four rotate modes (0 free, 1 X, 2 Y, 3 Z). `a` and `b` are the old and the
/// new position on the plane one radius in front of the model's centre, seen from that centre, in screen axes.
inline ScreenTurn dragTurn(int mode, zVec<double> a, zVec<double> b, double radius) {
    if (mode == 1) {
        return {114.0 * (b.y - a.y) / radius, {-1, 0, 0}};
    }
    if (mode == 2) {
        return {114.0 * (a.x - b.x) / radius, {0, -1, 0}};
    }
    if (mode == 3) {
        a.z = b.z = 0.0;
    }
    const zVec<double> normal = cross(a, b);
    const zVec<double> middle = (a + b) * 0.5;
    return {57.0 * length(normal) / (length(middle) * length(middle)), normal};
}

/// What a point pick looks at.
struct PickState {
    std::vector<std::int32_t> block; ///< the zBlock; no filter when empty
    std::int32_t patch = -1;
    std::int32_t section = -1;
    std::int32_t point = -1;
};

struct Picked {
    std::int32_t patch = -1;
    std::int32_t section = -1;
    std::int32_t point = -1;
};

/// The first of the nearest points to the line through `from` and `to`, with every filter asked for every point.
inline std::optional<Picked> nearestPoint(const PatchList& list, const zVec<double>& from, const zVec<double>& to,
                                          const PickState& state) {
    std::optional<Picked> best;
    double smallest = 0.0;
    const auto inBlock = [&state](std::int32_t k) {
        for (const std::int32_t member : state.block) {
            if (member == k) {
                return true;
            }
        }
        return state.block.empty();
    };
    for (std::int32_t k = 0; k < countOf(list); ++k) {
        for (std::int32_t n = 0; n < countOf(list[static_cast<std::size_t>(k)]); ++n) {
            const PointList& section = list[static_cast<std::size_t>(k)][static_cast<std::size_t>(n)];
            for (std::int32_t m = 0; m < countOf(section); ++m) {
                if (!inBlock(k) || (state.patch >= 0 && k != state.patch) ||
                    (state.section >= 0 && n != state.section) || (state.point >= 0 && m != state.point)) {
                    continue;
                }
                const zVec<double> normal = cross(from - to, to - section[static_cast<std::size_t>(m)]);
                const double distance = std::sqrt(dot(normal, normal)) / std::sqrt(dot(from - to, from - to));
                if (!best || distance < smallest) {
                    best = Picked{k, n, m};
                    smallest = distance;
                }
            }
        }
    }
    return best;
}

} // namespace velmora::reference

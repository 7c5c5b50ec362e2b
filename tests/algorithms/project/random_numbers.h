#pragma once

#include <cmath>
#include <random>

#include "small_models.h"

namespace velmora::test {

inline std::mt19937& generator() {
    static std::mt19937 random(20240817);
    return random;
}

inline double number(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(generator());
}

inline int pick(int count) {
    return std::uniform_int_distribution<int>(0, count - 1)(generator());
}

inline zVec<double> anyVector(double size) {
    return {number(-size, size), number(-size, size), number(-size, size)};
}

/// A wavy patch; its points are shaken where `shake` says so.
inline Patch wave(int sections, int points, double height, double shake) {
    Patch patch = flatPatch(sections, points);
    for (PointList& section : patch) {
        for (zVec<double>& p : section) {
            p.z = height + 0.3 * std::sin(p.x + 0.5 * p.y);
            p = p + anyVector(shake);
        }
    }
    return patch;
}

} // namespace velmora::test

#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "zExceptions.h"

namespace velmora::reference {

using Point = std::array<double, 3>;
using Corners = std::vector<std::int64_t>;
using Triangles = std::vector<std::array<std::int64_t, 3>>;

/// What a file with triangles must give, zone by zone.
struct TriangleZone {
    std::string title;
    std::vector<Point> nodes;
    Triangles triangles;
};

/// The zones, and the name of the error that ended the reading (empty when none did).
struct TriangleFile {
    std::vector<TriangleZone> zones;
    std::string error;
};

inline Point minus(const Point& a, const Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline double times(const Point& a, const Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// A fan from the corner of the smallest cosine, the first one of equals.
inline void triangulate(const std::vector<Point>& points, const Corners& polygon, Triangles& triangles) {
    const std::size_t size = polygon.size();
    for (const std::int64_t corner : polygon) {
        if (corner < 0 || corner >= static_cast<std::int64_t>(points.size())) {
            throw ValueError("reference", __LINE__);
        }
    }
    if (size == 3) {
        triangles.push_back({polygon[0], polygon[1], polygon[2]});
        return;
    }
    if (size < 3) {
        throw AlgoError("reference", __LINE__);
    }
    const auto point = [&](std::size_t i) { return points[static_cast<std::size_t>(polygon[i % size])]; };
    const auto cosineAt = [&](std::size_t i) {
        const Point next = minus(point(i + 1), point(i));
        // At the first corner both edges lead away from it; at the others the one before leads into it.
        const Point other = i == 0 ? minus(point(size - 1), point(0)) : minus(point(i), point(i - 1));
        const double cosine = times(other, next) / (std::sqrt(times(other, other)) * std::sqrt(times(next, next)));
        return i == 0 ? cosine : -cosine;
    };
    double best = cosineAt(0);
    std::int64_t apex = polygon[0];
    for (std::size_t i = 1; i < size; ++i) {
        if (best > cosineAt(i)) {
            best = cosineAt(i);
            apex = polygon[i];
        }
    }
    std::size_t start = 0;
    while (polygon[start] != apex) {
        ++start;
    }
    for (std::size_t step = 1; step + 1 < size; ++step) {
        triangles.push_back({apex, polygon[(start + step) % size], polygon[(start + step + 1) % size]});
    }
}

} // namespace velmora::reference

#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "curve_samples.h"
#include "small_zones.h"

namespace velmora::test {

/// A closed box from the origin to (a, b, c), its sides split in two.
inline zRegion_fe box(double a, double b, double c) {
    return triangleRegion(
        {{0, 0, 0}, {a, 0, 0}, {a, b, 0}, {0, b, 0}, {0, 0, c}, {a, 0, c}, {a, b, c}, {0, b, c}},
        {0, 2, 1, 0, 3, 2, 4, 5, 6, 4, 6, 7, 0, 1, 5, 0, 5, 4, 1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6, 3, 0, 4, 3, 4, 7});
}

/// A tube or ring of quads with every triangle's corners its own, shifted by up to `crack` of their size; at times
/// opened, or with corners on whole numbers.
inline zRegion_fe anyBody(samples::Source& source, double middle, double size, double crack) {
    const std::int32_t around = source.whole(3, 8);
    const std::int32_t along = source.whole(2, 6);
    const bool whole = source.once(2);
    const bool ring = source.once(2);
    std::vector<std::vector<zVec<double>>> rows;
    for (std::int32_t i = 0; i <= along; ++i) {
        std::vector<zVec<double>> row;
        for (std::int32_t j = 0; j < around; ++j) {
            const double u = 6.283185307179586 * j / around;
            const double v = 6.283185307179586 * i / along;
            zVec<double> p =
                ring ? zVec<double>((3 + std::cos(u)) * std::cos(v), (3 + std::cos(u)) * std::sin(v), std::sin(u))
                     : zVec<double>(4 * std::cos(u), 4 * std::sin(u), 8.0 * i / along - 4);
            p = p + zVec<double>(source.real(-0.2, 0.2), source.real(-0.2, 0.2), source.real(-0.2, 0.2));
            row.push_back(whole ? zVec<double>(std::round(p.x), std::round(p.y), std::round(p.z)) : p);
        }
        rows.push_back(ring && i == along ? rows.front() : row);
    }
    std::vector<zVec<double>> nodes;
    const auto put = [&](const zVec<double>& p) {
        const auto shifted = [&](double c) { return middle + size / 4 * (c + crack * source.whole(-1, 1)); };
        nodes.push_back({shifted(p.x), shifted(p.y), shifted(p.z)});
    };
    for (std::size_t i = 0; i + 1 < rows.size(); ++i) {
        for (std::size_t j = 0; j < rows[i].size(); ++j) {
            const std::size_t k = (j + 1) % rows[i].size();
            for (const zVec<double>& p :
                 {rows[i][j], rows[i][k], rows[i + 1][j], rows[i + 1][j], rows[i][k], rows[i + 1][k]}) {
                put(p);
            }
        }
    }
    std::vector<std::int32_t> corners(nodes.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        corners[i] = static_cast<std::int32_t>(i);
    }
    if (source.once(4)) {
        corners.resize(corners.size() - 3); // a hole
    }
    return triangleRegion(nodes, corners);
}

/// Triangles between few nodes: many share edges and corners, lie in planes or have no area.
inline zRegion_fe anySoup(samples::Source& source, double size, bool nasty) {
    std::vector<zVec<double>> nodes;
    for (int i = source.whole(4, 14); i > 0; --i) {
        zVec<double> p(size * source.whole(-2, 2), size * source.whole(-2, 2), size * source.whole(-2, 2));
        if (nasty && source.once(4)) {
            (source.once(2) ? p.x : p.y) = source.nasty();
        }
        nodes.push_back(p);
    }
    std::vector<std::int32_t> corners;
    for (int i = 3 * source.whole(1, 40); i > 0; --i) {
        corners.push_back(source.whole(0, samples::countOf(samples::Column(nodes.size())) - 1));
    }
    return triangleRegion(nodes, corners);
}

} // namespace velmora::test

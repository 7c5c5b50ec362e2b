#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PatchList.h"

namespace velmora::test {

inline std::uint64_t bitsOf(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

inline bool sameBits(const zVec<double>& a, const zVec<double>& b) {
    return bitsOf(a.x) == bitsOf(b.x) && bitsOf(a.y) == bitsOf(b.y) && bitsOf(a.z) == bitsOf(b.z);
}

/// Success when two models agree in all counts and in every bit of every coordinate.
inline testing::AssertionResult sameModel(const PatchList& a, const PatchList& b) {
    if (a.size() != b.size()) {
        return testing::AssertionFailure() << a.size() << " patches and " << b.size();
    }
    for (std::size_t k = 0; k < a.size(); ++k) {
        if (a[k].size() != b[k].size()) {
            return testing::AssertionFailure()
                   << "patch " << k << ": " << a[k].size() << " sections and " << b[k].size();
        }
        for (std::size_t n = 0; n < a[k].size(); ++n) {
            const PointList& p = a[k][n];
            const PointList& q = b[k][n];
            if (p.size() != q.size()) {
                return testing::AssertionFailure()
                       << "section " << k << ", " << n << ": " << p.size() << " points and " << q.size();
            }
            for (std::size_t m = 0; m < p.size(); ++m) {
                if (!sameBits(p[m], q[m])) {
                    return testing::AssertionFailure() << "point " << k << ", " << n << ", " << m << " differs";
                }
            }
        }
    }
    return testing::AssertionSuccess();
}

/// A patch of `sections` sections of `points` points with x the section, y the point, z the patch number `k`.
inline Patch numberedPatch(int sections, int points, int k = 0) {
    Patch patch(static_cast<std::size_t>(sections));
    for (int n = 0; n < sections; ++n) {
        for (int m = 0; m < points; ++m) {
            patch[static_cast<std::size_t>(n)].emplace_back(n, m, k);
        }
    }
    return patch;
}

/// The text of such a patch in an .apt file, with whole numbers for coordinates.
inline std::string numberedApt(int sections, int points, int k = 0) {
    std::string text = std::to_string(sections) + ' ' + std::to_string(points) + '\n';
    for (int n = 0; n < sections; ++n) {
        for (int m = 0; m < points; ++m) {
            text += std::to_string(n) + ' ' + std::to_string(m) + ' ' + std::to_string(k) + '\n';
        }
    }
    return text;
}

/// The numbers of points of a patch's sections.
inline std::vector<std::size_t> sectionSizes(const Patch& patch) {
    std::vector<std::size_t> sizes;
    for (const PointList& section : patch) {
        sizes.push_back(section.size());
    }
    return sizes;
}

/// The counts of a model's patches: sections, and points of the first section.
inline std::vector<std::pair<std::size_t, std::size_t>> shapeOf(const PatchList& patches) {
    std::vector<std::pair<std::size_t, std::size_t>> shape;
    for (const Patch& patch : patches) {
        shape.emplace_back(patch.size(), patch.empty() ? 0 : patch.front().size());
    }
    return shape;
}

} // namespace velmora::test

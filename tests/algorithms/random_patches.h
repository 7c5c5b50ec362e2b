#pragma once

#include "PatchList.h"
#include "curve_samples.h"

namespace velmora::samples {

/// A patch of `sections` by `points` around the flat grid of unit steps. With `wild` some points repeat their neighbour
/// in the section or in the line, and a border may shrink to a point.
inline Patch randomPatch(Source& source, std::int32_t sections, std::int32_t points, bool wild) {
    Patch patch;
    for (std::int32_t n = 0; n < sections; ++n) {
        PointList section;
        for (std::int32_t m = 0; m < points; ++m) {
            section.push_back({m + source.real(-0.3, 0.3), n + source.real(-0.3, 0.3), source.real(-0.3, 0.3)});
            if (wild && m > 0 && source.once(12)) {
                section.back() = section[section.size() - 2];
            }
            if (wild && n > 0 && source.once(12)) {
                section.back() = patch.back()[section.size() - 1];
            }
        }
        patch.push_back(section);
    }
    if (wild && source.once(4)) {
        for (zVec<double>& p : patch.front()) {
            p = patch.front().front();
        }
    }
    if (wild && source.once(4)) {
        for (PointList& section : patch) {
            section.back() = patch.front().back();
        }
    }
    return patch;
}

inline testing::AssertionResult sameBits(const Patch& a, const Patch& b) {
    if (a.size() != b.size()) {
        return testing::AssertionFailure() << a.size() << " sections against " << b.size();
    }
    for (std::size_t n = 0; n < a.size(); ++n) {
        if (a[n].size() != b[n].size()) {
            return testing::AssertionFailure()
                   << "section " << n << ": " << a[n].size() << " points against " << b[n].size();
        }
        for (std::size_t m = 0; m < a[n].size(); ++m) {
            for (const auto axis : {&zVec<double>::x, &zVec<double>::y, &zVec<double>::z}) {
                if (!sameBits(a[n][m].*axis, b[n][m].*axis)) {
                    return testing::AssertionFailure() << "point " << n << ", " << m << ": " << std::hexfloat
                                                       << a[n][m].*axis << " against " << b[n][m].*axis;
                }
            }
        }
    }
    return testing::AssertionSuccess();
}

} // namespace velmora::samples

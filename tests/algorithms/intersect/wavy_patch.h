#pragma once

#include <cmath>

#include "PatchList.h"

namespace velmora::test {

/// A wavy sheet, point (n, m) above or below (m, n, shift).
inline Patch wavy(std::size_t sections, std::size_t points, double shift) {
    Patch patch;
    for (std::size_t n = 0; n < sections; ++n) {
        PointList section;
        for (std::size_t m = 0; m < points; ++m) {
            const auto x = static_cast<double>(m);
            const auto y = static_cast<double>(n);
            section.push_back({x, y, shift + 0.2 * std::sin(x + 0.7 * y)});
        }
        patch.push_back(section);
    }
    return patch;
}

} // namespace velmora::test

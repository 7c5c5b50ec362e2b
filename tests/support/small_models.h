#pragma once

#include "PatchList.h"
#include "temporary_folder.h"

namespace velmora::test {

/// A flat patch of `sections` by `points`, point (n, m) at (m, n, height).
inline Patch flatPatch(int sections, int points, double height = 0.0) {
    Patch patch;
    for (int n = 0; n < sections; ++n) {
        PointList section;
        for (int m = 0; m < points; ++m) {
            section.push_back({static_cast<double>(m), static_cast<double>(n), height});
        }
        patch.push_back(section);
    }
    return patch;
}

} // namespace velmora::test

#pragma once

#include <array>

#include "zVec.h"

namespace velmora {

/// Where a scene puts its points: x' = m[0] x + m[1] y + m[2] z + m[3], and so on for the other two rows.
struct Placement {
    std::array<double, 12> m = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};

    friend bool operator==(const Placement&, const Placement&) = default;

    zVec<double> of(const zVec<double>& p) const {
        return {m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3], m[4] * p.x + m[5] * p.y + m[6] * p.z + m[7],
                m[8] * p.x + m[9] * p.y + m[10] * p.z + m[11]};
    }
    /// Turns the outside of a surface to its inside.
    bool isMirrored() const {
        return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
                   m[2] * (m[4] * m[9] - m[5] * m[8]) <
               0.0;
    }
};

/// What `inner` places, placed by `outer`.
inline Placement operator*(const Placement& outer, const Placement& inner) {
    Placement result;
    for (std::size_t row = 0; row < 12; row += 4) {
        for (std::size_t column = 0; column < 4; ++column) {
            double sum = column == 3 ? outer.m.at(row + 3) : 0.0;
            for (std::size_t k = 0; k < 3; ++k) {
                sum += outer.m.at(row + k) * inner.m.at(4 * k + column);
            }
            result.m.at(row + column) = sum;
        }
    }
    return result;
}

} // namespace velmora

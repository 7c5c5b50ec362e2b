#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vectors.h"

namespace velmora {

/// Numbers points so that those with equal coordinates have one number; -0 equals 0, and there is no tolerance. A point
/// with a coordinate that is not a number is equal to none.
class SharedPoints {
public:
    /// `expected`: how many points are going to be given; more are taken too.
    explicit SharedPoints(std::size_t expected = 0);

    /// The number of the point, from 0 in the order in which the points came.
    std::int32_t numberOf(const zVec<double>& point);

    std::int32_t count() const { return static_cast<std::int32_t>(coordinates_.size() / 3); }
    zVec<double> at(std::int32_t number) const {
        return vectorAt(coordinates_.data() + 3 * static_cast<std::size_t>(number));
    }

private:
    void grow(std::size_t slots);
    std::size_t slotOf(const zVec<double>& point) const;

    std::vector<double> coordinates_;
    std::vector<std::int32_t> slots_; ///< numbers by the hash of their coordinates; a power of two of them
};

} // namespace velmora

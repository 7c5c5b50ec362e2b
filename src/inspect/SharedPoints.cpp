#include "SharedPoints.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace velmora {

namespace {

constexpr std::int32_t empty = -1;
constexpr std::size_t fewestSlots = 64;

/// A word of which every bit depends on every bit of `value`.
std::uint64_t mixed(std::uint64_t value) {
    value ^= value >> 32;
    value *= 0xd6e8feb86659fd93;
    value ^= value >> 32;
    value *= 0xd6e8feb86659fd93;
    return value ^ value >> 32;
}

std::uint64_t hashOf(const zVec<double>& point) {
    // Adding 0 makes -0 to 0, and leaves all else as it is.
    std::uint64_t hash = mixed(std::bit_cast<std::uint64_t>(point.x + 0.0));
    hash = mixed(hash + std::bit_cast<std::uint64_t>(point.y + 0.0));
    return mixed(hash + std::bit_cast<std::uint64_t>(point.z + 0.0));
}

} // namespace

SharedPoints::SharedPoints(std::size_t expected) {
    coordinates_.reserve(3 * expected);
    grow(std::bit_ceil(std::max(fewestSlots, 2 * expected)));
}

std::int32_t SharedPoints::numberOf(const zVec<double>& point) {
    const bool comparable = !std::isnan(point.x) && !std::isnan(point.y) && !std::isnan(point.z);
    const std::int32_t next = count();
    if (comparable) {
        if (2 * static_cast<std::size_t>(next) >= slots_.size()) {
            grow(2 * slots_.size());
        }
        std::int32_t& slot = slots_[slotOf(point)];
        if (slot != empty) {
            return slot;
        }
        slot = next;
    }
    coordinates_.insert(coordinates_.end(), {point.x, point.y, point.z});
    return next;
}

/// Where the point stands, or the empty slot where it belongs.
std::size_t SharedPoints::slotOf(const zVec<double>& point) const {
    const std::size_t last = slots_.size() - 1;
    std::size_t slot = hashOf(point) & last;
    while (slots_[slot] != empty && !(at(slots_[slot]) == point)) {
        slot = (slot + 1) & last;
    }
    return slot;
}

void SharedPoints::grow(std::size_t slots) {
    slots_.assign(slots, empty);
    for (std::int32_t number = 0; number < count(); ++number) {
        const zVec<double> point = at(number);
        if (point == point) { // not so with a coordinate that is not a number
            slots_[slotOf(point)] = number;
        }
    }
}

} // namespace velmora

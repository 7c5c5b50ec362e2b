#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "PatchList.h"
#include "zBlock.h"

namespace velmora {

// Equal to the bit: the two zeros are not the same, and what is not a number is the same as itself.

inline bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

inline bool sameBits(const zVec<double>& a, const zVec<double>& b) {
    return sameBits(a.x, b.x) && sameBits(a.y, b.y) && sameBits(a.z, b.z);
}

/// Points are looked at some at a time, without a branch between them.
inline bool sameBits(const PointList& a, const PointList& b) {
    constexpr std::size_t stride = 32;
    std::uint64_t differ = a.size() == b.size() ? 0 : 1;
    for (std::size_t first = 0; first < a.size() && differ == 0; first += stride) {
        for (std::size_t i = first; i < std::min(first + stride, a.size()); ++i) {
            differ |= std::bit_cast<std::uint64_t>(a[i].x) ^ std::bit_cast<std::uint64_t>(b[i].x);
            differ |= std::bit_cast<std::uint64_t>(a[i].y) ^ std::bit_cast<std::uint64_t>(b[i].y);
            differ |= std::bit_cast<std::uint64_t>(a[i].z) ^ std::bit_cast<std::uint64_t>(b[i].z);
        }
    }
    return differ == 0;
}

template <class Item>
bool sameBits(const std::vector<Item>& a, const std::vector<Item>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const Item& one, const Item& other) { return sameBits(one, other); });
}

inline bool sameBits(const zArray<double>& a, const zArray<double>& b) {
    return a.name == b.name && a.ni == b.ni && a.nj == b.nj && a.nk == b.nk && sameBits(a.data, b.data);
}

inline bool sameBits(const zBlock_fe& a, const zBlock_fe& b) {
    return a.title == b.title && a.nodeCount == b.nodeCount && a.elementCount == b.elementCount &&
           a.connectivitySize == b.connectivitySize && a.connectivity == b.connectivity &&
           std::equal(a.variables.begin(), a.variables.end(), b.variables.begin(), b.variables.end(),
                      [](const auto& one, const auto& other) { return sameBits(*one, *other); });
}

inline bool sameBits(const std::unique_ptr<zBlock_fe>& a, const std::unique_ptr<zBlock_fe>& b) {
    return a == b || (a && b && sameBits(*a, *b));
}

} // namespace velmora

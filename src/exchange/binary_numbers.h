#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace velmora {

/// The number whose bytes stand at `at`, in whatever place of memory, the highest first or last.
template <class T>
T numberAt(const char* at, bool highestFirst) {
    std::array<char, sizeof(T)> bytes{};
    std::memcpy(bytes.data(), at, sizeof(T));
    if (highestFirst == (std::endian::native == std::endian::little)) {
        std::reverse(bytes.begin(), bytes.end());
    }
    return std::bit_cast<T>(bytes);
}

/// A real number of 4 or 8 bytes.
inline double realAt(const char* at, std::size_t size, bool highestFirst) {
    return size == 4 ? static_cast<double>(numberAt<float>(at, highestFirst)) : numberAt<double>(at, highestFirst);
}

} // namespace velmora

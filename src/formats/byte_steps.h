#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace velmora {

/// Steps over text, eight bytes at a time where so many stand before `end`. A NUL stands at `end`.

namespace byte_steps {

inline constexpr std::uint64_t each = 0x0101010101010101;
inline constexpr std::uint64_t highBits = 0x80 * each;
inline constexpr std::ptrdiff_t wordSize = sizeof(std::uint64_t);
inline constexpr bool countsFromLowestByte = std::endian::native == std::endian::little;

inline std::uint64_t loadWord(const char* p) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, p, wordSize);
    return bytes;
}

} // namespace byte_steps

/// The next byte from `p` on that is not above ' '.
inline const char* skipWord(const char* p, const char* end) {
    using namespace byte_steps;
    while (countsFromLowestByte && end - p >= wordSize) {
        const std::uint64_t bytes = loadWord(p);
        // The lowest bit that is set belongs to a byte below '!'; those above it may be borrowed.
        const std::uint64_t found = (bytes - ('!' * each)) & ~bytes & highBits;
        if (found != 0) {
            return p + std::countr_zero(found) / 8;
        }
        p += wordSize;
    }
    while (static_cast<unsigned char>(*p) > ' ') {
        ++p;
    }
    return p;
}

/// The next byte from `p` on that is no ' '.
inline const char* skipSpaces(const char* p, const char* end) {
    using namespace byte_steps;
    while (countsFromLowestByte && end - p >= wordSize) {
        const std::uint64_t others = loadWord(p) ^ (' ' * each);
        if (others != 0) {
            return p + std::countr_zero(others) / 8;
        }
        p += wordSize;
    }
    while (*p == ' ') {
        ++p;
    }
    return p;
}

} // namespace velmora

#pragma once

#include <bit>
#include <cstdint>

namespace velmora {

/// A word of which every bit depends on every bit of `value`.
inline std::uint64_t mixedBits(std::uint64_t value) {
    value ^= value >> 32;
    value *= 0xd6e8feb86659fd93;
    value ^= value >> 32;
    value *= 0xd6e8feb86659fd93;
    return value ^ value >> 32;
}

/// The hash of a sequence that `hash` is the hash of, with a further number behind it.
inline std::uint64_t hashedWith(std::uint64_t hash, double next) {
    return mixedBits(hash + std::bit_cast<std::uint64_t>(next));
}

} // namespace velmora

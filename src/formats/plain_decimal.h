#pragma once

#include <array>
#include <bit>
#include <cfloat>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <system_error>

#include "characters.h"

namespace velmora {

/// The parts of convertPlainDecimal.
namespace plain_decimal {

__extension__ typedef unsigned __int128 Wide; // NOLINT(modernize-use-using): there is no other form of it

constexpr int mostPower = 27; // 5^27 is the last power of five within 64 bits
constexpr int mostDigits = 19;

/// The first 64 bits of a power of ten, those behind them cut off, and the binary exponent of the last of them.
struct Power {
    std::uint64_t bits;
    int exponent;
};

constexpr Power powerOfTen(int power) {
    Wide five = 1;
    for (int i = 0; i < (power < 0 ? -power : power); ++i) {
        five *= 5;
    }
    const auto width = static_cast<int>(std::bit_width(static_cast<std::uint64_t>(five)));
    if (power >= 0) {
        return {static_cast<std::uint64_t>(five) << (64 - width), power + width - 64};
    }
    // Above the half of 2^64 and below all of it, as 5^n is no power of two.
    return {static_cast<std::uint64_t>((Wide{1} << (63 + width)) / five), power - 63 - width};
}

inline constexpr auto powers = [] {
    std::array<Power, 2 * mostPower + 1> all{};
    int power = -mostPower;
    for (Power& each : all) {
        each = powerOfTen(power++);
    }
    return all;
}();

/// 10^22 is the last power of ten that a double holds exactly.
inline constexpr int mostExactPower = 22;
inline constexpr std::array<double, mostExactPower + 1> exactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// `digits` times ten to the `power`, correctly rounded; false when that is not certain. The product of the leading 64
/// bits of both is less than two below the true one, in units of its upper half, and less than four once that is
/// shifted up: nearly always that tells on which side of the middle between two doubles the true one lies.
inline bool scale(std::uint64_t digits, int power, double& value) {
    constexpr std::uint64_t exactIntegers = std::uint64_t{1} << DBL_MANT_DIG;
    if (digits <= exactIntegers && power >= -mostExactPower && power <= mostExactPower) {
        const auto exact = static_cast<double>(digits); // one rounding of two exact numbers
        value = power < 0 ? exact / exactPowers[static_cast<std::size_t>(-power)]
                          : exact * exactPowers[static_cast<std::size_t>(power)];
        return true;
    }
    if (digits == 0 || power < -mostPower || power > mostPower) {
        return false;
    }
    constexpr int dropped = 64 - DBL_MANT_DIG;
    constexpr std::uint64_t middle = std::uint64_t{1} << (dropped - 1);
    const int place = power + mostPower;
    const Power& ten = powers[static_cast<std::size_t>(place)];
    const int zeros = std::countl_zero(digits);
    const auto product = static_cast<std::uint64_t>((Wide{digits << zeros} * ten.bits) >> 64);
    const int shift = static_cast<int>(~product >> 63);
    const std::uint64_t upper = product << shift;
    const std::uint64_t rest = upper & (2 * middle - 1);
    if (middle - rest < 4) {
        return false;
    }
    // Far from the ends of the range. The mantissa's first bit, which a double does not keep, counts up the exponent.
    constexpr int bias = 1023 + 63 - 1;
    const std::uint64_t mantissa = (upper >> dropped) + ((upper >> (dropped - 1)) & 1);
    const auto exponent = static_cast<std::uint64_t>(bias + 64 + ten.exponent - zeros - shift);
    value = std::bit_cast<double>(mantissa + (exponent << (DBL_MANT_DIG - 1)));
    return true;
}

constexpr std::ptrdiff_t wordSize = sizeof(std::uint64_t);

/// Whether each of eight bytes is a digit: the upper half of a digit is 3, also behind six more.
constexpr bool areDigits(std::uint64_t bytes) {
    constexpr std::uint64_t upperHalves = 0xF0F0F0F0F0F0F0F0;
    constexpr std::uint64_t threes = 0x3030303030303030;
    constexpr std::uint64_t sixes = 0x0606060606060606;
    return ((bytes & upperHalves) == threes) && (((bytes + sixes) & upperHalves) == threes);
}

/// Eight digits, the first in the lowest byte: neighbours become pairs, pairs fours, fours the number.
constexpr std::uint64_t valueOfDigits(std::uint64_t bytes) {
    bytes -= 0x3030303030303030;
    bytes = (bytes * 10 + (bytes >> 8)) & 0x00FF00FF00FF00FF;
    bytes = (bytes * 100 + (bytes >> 16)) & 0x0000FFFF0000FFFF;
    return (bytes * 10000 + (bytes >> 32)) & 0xFFFFFFFF;
}

/// Takes eights of digits as long as there are, then single ones.
inline const char* takeDigits(const char* p, const char* end, std::uint64_t& digits) {
    if constexpr (std::endian::native == std::endian::little) {
        std::uint64_t bytes = 0;
        for (int eights = 0; eights < 2 && end - p >= wordSize; ++eights) { // a third would be too many
            std::memcpy(&bytes, p, wordSize);
            if (!areDigits(bytes)) {
                break;
            }
            digits = digits * 100'000'000 + valueOfDigits(bytes);
            p += wordSize;
        }
    }
    while (isDigit(*p)) {
        digits = digits * 10 + static_cast<std::uint64_t>(*p++ - '0');
    }
    return p;
}

} // namespace plain_decimal

/// Converts the number that begins at `begin` faster than std::from_chars does it, to the same bit, and gives what
/// stands behind it. That is for the spelling that nearly all files have: a minus sign or none, up to 19 digits, a
/// point among them or none, an exponent of one or two digits or none. Null for any other one, and when the first 64
/// bits of the result do not tell how it is rounded. A NUL stands at `end`.
inline const char* convertPlainDecimal(const char* begin, const char* end, double& value) {
    using namespace plain_decimal;
    static_assert(FLT_EVAL_METHOD == 0 && DBL_MANT_DIG == 53);
    const bool negative = *begin == '-';
    const char* p = begin + static_cast<int>(negative);
    const char* const first = p;
    std::uint64_t digits = 0;
    while (isDigit(*p)) {
        digits = digits * 10 + static_cast<std::uint64_t>(*p++ - '0');
    }
    std::ptrdiff_t count = p - first;
    int power = 0;
    if (*p == '.') {
        const char* const fraction = ++p;
        p = takeDigits(p, end, digits);
        count += p - fraction;
        power = static_cast<int>(fraction - p);
    }
    if (count == 0 || count > mostDigits) {
        return nullptr;
    }
    if (isExponentMark(*p)) {
        const bool below = p[1] == '-';
        ++p;
        if (isSign(*p)) { // nearly always, or never: a branch is faster than a sum
            ++p;
        }
        if (!isDigit(*p)) {
            return nullptr;
        }
        int exponent = *p++ - '0';
        if (isDigit(*p)) {
            exponent = exponent * 10 + (*p++ - '0');
        }
        if (isDigit(*p)) {
            return nullptr; // of three digits and more
        }
        power += (exponent ^ -static_cast<int>(below)) + static_cast<int>(below);
    }
    if (!scale(digits, power, value)) {
        return nullptr;
    }
    // Without a branch: what sign comes next, nobody can tell.
    value = std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) | (static_cast<std::uint64_t>(negative) << 63));
    return p;
}

/// The same for a number of any spelling. Null when there is none within the range of a double, or when it is not sure
/// that the number ends where std::from_chars does: at `end` it may go on; at an exponent mark it does go on, wrongly.
inline const char* convertDecimal(const char* begin, const char* end, double& value) {
    const char* stop = convertPlainDecimal(begin, end, value);
    if (stop == nullptr) {
        const auto [behind, error] = std::from_chars(begin, end, value);
        stop = error == std::errc{} ? behind : end;
    }
    return stop == end || isExponentMark(*stop) ? nullptr : stop;
}

/// Converts a whole number of at most nine digits, behind a sign or none, that white space follows, and gives what
/// stands behind it; null for any other one. A NUL stands behind the text.
inline const char* convertFewDigits(const char* begin, std::int32_t& value) {
    constexpr int mostDigits = 9;
    const bool negative = *begin == '-';
    const char* const first = begin + static_cast<int>(isSign(*begin));
    const char* p = first;
    std::int32_t magnitude = 0;
    for (; isDigit(*p) && p - first < mostDigits; ++p) {
        magnitude = 10 * magnitude + (*p - '0');
    }
    if (p == first || !isSpace(*p)) {
        return nullptr;
    }
    value = negative ? -magnitude : magnitude;
    return p;
}

} // namespace velmora

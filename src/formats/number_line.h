#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "characters.h"
#include "plain_decimal.h"

namespace velmora {

/// What a line holds beside white space: so many numbers, of digits alone or of any plain spelling.
struct alignas(std::uint64_t) LineForm {
    std::uint32_t numbers = 0; ///< 0 for no line at all
    std::uint32_t whole = 0;   ///< 1 for integers

    bool operator==(const LineForm&) const = default;
};

/// The longest line that is taken for one of numbers, line feed not counted.
inline constexpr std::ptrdiff_t longestNumberLine = 254;

/// The next byte that is no white space, or the line feed. A NUL stands behind the text.
inline const char* skipInLine(const char* p) {
    while (isSpace(*p) && *p != '\n') {
        ++p;
    }
    return p;
}

/// Converts the `count` numbers of the line that begins at `begin`, integers by convertFewDigits, others by
/// convertPlainDecimal, and gives what stands behind its line feed. Null when anything else stands there, when the line
/// is too long or not known to its end; `values` may then be filled in part. A NUL stands at `end`.
template <class Number, class Value>
const char* convertLine(const char* begin, const char* end, Value* values, std::size_t count) {
    const char* p = begin;
    for (std::size_t i = 0; i < count; ++i) {
        p = skipInLine(p);
        if constexpr (std::is_integral_v<Number>) {
            std::int32_t number = 0;
            p = convertFewDigits(p, number);
            values[i] = number;
        } else {
            p = convertPlainDecimal(p, end, values[i]);
        }
        if (p == nullptr || !isSpace(*p)) {
            return nullptr;
        }
    }
    p = skipInLine(p);
    return *p == '\n' && p - begin <= longestNumberLine ? p + 1 : nullptr;
}

} // namespace velmora

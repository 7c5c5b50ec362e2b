#pragma once

namespace velmora {

/// Classes of characters as the C locale has them, for bytes (0 to 255) and the end of a file (-1).

constexpr bool isSpace(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool isDigit(int c) {
    return c >= '0' && c <= '9';
}

constexpr bool isLetter(int c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool isSign(int c) {
    return c == '+' || c == '-';
}

constexpr bool isExponentMark(int c) {
    return c == 'e' || c == 'E';
}

} // namespace velmora

#pragma once

#include <locale>
#include <sstream>
#include <string>
#include <type_traits>

#include "zExceptions.h"

namespace velmora {

/// What a stream in the C locale writes for `value`: characters as they are, float with 6 and double with 16
/// significant digits, anything else with a precision of 0. With the format "fixed" the notation is fixed and the
/// precision counts digits behind the point; any other format that is not empty gives an empty text, but for
/// characters, which have no format.
template <class T>
std::string toString(T value, const std::string& format = std::string()) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    if constexpr (std::is_same_v<T, char> || std::is_same_v<T, signed char> || std::is_same_v<T, unsigned char>) {
        stream << value;
        return stream.str();
    }
    stream.precision(std::is_same_v<T, float> ? 6 : std::is_same_v<T, double> ? 16 : 0);
    if (format == "fixed") {
        stream << std::left << std::fixed;
    } else if (!format.empty()) {
        return {};
    }
    stream << value;
    return stream.str();
}

/// The value that a stream in the C locale reads from the front of `text`; what stands behind it is no matter.
/// Raises ValueError when there is no such value or it is out of range.
template <class T>
T fromString(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream.precision(std::is_same_v<T, float> ? 8 : std::is_same_v<T, double> ? 17 : stream.precision());
    T value{};
    stream >> value;
    if (stream.fail()) {
        throw ValueError("zExceptions", __LINE__);
    }
    return value;
}

} // namespace velmora

#pragma once

#include <istream>
#include <limits>
#include <locale>

namespace velmora::reference {

/// `stream >> value` of a stream that leaves a number alone when there is nothing to read, and sets it to the limit
/// when what is there is out of range.
template <class Number>
bool take(std::istream& stream, Number& value) {
    Number read{};
    stream >> read;
    if (stream || read == std::numeric_limits<Number>::max() || read == std::numeric_limits<Number>::lowest()) {
        value = read;
    }
    return !stream.fail();
}

/// Takes a line of at most 254 characters.
inline bool takeLine(std::istream& stream, char (&buffer)[255]) {
    stream.getline(buffer, sizeof buffer);
    return !stream.fail();
}

} // namespace velmora::reference

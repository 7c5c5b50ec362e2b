#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// The text with "a" to "z" made capitals and all else as it was.
inline std::string upperCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return result;
}

} // namespace velmora

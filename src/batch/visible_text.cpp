#include "visible_text.h"

#include <array>
#include <cstddef>

namespace velmora {

namespace {

unsigned char byteAt(std::string_view text, std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
}

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

/// The bytes of the UTF-8 character that begins at `i`; 0 where none does.
std::size_t characterLength(std::string_view text, std::size_t i) {
    const unsigned char first = byteAt(text, i);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t length = first >= 0xC2 && first < 0xE0   ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    for (std::size_t k = 1; k < length; ++k) {
        if (!isContinuation(byteAt(text, i + k))) {
            return 0;
        }
    }
    // Forms that are longer than they need be, halves of pairs, and what lies beyond the last character.
    const unsigned char second = byteAt(text, i + 1);
    const bool wrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
    return wrong ? 0 : length;
}

/// U+007F, and U+0080 to U+009F, which some terminals take for controls too; 0 for any other character.
unsigned char lateControlAt(std::string_view text, std::size_t i) {
    const unsigned char first = byteAt(text, i);
    const unsigned char second = byteAt(text, i + 1);
    return first == 0x7F ? first : first == 0xC2 && isContinuation(second) && second < 0xA0 ? second : 0;
}

std::string escape(const char* form, unsigned char byte) {
    static constexpr std::array<char, 17> digits{"0123456789abcdef"};
    return std::string(form) + digits[byte >> 4U] + digits[byte & 0xFU];
}

} // namespace

std::string visibleText(std::string_view text, bool keepLineEnds) {
    std::string visible;
    visible.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char byte = byteAt(text, i);
        const std::size_t length = characterLength(text, i);
        const unsigned char late = lateControlAt(text, i);
        if (length == 0 || (byte < 0x20 && byte != '\t' && !(byte == '\n' && keepLineEnds))) {
            visible += escape("\\x", byte);
        } else if (late != 0) {
            visible += escape("\\x", late);
        } else {
            visible += text.substr(i, length);
        }
        i += length == 0 ? 1 : length;
    }
    return visible;
}

std::string visibleJson(std::string_view json) {
    std::string visible;
    visible.reserve(json.size());
    for (std::size_t i = 0; i < json.size();) {
        const unsigned char late = lateControlAt(json, i);
        if (late != 0) {
            visible += escape("\\u00", late);
            i += byteAt(json, i) == late ? 1 : 2;
        } else {
            visible += json[i++];
        }
    }
    return visible;
}

} // namespace velmora

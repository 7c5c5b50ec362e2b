#include "nearby_file.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "characters.h"

namespace velmora {

namespace {

/// "http:", "file:": letters and a colon before any slash.
bool isAddress(std::string_view name) {
    const std::size_t end = name.find_first_of(":/");
    return end != std::string_view::npos && end > 0 && name[end] == ':' &&
           std::all_of(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(end),
                       [](char c) { return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; });
}

} // namespace

std::optional<std::filesystem::path> nearbyFile(const std::filesystem::path& folder, std::string_view name) {
    const std::filesystem::path relative(name);
    if (name.empty() || name.find('\0') != std::string_view::npos || name.front() == '\\' || isAddress(name) ||
        relative.is_absolute() || std::find(relative.begin(), relative.end(), "..") != relative.end()) {
        return std::nullopt;
    }
    std::error_code error;
    const std::filesystem::path root = std::filesystem::canonical(folder.empty() ? "." : folder, error);
    const std::filesystem::path file = error ? root : std::filesystem::weakly_canonical(root / relative, error);
    if (error || std::mismatch(root.begin(), root.end(), file.begin(), file.end()).first != root.end()) {
        return std::nullopt;
    }
    return file;
}

std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned value = 0;
        const char* const digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() && std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2) {
            result += static_cast<char>(value);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

} // namespace velmora

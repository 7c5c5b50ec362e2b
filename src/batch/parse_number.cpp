#include "parse_number.h"

#include <charconv>
#include <cmath>

namespace velmora {

namespace {

template <class Number>
std::optional<Number> parseWhole(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace

std::optional<double> parseReal(std::string_view text) {
    const auto number = parseWhole<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<std::int32_t> parseInteger(std::string_view text, std::int32_t lowest, std::int32_t highest) {
    const auto number = parseWhole<std::int32_t>(text);
    return number && *number >= lowest && *number <= highest ? number : std::nullopt;
}

} // namespace velmora

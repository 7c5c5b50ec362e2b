#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velmora {

/// The whole of `text` as a finite number in the C locale's notation, or none.
std::optional<double> parseReal(std::string_view text);

/// The whole of `text` as a whole number from `lowest` to `highest`, or none.
std::optional<std::int32_t> parseInteger(std::string_view text, std::int32_t lowest, std::int32_t highest);

} // namespace velmora

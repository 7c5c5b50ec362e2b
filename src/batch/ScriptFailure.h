#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Why the script ends: the cause, and what the script's author can do about it.
struct ScriptFailure {
    std::string cause;
    std::string remedy;
};

/// None when all went well.
using MaybeFailure = std::optional<ScriptFailure>;

/// `text` in the quotation marks in which failures name the words of the script.
inline std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
}

} // namespace velmora

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ScriptFailure.h"

namespace velmora {

/// A line of a script, taken apart.
struct ScriptLine {
    std::vector<std::string> words; ///< without quotation marks; none in a line that is empty or only a comment
    MaybeFailure failure;           ///< set when the line cannot be taken apart
};

/// Splits a line at blanks (spaces, tabs, carriage returns). A word may stand in double quotes, whole or from its
/// first "=" on; inside them \" and \\ stand for a quotation mark and a backslash, and any other backslash for
/// itself. A word that begins with "#" outside quotes ends the line. Any bytes will do.
ScriptLine splitLine(std::string_view line);

/// NAME=VALUE.
struct Assignment {
    std::string name;
    std::string value;
};

/// The word at its first "="; none when there is no "=" or nothing in front of it.
std::optional<Assignment> asAssignment(std::string_view word);

} // namespace velmora

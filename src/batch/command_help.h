#pragma once

#include <string_view>

#include "command_table.h"
#include "json_values.h"

namespace velmora {

/// The class name of the dialog that a command shows; empty for none.
std::string_view dialogOf(const Command& command);

/// {"command", "dialog", "fields"}: the fields of the command's dialog as a new program has them, each with its name,
/// kind, limits, start value and choices, and whether it can be set.
Json commandHelp(const Command& command);

} // namespace velmora

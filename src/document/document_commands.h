#pragma once

#include <span>

#include "Command.h"

namespace velmora {

/// The rows of the document's own commands.
std::span<const Command> documentCommands();

} // namespace velmora

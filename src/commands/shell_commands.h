#pragma once

#include <span>

#include "Command.h"

namespace velmora {

/// The rows of the commands that each front end carries out in its way.
std::span<const Command> shellCommands();

} // namespace velmora

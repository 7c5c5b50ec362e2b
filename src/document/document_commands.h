#pragma once

#include <span>

#include "Command.h"

namespace velmora {

/// The rows of the document's own commands, which stand in the files of `commands` beside what they run: by the first
/// word of the id, then by file.
std::span<const Command> documentCommands();

} // namespace velmora

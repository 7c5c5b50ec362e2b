#pragma once

#include <string_view>
#include <vector>

#include "command_table.h"

namespace velmora {

/// The commands that share a key, the one that is meant now first: Undo of the newer snapshot; with a point captured
/// its commands before those of the section or line. The first that is on takes the key.
std::vector<const Command*> commandsOfKey(const VelmoraDoc& document, std::string_view key);

} // namespace velmora

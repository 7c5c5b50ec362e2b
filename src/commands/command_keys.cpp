#include "command_keys.h"

#include <algorithm>

#include "VelmoraDoc.h"

namespace velmora {

std::vector<const Command*> commandsOfKey(const VelmoraDoc& document, std::string_view key) {
    std::vector<const Command*> commands;
    for (const Command& command : commandTable()) {
        if (!key.empty() && key == command.accelerator) {
            commands.push_back(&command);
        }
    }
    const bool pointFirst = key == "Ctrl+Z" ? document.pointUndoIsNewer : document.capture->pointCaptured;
    std::stable_partition(commands.begin(), commands.end(), [pointFirst](const Command* command) {
        return std::string_view(command->id).starts_with("point.") == pointFirst;
    });
    return commands;
}

} // namespace velmora

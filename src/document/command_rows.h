#pragma once

#include <span>

#include "Command.h"

namespace velmora {

// The rows of the commands, each in the file of `commands` that holds what they run.

std::span<const Command> blockCommands();
std::span<const Command> bufferCommands();
std::span<const Command> compareCommands();
std::span<const Command> distanceCommands();
std::span<const Command> convertCommands();
std::span<const Command> exchangeCommands();
std::span<const Command> fieldCommands();
std::span<const Command> intersectionCommands();
std::span<const Command> joinCommands();
std::span<const Command> knifeCommands();
std::span<const Command> markerCommands();
std::span<const Command> markerShiftCommands();
std::span<const Command> openCommands();
std::span<const Command> pointCommands();
std::span<const Command> pointDragCommands();
std::span<const Command> projectionCommands();
std::span<const Command> rebreakCommands();
std::span<const Command> rebreakPartCommands();
std::span<const Command> referenceCommands();
std::span<const Command> regimeCommands();
std::span<const Command> saveCommands();
std::span<const Command> sectionCommands();
std::span<const Command> surfaceCommands();
std::span<const Command> transformCommands();
std::span<const Command> undoCommands();
std::span<const Command> viewCommands();
} // namespace velmora

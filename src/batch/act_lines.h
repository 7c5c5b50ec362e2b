#pragma once

#include <span>
#include <string>
#include <variant>

#include "Act.h"
#include "ScriptFailure.h"
#include "VelmoraView.h"

namespace velmora {

/// The act that the words behind "capture" name, with its numbers from 1; none when they name none.
std::optional<Act> parseCapture(std::span<const std::string> words);

/// The move to the place of three words; none when they are no place.
std::optional<Act> parseDrag(std::span<const std::string> words);

/// Why an act was not done; none when it was. `line` is what the script asked for.
MaybeFailure actFailure(VelmoraView::ActResult result, const Act& act, const std::string& line);

} // namespace velmora

#pragma once

#include <optional>

#include "section_edits.h"

namespace velmora {

class VelmoraDoc;

/// Asks for the side of the captured point; what is offered is the side of the last run. None for Cancel.
std::optional<Side> chooseSide(VelmoraDoc& doc);

} // namespace velmora

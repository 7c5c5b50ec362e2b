#pragma once

#include <cstdint>

namespace velmora {

class VelmoraDoc;

/// Removes a patch of the model, and its number from the zBlock; the numbers above it go down.
void takePatchOut(VelmoraDoc& doc, std::int32_t patch);

} // namespace velmora

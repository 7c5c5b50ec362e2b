#pragma once

#include <cstdint>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// A number by which geometry is known again: other points, another order or other triangles give another one (but for
/// one chance in 2 to the power of 64). Titles and values other than coordinates do not count.
std::uint64_t geometryPrint(const PatchList& patches, const zRegion_fe& region);

} // namespace velmora

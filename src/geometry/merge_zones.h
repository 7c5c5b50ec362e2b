#pragma once

#include <cstddef>

#include "zRegion.h"

namespace velmora {

/// Joins zone `b` of the region to zone `a`, which keeps its place, title and fields: its nodes and elements come
/// first, then those of `b`; a field that `b` does not have is 0 there. Zones without elements are dropped on the way.
/// False, and nothing happens, with numbers that name no two zones, with a zone `b` without elements, and when the
/// counts together have no room in 32 bits. Takes the time of copying `b`.
bool mergeZones(zRegion_fe& region, std::ptrdiff_t a, std::ptrdiff_t b);

} // namespace velmora

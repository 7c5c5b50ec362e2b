#pragma once

#include <cstddef>
#include <memory>

#include "zRegion.h"

namespace velmora {

/// Both zones as one, under the title and with the fields of `a`: its nodes and elements, then those of `b`. A field
/// that `b` does not have is 0 there.
std::unique_ptr<zBlock_fe> joinedZone(const zBlock_fe& a, const zBlock_fe& b);

/// Joins zone `b` of the region to zone `a`, in a's place; zones without elements are dropped on the way. False, and
/// nothing happens, with numbers that name no two zones or a zone `b` without elements.
bool mergeZones(zRegion_fe& region, std::ptrdiff_t a, std::ptrdiff_t b);

} // namespace velmora

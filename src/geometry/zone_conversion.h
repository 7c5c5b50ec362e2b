#pragma once

#include <string_view>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// What the user is told when patchesToRegion gives up.
inline constexpr std::string_view irregularRegionMessage = "Irregular structure of REGION. The number of variables < 3";

/// Puts every patch behind the zones of `region` as a zone of M by N by 1 points titled "Patch_add" and its number
/// from 0, with the fields x, y, z; M is that of section 0, and a point that a shorter section does not have is the
/// origin. A region that has zones already gives the number of fields, the surplus ones ("Func_0" and so on) being
/// 0; false when that number is below 3, and then nothing is done.
bool patchesToRegion(const PatchList& patches, zRegion& region);

/// Turns every structured zone of at least 2 by 2 points into triangles behind the zones of `surface`, all fields
/// copied, titled "Patch___" and the number of the zone in `region` from 0. Nothing is done when the first zone has
/// fewer than 3 fields or lacks one of x, y, z. Always true. A zone whose arrays hold fewer than imax * jmax values is
/// left out.
bool regionToSurface(const zRegion& region, zRegion_fe& surface);

/// Every patch as a zone with the fields x, y, z and the title "z": what the writers take.
void patchesToZones(const PatchList& patches, zRegion& region);

} // namespace velmora

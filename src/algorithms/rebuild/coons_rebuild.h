#pragma once

#include "PatchList.h"

namespace velmora {

/// Replaces the inner points of a grid by the Coons surface over its four borders, which stay. Each point takes the
/// crossing of the two parameter lines that join the borders' own parameters; where these two do not cross the point
/// stays. Patches of fewer than 3 sections or lines, and patches that are no grids, stay.
void coonsRebuild(Patch& patch);

} // namespace velmora

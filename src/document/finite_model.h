#pragma once

#include "KeptList.h"
#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// Whether every number of the model is finite: neither infinite nor no number.
bool isFinite(const PatchList& patches);
bool isFinite(const zRegion_fe& zones);
bool isFinite(const KeptPatches& patches);
bool isFinite(const KeptZones& zones);

} // namespace velmora

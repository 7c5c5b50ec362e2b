#pragma once

#include <cstdint>
#include <span>

#include "PatchList.h"

namespace velmora {

/// `regularityOf` for the patches of those numbers alone, all of which must be there.
Regularity regularityOfChosen(const PatchList& list, std::span<const std::int32_t> chosen);

} // namespace velmora

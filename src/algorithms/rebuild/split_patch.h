#pragma once

#include <cstdint>

#include "PatchList.h"

namespace velmora {

/// Cuts patch `K` in two at its section `N`, which stands in both halves; the patches behind it move up by one. Nothing
/// happens at the first or last section, or when there is no such section. False then.
bool splitAtSection(PatchList& list, std::int32_t K, std::int32_t N);

/// Cuts patch `K` in two at its line `L` in the same way. Nothing happens at the first or last line, or in a patch
/// whose sections differ in length.
bool splitAtLine(PatchList& list, std::int32_t K, std::int32_t L);

} // namespace velmora

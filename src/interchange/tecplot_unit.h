#pragma once

namespace velmora {

/// The name that every error of the Tecplot reader and writer gives for its file, whichever source raised it.
inline constexpr const char* tecplotUnit = "zTecplotReader";

} // namespace velmora

#pragma once

#include <filesystem>

namespace velmora {

/// From now on this process opens files of the system, that file and what stands in its folder and below it to read
/// them, and with `writes` makes them there too; nothing else, whatever a library is led to by a file. A system that
/// has no such limit leaves the process as it is.
void keepToFolderOf(const std::filesystem::path& file, bool writes);

} // namespace velmora

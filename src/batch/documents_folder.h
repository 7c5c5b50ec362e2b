#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace velmora {

/// The value of an environment variable; empty when it is not set.
using Environment = std::function<std::string(const char* name)>;

/// The folder of the user's documents: the one that the desktop's settings name (XDG_DOCUMENTS_DIR in the
/// environment, or in user-dirs.dirs of the configuration folder), else "Documents" of the home folder, else the
/// current folder. Only folders that exist count.
std::filesystem::path documentsFolder(const Environment& environment);

/// The environment of this process.
std::string processEnvironment(const char* name);

} // namespace velmora

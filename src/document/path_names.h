#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

/// ASCII letters in lower case; all other bytes as they are.
std::string lowerCase(std::string_view text);

/// The extension of a path, lower case, without the point.
std::string extensionOf(const std::filesystem::path& path);

/// The file name of a path without its extension, lower case.
std::string stemOf(const std::filesystem::path& path);

/// The directory of a path with its closing separator, lower case; empty for a path without a directory.
std::string directoryOf(const std::filesystem::path& path);

/// The path made full, without "." and "..", spelled as it was; where a ".." leads out of a linked folder, the folders
/// are those behind the link.
std::filesystem::path fullPath(const std::filesystem::path& path);

/// Whether both name one file: by the same text, or by links to it that exist.
bool sameFile(const std::filesystem::path& a, const std::filesystem::path& b);

} // namespace velmora

#pragma once

#include <filesystem>
#include <string>

#include "FileRecord.h"
#include "SafeFile.h"
#include "zRegion.h"

namespace velmora {

/// What the writers of zones share.

/// Raises a ValueError that tells zone, node and field of the first number that is not finite: no reader would take it.
void requireFinite(const zRegion& region, const char* unit);
void requireFinite(const zRegion_fe& region, const char* unit);

/// The outcome of a file that is in its place; the counts are still to be filled in.
WriteOutcome outcomeOf(const SafeFile& file, const std::filesystem::path& path, const char* format);

} // namespace velmora

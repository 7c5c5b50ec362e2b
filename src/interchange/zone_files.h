#pragma once

#include <cstddef>
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

/// The name of a zone as a file has it: readers take none that is empty, so "Zone_" and the number from 1 stand for it.
std::string zoneName(const std::string& title, std::size_t number);
/// The same for a solid, of whose name readers take the first word and look at all: one by which something begins or
/// ends there gets a "_" behind it.
std::string solidName(const std::string& title, std::size_t number);

/// The outcome of a file that is in its place; the counts are still to be filled in.
WriteOutcome outcomeOf(const SafeFile& file, const std::filesystem::path& path, const char* format);

} // namespace velmora

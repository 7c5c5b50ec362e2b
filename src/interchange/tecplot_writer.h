#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "FileRecord.h"
#include "progress.h"
#include "zRegion.h"

namespace velmora {

/// A name of letters, digits and what else the reader takes in one; others, at which it would end, become underscores.
std::string writtenVariableName(std::string name);

/// Writes title, the field names of the first zone, and the zones point after point. Numbers have `precision`
/// significant digits as a stream without flags writes them; triangles name their three nodes from 1. A zone whose
/// arrays are shorter than its counts say is written as far as they go. Raises a ValueError on a number
/// that is not finite, and a FileError when the file cannot be opened or written; an old file then stands as it was.
WriteOutcome writeTecplot(const std::filesystem::path& path, const zRegion& region, std::int32_t precision,
                          const ReportProgress& report = {});
WriteOutcome writeTecplot(const std::filesystem::path& path, const zRegion_fe& region, std::int32_t precision,
                          const ReportProgress& report = {});

} // namespace velmora

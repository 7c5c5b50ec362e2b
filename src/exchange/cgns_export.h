#pragma once

#include <filesystem>

#include "FileRecord.h"
#include "exchange_model.h"
#include "export_zones.h"
#include "progress.h"

namespace velmora {

/// CGNS: grids stay grids. The library works in a process of its own. False when the file cannot be written; an old one
/// then stands as it was.
bool exportCgns(const std::filesystem::path& path, const ExchangeView& model, const ExportZones& zones,
                const ExportOptions& options, WriteOutcome& outcome, const ReportProgress& report);

} // namespace velmora

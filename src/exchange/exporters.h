#pragma once

#include <filesystem>

#include "FileRecord.h"
#include "exchange_model.h"
#include "export_zones.h"
#include "progress.h"

namespace velmora {

/// Each writes a model that its format can take, and fills format and counts of the record. False when the file cannot
/// be written; an old one then stands as it was.

/// Text with a solid for each zone, or binary with all of them in one; the normals are those of the corners, 0 for a
/// triangle without area.
bool exportStl(const std::filesystem::path& path, const ExportZones& zones, const ExportOptions& options,
               WriteOutcome& outcome, const ReportProgress& report);
/// An object for each zone.
bool exportObj(const std::filesystem::path& path, const ExportZones& zones, const ExportOptions& options,
               WriteOutcome& outcome, const ReportProgress& report);
/// All zones in one mesh, as text or binary with the lowest byte first.
bool exportPly(const std::filesystem::path& path, const ExportZones& zones, const ExportOptions& options,
               WriteOutcome& outcome, const ReportProgress& report);
/// VRML 2: a named shape for each zone.
bool exportVrml(const std::filesystem::path& path, const ExportZones& zones, const ExportOptions& options,
                WriteOutcome& outcome, const ReportProgress& report);
/// PLOT3D with the number of blocks, as text or as the records of a Fortran program with the lowest byte first: each
/// patch of j sections of i points a block of i by j by 1.
bool exportPlot3d(const std::filesystem::path& path, const PatchList& patches, const ExportOptions& options,
                  WriteOutcome& outcome, const ReportProgress& report);
/// Tecplot text: grids stay grids.
bool exportTecplot(const std::filesystem::path& path, const ExchangeView& model, const ExportZones& zones,
                   const ExportOptions& options, WriteOutcome& outcome, const ReportProgress& report);

} // namespace velmora

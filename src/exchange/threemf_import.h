#pragma once

#include <string_view>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// Reads a 3MF package: the meshes of the items that are to be built, at their places, a zone for each mesh and place
/// under the nearest name above it. Coordinates stay in the unit of the file, which the record has.
void importThreemf(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                   const ReportProgress& report = {});

} // namespace velmora

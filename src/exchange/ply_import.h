#pragma once

#include <string_view>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// Reads the points and the polygons or triangle strips of a PLY file, as text or binary in either order of bytes,
/// with numbers of any type. One zone.
void importPly(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report = {});

} // namespace velmora

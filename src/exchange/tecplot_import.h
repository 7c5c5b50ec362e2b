#pragma once

#include <string_view>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// Reads a Tecplot text. Ordered zones give grids, those of elements triangles, volumes of either kind their outer
/// faces if these are asked for. In a file that has both, grids become triangles too. Zones of triangles keep the
/// variables that every zone has at its nodes.
void importTecplot(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                   const ReportProgress& report = {});

} // namespace velmora

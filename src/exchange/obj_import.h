#pragma once

#include <string_view>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// Reads the polygons of an OBJ file: a zone for each group of each object that has some, titled by the group, else by
/// the object. No other file is read for it.
void importObj(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report = {});

} // namespace velmora

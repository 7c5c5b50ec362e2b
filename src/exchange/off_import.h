#pragma once

#include <string_view>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// Reads an OFF file, text or binary: the header may have the prefixes ST, C, N, 4 and n, stand on the line of the
/// counts, or be missing. One zone.
void importOff(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report = {});

} // namespace velmora

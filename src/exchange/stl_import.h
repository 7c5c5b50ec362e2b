#pragma once

#include <string_view>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// Reads an STL file, text or binary, a zone for each solid, three points a facet. What decides is the content: a
/// binary file's size fits its count, or it does not begin as text does.
void importStl(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report = {});

} // namespace velmora

#pragma once

#include <string_view>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// Reads the grids of a PLOT3D file: text or binary, in records or without, numbers of 4 or 8 bytes in either order,
/// one block or several, with or without their number before them and blanking behind each, in three dimensions or two.
/// Nothing in the file says which; the layout is the one that its size fits to the last number. A file that no layout
/// fits is cut or damaged: its whole blocks are kept.
void importPlot3d(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                  const ReportProgress& report = {});

} // namespace velmora

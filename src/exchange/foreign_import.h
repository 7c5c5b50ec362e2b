#pragma once

#include <filesystem>
#include <string>

#include "FileRecord.h"
#include "exchange_model.h"
#include "foreign_file.h"
#include "progress.h"

namespace velmora {

/// Reads a file by a library of others, which works in a process of its own: `format` is the name that process has for
/// it. Whatever the library does, a reason is told and nothing comes into the model.
void importForeign(const std::string& format, const std::filesystem::path& path, const ImportOptions& options,
                   ExchangeModel& model, FileRead& record, const ReportProgress& report = {});

/// Makes the model of what such a library found: patches of grids alone, else triangles.
void takeForeign(ForeignFile&& file, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                 const ReportProgress& report = {});

} // namespace velmora

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// The extensions that can be read, and those that can be written, in small letters and without a point.
std::vector<std::string_view> importExtensions();
std::vector<std::string_view> exportExtensions();

/// The extensions of formats whose libraries this build of the program lacks.
std::vector<std::string_view> absentExtensions();

/// How an import went. Whatever is not `Done` gives no model.
enum class ImportOutcome {
    Done,
    UnknownType, ///< the extension is none of those that can be read; no file was opened
    CannotOpen,  ///< no such file, or no regular one
    Failed,      ///< the record tells why; for an empty file it tells of nothing at all
};

/// Reads a file of others by its extension, and its content where that stands for several formats. `model` must be
/// empty. The record is filled whenever a file was opened.
ImportOutcome importFile(const std::filesystem::path& path, const ImportOptions& options, ExchangeModel& model,
                         FileRead& record, const ReportProgress& report = {});

/// How an export went.
enum class ExportOutcome {
    Done,
    UnknownType, ///< the extension is none of those that can be written
    Empty,       ///< there is nothing in the model
    CannotTake,  ///< triangles, or sections of different lengths, for a format of grids; no triangles for one of these
    TooLarge,    ///< a coordinate has no room in single precision
    CannotWrite, ///< the file could not be written; an old one stands as it was
};

/// Whether a file of this extension can take the model: `Done`, or why not.
ExportOutcome exportPossible(const std::filesystem::path& path, const ExchangeView& model);

/// How many digits of a coordinate a file of this extension will have: those asked for, 7 for single precision, 17 for
/// double.
int digitsWritten(const std::filesystem::path& path, const ExportOptions& options);

/// How far a point moves at most by those digits: what a user is told before the file is written.
double moveByDigits(const std::filesystem::path& path, const ExchangeView& model, const ExportOptions& options);

/// Writes a model by the extension. The model is never changed. `outcome` tells of the file, and what went wrong with
/// it.
ExportOutcome exportFile(const std::filesystem::path& path, const ExchangeView& model, const ExportOptions& options,
                         WriteOutcome& outcome, const ReportProgress& report = {});

} // namespace velmora

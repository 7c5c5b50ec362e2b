#pragma once

#include <filesystem>
#include <string_view>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// Reads a glTF 2 file, JSON or binary: the triangles of the scene's nodes at their places, a zone for each node that
/// has a mesh, under the nearest name above the mesh. Buffers in files of their own are read in `folder` and below it
/// alone.
void importGltf(std::string_view text, const std::filesystem::path& folder, const ImportOptions& options,
                ExchangeModel& model, FileRead& record, const ReportProgress& report = {});

} // namespace velmora

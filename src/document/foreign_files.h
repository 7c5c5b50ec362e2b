#pragma once

#include <filesystem>

namespace velmora {

class VelmoraDoc;

/// Whether Import takes the file and Open does not.
bool isForeignFile(const std::filesystem::path& path);

/// Imports the file in place of the model, once the dialog of Import was answered.
void importForeignFile(VelmoraDoc& doc, const std::filesystem::path& path);

} // namespace velmora

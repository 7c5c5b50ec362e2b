#pragma once

#include <filesystem>

namespace velmora {

class VelmoraDoc;
struct ExchangeModel;
struct LoadTally;

/// Whether Import takes the file and Open does not.
bool isForeignFile(const std::filesystem::path& path);

/// Imports the file in place of the model, once the dialog of Import was answered.
void importForeignFile(VelmoraDoc& doc, const std::filesystem::path& path);

/// Reads the file as it stands, whatever the dialog of Import says; the model stays as it is. Tells of the file, and
/// what is lost of it goes into the tally; false, with a message, when it could not be opened.
bool readForeignFile(VelmoraDoc& doc, const std::filesystem::path& path, ExchangeModel& model, LoadTally& tally);

} // namespace velmora

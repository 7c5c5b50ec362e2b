#pragma once

#include <filesystem>

#include "kinds.h"

namespace velmora {

class VelmoraDoc;
class zRegion;
class zRegion_fe;

// Whatever a command writes goes to the writer of its kind, and what the file then holds is known.

/// False when the file holds more than was read of it and the user wants to keep that.
bool mayOverwrite(VelmoraDoc& doc, const std::filesystem::path& path);

/// Writes the patches of the model: a grid as one, else its lines. Shows what failed.
bool writeStructured(VelmoraDoc& doc, const std::filesystem::path& path, FileKind kind);

/// Writes zones in the format that the extension of `path` names. Shows what failed.
bool writeZones(VelmoraDoc& doc, const std::filesystem::path& path, const zRegion& structured,
                const zRegion_fe& unstructured);

} // namespace velmora

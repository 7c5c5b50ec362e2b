#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace velmora {

class UserInterface;
class VelmoraDoc;
class zRegion;
class zRegion_fe;

// One file goes to the reader of its extension; what came of it sets kinds, title and path.

/// What a file is read for.
struct LoadMode {
    bool append = false; ///< it joins the model, which keeps its name
    bool field = false;  ///< a .dat holds field values
};

/// How many points the files of one command hold, and how many were kept of them.
struct PointTally {
    std::int64_t read = 0;
    std::int64_t kept = 0;
};

/// Reads a file into the model and counts its points. Shows what is wrong with it; false when it gave nothing whole.
bool loadFile(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension, LoadMode mode,
              PointTally& points);

/// The same for zones that go behind those of the model.
bool appendUnstructuredFile(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension,
                            LoadMode mode);

/// Reads the zones of a file and shows what the reader tells; the document stays as it is.
bool readZones(UserInterface& ui, const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured);

} // namespace velmora

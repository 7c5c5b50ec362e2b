#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "PatchList.h"

namespace velmora {

class VelmoraDoc;
struct FileRead;
class zRegion;
class zRegion_fe;

// One file goes to the reader of its extension; what came of it sets kinds, title and path.

/// What a file is read for.
struct LoadMode {
    bool append = false; ///< it joins the model, which keeps its name
    bool field = false;  ///< a .dat holds field values
    bool joins = false;  ///< it is one of several files of a model
};

/// What the files of one command came to.
struct LoadTally {
    std::int64_t pointsRead = 0; ///< that the files hold, where a model is thinned
    std::int64_t pointsKept = 0;
    std::string kind;                ///< what became of the model, where it is of another kind than before
    std::string unit;                ///< of lengths, in words for the user, where a file has one
    std::vector<std::string> losses; ///< what was altered or lost otherwise, in words for the user
};

/// Reads a file into the model and counts what it holds. Tells of the file, and shows what is wrong with it; false when
/// it gave nothing whole. A file that gives no model leaves the model, its kind and its title as they are.
bool loadFile(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension, LoadMode mode,
              LoadTally& tally);

/// The same for zones that go behind those of the model.
bool appendUnstructuredFile(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension,
                            LoadMode mode, LoadTally& tally);

/// Reads the zones of a file, tells of the file and shows what the reader tells; the model stays as it is. What is lost
/// of the file goes into the tally, of which nothing is shown.
bool readZones(VelmoraDoc& doc, const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured,
               LoadTally& tally);

/// The same for the patches of an .apt or .skl file, all points of them; `patches` must be empty. False when not all of
/// it could be read.
bool readPatches(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension, PatchList& patches,
                 LoadTally& tally);

/// What is lost of a file, for the status line: the first of it, and how much more there is; empty for nothing.
std::string lossText(const std::vector<std::string>& losses);
/// The same of one file.
std::string lossText(const FileRead& record);
/// Shows it, if there is any.
void showLosses(VelmoraDoc& doc, const LoadTally& tally);

} // namespace velmora

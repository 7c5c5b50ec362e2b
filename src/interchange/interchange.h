#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "FileRecord.h"
#include "progress.h"
#include "zRegion.h"

namespace velmora {

/// Shows a text to the user in a box with one button.
using ShowMessage = std::function<void(const std::string&)>;

/// Reads a file by its extension, letters of either case being equal: "dat" into both regions, "wrl" and "stl" into
/// `unstructured`. With `transpose`, every zone of `structured` then has its first two indices exchanged.
///
/// False for any other extension, and when an error ended the reading: one of the family of zExceptions.h, which
/// `showMessage` then gets the text of, or one of the standard library, whose text goes to the standard error stream.
/// A zone that names nodes which are not there is such an error. What was read before it stays in the regions.
///
/// `record`, if given, then tells what the file holds and what of it is in the regions; after an error, why it is not
/// read. It has no path when the file could not be opened.
bool readGeometry(const std::filesystem::path& path, bool transpose, zRegion& structured, zRegion_fe& unstructured,
                  const ShowMessage& showMessage, const ReportProgress& report = {}, FileRead* record = nullptr);

/// Writes a file by its extension: "dat" with `precision` significant digits from `structured` or, when that has no
/// zones, from `unstructured`; "wrl" and "stl" from `unstructured` with six. Any other extension writes nothing and
/// is true. False after an error, as above; an old file then stands as it was. `outcome`, if given, tells the rest.
bool writeGeometry(const std::filesystem::path& path, std::int32_t precision, const zRegion& structured,
                   const zRegion_fe& unstructured, const ShowMessage& showMessage, const ReportProgress& report = {},
                   WriteOutcome* outcome = nullptr);

/// How many triangles `writeGeometry` would leave out at `path`.
std::int64_t trianglesLeftOut(const std::filesystem::path& path, const zRegion_fe& unstructured);

/// Exchanges the first two indices of every zone: the new element (j, i, k) is the old one (i, j, k).
void transposeZones(zRegion& region);

} // namespace velmora

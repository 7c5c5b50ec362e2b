#pragma once

#include <optional>

#include "point_files.h"

namespace velmora {

class VelmoraDoc;
struct FileRequest;

/// The points of the file that the user chooses, and how its reading went, which is told; no result for Cancel, no
/// points for a file that cannot be opened.
std::optional<PointFileResult> readChosenPoints(VelmoraDoc& doc, const FileRequest& request);

} // namespace velmora

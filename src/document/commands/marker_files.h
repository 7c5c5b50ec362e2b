#pragma once

#include "point_files.h"

namespace velmora {

class VelmoraDoc;
struct FileRequest;

/// The points of the file that the user chooses, and how its reading went, which is told; none for Cancel, and for a
/// file that cannot be opened.
PointFileResult readChosenPoints(VelmoraDoc& doc, const FileRequest& request);

} // namespace velmora

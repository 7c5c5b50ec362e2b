#pragma once

namespace velmora {

class VelmoraDoc;

// Sections and lines change their parts, and the capture with them.

/// Transposes the chosen patches, and the capture with them, whether or not its patch is one of them. False, and
/// nothing is changed, when one of them is no grid.
bool exchangeSectionsAndLines(VelmoraDoc& doc);

/// Exchanges sections and lines of the captured patch, a grid, and of the capture with it. A zBlock that does not
/// hold the patch keeps its points in place: the capture alone is exchanged then.
void turnCapturedPatch(VelmoraDoc& doc);

} // namespace velmora

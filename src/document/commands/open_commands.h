#pragma once

namespace velmora {

class VelmoraDoc;
struct PointTally;

// What the commands that open a model have in common.

/// Asks before the model goes, and removes it; Undo brings it back. False for No.
bool removeGeometryAfterQuestion(VelmoraDoc& doc);

/// A model was opened: nothing is captured or changed, the views fit it, and what was thinned is told.
void finishOpen(VelmoraDoc& doc, const PointTally& points);

} // namespace velmora

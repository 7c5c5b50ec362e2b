#pragma once

#include "ModelFile.h"
#include "PatchList.h"
#include "kinds.h"
#include "zRegion.h"

namespace velmora {

class VelmoraDoc;
struct LoadTally;

// What the commands that open a model have in common.

/// Asks before the model goes, and removes it; Undo brings it back. False for No.
bool removeGeometryAfterQuestion(VelmoraDoc& doc);

/// Removes the model so that a file can give another one: that then goes to Undo, or it comes back as it was.
class ModelAside {
public:
    explicit ModelAside(VelmoraDoc& doc);
    ModelAside(const ModelAside&) = delete;
    ModelAside& operator=(const ModelAside&) = delete;
    /// Brings the model back unless keepForUndo() was called.
    ~ModelAside();

    /// A file gave another model.
    void keepForUndo();

private:
    VelmoraDoc& doc_;
    bool kept_ = false;
    PatchList patches_;
    zRegion_fe region_;
    StructureKind structureKind_;
    FileKind fileKind_;
    SecondKind secondKind_;
    ModelFile modelFile_;
    bool fieldLoaded_;
    bool fieldMode_;
    bool fieldOpening_;
    PatchList fieldPatches_;
    bool cbcAppended_;
    bool gridNamed_;
};

/// A model was opened: nothing is captured or changed, the views fit it, and what was lost is told.
void finishOpen(VelmoraDoc& doc, const LoadTally& tally);

/// No file gave a model: what stood before stays, and the status line tells why, where the file has more to tell.
void cancelOpen(VelmoraDoc& doc, const LoadTally& tally);

} // namespace velmora

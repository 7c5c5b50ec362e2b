#pragma once

#include <cstdint>
#include <string>

#include "ModelFile.h"
#include "PatchList.h"
#include "VelmoraDoc.h"
#include "kinds.h"
#include "zRegion.h"

namespace velmora {

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
    void exchange();

    VelmoraDoc& doc_;
    bool kept_ = false;
    PatchList patches_;
    zRegion_fe region_;
    StructureKind structureKind_ = StructureKind::None;
    FileKind fileKind_ = FileKind::None;
    SecondKind secondKind_ = SecondKind::None;
    ModelFile modelFile_;
    bool fieldLoaded_ = false;
    bool fieldMode_ = false;
    bool fieldOpening_ = false;
    PatchList fieldPatches_;
    std::string fieldTitleLine_;
    std::string fieldVariablesLine_;
    std::int32_t fieldCount_ = 0;
    bool cbcAppended_ = false;
    bool gridNamed_ = false;
};

/// A model was opened: nothing is captured or changed, the views fit it, and what was lost is told.
void finishOpen(VelmoraDoc& doc, const LoadTally& tally);

/// No file gave a model: what stood before stays, and the status line tells why, where the file has more to tell.
void cancelOpen(VelmoraDoc& doc, const LoadTally& tally);

} // namespace velmora

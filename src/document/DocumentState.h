#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Capture.h"
#include "Comparison.h"
#include "KeptList.h"
#include "ModelFile.h"
#include "PatchList.h"
#include "kinds.h"
#include "marker_shift.h"
#include "memory_state.h"
#include "zRegion.h"

namespace velmora {

struct DialogValues;
struct MemoryRoom;
class UserInterface;

/// The most patches that the zBlock selection can hold.
inline constexpr std::int32_t blockCapacity = 5000;
/// Digits behind the point of numbers in written geometry.
inline constexpr int outputPrecision = 16;
/// The status line when nothing else is to be said.
inline constexpr const char* idlePrompt = "For Help, press F1";

/// How many snapshots were begun, and how many of them were taken whole: memory may run out between.
struct SnapshotCounts {
    std::uint64_t patchBegun = 0;
    std::uint64_t patchTaken = 0;
    std::uint64_t pointBegun = 0;
    std::uint64_t pointTaken = 0;
    std::uint64_t guardCopies = 0; ///< of patches, see VelmoraDoc::keepForGuard
};

/// What is known of the field values of a model beside the values.
struct FieldWords {
    std::string titleLine;
    std::string variablesLine;
    std::int32_t count = 0;
    bool loaded = false;
    bool mode = false;
};

/// The values that a field gives to the points of a model, and what its file says of them.
struct FieldSnapshot {
    PatchList patches;
    FieldWords words;
};
/// The same in a snapshot for Undo.
struct KeptField {
    KeptPatches patches;
    FieldWords words;
};

/// The snapshots that the command that runs has replaced, with the mark of the model: they come back if it is refused.
struct ReplacedSnapshots {
    bool modified = false;
    bool patchReady = false;
    bool pointReady = false;
    bool extent = false;
    bool pointIsNewer = false;
    std::filesystem::path path;
    bool patchTaken = false;
    KeptPatches patches;
    KeptRegion region;
    KeptField field;
    bool pointTaken = false;
    KeptPatches pointPatches;
    KeptRegion pointRegion;
    KeptField pointField;
};

/// All that the document holds: the model, what is captured, buffers, switches and the values of the dialogs. Views and
/// front ends read it; the commands of VelmoraDoc change it.
struct DocumentState {
    /// `documentsFolder` is where untitled models go.
    DocumentState(UserInterface& ui, const std::filesystem::path& documentsFolder);
    DocumentState(const DocumentState&) = delete;
    DocumentState& operator=(const DocumentState&) = delete;
    ~DocumentState();

    // ---- Geometry ---------------------------------------------------------------------------------------------------

    PatchList patches;            ///< the structured model, in file order
    KeptPatches undoPatches;      ///< snapshot for Undo patch
    KeptPatches pointUndoPatches; ///< snapshot for Undo point
    PatchList dragPatches;        ///< the grid on which a point is dragged
    PatchList blockClipboard;     ///< paste buffer of Block copy
    PatchList referencePatches;   ///< a second, structured geometry
    PatchList fieldPatches;       ///< up to three field values per point, shaped like `patches`
    PatchList interPatches;       ///< working list of Intersection
    zRegion_fe feRegion;          ///< the unstructured model
    zRegion_fe referenceRegion;   ///< a second, unstructured geometry
    KeptRegion undoRegion;        ///< snapshot for Undo patch
    KeptRegion pointUndoRegion;   ///< snapshot for Undo point
    PointList lineBuffer;
    PointList interLine; ///< piercing points of Intersection, with the points of each line before and after
    PointList beforeIntersection;
    PointList afterIntersection;
    PointList cylinderLine;
    PointList sftPoints; ///< marker pairs: where each stood first, and where it stands
    PointList sftTargets;
    PointList markers;
    /// The file of the model in the snapshot for Undo patch, when that model was removed; else empty.
    std::filesystem::path undoPath;
    bool undoModified = false; ///< that model had changes that were not saved
    SnapshotCounts snapshotCounts;
    PatchList guardPatches;                    ///< the model for CommandGuard, where a command takes no snapshot
    KeptField undoField;                       ///< the field values of the snapshot for Undo patch
    KeptField pointUndoField;                  ///< of that for Undo point
    FieldSnapshot guardField;                  ///< of that for CommandGuard
    std::optional<ReplacedSnapshots> replaced; ///< while a command runs
    MarkerShift markerShift; ///< the fits of the last "Reflection to sft", of the plane that it treated last

    // ---- Kinds, paths, titles ---------------------------------------------------------------------------------------

    StructureKind structureKind = StructureKind::None;
    FileKind fileKind = FileKind::None;
    SecondKind secondKind = SecondKind::None;
    FileKind blockKind = FileKind::None; ///< set once the zBlock was saved
    ModelFile modelFile;                 ///< where the model came from, and where Save puts it
    /// The first two lines of the field file that was opened, written back as they were, and the values per point.
    std::string fieldTitleLine;
    std::string fieldVariablesLine;
    std::int32_t fieldCount = 0;

    // ---- Capture and selection: numbers from 0, -1 for none ---------------------------------------------------------

    Capture capture;                                     ///< what is captured or waited for: read it by `capture->`
    std::array<std::int32_t, blockCapacity> blockList{}; ///< the zBlock, in the order of capture
    std::int32_t blockCount = 0;                         ///< valid entries of blockList

    zVec<double> pointClipboard;
    zVec<double> undoNode;
    zVec<double> dragStart;

    // ---- Other flags ------------------------------------------------------------------------------------------------

    bool documentModified = false;
    bool pointUndoReady = false;
    bool patchUndoReady = false;
    bool pointUndoIsNewer = false; ///< of the two snapshots that of a point was taken last
    bool rebuildOnUndo = false;    ///< Undo patch must fit the view anew
    bool surfaceMode = false;      ///< the views draw filled surfaces
    bool pointClipboardFull = false;
    bool lineBufferFull = false;
    bool blockClipboardFull = false;
    bool showBlockOnly = false;
    bool showFirstPoints = false;
    bool showDoublePoints = false;
    bool showBuffer = false;
    bool showZBlockMarkers = false;
    bool partBefore = false; ///< the side that the part commands worked on last
    bool partAfter = true;
    bool sftOpen = false;
    bool markersOpen = false; ///< markers are loaded and drawn
    bool cbcAppended = false;
    bool gridNamed = false;
    bool fieldLoaded = false;
    bool fieldMode = false;
    bool fieldOpening = false; ///< the model was opened as one with field values

    // ---- Numbers ----------------------------------------------------------------------------------------------------

    zVec<double> boxMin; ///< the model's box, as of the last updateBounds
    zVec<double> boxMax;
    zVec<double> modelCenter;
    double modelRadius = 0.0;
    double intersectionTolerance = 0.0005;

    /// Bytes of memory that are free on the machine. Commands that are given a number ask it before they make so many.
    std::function<std::uint64_t()> freeMemory = availableMemory;

    // ---- Status line ------------------------------------------------------------------------------------------------

    std::string status = idlePrompt; ///< what the message pane shows

    // ---- Values of the parameter dialogs ----------------------------------------------------------------------------

    const std::unique_ptr<DialogValues> dialogs;

    // ---- Of the last Compare ----------------------------------------------------------------------------------------

    std::optional<Comparison> foundComparison;
    std::uint64_t comparedDigest = 0; ///< of the geometry that it was made of, see Digest.h

    // ---- What follows from it ---------------------------------------------------------------------------------------

    /// Another number whenever `patches` or `feRegion` may have changed: what was worked out of them for one number
    /// holds as long as it stays.
    std::uint64_t geometryRevision() const { return geometryRevision_; }
    /// What the last Compare found; null before the first one and once the geometry is another one. Drawing it anew
    /// does not make it one.
    const Comparison* comparison() const;
    /// Neither patches nor zones.
    bool holdsNothing() const { return patches.empty() && feRegion.blocks.empty(); }
    /// The patches of a structured model, the zones of an unstructured one: what K counts.
    std::int32_t partCount() const;

    bool inBlock(std::int32_t patch) const;
    /// Per part whether it stands in the zBlock.
    std::vector<bool> blockMask() const;
    /// What a whole-model command treats: all parts, or those of the zBlock, in its order.
    std::vector<std::int32_t> chosenPatches() const;
    /// The same per part.
    std::vector<bool> chosenMask() const;
    /// The patches among them in the order of the model.
    std::vector<std::int32_t> chosenInModelOrder() const;

    /// The section that is addressed, or null when the address points outside the model.
    PointList* sectionAt(std::int32_t patch, std::int32_t section);
    /// The point that is addressed, or null when the address points outside the model.
    zVec<double>* pointAt(std::int32_t patch, std::int32_t section, std::int32_t point);
    /// Where the point, or with "uns" the node `point` of zone `patch`, stands; none when there is no such one.
    std::optional<zVec<double>> positionAt(std::int32_t patch, std::int32_t section, std::int32_t point) const;

    /// How much the model may grow: half of the free memory, as other programs want some too. `bytesEach` is what one
    /// more of what is counted takes.
    MemoryRoom memoryRoom(double bytesEach) const;

    // ---- Field values -----------------------------------------------------------------------------------------------

    /// The field values of a patch or section, if they have its shape: one for each point. Null without.
    Patch* fieldOfPatch(std::int32_t patch);
    PointList* fieldOfSection(std::int32_t patch, std::int32_t section);
    /// The values of all patches, if all have their shape. Null without.
    PatchList* wholeField();
    FieldWords fieldWords() const;
    void takeFieldWords(FieldWords&& words) noexcept;

    // ---- Kind, title and path ---------------------------------------------------------------------------------------

    /// Sets structureKind and fileKind from the section counts of `list`. Without a patch they stay.
    void checkRegularity(const PatchList& list);
    /// checkRegularity, then title and path take the extension of the kind.
    void retitle();
    /// No model, and nothing beside it.
    void forgetKinds();
    /// Removes the model with its field values. The views hear nothing.
    void clearModel();
    void emptyBlock();

protected:
    std::uint64_t geometryRevision_ = 0;

private:
    /// Whether the geometry of a revision is the one that was compared: looked at once for each.
    struct ComparedLook {
        std::uint64_t revision = 0;
        std::uint64_t digest = 0;
        bool same = false;
    };
    mutable ComparedLook comparedLook_;
};

} // namespace velmora

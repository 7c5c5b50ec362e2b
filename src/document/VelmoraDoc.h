#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CBeforeAfter.h"
#include "CBlockMove.h"
#include "CBlockRotate.h"
#include "CConvert_SKL_to_APT.h"
#include "CConvert_to_SKL.h"
#include "CCorrectLine.h"
#include "CExport.h"
#include "CExtrapolation.h"
#include "CFeatures.h"
#include "CFirstPoint.h"
#include "CFlipBlock.h"
#include "CImport.h"
#include "CInterpolate.h"
#include "CIntersection.h"
#include "CLast_First_switch.h"
#include "CMerge.h"
#include "CPrescribe.h"
#include "CRebreak.h"
#include "CRebreakPart.h"
#include "CRegularFind.h"
#include "CRegularInput.h"
#include "CScaling.h"
#include "CSmooth.h"
#include "CUKnife.h"
#include "Capture.h"
#include "Cduplicate.h"
#include "DocumentView.h"
#include "ModelFile.h"
#include "PatchList.h"
#include "UserInterface.h"
#include "dlgEditPoint.h"
#include "dlgFilesList.h"
#include "dlgViewing.h"
#include "input_dialogs.h"
#include "kinds.h"
#include "marker_shift.h"
#include "rescue_format.h"
#include "section_edits.h"
#include "view_extent.h"
#include "zRegion.h"

namespace velmora {

/// The most patches that the zBlock selection can hold.
inline constexpr std::int32_t blockCapacity = 5000;
/// Digits behind the point of numbers in written geometry.
inline constexpr int outputPrecision = 16;
/// The status line when nothing else is to be said.
inline constexpr const char* idlePrompt = "For Help, press F1";

/// The one document: it owns the model, the capture state and the values of all parameter dialogs, and every command
/// on the geometry is a method of it. A command that cannot go on says its message and returns; it never throws.
/// Views and front ends read the fields; only the document changes geometry.
class VelmoraDoc {
public:
    /// `documentsFolder` is where untitled models go.
    VelmoraDoc(UserInterface& userInterface, const std::filesystem::path& documentsFolder);
    VelmoraDoc(const VelmoraDoc&) = delete;
    VelmoraDoc& operator=(const VelmoraDoc&) = delete;
    ~VelmoraDoc() = default;

    // ---- Geometry -------------------------------------------------------------------------------------------------

    PatchList patches;          ///< the structured model, in file order
    PatchList undoPatches;      ///< snapshot for Undo patch
    PatchList pointUndoPatches; ///< snapshot for Undo point
    PatchList dragPatches;      ///< the grid on which a point is dragged
    PatchList blockClipboard;   ///< paste buffer of Block copy
    PatchList referencePatches; ///< a second, structured geometry
    PatchList fieldPatches;     ///< up to three field values per point, shaped like `patches`
    PatchList interPatches;     ///< working list of Intersection
    zRegion_fe feRegion;        ///< the unstructured model
    zRegion_fe referenceRegion; ///< a second, unstructured geometry
    zRegion_fe undoRegion;      ///< snapshot for Undo patch
    zRegion_fe pointUndoRegion; ///< snapshot for Undo point
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
    MarkerShift markerShift;   ///< the fits of the last "Reflection to sft", of the plane that it treated last

    // ---- Kinds, paths, titles -------------------------------------------------------------------------------------

    StructureKind structureKind = StructureKind::None;
    FileKind fileKind = FileKind::None;
    SecondKind secondKind = SecondKind::None;
    FileKind blockKind = FileKind::None; ///< set once the zBlock was saved
    ModelFile modelFile;                 ///< where the model came from, and where Save puts it
    /// The first two lines of the field file that was opened, written back as they were, and the values per point.
    std::string fieldTitleLine;
    std::string fieldVariablesLine;
    std::int32_t fieldCount = 0;

    // ---- Capture and selection: numbers from 0, -1 for none -------------------------------------

    Capture capture;                                     ///< what is captured or waited for: read it by `capture->`
    std::array<std::int32_t, blockCapacity> blockList{}; ///< the zBlock, in the order of capture
    std::int32_t blockCount = 0;                         ///< valid entries of blockList

    zVec<double> pointClipboard;
    zVec<double> undoNode;
    zVec<double> dragStart;

    // ---- Other flags ----------------------------------------------------------------------------

    bool documentModified = false;
    bool pointUndoReady = false;
    bool patchUndoReady = false;
    bool rebuildOnUndo = false; ///< Undo patch must fit the view anew
    bool surfaceMode = false;   ///< the views draw filled surfaces
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

    // ---- Numbers --------------------------------------------------------------------------------

    zVec<double> boxMin; ///< the model's box, as of the last updateBounds
    zVec<double> boxMax;
    zVec<double> modelCenter;
    double modelRadius = 0.0;
    double intersectionTolerance = 0.0005;

    // ---- Status line ------------------------------------------------------------------------------------------------

    std::string status = idlePrompt; ///< what the message pane shows

    // ---- Values of the parameter dialogs: what was typed is the next default ----------------------------------------

    CRebreak rebreakValues;
    CRebreakPart rebreakPartValues;
    CMerge mergeValues;
    CSmooth smoothValues;
    CInterpolate interpolateValues;
    CCorrectLine correctLineValues;
    CBeforeAfter beforeAfterValues;
    Cduplicate duplicateValues;
    CScaling scalingValues;
    CBlockMove moveValues;
    CBlockRotate rotateValues;
    CFlipBlock flipValues;
    CSymmetricBlock symmetricValues;
    CLast_First_switch lastFirstValues;
    CFirstPoint firstPointValues;
    CExtrapolation extrapolationValues;
    CPrescribe prescribeValues;
    CConvert_to_SKL toSklValues;
    CConvert_SKL_to_APT toAptValues;
    CUKnife knifeValues;
    CInputPatch inputPatchValues;
    CInputSection inputSectionValues;
    CInputLine inputLineValues;
    CFeatures featuresValues;
    dlgEditPoint editPointValues;
    dlgViewing viewingValues;
    CIntersection intersectionValues;
    CRegularFind regularFindValues;
    CRegularInput regularInput{patches};
    CImport importValues;
    CExport exportValues;
    dlgFilesList filesList; ///< the project list, which no command opens

    /// The form over the stored values of the dialog of that class name; none for an unknown name.
    std::optional<DialogForm> storedDialog(std::string_view name);
    /// The class names that storedDialog knows.
    static std::vector<std::string> dialogNames();

    // ---- Views and messages ---------------------------------------------------------------------

    /// The view must outlive the document or be detached.
    void attachView(DocumentView& view) { views_.push_back(&view); }
    void detachView(DocumentView& view);

    UserInterface& ui() { return ui_; }
    /// Writes the message pane of the status line at once.
    void ShowStatus(const std::string& text);
    /// Shows the form over a copy of `values` and takes the copy on OK; true for OK.
    template <class Values, class... Context>
    bool showDialog(Values& values, Context&&... context);

    // Each of the three tells every view and puts the mouse back to the innermost regime.

    /// The geometry may have changed; its box stays.
    void redraw();
    /// Only what is shown of the geometry, or beside it, changed.
    void redrawPicture();
    /// Only what is captured, or under the mouse, changed.
    void redrawHighlight();
    void resetMouseMode();
    /// Computes the model's box, centre and radius anew and resets the views. They hear nothing with "non".
    void updateBounds();
    /// What updateBounds had to tell of a model of an unusual size; else empty.
    const std::string& extentStatus() const { return extentStatus_; }
    /// Another number whenever `patches` or `feRegion` may have changed: what was worked out of them for one number
    /// holds as long as it stays.
    std::uint64_t geometryRevision() const { return geometryRevision_; }

    // ---- File commands --------------------------------------------------------------------------

    /// New. The first call of the process only sets the initial state.
    void onNewDocument();
    /// Opens one file with no dialog and no question about the model that is there.
    void onOpenDocument(const std::filesystem::path& path);
    /// The same for several files, as Open does it: those behind the first join it if they are of its extension.
    void onOpenDocuments(const std::vector<std::filesystem::path>& paths);
    void openFiles();
    /// The same with the chooser opened on `folder`.
    void openFilesIn(const std::filesystem::path& folder);
    void appendFile();
    /// A file of others in place of the model, which is untitled then.
    void importFiles();
    /// The model as a file of others; its own file stays what it is.
    void exportModel();
    void AppendWrl();
    void CloseWrl();
    void AppendDat();
    void CloseDat();
    void saveModel();
    void saveModelAs();
    void AppendSft();
    void CloseSft();
    void AppendCbc();
    void OpenApm();
    void CloseApm();
    void OpenField();
    void SaveField();
    void CloseField();
    enum class SaveResult { Saved, Failed, Declined };
    /// Writes the model to its file by its kind. Asks first when the file holds more than the model.
    SaveResult saveCurrent();
    /// The file that Save would write, spelled as the user chose it; empty without a model.
    std::filesystem::path saveTarget() const;
    /// The question before the document is closed; false when it must stay open: the user wants to stay, or saving
    /// failed.
    bool saveModified();

    // ---- Rescue -----------------------------------------------------------------------------------------------------

    /// The model is in no file as it is: a rescue copy would keep something.
    bool worthRescuing() const { return documentModified && structureKind != StructureKind::None && !holdsNothing(); }
    /// The bytes of a rescue copy: all that a save could write of the model.
    std::string rescueBytes() const;
    /// The model of a rescue copy, in place of the one that is there, as one with changes under its own name.
    void takeRescued(RescuedModel model);

    // ---- Kind, title and path -------------------------------------------------------------------

    /// Sets structureKind and fileKind from the section counts of `list`. Without a patch they stay.
    void checkRegularity(const PatchList& list);
    /// checkRegularity, then title and path take the extension of the kind.
    void retitle();
    /// No model, and nothing beside it.
    void forgetKinds();
    /// Removes the model with its field values. The views hear nothing.
    void clearModel();

    // ---- Undo -----------------------------------------------------------------------------------

    void SavePointUndo();
    void SavePatchUndo();
    /// For commands that take the snapshot before they ask: Undo is off until one says that it has changed the model,
    /// as the snapshot of the command before is gone.
    void snapshotBeforeAsking();
    /// The snapshot of a command on patches; with `changesExtent` Undo fits the view anew.
    void beginPatchCommand(bool changesExtent);
    /// The snapshot of a model that is about to be removed, with its file: brought back under the name of another file,
    /// it would be saved over that one.
    void keepForUndo();
    void UndoPoint();
    void UndoPatch();

    // ---- Regimes --------------------------------------------------------------------------------

    void CapturePatch();
    void AddPatchToBlock();
    void RemovePatchFromBlock();
    void NewBlock();
    void CapturePoint();
    void CaptureFreePoint();
    void CaptureFreePointInPointRegime();
    void CaptureSection();
    void CaptureLine();
    void NextSectionOrLine();
    void InputPatch();
    void InputSection();
    void InputLine();
    void ExitPointRegime();
    void ExitLineRegime();
    void ExitPatchRegime();
    void EndBlockRegime();
    /// The user's three Exit items: as above, and the idle prompt when no regime is left.
    void ExitPoint();
    void ExitLines();
    void ExitPatches();
    /// Leaves every active regime: point, patch, section and line.
    void leaveRegimes();
    /// What a view found under the mouse: the one way in which a view changes what is captured.
    void takePick(const Pick& pick) { capture.take(pick); }
    /// The regimes' moves when the left button comes up in the view.
    void moveRegimeAtRelease();

    /// The points of the captured section or line, else those of the line buffer.
    PointList curveInHand();
    bool inBlock(std::int32_t patch) const;
    /// The patches of a structured model, the zones of an unstructured one: what K counts.
    std::int32_t partCount() const;
    /// Per part whether it stands in the zBlock.
    std::vector<bool> blockMask() const;
    /// What a whole-model command treats: all patches, or those of the zBlock.
    std::vector<std::int32_t> chosenPatches() const;
    void emptyBlock();
    /// Neither patches nor zones.
    bool holdsNothing() const { return patches.empty() && feRegion.blocks.empty(); }

    // ---- Editing --------------------------------------------------------------------------------

    void DeletePoint();
    void DuplicatePoint();
    void EditPoint();
    void CutPoint();
    void CopyPoint();
    void PastePoint();
    void FindPoint();
    void DragPoint();
    /// The snapshots and the address of "Drag point && correct line"; the view carries the drag out.
    void prepareDragCorrection();
    /// Bends the captured section or line so that the captured point reaches `target` in the coordinate plane `plane`
    /// (see DocumentView::principalPlane); 0 does nothing.
    void bendCapturedCurve(const zVec<double>& target, int plane);
    /// The button came up: the curve takes its last shape.
    void endDragCorrection(int plane);
    /// Moves the captured point to `position` while it is dragged: model, status, picture.
    void placeDraggedPoint(const zVec<double>& position);
    void Rebreak();
    void RebreakPart();
    void SplitPatch();
    void MergePatches();
    void MatchBorder();
    void MatchBorderAndGrid();
    void CoonsRebuild();
    void SmoothGeometry();
    void Interpolate();
    void CorrectLine();

    // ---- Projection and intersection of the zBlock ------------------------------------------------------------------

    /// Onto the other patches; of zones onto the other zones.
    void ReflectToApt();
    /// Onto the reference geometry, which is used up by it.
    void ReflectToWrl();
    void ReflectToDat();
    void Intersection();

    // ---- Conversion -----------------------------------------------------------------------------

    void ConvertToUnstructured();
    void ConvertToSkl();
    void ConvertToApt();
    /// Knife of a grid: halves the sections of the zBlock, or of all patches.
    void KnifeModel();
    /// Knife of triangles: cuts by a plane.
    void KnifeZones();
    void RemoveInvisible();

    // ---- The line buffer, sections and lines -----------------------------------------------------------------------

    void AddToBuffer();
    void ClearBuffer();
    void OpenBuffer();
    void SaveBuffer();
    void ReverseBuffer();
    void CopyToBuffer();
    void PasteFromBuffer();
    void MergeBuffer();
    void MatchBuffer();
    void PastePart();
    void CopyPart();
    void KnifePart();
    void ReverseSection();
    void DeleteCurve();
    void DuplicateCurve();
    void MoveCurve();
    void ScaleCurve();
    void FlipCurve();
    void RotateCurve();
    void SymmetricSection();
    void FirstPoint();
    void HalveSection();
    void Prescribe();
    void Weeding();
    void Cylinder();

    // ---- The zBlock as a whole -------------------------------------------------------------------------------------

    void InvertBlock();
    void ExtractBlock();
    void DeleteBlock();
    void CopyBlock();
    void PasteBlock();
    void SaveBlockAs();
    void Extrapolate();

    // ---- The zBlock, or without one the whole model ----------------------------------------------------------------

    void ScaleModel();
    void MoveModel();
    void RotateModel();
    void FlipModel();
    void SymmetricModel();
    /// Exchanges sections and lines, and what is captured with them.
    void Convertation();
    void LastFirstSwitch();

    // ---- The zBlock alone ------------------------------------------------------------------------------------------

    /// Moves the zBlock from the shifted markers towards the initial ones, in the planes that the view says.
    void ReflectToSft();

    // ---- View commands that the document carries out ----------------------------------------------------------------

    void FitToWindow();
    void ViewFeatures();
    void ToggleBlockOnly();
    void toggleSurface();
    /// The surface cannot be shown: back to the wire.
    void leaveSurface() { surfaceMode = false; }
    /// Shows the dialog "Viewing" with these values, and keeps what was typed. False for Cancel.
    bool askViewing(dlgViewing& values);

    // ---- Addresses ------------------------------------------------------------------------------

    /// The section that is addressed, or null when the address points outside the model.
    PointList* sectionAt(std::int32_t patch, std::int32_t section);
    /// The point that is addressed, or null when the address points outside the model.
    zVec<double>* pointAt(std::int32_t patch, std::int32_t section, std::int32_t point);
    /// Where the point, or with "uns" the node `point` of zone `patch`, stands; none when there is no such one.
    std::optional<zVec<double>> positionAt(std::int32_t patch, std::int32_t section, std::int32_t point) const;

private:
    friend class CommandGuard;

    void snapshot(PatchList& undoList, zRegion_fe& undoZones);
    void exchangeWithSnapshot();
    /// For commands that change the model without a snapshot for Undo: the guard around them needs one all the same.
    void keepForGuard();
    void clearSnapshots();
    void takeCapturedPosition(const zVec<double>& otherwise);
    bool mayBreakGrid();
    void leaveLineRegimeKeepingAddress();
    void finishPointEdit(bool curveForm);
    bool moveCapturedPoint(const zVec<double>& position);
    void finishPointRemoval();

    void letPointGo();
    void letCurveGo();
    void leavePointRegime();
    void armCurveCapture(bool section);
    void holdInputCurve(bool section, std::int32_t patch, std::int32_t curve);
    void armPatchCapture();
    void joinBlockAtRelease();
    void removeFromBlockAtRelease();
    void takeCurveAtRelease();
    void dropEmptyPatchesFromBlock();
    InputContext inputContext(bool lines) const;
    void forceMouseMode(MouseMode mode);
    void setMouseMode(MouseMode mode);
    void showIdlePrompt();
    void refillStatus();
    void returnToRegimeMode();
    /// The plane that the view shows, as it tells it; 0 without a view.
    int principalPlane() const;

    /// What a whole-model command treats: all parts, or those of the zBlock.
    std::vector<bool> chosenMask() const;
    std::vector<std::int32_t> chosenZones() const;
    void leavePointAndCurves();
    void keepPatches(const std::vector<bool>& mask, bool kept);
    void finishBlockRemoval();
    void endEmptiedModel();
    void takePatchOut(std::int32_t patch);
    bool transformModel(const PointMap& map);
    void runTransformation(bool keepsPoint, const std::function<bool()>& work);
    bool exchangeSectionsAndLines();
    void followCapturedPoint();

    bool curveIsThere();
    PointList capturedCurvePoints();
    void putCurvePoints(const PointList& points);
    bool curveCanBeEdited();
    void finishConversion(StructureKind structure, FileKind kind, const char* extension);
    bool knifeReachesBody();
    zRegion_fe cutPart(Side kept);
    bool keepPartOfZones(Side kept);
    void savePartsOfZones();
    void editCurveAsSection(const std::function<void(PointList&)>& edit);
    void transformCurve(const PointMap& map);
    PointList* sectionOfCapturedPoint();
    std::optional<Side> chooseSide();
    void showCapturedPoint();
    void removeCapturedSection();
    void removeCapturedLine();

    void prepareRebreak();
    void rebreakOnePatch(std::int32_t patch);
    bool prepareRebreakPart();
    bool mergeStructured();
    bool mergePatchesOfBlock();
    void mergeZonesOfBlock();
    void matchBlock(bool grid);
    bool correctCapturedLine();
    void projectZonesOfBlock();
    void finishReflection();
    bool pierceOtherPatches();
    void carryOutIntersection();
    /// The patches of the zBlock, or all of them when it is empty, in the order of the model.
    std::vector<std::int32_t> chosenInModelOrder() const;
    void exchangeCapture();
    /// Exchanges sections and lines of the captured patch, a grid, and of the capture with it. A zBlock that does not
    /// hold the patch keeps its points in place: the capture alone is exchanged then.
    void turnCapturedPatch();

    UserInterface& ui_;
    std::vector<DocumentView*> views_;
    std::uint64_t geometryRevision_ = 0;
    bool started_ = false;
    std::filesystem::path proposedFolder_; ///< of the chooser of Open, when it was named; else empty
    std::string extentStatus_;             ///< what was told of the size of the model; empty when it is usual
    std::uint64_t patchSnapshotsBegun_ = 0;
    std::uint64_t patchSnapshots_ = 0; ///< that were taken whole
    std::uint64_t pointSnapshotsBegun_ = 0;
    std::uint64_t pointSnapshots_ = 0;
    PatchList guardPatches_; ///< see keepForGuard
    std::uint64_t guardCopies_ = 0;
};

template <class Values, class... Context>
bool VelmoraDoc::showDialog(Values& values, Context&&... context) {
    Values working = values;
    DialogForm form = describe(working, std::forward<Context>(context)...);
    openDialog(form);
    if (!ui_.showDialog(form)) {
        return false;
    }
    values = working;
    return true;
}

} // namespace velmora

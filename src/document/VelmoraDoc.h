#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "DocumentState.h"
#include "MouseMode.h"

namespace velmora {

class CommandRun;
class DocumentView;
class ModelTrial;
struct Pick;
struct RescuedModel;
struct dlgViewing;

/// What a snapshot for Undo patch goes with: whether Undo must fit the view anew.
enum class Extent { Stays, Changes };

/// The one document. Its commands are functions over it in the files of `commands`, each beside its row; a method is a
/// command that others than its row call too, or what several of them need. A command that cannot go on says its
/// message and returns; it never throws.
class VelmoraDoc : public DocumentState {
public:
    /// `documentsFolder` is where untitled models go.
    VelmoraDoc(UserInterface& userInterface, const std::filesystem::path& documentsFolder);

    // ---- Views and messages -----------------------------------------------------------------------------------------

    /// The view must outlive the document or be detached.
    void attachView(DocumentView& view) { views_.push_back(&view); }
    void detachView(DocumentView& view);

    UserInterface& ui() { return ui_; }
    /// Writes the message pane of the status line at once.
    void ShowStatus(const std::string& text);

    void setMouseMode(MouseMode mode);
    void forceMouseMode(MouseMode mode);
    void resetMouseMode();
    /// The plane that the view shows, as it tells it; 0 without a view.
    int principalPlane() const;

    // Each of the three tells every view and puts the mouse back to the innermost regime.

    /// The geometry may have changed; its box stays.
    void redraw();
    /// Only what is shown of the geometry, or beside it, changed.
    void redrawPicture();
    /// Only what is captured, or under the mouse, changed.
    void redrawHighlight();
    /// Another model stands in the place of this one while a dialog is open: only the views hear of it.
    void redrawTrial();
    /// Computes the model's box, centre and radius anew and resets the views. They hear nothing with "non".
    void updateBounds();
    /// What updateBounds had to tell of a model of an unusual size; else empty.
    const std::string& extentStatus() const { return extentStatus_; }

    // ---- File commands ----------------------------------------------------------------------------------------------

    /// New. The first call of the process only sets the initial state.
    void onNewDocument();
    /// Opens one file with no dialog and no question about the model that is there.
    void onOpenDocument(const std::filesystem::path& path);
    /// The same for several files, as Open does it: those behind the first join it if they are of its extension.
    void onOpenDocuments(const std::vector<std::filesystem::path>& paths);
    void openFiles();
    /// The same with the chooser opened on `folder`.
    void openFilesIn(const std::filesystem::path& folder);
    /// Where a chooser of files to read begins: the folder that was named, else beside the model.
    std::filesystem::path openPlace() const { return proposedFolder_.empty() ? modelFile.chosenPath : proposedFolder_; }
    void appendFile();
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
    /// "Save writes /models/wing.apt": where Save goes, if that is not the file that was opened; else empty.
    std::string saveTargetText() const;
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

    // ---- What is tried while a dialog is open -----------------------------------------------------------------------

    /// `trial` may show another model in the place of this one from now on; null: it ends.
    void setTrial(ModelTrial* trial) { trial_ = trial; }
    /// Runs `work` on the model itself, whatever is shown.
    void withoutTrial(const std::function<void()>& work);

    // ---- Undo -------------------------------------------------------------------------------------------------------

    /// Runs a command. One whose result holds a number that is not finite, or that finds no memory, is refused: the
    /// model stays as it was, with its snapshots and all that is captured, and the user is told. `gaveUp` answers, once
    /// it is through, whether what was said meanwhile means that it was called off or failed: if it changed nothing
    /// then, the snapshots and the mark of the model are those from before. Of a refused one they are, where there were
    /// some.
    void runCommand(CommandRun command, const std::function<bool()>& gaveUp = {});

    void SavePointUndo();
    void SavePatchUndo();
    /// The snapshot of a command on patches.
    void beginPatchCommand(Extent extent);
    /// The snapshot of a model that is about to be removed, with its file: brought back under the name of another file,
    /// it would be saved over that one.
    void keepForUndo();
    /// What stands for Undo point is of an edit that is over.
    void dropPointUndo();
    /// For commands that change the model without a snapshot for Undo: the guard around them needs one all the same.
    void keepForGuard();
    void UndoPoint();
    void UndoPatch();

    // ---- Regimes ----------------------------------------------------------------------------------------------------

    void CapturePatch();
    void AddPatchToBlock();
    void RemovePatchFromBlock();
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
    /// Those of them that capture: a drag goes on.
    void takeAtRelease();
    /// The captured point is dragged no more.
    void endDrag();

    // ---- Editing ----------------------------------------------------------------------------------------------------

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
    /// The button came up: the curve takes its last shape, if it does not have it.
    void endDragCorrection(int plane);
    /// Moves the captured point to `position` while it is dragged: model, status, picture.
    void placeDraggedPoint(const zVec<double>& position);
    void MergePatches();
    /// Projects the zBlock onto the other patches; of zones onto the other zones.
    void ReflectToApt();
    void InvertBlock();

    // ---- View commands that the document carries out ----------------------------------------------------------------

    void FitToWindow();
    void ToggleBlockOnly();
    void toggleSurface();
    /// The surface cannot be shown: back to the wire.
    void leaveSurface() { surfaceMode = false; }
    /// Shows the dialog "Viewing" with these values, and keeps what was typed. False for Cancel.
    bool askViewing(dlgViewing& values);

private:
    friend class DocumentSnapshot;
    using CaptureText = std::string CaptureState::*;

    CaptureText shownCaptureText() const;
    CaptureText textOfHeldCurve(CaptureText text) const;
    void refillStatus();
    void tellSaveTarget(const std::filesystem::path& before, const std::string& textBefore);
    void returnToRegimeMode();

    UserInterface& ui_;
    ModelTrial* trial_ = nullptr;
    std::vector<DocumentView*> views_;
    bool started_ = false;
    std::filesystem::path proposedFolder_; ///< of the chooser of Open, when it was named; else empty
    std::string coveredStatus_;            ///< what "Save writes" took the place of; empty for nothing
    CaptureText coveredText_ = nullptr;    ///< where that stands, when it is a text of what is captured
    std::string extentStatus_;             ///< what was told of the size of the model; empty when it is usual
    struct Bend {
        zVec<double> target;
        zVec<double> point; ///< where the captured point came to stand
    };
    std::optional<Bend> lastBend_; ///< of the drag that bends a curve
};

} // namespace velmora

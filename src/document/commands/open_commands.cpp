#include "open_commands.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "DialogValues.h"
#include "FileRecord.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "file_types.h"
#include "load_files.h"
#include "messages.h"
#include "path_names.h"
#include "write_files.h"

namespace velmora {

// ---- New ------------------------------------------------------------------------------------------------------------

void VelmoraDoc::onNewDocument() {
    if (!started_) {
        started_ = true;
        forgetKinds();
        modelFile.setTitle("Untitled");
        return;
    }
    if (!holdsNothing()) {
        if (!removeGeometryAfterQuestion(*this)) {
            return;
        }
        updateBounds();
        redraw();
        leaveRegimes();
        if (status != idlePrompt) {
            ShowStatus(idlePrompt); // what was captured before is gone
        }
    }
    dialogs->regularInput.reset();
    if (!ui_.showRegularInput(dialogs->regularInput)) {
        patches.clear();
        return;
    }
    modelFile.titleWrong = false;
    modelFile.setTitle("Untitled");
    fieldOpening = false;
    checkRegularity(patches);
    if (structureKind == StructureKind::Structured) {
        modelFile.nameUntitled(textOf(fileKind));
        // What was typed is in no file yet.
        documentModified = true;
    }
    updateBounds();
    redraw();
}

bool removeGeometryAfterQuestion(VelmoraDoc& doc) {
    if (!doc.ui().ask(message::removeGeometry)) {
        return false;
    }
    doc.keepForUndo();
    doc.showBlockOnly = false;
    doc.clearModel();
    doc.modelFile.forget();
    doc.modelFile.titleWrong = false;
    doc.modelFile.setTitle("Untitled");
    return true;
}

// ---- The model while a file is opened --------------------------------------------------------------------------------

ModelAside::ModelAside(VelmoraDoc& doc) : doc_(doc), modelFile_(doc.modelFile) {
    exchange();
    doc.clearModel();
    doc.modelFile = modelFile_;
    doc.modelFile.forget();
    doc.modelFile.titleWrong = false;
}

// A file that cannot be opened, and one that gives no model, takes nothing away: the model that was there comes back
// with its name, its Undo and all that is captured of it.
ModelAside::~ModelAside() {
    if (kept_) {
        return;
    }
    doc_.clearModel();
    exchange();
    try {
        if (modelFile_.documentTitle != doc_.modelFile.documentTitle) {
            doc_.ui().showTitle(doc_.modelFile.documentTitle);
        }
        doc_.redraw();
    } catch (const std::exception&) {
        // The model is back, which is what counts here; the guard around the command shows it once more.
    }
}

void ModelAside::exchange() {
    std::swap(doc_.patches, patches_);
    std::swap(doc_.feRegion, region_);
    std::swap(doc_.structureKind, structureKind_);
    std::swap(doc_.fileKind, fileKind_);
    std::swap(doc_.secondKind, secondKind_);
    std::swap(doc_.modelFile, modelFile_);
    std::swap(doc_.fieldLoaded, fieldLoaded_);
    std::swap(doc_.fieldMode, fieldMode_);
    std::swap(doc_.fieldOpening, fieldOpening_);
    std::swap(doc_.fieldPatches, fieldPatches_);
    std::swap(doc_.fieldTitleLine, fieldTitleLine_);
    std::swap(doc_.fieldVariablesLine, fieldVariablesLine_);
    std::swap(doc_.fieldCount, fieldCount_);
    std::swap(doc_.cbcAppended, cbcAppended_);
    std::swap(doc_.gridNamed, gridNamed_);
}

// The model that goes is in its place for the moment of the snapshot.
void ModelAside::keepForUndo() {
    kept_ = true;
    doc_.showBlockOnly = false;
    exchange();
    doc_.keepForUndo();
    exchange();
    doc_.modelFile.keepForUndo(modelFile_);
}

// ---- Open and Append ------------------------------------------------------------------------------------------------

namespace {

/// Whether a file behind the first joins it.
bool joinsFirst(const std::filesystem::path& path, const std::vector<std::filesystem::path>& paths) {
    return extensionOf(path) == extensionOf(paths.front());
}

/// Patches or zones of the model.
std::size_t partsOf(const VelmoraDoc& doc) {
    return doc.patches.size() + doc.feRegion.blocks.size();
}

/// The model is the one of the snapshot: the file that was to join it gave nothing.
bool gaveNothing(const VelmoraDoc& doc) {
    return doc.undoPatches.isSameAs(doc.patches) && doc.undoRegion.blocks.isSameAs(doc.feRegion.blocks);
}

/// The files behind the first join it, if they are of its extension.
void loadFurtherFiles(VelmoraDoc& doc, const std::vector<std::filesystem::path>& paths, LoadTally& tally) {
    if (paths.size() < 2) {
        return;
    }
    if (doc.fileKind == FileKind::Dat) {
        doc.ui().showMessage(message::listModeRefused);
        return;
    }
    for (auto path = paths.begin() + 1; path != paths.end(); ++path) {
        if (!joinsFirst(*path, paths)) {
            tally.losses.push_back(path->filename().string() + " was not opened: it is of another type than the first");
            continue;
        }
        const std::filesystem::path pathBefore = doc.modelFile.chosenPath;
        const std::size_t partsBefore = partsOf(doc);
        const auto lossesBefore = static_cast<std::ptrdiff_t>(tally.losses.size());
        doc.modelFile.adopt(*path);
        if (doc.structureKind == StructureKind::Unstructured) {
            appendUnstructuredFile(doc, doc.modelFile.chosenPath, doc.modelFile.fileExtension, {.joins = true}, tally);
        } else {
            loadFile(doc, doc.modelFile.chosenPath, doc.modelFile.fileExtension, {.joins = true}, tally);
        }
        if (partsOf(doc) == partsBefore) {
            doc.modelFile.adopt(pathBefore); // a file that gave nothing does not give its name
            tally.losses.insert(tally.losses.begin() + lossesBefore, path->filename().string() + " gave nothing");
        }
    }
}

/// What was read less than the files hold, and where Save goes if that is not plain; else the idle prompt, unless a
/// regime stays, which goes on to tell of itself.
void tellLoaded(VelmoraDoc& doc, const LoadTally& tally) {
    const CaptureState& now = *doc.capture;
    if (tally.losses.empty() && (now.pointRegimeActive() || now.curveRegimeActive() || now.patchRegimeActive())) {
        return;
    }
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() || part.empty() ? "" : ". ") + part; };
    if (tally.pointsKept < tally.pointsRead) {
        add(keptText("points", tally.pointsRead, tally.pointsKept));
    }
    add(tally.kind);
    add(tally.unit);
    add(lossText(tally.losses));
    add(doc.saveTargetText());
    if (!text.empty()) {
        doc.ShowStatus(text);
    } else if (doc.status != idlePrompt && (doc.extentStatus().empty() || doc.status != doc.extentStatus())) {
        doc.ShowStatus(idlePrompt); // what was captured before is gone
    }
}

} // namespace

void finishOpen(VelmoraDoc& doc, const LoadTally& tally) {
    doc.documentModified = false;
    doc.surfaceMode = true;
    // The regimes' targets were those of the model before: leave them before anything is drawn.
    doc.leaveRegimes();
    doc.updateBounds();
    doc.redraw();
    tellLoaded(doc, tally);
}

void cancelOpen(VelmoraDoc& doc, const LoadTally& tally) {
    doc.ui().showMessage(message::openCancelled);
    showLosses(doc, tally);
}

void VelmoraDoc::openFiles() {
    if (!holdsNothing() && !ui_.ask(message::removeGeometry)) {
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.multiple = true;
    request.types = modelFileTypes();
    request.proposed = openPlace();
    request.command = "file.open";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (!paths.empty()) {
        onOpenDocuments(paths);
    }
}

void VelmoraDoc::openFilesIn(const std::filesystem::path& folder) {
    proposedFolder_ = folder / "";
    openFiles();
    proposedFolder_.clear();
}

void VelmoraDoc::onOpenDocument(const std::filesystem::path& path) {
    onOpenDocuments({path});
}

void VelmoraDoc::onOpenDocuments(const std::vector<std::filesystem::path>& paths) {
    if (paths.empty()) {
        return;
    }
    LoadTally tally;
    bool gaveModel = false;
    {
        ModelAside before(*this);
        const bool several =
            std::any_of(paths.begin() + 1, paths.end(), [&paths](const auto& path) { return joinsFirst(path, paths); });
        modelFile.adopt(paths.front());
        loadFile(*this, modelFile.chosenPath, modelFile.fileExtension, {.joins = several}, tally);
        // A grid may have a name alone; any other file without a point gives nothing.
        gaveModel = structureKind != StructureKind::None && (gridNamed || !holdsNothingToSave(*this));
        if (gaveModel) {
            ui_.addRecentFile(fullPath(paths.front()));
            loadFurtherFiles(*this, paths, tally);
            before.keepForUndo(); // last: until then the model that goes comes back when the reading is cancelled
        }
    }
    if (!gaveModel) {
        std::for_each(paths.begin() + 1, paths.end(), [&tally](const auto& path) {
            tally.losses.push_back(path.filename().string() + " was not opened: the first file gave no model");
        });
        cancelOpen(*this, tally);
        return;
    }
    finishOpen(*this, tally);
}

void VelmoraDoc::appendFile() {
    if (structureKind == StructureKind::None) {
        return;
    }
    const bool zones = structureKind == StructureKind::Unstructured;
    FileRequest request;
    request.mode = ChooserMode::Append;
    request.types = zones                       ? fileTypesNamed({"dat", "wrl", "stl"})
                    : fileKind == FileKind::Apt ? fileTypesNamed({"apt", "skl", "dat"})
                                                : fileTypesNamed({"apt", "skl"});
    request.proposed = modelFile.chosenPath;
    request.command = "file.append";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const bool modifiedBefore = documentModified;
    const std::string extensionBefore = modelFile.fileExtension;
    SavePatchUndo();
    patchUndoReady = true;
    rebuildOnUndo = true;
    LoadTally tally;
    const std::filesystem::path path = fullPath(paths.front());
    modelFile.fileExtension = extensionOf(path);
    const LoadMode mode = {.append = true, .field = fieldOpening};
    if (zones) {
        appendUnstructuredFile(*this, path, modelFile.fileExtension, mode, tally);
    } else {
        loadFile(*this, path, modelFile.fileExtension, mode, tally);
    }
    if (gaveNothing(*this)) {
        // What is captured is worth keeping too, and Undo of the point with it.
        documentModified = modifiedBefore;
        modelFile.fileExtension = extensionBefore;
        tellLoaded(*this, tally);
        return;
    }
    if (!zones && structureKind == StructureKind::Unstructured) {
        tally.kind = "The grid became triangles";
    }
    leaveRegimes();
    redraw();
    tellLoaded(*this, tally);
}

std::span<const Command> openCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "file.new",
         .menuText = "&New",
         .statusText = "Create a new model",
         .toolTip = "New",
         .accelerator = "Ctrl+N",
         .icon = true,
         .run = &VelmoraDoc::onNewDocument,
         .places = {{File, 110}, {GeneralBar, 110}}},
        {.id = "file.open",
         .menuText = "&Open...",
         .statusText = "Open an existing model",
         .toolTip = "Open",
         .accelerator = "Ctrl+O",
         .icon = true,
         .run = &VelmoraDoc::openFiles,
         .places = {{File, 120}, {GeneralBar, 120}}},
        {.id = "file.append",
         .menuText = "&Append...",
         .statusText = "Append a file to the model",
         .toolTip = "Append",
         .accelerator = "Ctrl+A",
         .icon = true,
         .run = &VelmoraDoc::appendFile,
         .off = nonOrField,
         .places = {{File, 130}, {GeneralBar, 140}}},
    };
    return rows;
}

} // namespace velmora

#include "open_commands.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "VelmoraDoc.h"
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
    regularInput.reset();
    if (!ui_.showRegularInput(regularInput)) {
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

ModelAside::ModelAside(VelmoraDoc& doc)
    : doc_(doc), patches_(std::move(doc.patches)), region_(std::move(doc.feRegion)), structureKind_(doc.structureKind),
      fileKind_(doc.fileKind), secondKind_(doc.secondKind), modelFile_(doc.modelFile), fieldLoaded_(doc.fieldLoaded),
      fieldMode_(doc.fieldMode), fieldOpening_(doc.fieldOpening), fieldPatches_(std::move(doc.fieldPatches)),
      cbcAppended_(doc.cbcAppended), gridNamed_(doc.gridNamed) {
    doc.clearModel();
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
    doc_.patches = std::move(patches_);
    doc_.feRegion = std::move(region_);
    doc_.structureKind = structureKind_;
    doc_.fileKind = fileKind_;
    doc_.secondKind = secondKind_;
    doc_.modelFile.restore(modelFile_);
    doc_.fieldLoaded = fieldLoaded_;
    doc_.fieldMode = fieldMode_;
    doc_.fieldOpening = fieldOpening_;
    doc_.fieldPatches = std::move(fieldPatches_);
    doc_.cbcAppended = cbcAppended_;
    doc_.gridNamed = gridNamed_;
    doc_.redraw();
}

void ModelAside::keepForUndo() {
    kept_ = true;
    doc_.showBlockOnly = false;
    doc_.pointUndoPatches.clear();
    doc_.pointUndoRegion.blocks.clear();
    doc_.pointUndoReady = false;
    if (patches_.empty() && region_.blocks.empty()) {
        return;
    }
    doc_.undoModified = doc_.documentModified;
    doc_.undoPatches = std::move(patches_);
    doc_.undoRegion = std::move(region_);
    doc_.undoPath = modelFile_.chosenPath;
    doc_.modelFile.keepForUndo(modelFile_);
    doc_.patchUndoReady = true;
    doc_.rebuildOnUndo = false;
}

// ---- Open and Append ------------------------------------------------------------------------------------------------

namespace {

/// Whether a file behind the first joins it.
bool joinsFirst(const std::filesystem::path& path, const std::vector<std::filesystem::path>& paths) {
    return extensionOf(path) == extensionOf(paths.front());
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
        doc.modelFile.adopt(*path);
        if (doc.structureKind == StructureKind::Unstructured) {
            appendUnstructuredFile(doc, doc.modelFile.chosenPath, doc.modelFile.fileExtension, {.joins = true}, tally);
        } else {
            loadFile(doc, doc.modelFile.chosenPath, doc.modelFile.fileExtension, {.joins = true}, tally);
        }
    }
}

/// What was read less than the files hold, and where Save goes if that is not plain; else the idle prompt.
void tellLoaded(VelmoraDoc& doc, const LoadTally& tally) {
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() || part.empty() ? "" : ". ") + part; };
    if (tally.pointsKept < tally.pointsRead) {
        add("Points in the file: " + std::to_string(tally.pointsRead) + ", kept: " + std::to_string(tally.pointsKept));
    }
    add(lossText(tally.losses));
    add(saveTargetText(doc));
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
    if (!tally.losses.empty()) {
        doc.ShowStatus(lossText(tally.losses));
    }
}

void VelmoraDoc::openFiles() {
    if (!holdsNothing() && !ui_.ask(message::removeGeometry)) {
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.multiple = true;
    request.types = modelFileTypes();
    request.proposed = proposedFolder_.empty() ? modelFile.chosenPath : proposedFolder_;
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
        gaveModel = structureKind != StructureKind::None;
        if (gaveModel) {
            before.keepForUndo();
        }
    }
    if (!gaveModel) {
        cancelOpen(*this, tally);
        return;
    }
    ui_.addRecentFile(fullPath(paths.front()));
    loadFurtherFiles(*this, paths, tally);
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
    SavePatchUndo();
    patchUndoReady = true;
    LoadTally tally;
    const std::filesystem::path path = fullPath(paths.front());
    modelFile.fileExtension = extensionOf(path);
    const LoadMode mode = {.append = true, .field = fieldOpening};
    const std::size_t partsBefore = patches.size() + feRegion.blocks.size();
    if (zones) {
        appendUnstructuredFile(*this, path, modelFile.fileExtension, mode, tally);
    } else {
        loadFile(*this, path, modelFile.fileExtension, mode, tally);
    }
    if (patches.size() + feRegion.blocks.size() == partsBefore) {
        documentModified = modifiedBefore; // a file that gave nothing changed nothing
    }
    rebuildOnUndo = true;
    leaveRegimes();
    redraw();
    tellLoaded(*this, tally);
}

} // namespace velmora

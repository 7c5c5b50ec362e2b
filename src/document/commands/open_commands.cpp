#include "open_commands.h"

#include <filesystem>
#include <string>
#include <vector>

#include "VelmoraDoc.h"
#include "file_types.h"
#include "load_files.h"
#include "messages.h"
#include "path_names.h"

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
    doc.modelFile.titleWrong = false;
    doc.modelFile.setTitle("Untitled");
    return true;
}

// ---- Open and Append ------------------------------------------------------------------------------------------------

namespace {

/// The files behind the first join it, if they are of its extension.
void loadFurtherFiles(VelmoraDoc& doc, const std::vector<std::filesystem::path>& paths, PointTally& points) {
    if (paths.size() < 2) {
        return;
    }
    if (doc.fileKind == FileKind::Dat) {
        doc.ui().showMessage(message::listModeRefused);
        return;
    }
    const std::string firstExtension = extensionOf(paths.front());
    for (auto path = paths.begin() + 1; path != paths.end(); ++path) {
        if (extensionOf(*path) != firstExtension) {
            continue;
        }
        doc.modelFile.adopt(*path);
        if (doc.structureKind == StructureKind::Unstructured) {
            appendUnstructuredFile(doc, doc.modelFile.chosenPath, doc.modelFile.fileExtension, {});
        } else {
            loadFile(doc, doc.modelFile.chosenPath, doc.modelFile.fileExtension, {}, points);
        }
    }
}

void tellThinning(VelmoraDoc& doc, const PointTally& points) {
    if (points.kept < points.read) {
        doc.ShowStatus("Points in the file: " + std::to_string(points.read) + ", kept: " + std::to_string(points.kept));
    } else if (doc.status != idlePrompt && (doc.extentStatus().empty() || doc.status != doc.extentStatus())) {
        doc.ShowStatus(idlePrompt); // what was captured before is gone
    }
}

} // namespace

void finishOpen(VelmoraDoc& doc, const PointTally& points) {
    doc.documentModified = false;
    doc.surfaceMode = true;
    // The regimes' targets were those of the model before: leave them before anything is drawn.
    doc.leaveRegimes();
    doc.updateBounds();
    doc.redraw();
    tellThinning(doc, points);
}

void VelmoraDoc::openFiles() {
    if (!holdsNothing() && !removeGeometryAfterQuestion(*this)) {
        return;
    }
    fieldOpening = false;
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.multiple = true;
    request.types = modelFileTypes();
    request.proposed = proposedFolder_.empty() ? modelFile.chosenPath : proposedFolder_;
    request.command = "file.open";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        leaveRegimes();
        redraw();
        return;
    }
    PointTally points;
    modelFile.adopt(paths.front());
    loadFile(*this, modelFile.chosenPath, modelFile.fileExtension, {}, points);
    if (structureKind == StructureKind::None) {
        patches.clear(); // compartments without a section make no model
        ui_.showMessage(message::openCancelled);
        leaveRegimes();
        redraw();
        return;
    }
    ui_.addRecentFile(fullPath(paths.front()));
    loadFurtherFiles(*this, paths, points);
    finishOpen(*this, points);
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
    keepForUndo();
    clearModel();
    updateBounds();
    redraw();
    PointTally points;
    modelFile.adopt(paths.front());
    loadFile(*this, modelFile.chosenPath, modelFile.fileExtension, {}, points);
    if (structureKind == StructureKind::None) {
        patches.clear(); // compartments without a section make no model
        ui_.showMessage(message::openCancelled);
        leaveRegimes();
        redraw();
        return;
    }
    ui_.addRecentFile(fullPath(paths.front()));
    loadFurtherFiles(*this, paths, points);
    finishOpen(*this, points);
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
    SavePatchUndo();
    patchUndoReady = true;
    PointTally points;
    const std::filesystem::path path = fullPath(paths.front());
    modelFile.fileExtension = extensionOf(path);
    const LoadMode mode = {.append = true, .field = fieldOpening};
    if (zones) {
        appendUnstructuredFile(*this, path, modelFile.fileExtension, mode);
    } else {
        loadFile(*this, path, modelFile.fileExtension, mode, points);
    }
    rebuildOnUndo = true;
    leaveRegimes();
    redraw();
    tellThinning(*this, points);
}

} // namespace velmora

#include <algorithm>
#include <string>

#include "VelmoraDoc.h"
#include "file_types.h"
#include "messages.h"
#include "path_names.h"

namespace velmora {

// ---- New ------------------------------------------------------------------------------------------------------------

void VelmoraDoc::onNewDocument() {
    if (!started_) {
        started_ = true;
        setKinds("non", "non", "non");
        setTitle("Untitled");
        return;
    }
    if (!holdsNothing()) {
        if (!removeGeometryAfterQuestion()) {
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
    titleWrong_ = false;
    setTitle("Untitled");
    fieldOpening = false;
    checkRegularity(patches);
    if (structureKind == "str") {
        nameUntitled(fileKind);
        // What was typed is in no file yet.
        documentModified = true;
    }
    updateBounds();
    redraw();
}

void VelmoraDoc::nameUntitled(const std::string& extension) {
    titleWrong_ = false;
    adoptPath(documentsFolder_ / ("Untitled." + extension));
    currentDirectory = directoryOf(chosenPath);
    setTitle("Untitled." + extension);
    currentPath = currentDirectory + documentTitle;
}

bool VelmoraDoc::removeGeometryAfterQuestion() {
    if (!ui_.ask(message::removeGeometry)) {
        return false;
    }
    keepForUndo();
    showBlockOnly = false;
    clearModel();
    titleWrong_ = false;
    setTitle("Untitled");
    return true;
}

/// The snapshot of a model that is about to be removed, with its file: brought back under the name of another file, it
/// would be saved over that one.
void VelmoraDoc::keepForUndo() {
    pointUndoPatches.clear();
    pointUndoRegion.blocks.clear();
    pointUndoReady = false;
    if (holdsNothing()) {
        return;
    }
    undoModified_ = documentModified;
    beginPatchCommand(false);
    undoPath_ = chosenPath;
    undoTitle_ = documentTitle;
}

void VelmoraDoc::clearModel() {
    ++geometryRevision_;
    patches.clear();
    feRegion.blocks.clear();
    setKinds("non", "non", "non");
    fieldLoaded = false;
    fieldMode = false;
    fieldOpening = false;
    fieldPatches.clear();
    cbcAppended = false;
    gridNamed = false;
}

// ---- Open and Append ------------------------------------------------------------------------------------------------

void VelmoraDoc::openFiles() {
    appendMode = false;
    if (!holdsNothing() && !removeGeometryAfterQuestion()) {
        return;
    }
    fieldOpening = false;
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.multiple = true;
    request.types = modelFileTypes();
    request.proposed = chosenPath;
    request.command = "file.open";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        leaveRegimes();
        redraw();
        return;
    }
    pointsRead_ = pointsKept_ = 0;
    adoptPath(paths.front());
    loadFile(chosenPath, fileExtension);
    if (structureKind == "non") {
        patches.clear(); // compartments without a section make no model
        ui_.showMessage(message::openCancelled);
        leaveRegimes();
        redraw();
        return;
    }
    ui_.addRecentFile(fullPath(paths.front()));
    loadFurtherFiles(paths);
    finishOpen();
}

void VelmoraDoc::loadFurtherFiles(const std::vector<std::filesystem::path>& paths) {
    if (paths.size() < 2) {
        return;
    }
    if (fileKind == "dat") {
        ui_.showMessage(message::listModeRefused);
        return;
    }
    const std::string firstExtension = extensionOf(paths.front());
    for (auto path = paths.begin() + 1; path != paths.end(); ++path) {
        if (extensionOf(*path) != firstExtension) {
            continue;
        }
        adoptPath(*path);
        if (structureKind == "uns") {
            appendUnstructuredFile(chosenPath, fileExtension);
        } else {
            loadFile(chosenPath, fileExtension);
        }
    }
}

void VelmoraDoc::onOpenDocument(const std::filesystem::path& path) {
    onOpenDocuments({path});
}

void VelmoraDoc::onOpenDocuments(const std::vector<std::filesystem::path>& paths) {
    if (paths.empty()) {
        return;
    }
    appendMode = false;
    keepForUndo();
    clearModel();
    updateBounds();
    redraw();
    pointsRead_ = pointsKept_ = 0;
    adoptPath(paths.front());
    loadFile(chosenPath, fileExtension);
    ui_.addRecentFile(fullPath(paths.front()));
    if (structureKind == "non") {
        patches.clear(); // compartments without a section make no model
        ui_.showMessage(message::openCancelled);
        leaveRegimes();
        redraw();
        return;
    }
    loadFurtherFiles(paths);
    finishOpen();
}

void VelmoraDoc::finishOpen() {
    documentModified = false;
    surfaceMode = true;
    // The regimes' targets were those of the model before: leave them before anything is drawn.
    leaveRegimes();
    updateBounds();
    redraw();
    tellThinning();
}

void VelmoraDoc::tellThinning() {
    if (pointsKept_ < pointsRead_) {
        ShowStatus("Points in the file: " + std::to_string(pointsRead_) + ", kept: " + std::to_string(pointsKept_));
    } else if (status != idlePrompt) {
        ShowStatus(idlePrompt); // what was captured before is gone
    }
}

void VelmoraDoc::appendFile() {
    if (structureKind == "non") {
        return;
    }
    const bool zones = structureKind == "uns";
    FileRequest request;
    request.mode = ChooserMode::Append;
    request.types = zones               ? fileTypesNamed({"dat", "wrl", "stl"})
                    : fileKind == "apt" ? fileTypesNamed({"apt", "skl", "dat"})
                                        : fileTypesNamed({"apt", "skl"});
    request.proposed = chosenPath;
    request.command = "file.append";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    appendMode = true;
    SavePatchUndo();
    patchUndoReady = true;
    pointsRead_ = pointsKept_ = 0;
    const std::filesystem::path path = fullPath(paths.front());
    fileExtension = extensionOf(path);
    if (zones) {
        appendUnstructuredFile(path, fileExtension);
    } else {
        loadFile(path, fileExtension);
    }
    appendMode = false;
    rebuildOnUndo = true;
    leaveRegimes();
    redraw();
    tellThinning();
}

} // namespace velmora

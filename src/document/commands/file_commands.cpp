#include <algorithm>
#include <string>

#include "VelmoraDoc.h"
#include "apt.h"
#include "messages.h"
#include "path_names.h"
#include "skl.h"

namespace velmora {

namespace {

const std::vector<FileType>& openTypes() {
    static const std::vector<FileType> types = {{"apt", "Geometry"},     {"skl", "Sections"},     {"dat", "TechPlot"},
                                                {"wrl", "Unstructured"}, {"stl", "Unstructured"}, {"apm", "Markers"},
                                                {"fld", "FlowField"},    {"grd", "Unstructured"}};
    return types;
}

std::vector<FileType> typesNamed(std::initializer_list<const char*> extensions) {
    std::vector<FileType> types;
    for (const char* extension : extensions) {
        const auto& all = openTypes();
        types.push_back(
            *std::find_if(all.begin(), all.end(), [&](const FileType& t) { return t.extension == extension; }));
    }
    return types;
}

} // namespace

// ---- New ------------------------------------------------------------------------------------------------------------

void VelmoraDoc::onNewDocument() {
    if (!started_) {
        started_ = true;
        setKinds("non", "non", "non");
        setTitle("Untitled");
        continuePrompt = "Press right button to continue";
        dragPrompt = "Press left button of mouse and drag it";
        return;
    }
    if (!patches.empty()) {
        if (!removeGeometryAfterQuestion()) {
            return;
        }
        updateBounds();
        redraw();
        leaveRegimes();
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
    pointUndoReady = false;
    if (patches.empty()) {
        return;
    }
    SavePatchUndo();
    patchUndoReady = true;
    rebuildOnUndo = false;
    undoPath_ = chosenPath;
}

void VelmoraDoc::clearModel() {
    patches.clear();
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
    if (!patches.empty() && !removeGeometryAfterQuestion()) {
        return;
    }
    fieldOpening = false;
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.multiple = true;
    request.types = openTypes();
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
        if (extensionOf(*path) == firstExtension) {
            adoptPath(*path);
            loadFile(chosenPath, fileExtension);
        }
    }
}

void VelmoraDoc::onOpenDocument(const std::filesystem::path& path) {
    appendMode = false;
    keepForUndo();
    clearModel();
    updateBounds();
    redraw();
    pointsRead_ = pointsKept_ = 0;
    adoptPath(path);
    loadFile(chosenPath, fileExtension);
    ui_.addRecentFile(fullPath(path));
    if (structureKind == "non") {
        ui_.showMessage(message::openCancelled);
        leaveRegimes();
        redraw();
        return;
    }
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
    if (structureKind != "str") {
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::Append;
    request.types = fileKind == "apt" ? typesNamed({"apt", "skl", "dat"}) : typesNamed({"apt", "skl"});
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
    fileExtension = extensionOf(paths.front());
    loadFile(fullPath(paths.front()), fileExtension);
    appendMode = false;
    rebuildOnUndo = true;
    leaveRegimes();
    redraw();
    tellThinning();
}

bool VelmoraDoc::loadFile(const std::filesystem::path& path, const std::string& extension) {
    if (extension == "apt" || extension == "skl") {
        return readStructured(path, extension);
    }
    ui_.showMessage(message::fileTypeNotSupported);
    return false;
}

namespace {

/// What the two native readers have to tell, in one form.
struct StructuredRead {
    bool opened = false;
    bool namesFile = false; ///< the reader came as far as the title
    std::int64_t pointsInFile = 0;
    std::int64_t pointsKept = 0;
    bool textBehind = false; ///< the file holds more than the reader could make sense of
    std::vector<std::string> messages;
};

StructuredRead readByExtension(const std::filesystem::path& path, const std::string& extension, PatchList& patches) {
    StructuredRead read;
    if (extension == "apt") {
        const AptReadResult result = readApt(path, patches);
        read = {result.opened,       result.firstPassEnded || result.endReached,
                result.pointsInFile, result.pointsKept,
                result.textBehind,   {}};
        for (const FormatFault& fault : result.faults) {
            read.messages.push_back(aptMessage(fault));
        }
    } else {
        const SklReadResult result = readSkl(path, patches);
        read = {result.opened, result.endReached, result.pointsRead, result.pointsRead, result.textBehind, {}};
        for (const FormatFault& fault : result.faults) {
            read.messages.push_back(sklMessage(fault));
        }
    }
    return read;
}

} // namespace

bool VelmoraDoc::readStructured(const std::filesystem::path& path, const std::string& extension) {
    StructuredRead read;
    {
        const BusyScope busy(ui_);
        read = readByExtension(path, extension, patches);
    }
    const bool failed = !read.messages.empty();
    pointsRead_ += read.pointsInFile;
    pointsKept_ += read.pointsKept;
    if (read.opened) {
        noteCompleteness(path, !failed && !read.textBehind && read.pointsKept >= read.pointsInFile);
    }
    if (!appendMode && read.namesFile) {
        takeExtension(extension);
    }
    for (const std::string& text : read.messages) {
        ui_.showMessage(text);
        if (read.opened) {
            setTitle("Wrong");
        }
    }
    if (!read.opened) {
        return false;
    }
    if (failed) {
        titleWrong_ = true;
        checkRegularity(patches);
        return false;
    }
    titleWrong_ = false;
    retitle();
    return true;
}

void VelmoraDoc::noteCompleteness(const std::filesystem::path& path, bool complete) {
    const auto same = [&path](const std::filesystem::path& other) { return sameFile(other, path); };
    incompleteFiles_.erase(std::remove_if(incompleteFiles_.begin(), incompleteFiles_.end(), same),
                           incompleteFiles_.end());
    if (!complete) {
        incompleteFiles_.push_back(path);
    }
}

// ---- Save -----------------------------------------------------------------------------------------------------------

void VelmoraDoc::saveModel() {
    if (saveCurrent() != SaveResult::Declined) {
        documentModified = false;
    }
}

bool VelmoraDoc::mayOverwrite(const std::filesystem::path& path) {
    const auto same = [&path](const std::filesystem::path& other) { return sameFile(other, path); };
    return std::none_of(incompleteFiles_.begin(), incompleteFiles_.end(), same) || ui_.ask(message::holdsMorePoints);
}

VelmoraDoc::SaveResult VelmoraDoc::saveCurrent() {
    if (structureKind != "str") {
        return SaveResult::Failed;
    }
    if (extensionOf(chosenPath) != fileKind) {
        takeExtension(fileKind);
    }
    if (!mayOverwrite(chosenPath)) {
        return SaveResult::Declined;
    }
    if (!writeStructured(chosenPath, fileKind)) {
        return SaveResult::Failed;
    }
    titleWrong_ = false;
    takeExtension(fileKind);
    return SaveResult::Saved;
}

bool VelmoraDoc::writeStructured(const std::filesystem::path& path, const std::string& kind) {
    const BusyScope busy(ui_);
    const bool written =
        kind == "apt" ? writeApt(path, patches, outputPrecision) : writeSkl(path, patches, outputPrecision);
    if (!written) {
        ui_.showMessage(std::string(cannotSaveMessage));
        return false;
    }
    noteCompleteness(path, true);
    return true;
}

std::vector<FileType> VelmoraDoc::saveTypes() const {
    if (structureKind == "uns") {
        return typesNamed({"dat", "wrl", "stl"});
    }
    if (fileKind == "skl") {
        return typesNamed({"skl"});
    }
    return typesNamed({"apt", "skl", "dat", "wrl", "stl"});
}

void VelmoraDoc::saveModelAs() {
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.types = saveTypes();
    request.proposed = chosenPath;
    request.command = "file.saveAs";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const std::string extension = extensionOf(path);
    if (extension == "dat" || extension == "wrl" || extension == "stl") {
        ShowStatus("Saving as " + extension + " is not there yet");
        return;
    }
    if (!mayOverwrite(path)) {
        return;
    }
    adoptPath(path);
    documentModified = false;
    const bool fits = structureKind == "str" && (extension == "skl" || extension == fileKind);
    if (!fits || !writeStructured(chosenPath, extension)) {
        return;
    }
    titleWrong_ = false;
    takeExtension(extension);
    ui_.addRecentFile(chosenPath.parent_path());
}

bool VelmoraDoc::saveModified() {
    if (structureKind == "non" || !documentModified || !ui_.ask(message::saveBeforeExit)) {
        return true;
    }
    // Work that could not be written is not thrown away: the document stays open, and asks again.
    documentModified = saveCurrent() != SaveResult::Saved;
    return !documentModified;
}

} // namespace velmora

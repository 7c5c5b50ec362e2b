#include <algorithm>

#include "VelmoraDoc.h"
#include "field_file.h"
#include "file_types.h"
#include "format_outcome.h"
#include "messages.h"
#include "path_names.h"

namespace velmora {

// A model that carries field values, one to three per point: opened, saved and closed as one.

namespace {

bool sameShape(const Patch& a, const Patch& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const PointList& x, const PointList& y) { return x.size() == y.size(); });
}

} // namespace

Patch* VelmoraDoc::fieldOfPatch(std::int32_t patch) {
    if (!fieldLoaded || patch < 0 || patch >= countOf(patches) || patch >= countOf(fieldPatches)) {
        return nullptr;
    }
    Patch& field = fieldPatches[static_cast<std::size_t>(patch)];
    return sameShape(field, patches[static_cast<std::size_t>(patch)]) ? &field : nullptr;
}

PointList* VelmoraDoc::fieldOfSection(std::int32_t patch, std::int32_t section) {
    Patch* const field = fieldOfPatch(patch);
    return field != nullptr && section >= 0 && section < countOf(*field) ? &(*field)[static_cast<std::size_t>(section)]
                                                                         : nullptr;
}

PatchList* VelmoraDoc::wholeField() {
    const bool whole = fieldLoaded && patches.size() == fieldPatches.size() &&
                       std::equal(patches.begin(), patches.end(), fieldPatches.begin(), sameShape);
    return whole ? &fieldPatches : nullptr;
}

void VelmoraDoc::OpenField() {
    appendMode = false;
    if (!holdsNothing()) {
        if (!removeGeometryAfterQuestion()) {
            return;
        }
        markers.clear();
        markersOpen = false;
    }
    fieldLoaded = fieldMode = false;
    fieldPatches.clear();
    fieldOpening = true;
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.multiple = true;
    request.types = {{"dat", "FlowField"}};
    request.proposed = chosenPath;
    request.command = "file.openField";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        fieldOpening = false;
        leaveRegimes();
        redraw();
        return;
    }
    adoptPath(paths.front());
    loadFile(chosenPath, fileExtension);
    if (structureKind == "non") {
        fieldOpening = false; // a .dat that is appended to what Undo brings back holds zones
        ui_.showMessage(message::openCancelled);
        leaveRegimes();
        redraw();
        return;
    }
    pointsRead_ = pointsKept_ = 0;
    finishOpen();
    ui_.addRecentFile(chosenPath);
}

void VelmoraDoc::SaveField() {
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.types = {flowFieldType()};
    request.proposed = chosenPath;
    request.command = "file.saveAsField";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const bool writable = structureKind == "str" && fileKind == "apt" && extensionOf(path) == "dat";
    if (writable && !mayOverwrite(path)) {
        return;
    }
    documentModified = false;
    fileExtension = extensionOf(path);
    if (structureKind != "str") {
        ui_.showMessage(message::wrongFormat);
        return;
    }
    if (!writable) {
        ui_.showMessage(message::wrongExtension);
        return;
    }
    bool written = false;
    {
        const BusyScope busy(ui_);
        written = writeFieldFile(path, patches, fieldPatches, fieldCount, fieldTitleLine, fieldVariablesLine,
                                 outputPrecision, progressTo(ui_));
    }
    if (!written) {
        ui_.showMessage(std::string(cannotSaveMessage));
        return;
    }
    noteCompleteness(path, true);
    adoptPath(path);
    takeExtension("dat");
}

void VelmoraDoc::CloseField() {
    clearModel();
    titleWrong_ = false;
    setTitle("Untitled");
    forgetRegimesAndAddresses();
    resetMouseMode();
    if (status != idlePrompt) {
        ShowStatus(idlePrompt);
    }
    redraw();
}

/// Every flag of a regime off and every address none, without the steps of leaving each regime.
void VelmoraDoc::forgetRegimesAndAddresses() {
    capture.forgetAll();
    emptyBlock();
    showBlockOnly = false;
    pointUndoReady = patchUndoReady = rebuildOnUndo = false;
}

} // namespace velmora

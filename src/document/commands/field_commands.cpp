#include <algorithm>
#include <filesystem>
#include <vector>

#include "VelmoraDoc.h"
#include "field_file.h"
#include "file_types.h"
#include "load_files.h"
#include "messages.h"
#include "open_commands.h"
#include "path_names.h"
#include "write_files.h"

namespace velmora {

// A model that carries field values, one to three per point: opened, saved and closed as one.

namespace {

bool sameShape(const Patch& a, const Patch& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const PointList& x, const PointList& y) { return x.size() == y.size(); });
}

/// Every flag of a regime off and every address none, without the steps of leaving each regime.
void forgetRegimesAndAddresses(VelmoraDoc& doc) {
    doc.capture.forgetAll();
    doc.emptyBlock();
    doc.showBlockOnly = false;
    doc.pointUndoReady = doc.patchUndoReady = doc.rebuildOnUndo = false;
}

} // namespace

Patch* VelmoraDoc::fieldOfPatch(std::int32_t patch) {
    if (patch < 0 || patch >= countOf(patches) || patch >= countOf(fieldPatches)) {
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
    const bool whole = patches.size() == fieldPatches.size() &&
                       std::equal(patches.begin(), patches.end(), fieldPatches.begin(), sameShape);
    return whole ? &fieldPatches : nullptr;
}

void VelmoraDoc::OpenField() {
    if (!holdsNothing()) {
        if (!removeGeometryAfterQuestion(*this)) {
            return;
        }
        markers.clear();
        markersOpen = false;
    }
    fieldLoaded = fieldMode = fieldOpening = false;
    fieldPatches.clear();
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.multiple = true;
    request.types = {{"dat", "FlowField"}};
    request.proposed = modelFile.chosenPath;
    request.command = "file.openField";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        leaveRegimes();
        redraw();
        return;
    }
    modelFile.adopt(paths.front());
    PointTally points;
    loadFile(*this, modelFile.chosenPath, modelFile.fileExtension, {.field = true}, points);
    if (structureKind == StructureKind::None) {
        ui_.showMessage(message::openCancelled);
        leaveRegimes();
        redraw();
        return;
    }
    fieldOpening = true;
    finishOpen(*this, {}); // what is thinned of a field file is not told
    ui_.addRecentFile(modelFile.chosenPath);
}

void VelmoraDoc::SaveField() {
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.types = {flowFieldType()};
    request.proposed = modelFile.chosenPath;
    request.command = "file.saveAsField";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const bool writable =
        structureKind == StructureKind::Structured && fileKind == FileKind::Apt && extensionOf(path) == "dat";
    if (writable && !mayOverwrite(*this, path)) {
        return;
    }
    documentModified = false;
    modelFile.fileExtension = extensionOf(path);
    if (structureKind != StructureKind::Structured) {
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
        ui_.showMessage(message::cannotSave);
        return;
    }
    modelFile.noteCompleteness(path, true);
    modelFile.adopt(path);
    modelFile.takeExtension("dat");
}

void VelmoraDoc::CloseField() {
    clearModel();
    modelFile.titleWrong = false;
    modelFile.setTitle("Untitled");
    forgetRegimesAndAddresses(*this);
    resetMouseMode();
    if (status != idlePrompt) {
        ShowStatus(idlePrompt);
    }
    redraw();
}

} // namespace velmora

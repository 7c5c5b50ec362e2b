#include <filesystem>
#include <vector>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
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

/// Every flag of a regime off and every address none, without the steps of leaving each regime.
void forgetRegimesAndAddresses(VelmoraDoc& doc) {
    doc.capture.forgetAll();
    doc.emptyBlock();
    doc.showBlockOnly = false;
    doc.pointUndoReady = doc.patchUndoReady = doc.rebuildOnUndo = false;
}

} // namespace

void VelmoraDoc::OpenField() {
    if (!holdsNothing() && !ui_.ask(message::removeGeometry)) {
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.multiple = true;
    request.types = {{"dat", "FlowField"}};
    request.proposed = modelFile.chosenPath;
    request.command = "file.openField";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    LoadTally tally;
    bool gaveModel = false;
    {
        ModelAside before(*this);
        modelFile.adopt(paths.front());
        loadFile(*this, modelFile.chosenPath, modelFile.fileExtension, {.field = true}, tally);
        gaveModel = structureKind != StructureKind::None;
        if (gaveModel) {
            before.keepForUndo();
        }
    }
    if (!gaveModel) {
        cancelOpen(*this, tally);
        return;
    }
    markers.clear();
    markersOpen = false;
    fieldOpening = true;
    tally.pointsRead = tally.pointsKept = 0; // what is thinned of a field file is not told
    finishOpen(*this, tally);
    ui_.addRecentFile(modelFile.chosenPath);
}

void VelmoraDoc::SaveField() {
    if (holdsNothingToSave(*this)) {
        ui_.showMessage(message::nothingToSave);
        return;
    }
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
    if (structureKind != StructureKind::Structured) {
        ui_.showMessage(message::wrongFormat);
        return;
    }
    if (fileKind != FileKind::Apt || extensionOf(path) != "dat") {
        ui_.showMessage(message::wrongExtension);
        return;
    }
    if (!mayOverwrite(*this, path, TargetFrom::Chooser)) {
        return;
    }
    WriteOutcome outcome;
    {
        const BusyScope busy(ui_);
        outcome = writeFieldFile(path, patches, fieldPatches, fieldCount, fieldTitleLine, fieldVariablesLine,
                                 outputPrecision, progressTo(ui_));
    }
    finishWriting(*this, outcome);
    if (!outcome) {
        return;
    }
    documentModified = false;
    modelFile.adopt(path);
    modelFile.takeExtension("dat");
    tellSaved(*this, outcome);
}

void VelmoraDoc::CloseField() {
    // Work that is in no file is not gone with one key: as after New, Undo brings the model back.
    const bool unsaved = documentModified;
    if (unsaved) {
        keepForUndo();
    }
    clearModel();
    modelFile.forget();
    modelFile.titleWrong = false;
    modelFile.setTitle("Untitled");
    forgetRegimesAndAddresses(*this);
    patchUndoReady = unsaved;
    documentModified = false; // there is nothing to save
    resetMouseMode();
    if (status != idlePrompt) {
        ShowStatus(idlePrompt);
    }
    redraw();
}

std::span<const Command> fieldCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "file.openField",
         .menuText = "Open dat (field)...",
         .statusText = "Open a model with field values",
         .run = &VelmoraDoc::OpenField,
         .places = {{File, 510}}},
        {.id = "file.saveAsField",
         .menuText = "Save As dat (field)",
         .statusText = "Save the model with its field values",
         .run = &VelmoraDoc::SaveField,
         .off = nonOrNoField,
         .places = {{File, 520}}},
        {.id = "file.closeField",
         .menuText = "Close dat (field)",
         .statusText = "Close the model and its field values",
         .run = &VelmoraDoc::CloseField,
         .off = nonOrNoField,
         .places = {{File, 530}}},
    };
    return rows;
}

} // namespace velmora

#include "marker_files.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "file_types.h"
#include "load_files.h"
#include "messages.h"
#include "path_names.h"

namespace velmora {

// Lists of points that stand beside the model: pairs of markers, markers, and names of boundary conditions.

namespace {

/// The file that was read is told of, and what is wrong with it.
void tellPoints(VelmoraDoc& doc, bool opened, bool readFailed, const FileRead& record) {
    if (!opened) {
        doc.ui().showMessage(message::cannotOpen);
        return;
    }
    doc.ui().tellFileRead(record);
    if (readFailed) {
        doc.ui().showMessage(message::readFailed);
    }
    const std::string loss = lossText(record);
    if (!loss.empty()) {
        doc.ShowStatus(loss);
    } else if (!record.keptAnything()) {
        doc.ShowStatus("No point stands in " + record.path.filename().string());
    }
}

} // namespace

void VelmoraDoc::AppendSft() {
    FileRequest request;
    request.mode = ChooserMode::Append;
    request.types = fileTypesNamed({"sft"});
    request.command = "file.appendSft";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    // What Undo does with the box stays as it is: it is of the command before, whether markers are read or not.
    SftResult file;
    {
        const BusyScope busy(ui_);
        file = readSft(fullPath(paths.front()));
    }
    tellPoints(*this, file.opened, file.readFailed, file.record);
    if (!file.opened) {
        return;
    }
    if (!file.points.empty()) { // else the pairs that are there stay
        sftPoints = std::move(file.points);
        sftTargets = std::move(file.targets);
    }
    sftOpen = true;
    redraw();
}

void VelmoraDoc::CloseSft() {
    sftPoints.clear();
    sftTargets.clear();
    sftOpen = false;
    redraw();
}

void VelmoraDoc::AppendCbc() {
    FileRequest request;
    request.mode = ChooserMode::Append;
    request.types = fileTypesNamed({"cbc", "bc"});
    request.command = "file.appendCbc";
    // Only that it was asked for counts: no file of these kinds is read, and Cancel goes on too.
    ui_.chooseFiles(request);
    {
        const BusyScope busy(ui_);
        feRegion.blocks.clear();
    }
    cbcAppended = true;
    redraw();
}

std::optional<PointFileResult> readChosenPoints(VelmoraDoc& doc, const FileRequest& request) {
    const std::vector<std::filesystem::path> paths = doc.ui().chooseFiles(request);
    if (paths.empty()) {
        return std::nullopt;
    }
    PointFileResult file;
    {
        const BusyScope busy(doc.ui());
        file = readPointFile(fullPath(paths.front()), request.types.front().extension);
    }
    tellPoints(doc, file.opened, file.readFailed, file.record);
    return file;
}

void VelmoraDoc::OpenApm() {
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.types = fileTypesNamed({"apm"});
    request.proposed = "Markers.apm";
    request.command = "file.openApm";
    std::optional<PointFileResult> file = readChosenPoints(*this, request);
    if (!file) {
        markers.clear(); // without a file there are none; one without a point leaves those that are there
    } else if (!file->points.empty()) {
        markers = std::move(file->points);
        markersOpen = true;
    }
    redraw();
}

void VelmoraDoc::CloseApm() {
    markers.clear();
    markersOpen = false;
    redraw();
}

std::span<const Command> markerCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "file.appendSft",
         .menuText = "Append sft...",
         .statusText = "Read pairs of initial and shifted markers",
         .run = &VelmoraDoc::AppendSft,
         .off = nonOrField,
         .places = {{File, 410}}},
        {.id = "file.closeSft",
         .menuText = "Close sft",
         .statusText = "Close the pairs of markers",
         .run = &VelmoraDoc::CloseSft,
         .off = [](Doc d) { return !d.sftOpen; },
         .places = {{File, 420}}},
        {.id = "file.appendCbc",
         .menuText = "Append CBC...",
         .statusText = "Name the boundary conditions of the grid",
         .run = &VelmoraDoc::AppendCbc,
         .off = [](Doc d) { return !d.gridNamed; },
         .places = {{File, 430}}},
        {.id = "file.openApm",
         .menuText = "Open apm",
         .statusText = "Read marker points",
         .run = &VelmoraDoc::OpenApm,
         .off = notGridOrField,
         .places = {{File, 440}}},
        {.id = "file.closeApm",
         .menuText = "Close apm",
         .statusText = "Close the marker points",
         .run = &VelmoraDoc::CloseApm,
         .off = [](Doc d) { return !d.markersOpen; },
         .places = {{File, 450}}},
    };
    return rows;
}

} // namespace velmora

#include "marker_files.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "VelmoraDoc.h"
#include "file_types.h"
#include "messages.h"
#include "point_files.h"

namespace velmora {

// Lists of points that stand beside the model: pairs of markers, markers, and names of boundary conditions.

void VelmoraDoc::AppendSft() {
    rebuildOnUndo = false;
    FileRequest request;
    request.mode = ChooserMode::Append;
    request.types = fileTypesNamed({"sft"});
    request.command = "file.appendSft";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    SftResult file;
    {
        const BusyScope busy(ui_);
        file = readSft(paths.front());
    }
    if (!file.opened) {
        ui_.showMessage(message::cannotOpen);
        return;
    }
    sftPoints = std::move(file.points);
    sftTargets = std::move(file.targets);
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

PointList readChosenPoints(UserInterface& ui, const FileRequest& request) {
    const std::vector<std::filesystem::path> paths = ui.chooseFiles(request);
    if (paths.empty()) {
        return {};
    }
    PointFileResult file;
    {
        const BusyScope busy(ui);
        file = readPointFile(paths.front());
    }
    if (!file.opened) {
        ui.showMessage(message::cannotOpen);
    }
    return std::move(file.points);
}

void VelmoraDoc::OpenApm() {
    markers.clear();
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.types = fileTypesNamed({"apm"});
    request.proposed = "Markers.apm";
    request.command = "file.openApm";
    markers = readChosenPoints(ui_, request);
    if (!markers.empty()) {
        markersOpen = true;
    }
    redraw();
}

void VelmoraDoc::CloseApm() {
    markers.clear();
    markersOpen = false;
    redraw();
}

} // namespace velmora

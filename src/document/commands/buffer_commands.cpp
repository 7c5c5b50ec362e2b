#include <algorithm>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "captured_curve.h"
#include "file_types.h"
#include "marker_files.h"
#include "messages.h"
#include "path_names.h"
#include "point_files.h"
#include "section_edits.h"
#include "write_files.h"

namespace velmora {

// The line buffer: a list of points that stands apart from the model.

namespace {

FileRequest bufferRequest(ChooserMode mode, const char* command) {
    FileRequest request;
    request.mode = mode;
    request.types = fileTypesNamed({"ext"});
    request.proposed = "Line_buf.ext";
    request.command = command;
    return request;
}

} // namespace

void VelmoraDoc::AddToBuffer() {
    lineBuffer.push_back(capture->pickedPoint);
    lineBufferFull = true;
    showBuffer = true;
    redraw();
}

void VelmoraDoc::ClearBuffer() {
    if (!ui_.ask(message::clearBuffer)) {
        return;
    }
    lineBuffer.clear();
    lineBufferFull = false;
    redraw();
}

void VelmoraDoc::OpenBuffer() {
    PointFileResult file = readChosenPoints(*this, bufferRequest(ChooserMode::Open, "buffer.open"));
    if (file.opened) {
        modelFile.memory.noteBufferRead(file.record);
    }
    // A chooser that is called off, and a file without points, leave the points that the user has.
    if (!file.points.empty()) {
        lineBuffer = std::move(file.points);
        lineBufferFull = true;
        showBuffer = true;
    }
    redraw();
}

void VelmoraDoc::SaveBuffer() {
    const auto paths = ui_.chooseFiles(bufferRequest(ChooserMode::SaveAs, "buffer.saveAs"));
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    if (!mayOverwrite(*this, path, TargetFrom::Chooser)) {
        return;
    }
    WriteOutcome outcome;
    {
        const BusyScope busy(ui_);
        outcome = writeLineBuffer(path, lineBuffer, outputPrecision);
    }
    finishWriting(*this, outcome);
    redraw();
}

void VelmoraDoc::ReverseBuffer() {
    std::reverse(lineBuffer.begin(), lineBuffer.end());
    redraw();
}

void VelmoraDoc::CopyToBuffer() {
    lineBufferFull = true;
    lineBuffer = capturedCurvePoints(*this);
    redraw();
}

void VelmoraDoc::PasteFromBuffer() {
    if (!curveIsThere(*this)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    ui_.showMessage(message::aptMayBeViolated);
    const std::size_t sections = patches[static_cast<std::size_t>(capture->capturedPatch)].size();
    const bool fits = lineBuffer.size() == sections && capturedCurvePoints(*this).size() == sections;
    if (!capture->sectionCaptured && !fits) {
        ui_.showMessage(message::bufferDoesNotFitLine);
        return;
    }
    putCurvePoints(*this, lineBuffer);
    retitle();
    redraw();
}

void VelmoraDoc::MatchBuffer() {
    if (!curveIsThere(*this)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    if (const auto points = matchedPoints(capturedCurvePoints(*this), lineBuffer)) {
        putCurvePoints(*this, *points);
    } else {
        ui_.showMessage(message::matchingImpossible);
    }
    redraw();
}

} // namespace velmora

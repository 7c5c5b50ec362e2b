#include <algorithm>

#include "VelmoraDoc.h"
#include "capture_address.h"
#include "file_types.h"
#include "marker_files.h"
#include "messages.h"
#include "path_names.h"
#include "point_files.h"
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

/// Whether what is captured as section or line stands in the model.
bool VelmoraDoc::curveIsThere() {
    if (structureKind != StructureKind::Structured) {
        return false;
    }
    return capture->sectionCaptured
               ? sectionAt(capture->capturedPatch, capture->capturedSection) != nullptr
               : capture->lineCaptured && pointAt(capture->capturedPatch, 0, capture->capturedLine) != nullptr;
}

/// The points of the captured section, or of the captured line one of each section that reaches it.
PointList VelmoraDoc::capturedCurvePoints() {
    if (capture->sectionCaptured) {
        const PointList* section = sectionAt(capture->capturedPatch, capture->capturedSection);
        return section != nullptr ? *section : PointList();
    }
    PointList points;
    if (capture->lineCaptured && capture->capturedPatch >= 0 && capture->capturedPatch < countOf(patches)) {
        const std::int32_t sections = countOf(patches[static_cast<std::size_t>(capture->capturedPatch)]);
        for (std::int32_t n = 0; n < sections; ++n) {
            if (const zVec<double>* point = pointAt(capture->capturedPatch, n, capture->capturedLine)) {
                points.push_back(*point);
            }
        }
    }
    return points;
}

PointList VelmoraDoc::curveInHand() {
    return curveIsThere() ? capturedCurvePoints() : lineBuffer;
}

/// Gives the captured curve other points: a section takes them as they are, a line one for each of its own.
void VelmoraDoc::putCurvePoints(const PointList& points) {
    if (capture->sectionCaptured) {
        *sectionAt(capture->capturedPatch, capture->capturedSection) = points;
    } else {
        auto position = points.begin();
        for (std::int32_t n = 0; sectionAt(capture->capturedPatch, n) != nullptr && position != points.end(); ++n) {
            if (zVec<double>* point = pointAt(capture->capturedPatch, n, capture->capturedLine)) {
                *point = *position;
                ++position;
            }
        }
    }
    keepCaptureInside(*this);
    followCapturedPoint();
}

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
    // Cancel leaves the buffer empty too, and the flag as it was.
    lineBuffer.clear();
    PointFileResult file = readChosenPoints(*this, bufferRequest(ChooserMode::Open, "buffer.open"));
    if (file.opened) {
        modelFile.memory.noteBufferRead(file.record);
    }
    lineBuffer = std::move(file.points);
    if (!lineBuffer.empty()) {
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
    lineBuffer = capturedCurvePoints();
    redraw();
}

void VelmoraDoc::PasteFromBuffer() {
    if (!curveIsThere()) {
        return;
    }
    beginPatchCommand(false);
    ui_.showMessage(message::aptMayBeViolated);
    const std::size_t sections = patches[static_cast<std::size_t>(capture->capturedPatch)].size();
    const bool fits = lineBuffer.size() == sections && capturedCurvePoints().size() == sections;
    if (!capture->sectionCaptured && !fits) {
        ui_.showMessage(message::bufferDoesNotFitLine);
        return;
    }
    putCurvePoints(lineBuffer);
    retitle();
    redraw();
}

void VelmoraDoc::MatchBuffer() {
    if (!curveIsThere()) {
        return;
    }
    beginPatchCommand(false);
    if (const auto points = matchedPoints(capturedCurvePoints(), lineBuffer)) {
        putCurvePoints(*points);
    } else {
        ui_.showMessage(message::matchingImpossible);
    }
    redraw();
}

} // namespace velmora

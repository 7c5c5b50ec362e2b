#include <algorithm>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "captured_curve.h"
#include "command_rows.h"
#include "command_rules.h"
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

void AddToBuffer(VelmoraDoc& doc) {
    doc.lineBuffer.push_back(doc.capture->pickedPoint);
    doc.lineBufferFull = true;
    doc.showBuffer = true;
    doc.redraw();
}

void ClearBuffer(VelmoraDoc& doc) {
    if (!doc.ui().ask(message::clearBuffer)) {
        return;
    }
    doc.lineBuffer.clear();
    doc.lineBufferFull = false;
    doc.redraw();
}

void OpenBuffer(VelmoraDoc& doc) {
    PointFileResult file =
        readChosenPoints(doc, bufferRequest(ChooserMode::Open, "buffer.open")).value_or(PointFileResult());
    if (file.opened) {
        doc.modelFile.memory.noteBufferRead(file.record);
    }
    // A chooser that is called off, and a file without points, leave the points that the user has.
    if (!file.points.empty()) {
        doc.lineBuffer = std::move(file.points);
        doc.lineBufferFull = true;
        doc.showBuffer = true;
    }
    doc.redraw();
}

void SaveBuffer(VelmoraDoc& doc) {
    const auto paths = doc.ui().chooseFiles(bufferRequest(ChooserMode::SaveAs, "buffer.saveAs"));
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    if (!mayOverwrite(doc, path, TargetFrom::Chooser, FileContent::Buffer)) {
        return;
    }
    WriteOutcome outcome;
    {
        const BusyScope busy(doc.ui());
        outcome = writeLineBuffer(path, doc.lineBuffer, outputPrecision);
    }
    finishWriting(doc, outcome, FileContent::Buffer);
    doc.redraw();
}

void ReverseBuffer(VelmoraDoc& doc) {
    std::reverse(doc.lineBuffer.begin(), doc.lineBuffer.end());
    doc.redraw();
}

void CopyToBuffer(VelmoraDoc& doc) {
    doc.lineBufferFull = true;
    doc.lineBuffer = capturedCurvePoints(doc);
    doc.redraw();
}

void PasteFromBuffer(VelmoraDoc& doc) {
    if (!curveIsThere(doc)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    doc.ui().showMessage(message::aptMayBeViolated);
    const std::size_t sections = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)].size();
    const bool fits = doc.lineBuffer.size() == sections && capturedCurvePoints(doc).size() == sections;
    if (!doc.capture->sectionCaptured && !fits) {
        doc.ui().showMessage(message::bufferDoesNotFitLine);
        return;
    }
    putCurvePoints(doc, doc.lineBuffer);
    doc.retitle();
    doc.redraw();
}

void MatchBuffer(VelmoraDoc& doc) {
    if (!curveIsThere(doc)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    if (const auto points = matchedPoints(capturedCurvePoints(doc), doc.lineBuffer)) {
        putCurvePoints(doc, *points);
    } else {
        doc.ui().showMessage(message::matchingImpossible);
    }
    doc.redraw();
}

} // namespace

std::span<const Command> bufferCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "line.copy",
         .menuText = "C&opy",
         .statusText = "Copy captured line to buffer",
         .toolTip = "Copy to buffer",
         .accelerator = "Ctrl+C",
         .icon = true,
         .run = &CopyToBuffer,
         .off = noCurveOrField,
         .places = {{LineContext, 470}, {EditingBar, 240}}},
        {.id = "line.paste",
         .menuText = "&Paste",
         .statusText = "Copy line from buffer to captured position",
         .toolTip = "Paste from buffer",
         .accelerator = "Ctrl+V",
         .icon = true,
         .run = &PasteFromBuffer,
         .off = [](Doc d) { return noCurve(d) || bufferEmpty(d); },
         .places = {{LineContext, 480}, {EditingBar, 250}}},
        {.id = "buffer.addPoint",
         .menuText = "Add to \"line\" buffer",
         .statusText = "Add selected point to buffer",
         .run = &AddToBuffer,
         .off = [](Doc d) { return !d.capture->pointPicked; },
         .places = {{PointContext, 310}}},
        {.id = "buffer.clear",
         .menuText = "Buffer clear ",
         .statusText = "Remove all the points from buffer",
         .run = &ClearBuffer,
         .off = bufferEmpty,
         .places = {{PointContext, 320}, {LineContext, 430, "Buffer clear"}}},
        {.id = "buffer.open",
         .menuText = "Buffer Open...",
         .statusText = "Read line from hard disk",
         .run = &OpenBuffer,
         .places = {{PointContext, 330}}},
        {.id = "buffer.open.line",
         .menuText = "Buffer Open...",
         .statusText = "Read line from hard disk",
         .run = &OpenBuffer,
         .off = noCurveOfGridOrField,
         .places = {{LineContext, 410}}},
        {.id = "buffer.saveAs",
         .menuText = "Buffer Save As ...",
         .statusText = "Save line in the choosen directory",
         .run = &SaveBuffer,
         .off = bufferEmpty,
         .places = {{PointContext, 340}, {LineContext, 420, "Buffer Save As"}}},
        {.id = "buffer.reverse",
         .menuText = "First/Last in \"line\" buffer",
         .statusText = "Change numeration of points",
         .run = &ReverseBuffer,
         .off = bufferEmpty,
         .places = {{PointContext, 350}, {LineContext, 440}}},
        {.id = "buffer.match",
         .menuText = "Buffer match",
         .statusText = "Match captured section or line to buffer",
         .run = &MatchBuffer,
         .off = [](Doc d) { return bufferEmpty(d) || noCurve(d); },
         .places = {{LineContext, 460}}},
    };
    return rows;
}

} // namespace velmora

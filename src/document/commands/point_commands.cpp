#include <algorithm>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "command_rows.h"
#include "command_rules.h"
#include "messages.h"
#include "show_dialog.h"

namespace velmora {

// Each command works on the captured point, takes a snapshot first, and leaves the point regime ready to go on.

namespace {

/// Asks before a change of one section's point count; the continue prompt stands again after a No.
bool mayBreakGrid(VelmoraDoc& doc) {
    if (doc.fileKind != FileKind::Apt || doc.ui().ask(message::aptViolated)) {
        return true;
    }
    doc.ShowStatus(doc.capture->pointContinueStatus);
    return false;
}

/// Leaving the line would clear the address of the point that is about to be edited.
void leaveLineRegimeKeepingAddress(VelmoraDoc& doc) {
    if (!doc.capture->lineCaptured) {
        return;
    }
    const CaptureState before = *doc.capture;
    doc.ExitLineRegime();
    doc.capture.returnToPoint(before);
}

void finishPointEdit(VelmoraDoc& doc, bool curveForm) {
    doc.capture.describePoint(curveForm);
    doc.ShowStatus(doc.capture->pointContinueStatus);
    doc.redraw();
}

/// After a point went away the next one is captured: the one that took its number.
void finishPointRemoval(VelmoraDoc& doc) {
    takeCapturedPosition(doc, doc.capture->capturedPointPos);
    doc.retitle();
    doc.capture.keepPoint();
    finishPointEdit(doc, false);
}

} // namespace

void VelmoraDoc::DeletePoint() {
    PointList* section = sectionAt(capture->capturedPatch, capture->capturedPointSection);
    if (section == nullptr ||
        pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint) == nullptr ||
        !mayBreakGrid(*this)) {
        return;
    }
    if (capture->capturedPoint == 0 || capture->capturedPoint == countOf(*section) - 1) {
        ui_.showMessage(message::endPointStays);
        ExitPointRegime();
        return;
    }
    if (section->size() < 3) {
        ui_.showMessage(message::twoPointsStay);
        ExitPointRegime();
        return;
    }
    SavePointUndo();
    pointUndoReady = true;
    section->erase(section->begin() + capture->capturedPoint);
    capture.savePoint();
    finishPointRemoval(*this);
}

void VelmoraDoc::DuplicatePoint() {
    dialogs->duplicate.room = memoryRoom(bytesOfPoint);
    if (!showDialog(ui_, dialogs->duplicate)) {
        ShowStatus(capture->pointContinueStatus);
        return;
    }
    const std::int32_t copies = dialogs->duplicate.duplicateCount - 1;
    PointList* section = sectionAt(capture->capturedPatch, capture->capturedPointSection);
    if (copies < 1 ||
        pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint) == nullptr ||
        !mayBreakGrid(*this)) {
        return;
    }
    leaveLineRegimeKeepingAddress(*this);
    SavePointUndo();
    pointUndoReady = true;
    capture.savePoint();
    const zVec<double> point = (*section)[static_cast<std::size_t>(capture->capturedPoint)];
    section->insert(section->begin() + capture->capturedPoint, static_cast<std::size_t>(copies), point);
    retitle();
    capture.keepPoint();
    ShowStatus(capture->pointContinueStatus);
    redraw();
}

namespace {

/// Puts the captured point or node to `position`, with a snapshot; false when nothing is captured.
bool moveCapturedPoint(VelmoraDoc& doc, const zVec<double>& position) {
    if (!doc.positionAt(doc.capture->capturedPatch, doc.capture->capturedPointSection, doc.capture->capturedPoint)) {
        return false;
    }
    doc.SavePointUndo();
    doc.pointUndoReady = true;
    doc.capture.savePoint();
    if (doc.structureKind == StructureKind::Unstructured) {
        doc.feRegion.setNode(doc.capture->capturedPatch, doc.capture->capturedPoint, position.x, position.y,
                             position.z);
    } else {
        *doc.pointAt(doc.capture->capturedPatch, doc.capture->capturedPointSection, doc.capture->capturedPoint) =
            position;
    }
    doc.capture.placePoint(position);
    return true;
}

} // namespace

void VelmoraDoc::EditPoint() {
    dialogs->editPoint = {capture->pickedPoint.x, capture->pickedPoint.y, capture->pickedPoint.z};
    if (!showDialog(ui_, dialogs->editPoint)) {
        return;
    }
    if (moveCapturedPoint(*this, {dialogs->editPoint.x, dialogs->editPoint.y, dialogs->editPoint.z})) {
        finishPointEdit(*this, true);
    }
}

void VelmoraDoc::CutPoint() {
    PointList* section = sectionAt(capture->capturedPatch, capture->capturedPointSection);
    const zVec<double>* point = pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint);
    if (point == nullptr || !mayBreakGrid(*this)) {
        return;
    }
    leaveLineRegimeKeepingAddress(*this);
    SavePointUndo();
    capture.savePoint();
    pointUndoReady = true;
    pointClipboard = *point;
    pointClipboardFull = true;
    section->erase(section->begin() + capture->capturedPoint);
    if (capture->capturedPoint >= countOf(*section) - 1) {
        if (capture->capturedPointSection == 0) {
            capture.losePoint();
            retitle();
            ui_.showMessage(message::lastPointStays);
            ExitPointRegime();
            redraw();
            // The point is gone: Undo point is the way back.
            pointUndoReady = true;
            return;
        }
        capture.renumberPoint(capture->capturedPointSection - 1, 0);
    }
    finishPointRemoval(*this);
}

void VelmoraDoc::CopyPoint() {
    pointClipboard = capture->capturedPointPos;
    pointClipboardFull = true;
    redrawPicture();
}

void VelmoraDoc::PastePoint() {
    if (moveCapturedPoint(*this, pointClipboard)) {
        finishPointEdit(*this, true);
    }
}

void VelmoraDoc::FindPoint() {
    if (patches.empty()) {
        return;
    }
    CRegularFind& find = dialogs->regularFind;
    find.K = std::max(capture->capturedPatch + 1, 1);
    find.N = std::max(capture->capturedPointSection + 1, 1);
    find.M = std::max(capture->capturedPoint + 1, 1);
    find.patchHeld = capture->patchCaptured;
    find.sectionHeld = capture->sectionCaptured;
    find.lineHeld = capture->lineCaptured;
    const zVec<double>* point = nullptr;
    if (showDialog(ui_, find, &patches)) {
        point = pointAt(find.K - 1, find.N - 1, find.M - 1);
    }
    if (point == nullptr) {
        ShowStatus(capture->pointContinueStatus);
        return;
    }
    capture.holdPoint(find.K - 1, find.N - 1, find.M - 1, *point);
    finishPointEdit(*this, true);
}

std::span<const Command> pointCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "point.input",
         .menuText = "&Input...",
         .statusText = "Direct input of point number from keyboard",
         .toolTip = "Input point",
         .icon = true,
         .run = &VelmoraDoc::FindPoint,
         .off = noPointOrUns,
         .places = {{EditPoint, 120}, {PointContext, 120, "&Find..."}, {EditingBar, 320}}},
        {.id = "point.edit",
         .menuText = "&Edit...",
         .statusText = "Edit coordinates of captured point",
         .toolTip = "Edit point",
         .icon = true,
         .run = &VelmoraDoc::EditPoint,
         .off = noPoint,
         .places = {{EditPoint, 150}, {PointContext, 130}, {EditingBar, 430}}},
        {.id = "point.delete",
         .menuText = "&Delete",
         .statusText = "Delete captured point",
         .toolTip = "Delete point",
         .icon = true,
         .run = &VelmoraDoc::DeletePoint,
         .off = pointCountFixed,
         .places = {{EditPoint, 130}, {PointContext, 150}, {EditingBar, 410}}},
        {.id = "point.duplicate",
         .menuText = "Dup&licate...",
         .statusText = "Duplicate captured point",
         .toolTip = "Duplicate point",
         .icon = true,
         .run = &VelmoraDoc::DuplicatePoint,
         .off = pointCountFixed,
         .places = {{EditPoint, 140}, {PointContext, 160}, {EditingBar, 420}}},
        {.id = "point.cut",
         .menuText = "C&ut",
         .statusText = "Cut captured point",
         .toolTip = "Cut point",
         .accelerator = "Ctrl+X",
         .icon = true,
         .run = &VelmoraDoc::CutPoint,
         .off = [](Doc d) { return noPointOrUns(d) || d.fieldMode; },
         .places = {{EditPoint, 210}, {PointContext, 210, "&Cut"}, {EditingBar, 510}}},
        {.id = "point.copy",
         .menuText = "C&opy",
         .statusText = "Copy captured point",
         .toolTip = "Copy point",
         .accelerator = "Ctrl+C",
         .icon = true,
         .run = &VelmoraDoc::CopyPoint,
         .off = noPoint,
         .places = {{EditPoint, 220}, {PointContext, 220}, {EditingBar, 520}}},
        {.id = "point.paste",
         .menuText = "&Paste",
         .statusText = "Paste point from buffer to captured position",
         .toolTip = "Paste point",
         .accelerator = "Ctrl+V",
         .icon = true,
         .run = &VelmoraDoc::PastePoint,
         .off = [](Doc d) { return noPoint(d) || !d.pointClipboardFull; },
         .places = {{EditPoint, 230}, {PointContext, 230}, {EditingBar, 530}}},
    };
    return rows;
}

} // namespace velmora

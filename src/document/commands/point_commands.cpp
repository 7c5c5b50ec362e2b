#include <algorithm>

#include "VelmoraDoc.h"
#include "messages.h"

namespace velmora {

// Each command works on the captured point, takes a snapshot first, and leaves the point regime ready to go on.

/// Asks before a change of one section's point count; the continue prompt stands again after a No.
bool VelmoraDoc::mayBreakGrid() {
    if (fileKind != "apt" || ui_.ask(message::aptViolated)) {
        return true;
    }
    ShowStatus(pointContinueStatus);
    return false;
}

/// Leaving the line would clear the address of the point that is about to be edited.
void VelmoraDoc::leaveLineRegimeKeepingAddress() {
    if (!lineCaptured) {
        return;
    }
    const std::int32_t patch = capturedPatch;
    const std::int32_t section = capturedPointSection;
    const std::int32_t point = capturedPoint;
    const bool picked = pointPicked;
    ExitLineRegime();
    pointPicked = picked;
    capturedPatch = patch;
    capturedPointSection = section;
    capturedPoint = point;
}

void VelmoraDoc::finishPointEdit(bool curveForm) {
    RefillPointStatus(curveForm);
    ShowStatus(pointContinueStatus);
    redraw();
}

/// After a point went away the next one is captured: the one that took its number.
void VelmoraDoc::finishPointRemoval() {
    takeCapturedPosition();
    pickedPoint = capturedPointPos;
    UpdateAfterEdit();
    pointCaptureArmed = false;
    pointCaptured = true;
    finishPointEdit(false);
}

void VelmoraDoc::DeletePoint() {
    PointList* section = sectionAt(capturedPatch, capturedPointSection);
    if (section == nullptr || pointAt(capturedPatch, capturedPointSection, capturedPoint) == nullptr ||
        !mayBreakGrid()) {
        return;
    }
    if (capturedPoint == 0 || capturedPoint == countOf(*section) - 1) {
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
    section->erase(section->begin() + capturedPoint);
    rememberPointAddress();
    finishPointRemoval();
}

void VelmoraDoc::DuplicatePoint() {
    if (!showDialog(duplicateValues)) {
        ShowStatus(pointContinueStatus);
        return;
    }
    const std::int32_t copies = duplicateValues.duplicateCount - 1;
    PointList* section = sectionAt(capturedPatch, capturedPointSection);
    if (copies < 1 || pointAt(capturedPatch, capturedPointSection, capturedPoint) == nullptr || !mayBreakGrid()) {
        return;
    }
    leaveLineRegimeKeepingAddress();
    SavePointUndo();
    pointUndoReady = true;
    rememberPointAddress();
    const zVec<double> point = (*section)[static_cast<std::size_t>(capturedPoint)];
    section->insert(section->begin() + capturedPoint, static_cast<std::size_t>(copies), point);
    UpdateAfterEdit();
    pointCaptureArmed = false;
    pointCaptured = true;
    ShowStatus(pointContinueStatus);
    redraw();
}

void VelmoraDoc::EditPoint() {
    editPointValues = {pickedPoint.x, pickedPoint.y, pickedPoint.z};
    if (!showDialog(editPointValues)) {
        return;
    }
    if (moveCapturedPoint({editPointValues.x, editPointValues.y, editPointValues.z})) {
        finishPointEdit(true);
    }
}

/// Puts the captured point or node to `position`, with a snapshot; false when nothing is captured.
bool VelmoraDoc::moveCapturedPoint(const zVec<double>& position) {
    if (!positionAt(capturedPatch, capturedPointSection, capturedPoint)) {
        return false;
    }
    SavePointUndo();
    pointUndoReady = true;
    rememberPointAddress();
    if (structureKind == "uns") {
        feRegion.setNode(capturedPatch, capturedPoint, position.x, position.y, position.z);
    } else {
        *pointAt(capturedPatch, capturedPointSection, capturedPoint) = position;
    }
    pickedPoint = capturedPointPos = position;
    return true;
}

void VelmoraDoc::CutPoint() {
    PointList* section = sectionAt(capturedPatch, capturedPointSection);
    const zVec<double>* point = pointAt(capturedPatch, capturedPointSection, capturedPoint);
    if (point == nullptr || !mayBreakGrid()) {
        return;
    }
    leaveLineRegimeKeepingAddress();
    SavePointUndo();
    rememberPointAddress();
    pointUndoReady = true;
    pointClipboard = *point;
    pointClipboardFull = true;
    section->erase(section->begin() + capturedPoint);
    if (capturedPoint >= countOf(*section) - 1) {
        if (capturedPointSection == 0) {
            capturedPoint = capturedPointSection = -1;
            if (!patchCaptured) {
                capturedPatch = -1;
            }
            UpdateAfterEdit();
            ui_.showMessage(message::lastPointStays);
            ExitPointRegime();
            // The point is gone: Undo point is the way back.
            pointUndoReady = true;
            return;
        }
        capturedPoint = 0;
        --capturedPointSection;
    }
    finishPointRemoval();
}

void VelmoraDoc::CopyPoint() {
    pointClipboard = capturedPointPos;
    pointClipboardFull = true;
    redraw();
}

void VelmoraDoc::PastePoint() {
    if (moveCapturedPoint(pointClipboard)) {
        finishPointEdit(true);
    }
}

void VelmoraDoc::FindPoint() {
    if (patches.empty()) {
        return;
    }
    CRegularFind& find = regularFindValues;
    find.K = std::max(capturedPatch + 1, 1);
    find.N = std::max(capturedPointSection + 1, 1);
    find.M = std::max(capturedPoint + 1, 1);
    find.patchHeld = patchCaptured;
    find.sectionHeld = sectionCaptured;
    find.lineHeld = lineCaptured;
    const zVec<double>* point = nullptr;
    if (showDialog(find, &patches)) {
        point = pointAt(find.K - 1, find.N - 1, find.M - 1);
    }
    if (point == nullptr) {
        ShowStatus(pointContinueStatus);
        return;
    }
    capturedPatch = find.K - 1;
    capturedPointSection = find.N - 1;
    capturedPoint = find.M - 1;
    capturedPointPos = pickedPoint = *point;
    pointCaptureArmed = false;
    pointCaptured = true;
    pointPicked = true;
    finishPointEdit(true);
}

} // namespace velmora

#include <algorithm>

#include "VelmoraDoc.h"
#include "messages.h"

namespace velmora {

// Each command works on the captured point, takes a snapshot first, and leaves the point regime ready to go on.

/// Asks before a change of one section's point count; the continue prompt stands again after a No.
bool VelmoraDoc::mayBreakGrid() {
    if (fileKind != FileKind::Apt || ui_.ask(message::aptViolated)) {
        return true;
    }
    ShowStatus(capture->pointContinueStatus);
    return false;
}

/// Leaving the line would clear the address of the point that is about to be edited.
void VelmoraDoc::leaveLineRegimeKeepingAddress() {
    if (!capture->lineCaptured) {
        return;
    }
    const CaptureState before = *capture;
    ExitLineRegime();
    capture.returnToPoint(before);
}

void VelmoraDoc::finishPointEdit(bool curveForm) {
    capture.describePoint(curveForm);
    ShowStatus(capture->pointContinueStatus);
    redraw();
}

/// After a point went away the next one is captured: the one that took its number.
void VelmoraDoc::finishPointRemoval() {
    takeCapturedPosition(capture->capturedPointPos);
    retitle();
    capture.keepPoint();
    finishPointEdit(false);
}

void VelmoraDoc::DeletePoint() {
    PointList* section = sectionAt(capture->capturedPatch, capture->capturedPointSection);
    if (section == nullptr ||
        pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint) == nullptr ||
        !mayBreakGrid()) {
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
    finishPointRemoval();
}

void VelmoraDoc::DuplicatePoint() {
    if (!showDialog(duplicateValues)) {
        ShowStatus(capture->pointContinueStatus);
        return;
    }
    const std::int32_t copies = duplicateValues.duplicateCount - 1;
    PointList* section = sectionAt(capture->capturedPatch, capture->capturedPointSection);
    if (copies < 1 ||
        pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint) == nullptr ||
        !mayBreakGrid()) {
        return;
    }
    leaveLineRegimeKeepingAddress();
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

void VelmoraDoc::EditPoint() {
    editPointValues = {capture->pickedPoint.x, capture->pickedPoint.y, capture->pickedPoint.z};
    if (!showDialog(editPointValues)) {
        return;
    }
    if (moveCapturedPoint({editPointValues.x, editPointValues.y, editPointValues.z})) {
        finishPointEdit(true);
    }
}

/// Puts the captured point or node to `position`, with a snapshot; false when nothing is captured.
bool VelmoraDoc::moveCapturedPoint(const zVec<double>& position) {
    if (!positionAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint)) {
        return false;
    }
    SavePointUndo();
    pointUndoReady = true;
    capture.savePoint();
    if (structureKind == StructureKind::Unstructured) {
        feRegion.setNode(capture->capturedPatch, capture->capturedPoint, position.x, position.y, position.z);
    } else {
        *pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint) = position;
    }
    capture.placePoint(position);
    return true;
}

void VelmoraDoc::CutPoint() {
    PointList* section = sectionAt(capture->capturedPatch, capture->capturedPointSection);
    const zVec<double>* point = pointAt(capture->capturedPatch, capture->capturedPointSection, capture->capturedPoint);
    if (point == nullptr || !mayBreakGrid()) {
        return;
    }
    leaveLineRegimeKeepingAddress();
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
            // The point is gone: Undo point is the way back.
            pointUndoReady = true;
            return;
        }
        capture.renumberPoint(capture->capturedPointSection - 1, 0);
    }
    finishPointRemoval();
}

void VelmoraDoc::CopyPoint() {
    pointClipboard = capture->capturedPointPos;
    pointClipboardFull = true;
    redrawPicture();
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
    find.K = std::max(capture->capturedPatch + 1, 1);
    find.N = std::max(capture->capturedPointSection + 1, 1);
    find.M = std::max(capture->capturedPoint + 1, 1);
    find.patchHeld = capture->patchCaptured;
    find.sectionHeld = capture->sectionCaptured;
    find.lineHeld = capture->lineCaptured;
    const zVec<double>* point = nullptr;
    if (showDialog(find, &patches)) {
        point = pointAt(find.K - 1, find.N - 1, find.M - 1);
    }
    if (point == nullptr) {
        ShowStatus(capture->pointContinueStatus);
        return;
    }
    capture.holdPoint(find.K - 1, find.N - 1, find.M - 1, *point);
    finishPointEdit(true);
}

} // namespace velmora

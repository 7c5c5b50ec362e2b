#include "VelmoraDoc.h"

namespace velmora {

void VelmoraDoc::EditPoint() {
    editPointValues = {pickedPoint.x, pickedPoint.y, pickedPoint.z};
    if (!showDialog(editPointValues)) {
        return;
    }
    zVec<double>* point = pointAt(capturedPatch, capturedPointSection, capturedPoint);
    if (point == nullptr) {
        return;
    }
    SavePointUndo();
    pointUndoReady = true;
    rememberPointAddress();
    *point = {editPointValues.x, editPointValues.y, editPointValues.z};
    pickedPoint = *point;
    capturedPointPos = *point;
    RefillPointStatus(true);
    ShowStatus(pointContinueStatus);
    redraw();
}

} // namespace velmora

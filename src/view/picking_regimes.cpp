#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "held_marks.h"
#include "messages.h"

namespace velmora {

PixelLine VelmoraView::PixelRay(double x, double y) const {
    const Matrix4 modelView = modelTransform(doc_.modelCenter);
    const double windowY = viewport.height - y - 1;
    const auto at = [&](double depth) {
        return unprojectPoint({x, windowY, depth}, modelView, projectionMatrix, viewport).value_or(zVec<double>());
    };
    return {at(0.0), at(1.0)};
}

// ---- The left button in a regime ------------------------------------------------------------------------------------

void VelmoraView::pressRegime(PixelPoint position) {
    if (doc_.capture->pointCaptureArmed || doc_.capture->freePointArmed) {
        PickPoint(position);
        repaint();
    }
    if (doc_.capture->pointDragging && !doc_.capture->pointCaptureArmed) {
        PickDragPoint(position);
        doc_.placeDraggedPoint(doc_.capture->capturedPointPos);
    }
    if (doc_.capture->patchCaptureArmed) {
        pressPatchCapture(patchUnder(position, Pick::Target::WholePatch));
    }
    if (doc_.capture->patchRemoving) {
        pressPatchRemoval(patchUnder(position, Pick::Target::Removal));
    }
    if (doc_.capture->sectionCaptureArmed) {
        PickSection(position);
        repaint();
    }
    if (doc_.capture->lineCaptureArmed) {
        PickLine(position);
        repaint();
    }
    if (doc_.capture->dragCorrectsLine) {
        PickPlanePoint(position);
        repaint();
    }
}

void VelmoraView::pressPatchCapture(const Pick& pick) {
    doc_.takePick(pick);
    doc_.redrawHighlight();
    repaint();
    if (!pick.found) {
        doc_.ui().showMessage(message::patchNotSelected);
        abandonPress();
        return;
    }
    doc_.ShowStatus(doc_.capture->patchStatus);
}

void VelmoraView::pressPatchRemoval(const Pick& pick) {
    doc_.takePick(pick);
    doc_.redrawHighlight();
    forceMouseMode(ModePatch);
    if (!pick.found) {
        doc_.ui().showMessage(message::patchNotRemoved);
        abandonPress();
    }
    doc_.ShowStatus(doc_.capture->removeStatus);
    repaint();
}

/// The click hit nothing: its release moves no regime on, which stays as it was for the next try.
void VelmoraView::abandonPress() {
    leftButtonDown = false;
    surface().confineCursor(false);
}

void VelmoraView::dragRegime(PixelPoint position) {
    if (doc_.capture->pointCaptureArmed || doc_.capture->freePointArmed) {
        PickPoint(position);
        doc_.ShowStatus(doc_.capture->pointStatus);
        repaint();
    }
    if (doc_.capture->pointDragging && !doc_.capture->pointCaptureArmed) {
        PickDragPoint(position);
        doc_.placeDraggedPoint(doc_.capture->capturedPointPos);
    }
    if (doc_.capture->patchCaptureArmed) {
        doc_.ShowStatus(doc_.capture->patchStatus);
    }
    if (doc_.capture->sectionCaptureArmed) {
        PickSection(position);
    }
    if (doc_.capture->lineCaptureArmed) {
        PickLine(position);
    }
    if (doc_.capture->dragCorrectsLine) {
        PickPlanePoint(position);
        bendToPick();
    }
}

void VelmoraView::bendToPick() {
    doc_.ShowStatus(doc_.capture->pointStatus);
    doc_.bendCapturedCurve(doc_.capture->capturedPointPos, principalPlane());
    doc_.redraw();
}

// ---- What the mouse points at ---------------------------------------------------------------------------------------

Sight VelmoraView::sight() const {
    return surface().isWatched() ? Sight::SurfaceFirst : Sight::Through;
}

/// Marks what a click would take, before the button goes down. It is no capture: neither the document nor its status
/// text hears of it.
void VelmoraView::pointUnder(PixelPoint position) {
    if (!surface().isWatched()) {
        return;
    }
    std::optional<Pick> candidate;
    const bool looks = !leftButtonDown && !doc_.holdsNothing();
    if (looks && mouseMode == ModeMeasure) {
        const Pick place = pickToMeasure(doc_, index_, rayThrough(position), sight());
        candidate = place.found ? std::optional(place) : std::nullopt;
    } else if (looks && mouseMode >= ModePoint) {
        candidate = pickCandidate(doc_, index_, rayThrough(position), sight());
    }
    showCandidate(candidate);
}

void VelmoraView::showCandidate(const std::optional<Pick>& candidate) {
    if ((!candidate && !candidate_) || isMarked(candidate)) {
        return;
    }
    candidateText_ = candidate ? candidateText(doc_, *candidate) : std::string();
    surface().showHint(candidateText_);
    candidate_ = candidate;
    candidateRevision_ = doc_.geometryRevision();
    repaint();
}

/// Whether the mark and its text are there as they would be for this candidate: the mouse has moved along it.
bool VelmoraView::isMarked(const std::optional<Pick>& candidate) const {
    if (!candidate || !candidate_ || candidateRevision_ != doc_.geometryRevision() ||
        candidate->target != candidate_->target || candidateText(doc_, *candidate) != candidateText_) {
        return false;
    }
    const bool isPlace = candidate->target == Pick::Target::Point || candidate->target == Pick::Target::Node;
    return !isPlace || candidate->position == candidate_->position;
}

void VelmoraView::OnMouseLeave() {
    showCandidate(std::nullopt);
}

// ---- Picks ----------------------------------------------------------------------------------------------------------

PixelLine VelmoraView::rayThrough(PixelPoint position) const {
    return PixelRay(position.x, position.y);
}

Pick VelmoraView::patchUnder(PixelPoint position, Pick::Target target) {
    const BusyScope busy(doc_.ui());
    return pickPatch(doc_, index_, rayThrough(position), target);
}

bool VelmoraView::PickPoint(PixelPoint position) {
    return take(pickPoint(doc_, index_, rayThrough(position), sight()));
}

std::int32_t VelmoraView::PickPatch(PixelPoint position) {
    return patchUnder(position, Pick::Target::WholePatch).patch;
}

bool VelmoraView::PickDragPoint(PixelPoint position) {
    return take(pickDragPlace(doc_, rayThrough(position)));
}

void VelmoraView::PickPlanePoint(PixelPoint position) {
    take(pickPlanePlace(doc_, rayThrough(position), principalPlane()));
}

bool VelmoraView::PickSection(PixelPoint position) {
    return takeCurve(pickSection(doc_, index_, rayThrough(position), sight()));
}

bool VelmoraView::PickLine(PixelPoint position) {
    return takeCurve(pickLine(doc_, index_, rayThrough(position), sight()));
}

bool VelmoraView::take(const Pick& pick) {
    doc_.takePick(pick);
    return pick.found;
}

bool VelmoraView::takeCurve(const Pick& pick) {
    const bool found = take(pick);
    const bool section = pick.target == Pick::Target::Section;
    showCurvePick(section ? ModeSection : ModeLine, !found    ? doc_.capture->dragPrompt
                                                    : section ? doc_.capture->sectionStatus
                                                              : doc_.capture->lineStatus);
    return found;
}

void VelmoraView::showCurvePick(MouseMode mode, const std::string& text) {
    doc_.redrawHighlight();
    setMouseMode(mode);
    doc_.ShowStatus(text);
}

void VelmoraView::CorrectLineByDrag(const zVec<double>& target) {
    doc_.bendCapturedCurve(target, principalPlane());
}

} // namespace velmora

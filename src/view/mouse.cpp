#include <cmath>
#include <cstdlib>

#include "CommandGuard.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "vectors.h"

namespace velmora {

namespace {

/// Moves shorter than this, in pixels along both axes together, wait until they have added up.
constexpr int moveThreshold = 6;
/// A release this soon after the last move, in seconds, throws the model into a spin.
constexpr double throwTime = 0.05;
constexpr int spinPeriod = 15;

bool rotates(int mode) {
    return mode >= ModeRotate && mode <= ModeRotateZ;
}

} // namespace

// ---- Button and motion ----------------------------------------------------------------------------------------------

void VelmoraView::OnLeftButtonDown(PixelPoint position) {
    const CommandGuard guard(doc_);
    showCandidate(std::nullopt);
    if (mouseMode < ModeNone && mouseMode != ModeMeasure) {
        notePose();
    }
    leftButtonDown = true;
    lastMousePos = prevMousePos = position;
    surface().confineCursor(true);
    if (mouseMode >= ModePoint) {
        pressRegime(position);
    }
    if (mouseMode == ModeMeasure) {
        measureFrom(position);
    }
    if (mouseMode == ModeZoomIn) {
        rubberStartX = position.x;
        rubberStartY = viewport.height - position.y - 1;
        rubberStart = rubberEnd = position;
        rubberBandShown = true;
    }
    lastMoveClock = surface().clock();
}

void VelmoraView::OnMouseMove(PixelPoint position) {
    pointUnder(position);
    if (std::abs(position.x - lastMousePos.x) + std::abs(position.y - lastMousePos.y) < moveThreshold) {
        return;
    }
    if (leftButtonDown && mouseMode < ModePoint && mouseMode != ModeMeasure) {
        stopSpin();
        dragCamera(position);
        noteMotion();
    } else if (leftButtonDown && mouseMode >= ModePoint) {
        const CommandGuard guard(doc_);
        dragRegime(position);
    }
    lastMoveClock = surface().clock();
    prevMousePos = lastMousePos;
    lastMousePos = position;
    if (leftButtonDown || spinActive) {
        repaint();
    } else {
        surface().requestSameFrame();
    }
}

void VelmoraView::OnLeftButtonUp(PixelPoint position) {
    surface().confineCursor(false);
    const double sinceMove = static_cast<double>(surface().clock() - lastMoveClock) / 1000.0;
    if (!leftButtonDown || mouseMode >= ModePoint || spinTimerOn) {
        stopSpin();
        spinTimerOn = false;
    } else {
        const Rotation rotation = mouseRotation(prevMousePos, position);
        spinAngle = rotation.angle;
        spinAxis = rotation.axis;
        if (sinceMove < throwTime && rotates(mouseMode) && !stillClick(position)) {
            spinActive = true;
            prevMousePos = position;
            surface().startTimer(spinPeriod);
            spinTimerOn = true;
        }
    }
    if (!leftButtonDown) {
        return;
    }
    if (mouseMode == ModeZoomIn) {
        finishZoom(position);
    }
    if (mouseMode >= ModePoint) {
        const CommandGuard guard(doc_);
        doc_.moveRegimeAtRelease();
        if (doc_.capture->dragCorrectsLine) {
            doc_.endDragCorrection(principalPlane());
        }
    }
    leftButtonDown = false;
}

void VelmoraView::OnTimer() {
    noteMotion();
    RenderScene();
    repaint();
}

/// The button came up where it went down, and nothing was dragged in between.
bool VelmoraView::stillClick(PixelPoint position) const {
    return prevMousePos == lastMousePos &&
           std::abs(position.x - lastMousePos.x) + std::abs(position.y - lastMousePos.y) < moveThreshold;
}

// ---- Moving the camera ----------------------------------------------------------------------------------------------

void VelmoraView::dragCamera(PixelPoint position) {
    const double dx = position.x - lastMousePos.x;
    const double dy = position.y - lastMousePos.y;
    switch (mouseMode) {
    case ModeRotate:
    case ModeRotateX:
    case ModeRotateY:
    case ModeRotateZ: {
        const Rotation rotation = mouseRotation(lastMousePos, position);
        modelRotation = modelRotation * rotationMatrix(rotation.angle, rotation.axis);
        break;
    }
    case ModeTranslateXY: {
        // A centre just opposite the eye's distance leaves no offset to compare with.
        const double nearer = defaultOffset.z == 0.0 ? 1.0 : modelOffset.z / defaultOffset.z;
        const double s = nearer * doc_.modelRadius * 1.8 * zoomFactor / viewport.height;
        modelOffset.x += s * dx;
        modelOffset.y -= s * dy;
        break;
    }
    case ModeTranslateZ:
        modelOffset.z += doc_.modelRadius * 8.0 / viewport.height * dy;
        break;
    case ModeShift:
        viewCentreX -= zoomFactor * dx;
        viewCentreY += zoomFactor * dy;
        UpdateProjection();
        break;
    case ModeScale: {
        const double f = 1.0 + 2.0 * std::abs(dy) / viewport.height;
        zoomFactor *= dy > 0.0 ? 1.0 / f : f;
        UpdateProjection();
        break;
    }
    case ModeZoomIn:
        // The repaint that follows each move draws the rectangle over a fresh frame: nothing is left to erase.
        if (rubberBandShown) {
            rubberEnd = position;
        }
        break;
    default:
        break;
    }
}

void VelmoraView::finishZoom(PixelPoint position) {
    const double endX = position.x;
    const double endY = viewport.height - position.y - 1;
    viewCentreX += ((rubberStartX + endX) - (viewport.x + viewport.width)) * zoomFactor * 0.5;
    viewCentreY += ((rubberStartY + endY) - (viewport.y + viewport.height)) * zoomFactor * 0.5;
    const double rx = (endX - rubberStartX) / (viewport.width - viewport.x);
    const double ry = (endY - rubberStartY) / (viewport.height - viewport.y);
    // A click without a drag makes the factor zero and the picture empty until Zoom Out: wanted, no guard.
    zoomFactor *= std::max(std::abs(rx), std::abs(ry));
    UpdateProjection();
    rubberBandShown = false;
    repaint();
}

// ---- Turning about the screen's axes --------------------------------------------------------------------------------

VelmoraView::ScreenAxes VelmoraView::ScreenFrame() const {
    const zVec<double> a = PixelRay(viewport.x, viewport.y).nearPoint;
    const zVec<double> b = PixelRay(viewport.width, viewport.y).nearPoint;
    const zVec<double> c = PixelRay(viewport.x, viewport.height).nearPoint;
    ScreenAxes axes;
    axes.right = unitOf(b - a);
    axes.down = unitOf(c - a);
    axes.normal = cross(axes.down, axes.right);
    return axes;
}

zVec<double> VelmoraView::CentreVector(PixelPoint position, const zVec<double>& normal) const {
    const PixelLine ray = PixelRay(position.x, position.y);
    const zVec<double> onPlane = doc_.modelCenter + normal * doc_.modelRadius;
    const zVec<double> along = ray.farPoint - ray.nearPoint;
    const double t = dot(normal, onPlane - ray.nearPoint) / dot(normal, along);
    return ray.nearPoint + along * t - doc_.modelCenter;
}

VelmoraView::Rotation VelmoraView::mouseRotation(PixelPoint from, PixelPoint to) const {
    if (!rotates(mouseMode)) {
        return {spinAngle, spinAxis};
    }
    const ScreenAxes axes = ScreenFrame();
    zVec<double> a = CentreVector(from, axes.normal);
    zVec<double> b = CentreVector(to, axes.normal);
    if (mouseMode == ModeRotateX) {
        return {114.0 * dot(axes.down, a - b) / doc_.modelRadius, axes.right * -1.0};
    }
    if (mouseMode == ModeRotateY) {
        return {114.0 * dot(axes.right, a - b) / doc_.modelRadius, axes.down};
    }
    if (mouseMode == ModeRotateZ) {
        a = a - axes.normal * dot(a, axes.normal);
        b = b - axes.normal * dot(b, axes.normal);
    }
    const zVec<double> turn = cross(a, b);
    const zVec<double> middle = (a + b) * 0.5;
    const double angle = 57.0 * lengthOf(turn) / dot(middle, middle);
    if (!std::isfinite(angle)) {
        // Both positions on the axis itself, or just opposite: no turn, rather than a model lost for good.
        return {};
    }
    return {angle, unitOf(turn)};
}

} // namespace velmora

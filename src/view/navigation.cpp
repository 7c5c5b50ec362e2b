#include <algorithm>
#include <cmath>
#include <numbers>

#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "vectors.h"

// Wheel, middle button and the keys of the view: they move the camera whatever the left button is for, so that nobody
// leaves a regime to look at the other side.

namespace velmora {

namespace {

/// One notch of the wheel changes the size by this factor.
constexpr double wheelFactor = 1.2;
/// Notches that follow each other sooner than this, in milliseconds, are one movement.
constexpr std::int64_t wheelPause = 500;
/// A drag across the shorter side of the view turns by so many degrees, however near the model is.
constexpr double degreesAcross = 180.0;
/// Seen from nearer than this the model turns about what lies in the middle of the view, else about its own middle.
constexpr double closeUp = 0.6;
constexpr double smallestZoom = 1e-6;
constexpr double largestZoom = 1e4;
/// What is fitted leaves this much of the window around it.
constexpr double fitMargin = 1.05;
/// A captured point is shown with so much around it, in radii of the model.
constexpr double aroundPoint = 0.05;
constexpr std::size_t posesKept = 50;

/// A box about points, growing.
struct Box {
    zVec<double> lower{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
                       std::numeric_limits<double>::infinity()};
    zVec<double> upper = lower * -1.0;

    void add(const zVec<double>& p) {
        lower = {std::min(lower.x, p.x), std::min(lower.y, p.y), std::min(lower.z, p.z)};
        upper = {std::max(upper.x, p.x), std::max(upper.y, p.y), std::max(upper.z, p.z)};
    }
    bool empty() const { return !(lower.x <= upper.x); }
};

template <class Visit>
void forPointsOf(const DocumentState& document, std::int32_t part, Visit visit) {
    const auto k = static_cast<std::size_t>(part);
    if (document.structureKind != StructureKind::Unstructured) {
        for (const PointList& section : document.patches[k]) {
            std::for_each(section.begin(), section.end(), visit);
        }
        return;
    }
    const ZoneCoordinates at = coordinatesOf(document.feRegion.blocks[k]->variables);
    for (std::size_t node = 0; at && node < at.x->data.size(); ++node) {
        visit(zVec<double>(at.x->data[node], at.y->data[node], at.z->data[node]));
    }
}

/// The box of what is captured; of the zBlock when that is nothing; of the model when that is empty too.
Box boxToFit(const DocumentState& document) {
    const CaptureState& capture = *document.capture;
    const auto add = [](Box& box) { return [&box](const zVec<double>& p) { box.add(p); }; };
    Box box;
    if (capture.pointHeld()) {
        const double reach = aroundPoint * document.modelRadius;
        box.add(capture.capturedPointPos - zVec<double>(reach, reach, reach));
        box.add(capture.capturedPointPos + zVec<double>(reach, reach, reach));
        return box;
    }
    const auto k = static_cast<std::size_t>(capture.capturedPatch);
    if (capture.curveHeld() && capture.capturedPatch >= 0 && k < document.patches.size()) {
        const Patch& patch = document.patches[k];
        const auto section = static_cast<std::size_t>(capture.capturedSection);
        const auto line = static_cast<std::size_t>(capture.capturedLine);
        for (std::size_t n = 0; n < patch.size(); ++n) {
            if (capture.lineCaptured && line < patch[n].size()) {
                box.add(patch[n][line]);
            } else if (capture.sectionCaptured && n == section) {
                std::for_each(patch[n].begin(), patch[n].end(), add(box));
            }
        }
    }
    if (!box.empty()) {
        return box;
    }
    for (const std::int32_t part : document.chosenPatches()) {
        forPointsOf(document, part, add(box));
    }
    return box;
}

} // namespace

// ---- Wheel and middle button ----------------------------------------------------------------------------------------

void VelmoraView::OnWheel(PixelPoint position, double notches) {
    if (leftButtonDown || notches == 0.0 || doc_.holdsNothing()) {
        return;
    }
    if (surface().clock() - lastWheelClock_ > wheelPause) {
        notePose();
    }
    lastWheelClock_ = surface().clock();
    const double before = zoomFactor;
    zoomTo(zoomFactor * std::pow(wheelFactor, -notches));
    // The window of the projection grows about its middle; shifted back, it shows the same under the mouse.
    viewCentreX += (position.x - viewport.width * 0.5) * (before - zoomFactor);
    viewCentreY += (viewport.height - position.y - 1 - viewport.height * 0.5) * (before - zoomFactor);
    UpdateProjection();
    noteMotion();
    repaint();
}

/// From here on the picture may be a coarse one, until the camera rests.
void VelmoraView::noteMotion() {
    moving_ = true;
    surface().awaitRest();
}

void VelmoraView::OnRest() {
    if (moving_) {
        moving_ = false;
        repaint();
    }
}

void VelmoraView::zoomTo(double factor) {
    zoomFactor = std::clamp(factor, smallestZoom, largestZoom);
}

void VelmoraView::BeginNavigation(MouseMode act, PixelPoint position) {
    if (leftButtonDown || doc_.holdsNothing()) {
        return;
    }
    stopSpin();
    showCandidate(std::nullopt);
    notePose();
    navigation_ = Navigation{act, position, doc_.modelCenter};
    if (act == ModeRotate && zoomFactor < closeUp) {
        navigation_->pivot = middleOfView();
    }
    surface().showCursor(act);
}

/// What the middle of the view shows of the model; where that is nothing, at the depth of the model's middle.
zVec<double> VelmoraView::middleOfView() {
    const PixelLine ray = PixelRay(viewport.width * 0.5, viewport.height * 0.5);
    if (const auto place = firstPlace(doc_, index_, ray)) {
        return *place;
    }
    const zVec<double> normal = ScreenFrame().normal;
    const zVec<double> along = ray.farPoint - ray.nearPoint;
    return ray.nearPoint + along * (dot(normal, doc_.modelCenter - ray.nearPoint) / dot(normal, along));
}

void VelmoraView::Navigate(PixelPoint position) {
    if (!navigation_ || navigation_->last == position) {
        return;
    }
    const int dx = position.x - navigation_->last.x;
    const int dy = position.y - navigation_->last.y;
    switch (navigation_->act) {
    case ModeShift:
        viewCentreX -= zoomFactor * dx;
        viewCentreY += zoomFactor * dy;
        UpdateProjection();
        break;
    case ModeScale: {
        const double f = 1.0 + 2.0 * std::abs(dy) / viewport.height;
        zoomTo(zoomFactor * (dy > 0 ? 1.0 / f : f));
        UpdateProjection();
        break;
    }
    default:
        turnBy(dx, dy);
        break;
    }
    navigation_->last = position;
    noteMotion();
    repaint();
}

void VelmoraView::EndNavigation() {
    if (navigation_) {
        navigation_.reset();
        surface().showCursor(shownCursor_);
        OnRest();
    }
}

/// The front of the model goes along with the mouse; the pivot stays where it is on the screen.
void VelmoraView::turnBy(int dx, int dy) {
    const ScreenAxes axes = ScreenFrame();
    const zVec<double> motion = axes.right * dx + axes.down * dy;
    const zVec<double> axis = cross(axes.normal, motion);
    const double angle = degreesAcross * std::hypot(dx, dy) / std::min(viewport.width, viewport.height);
    if (!std::isfinite(lengthOf(axis)) || lengthOf(axis) == 0.0) {
        return;
    }
    const zVec<double> arm = navigation_->pivot - doc_.modelCenter;
    const auto turned = [this, &arm] {
        const Matrix4& m = modelRotation;
        return zVec<double>(m[0] * arm.x + m[4] * arm.y + m[8] * arm.z, m[1] * arm.x + m[5] * arm.y + m[9] * arm.z,
                            m[2] * arm.x + m[6] * arm.y + m[10] * arm.z);
    };
    const zVec<double> before = turned();
    modelRotation = modelRotation * rotationMatrix(angle, axis);
    modelOffset = modelOffset + before - turned();
}

// ---- Fits -----------------------------------------------------------------------------------------------------------

/// Fits the projection window to all points that `visit` shows, seen as the model is turned now.
template <class Visit>
void VelmoraView::fitPoints(Visit visit) {
    modelOffset = defaultOffset;
    const Matrix4 m = modelTransform(doc_.modelCenter);
    const double distance = eyeDistance();
    WindowRange range;
    visit([this, &m, &range, distance](const zVec<double>& p) {
        const double z = m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14];
        const double toPlane = projectionMode == 1 ? 1.0 : distance / -z;
        const double x = (m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12]) * toPlane;
        const double y = (m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13]) * toPlane;
        if (-z < nearPlane || !std::isfinite(x) || !std::isfinite(y)) {
            return; // behind the eye, or nowhere
        }
        range.left = std::min(range.left, x);
        range.right = std::max(range.right, x);
        range.bottom = std::min(range.bottom, y);
        range.top = std::max(range.top, y);
    });
    fitTo(range);
}

void VelmoraView::fitTo(const WindowRange& range) {
    if (!(range.left <= range.right) || viewport.width < 1 || viewport.height < 1) {
        return;
    }
    const double halfHeight = doc_.modelRadius;
    const double halfWidth = halfHeight * aspectRatio;
    const double across =
        std::max((range.right - range.left) / (2.0 * halfWidth), (range.top - range.bottom) / (2.0 * halfHeight));
    zoomTo(across > 0.0 ? fitMargin * across : zoomFactor);
    const double middleX = 0.5 * (range.left + range.right);
    const double middleY = 0.5 * (range.bottom + range.top);
    viewCentreX = viewport.x + (middleX + halfWidth) * (viewport.width - viewport.x) / (2.0 * halfWidth);
    viewCentreY = viewport.y + (middleY + halfHeight) * (viewport.height - viewport.y) / (2.0 * halfHeight);
    UpdateProjection();
    repaint();
}

/// A regime that waits for its click has the left button back: it is no view mode that is reset here.
void VelmoraView::fitKeepingRotation() {
    const Matrix4 rotation = modelRotation;
    const auto mode = static_cast<MouseMode>(mouseMode);
    doc_.updateBounds();
    modelRotation = rotation;
    if (mode >= ModePoint) {
        forceMouseMode(mode);
    }
    repaint();
}

void VelmoraView::fitCaptured() {
    const Box box = boxToFit(doc_);
    if (box.empty()) {
        return;
    }
    fitPoints([&box](auto look) {
        for (const double x : {box.lower.x, box.upper.x}) {
            for (const double y : {box.lower.y, box.upper.y}) {
                for (const double z : {box.lower.z, box.upper.z}) {
                    look({x, y, z});
                }
            }
        }
    });
}

/// Unlike the box, the points leave no room unused at the window's sides.
void VelmoraView::fitModel() {
    fitPoints([this](auto look) {
        for (std::int32_t part = 0; part < doc_.partCount(); ++part) {
            forPointsOf(doc_, part, look);
        }
    });
}

// ---- Poses ----------------------------------------------------------------------------------------------------------

VelmoraView::CameraPose VelmoraView::pose() const {
    const auto fraction = [](double pixel, int extent) { return extent > 0 ? pixel / extent : 0.5; };
    return {modelRotation,
            modelOffset,
            zoomFactor,
            fraction(viewCentreX, viewport.width),
            fraction(viewCentreY, viewport.height),
            projectionMode};
}

/// The camera is about to move: this is where one comes back to.
void VelmoraView::notePose() {
    const CameraPose now = pose();
    if (!poses_.empty() && poses_.back() == now) {
        return;
    }
    if (poses_.size() == posesKept) {
        poses_.erase(poses_.begin());
    }
    poses_.push_back(now);
}

void VelmoraView::goBack() {
    const CameraPose now = pose();
    while (!poses_.empty() && poses_.back() == now) {
        poses_.pop_back();
    }
    if (poses_.empty()) {
        return;
    }
    stopSpin();
    const CameraPose before = poses_.back();
    poses_.pop_back();
    modelRotation = before.rotation;
    modelOffset = before.offset;
    zoomFactor = before.zoom;
    viewCentreX = before.centreX * viewport.width;
    viewCentreY = before.centreY * viewport.height;
    projectionMode = before.projection;
    UpdateProjection();
    repaint();
}

} // namespace velmora

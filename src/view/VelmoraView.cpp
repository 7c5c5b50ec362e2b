#include "VelmoraView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "coarse_list.h"
#include "held_marks.h"
#include "messages.h"

namespace velmora {

namespace {

constexpr double nearPlaneOfRadius = 0.1;
constexpr double farPlaneOfRadius = 250.0;
/// How far the eye stands from the model's centre, in model radii: 7.5 / tan(15 degrees).
constexpr double eyeDistanceOfRadius = 27.99038155676617;
/// Angles this close to a principal view, in degrees, are that view.
constexpr double principalViewTolerance = 1e-6;
/// A model that takes longer than this to draw, in milliseconds, is drawn coarsely while the camera moves: in so many.
constexpr double slowFrame = 60.0;
constexpr double movingFrame = 30.0;
/// However slow the drawing is, a model keeps its shape.
constexpr std::size_t fewestVertices = 20'000;

bool sameAngles(const zVec<double>& angles, double x, double y, double z) {
    return std::abs(angles.x - x) <= principalViewTolerance && std::abs(angles.y - y) <= principalViewTolerance &&
           std::abs(angles.z - z) <= principalViewTolerance;
}

/// A scene is being drawn, to its end or to an exception.
class Drawing {
public:
    explicit Drawing(bool& flag) : flag_(flag) { flag_ = true; }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;
    ~Drawing() { flag_ = false; }

private:
    bool& flag_;
};

} // namespace

VelmoraView::VelmoraView(VelmoraDoc& document, ViewSurface& surface)
    : OpenGLView(surface), doc_(document), index_(document) {
    doc_.attachView(*this);
}

VelmoraView::~VelmoraView() {
    doc_.detachView(*this);
}

// ---- Frame loop -----------------------------------------------------------------------------------------------------

void VelmoraView::OnDraw() {
    OpenGLView::OnDraw();
    if (rubberBandShown) {
        surface().invertRectangle(rubberStart, rubberEnd);
    }
    refreshAngles();
}

void VelmoraView::refreshAngles() {
    ApplyModelTransform(doc_.modelCenter);
    if (const auto angles = eulerAngles(modelViewMatrix)) {
        viewAngles = *angles;
    }
    viewAlongX = sameAngles(viewAngles, 0.0, 90.0, 0.0);
    viewAlongY = sameAngles(viewAngles, 90.0, 0.0, 0.0);
    viewAlongZ = sameAngles(viewAngles, 0.0, 0.0, 0.0);
}

bool VelmoraView::RenderScene() {
    if (doc_.holdsNothing()) {
        overlay_ = {};
        return true;
    }
    if (spinActive) {
        modelRotation = modelRotation * rotationMatrix(0.25 * spinAngle, spinAxis);
    }
    if (drawing_) {
        return false;
    }
    const Drawing scene(drawing_);
    surface().clearFrame({0.0F, 0.0F, 0.0F, 1.0F});
    ApplyModelTransform(doc_.modelCenter);
    if (doc_.structureKind == StructureKind::Structured && doc_.surfaceMode && doc_.fileKind != FileKind::Apt) {
        doc_.ui().showMessage(message::surfaceNotAllowed);
        doc_.leaveSurface();
    }
    const bool drawn = surface().showsScenes();
    if (drawn || coloured_ || doc_.dialogs->colours.isOn()) {
        bringListUpToDate(); // the legend of the overlay tells of the list
    }
    buildOverlay();
    if (drawn) {
        drawWithOverlay();
    }
    return true;
}

void VelmoraView::drawWithOverlay() {
    buildPointed();
    SceneFrame frame;
    frame.list = &model_.list;
    frame.listRevision = listRevision_;
    if (moving_ && isTooSlow()) {
        bringCoarseListUpToDate();
        frame.coarse = &coarse_;
        frame.coarseRevision = coarseRevision_;
    }
    frame.filled = doc_.surfaceMode;
    frame.edges = edgesShown;
    frame.backFilled = backFacesFilled;
    frame.held = &held_;
    frame.heldRevision = heldRevision_;
    frame.pointed = &pointed_;
    frame.overlay = &overlay_;
    frame.modelView = modelViewMatrix;
    frame.projection = projectionMatrix;
    frame.viewport = viewport;
    frame.pixelScale = pixelScale();
    surface().drawScene(frame);
}

void VelmoraView::buildOverlay() {
    overlay_ = {};
    if (coloured_) {
        addLegend();
    }
    if (doc_.capture->pointPicked) {
        overlay_.list.framedPoint(doc_.capture->capturedPointPos, 6.0F, {1.0F, 1.0F, 1.0F, 1.0F}, 8.0F,
                                  {1.0F, 0.0F, 0.0F, 1.0F});
    }
    if (pointedAt_) {
        overlay_.list.framedPoint(*pointedAt_, 6.0F, {1.0F, 1.0F, 0.0F, 1.0F}, 8.0F, {0.0F, 0.0F, 0.0F, 1.0F});
    }
    if (isMeasured()) {
        drawMeasured(overlay_.list);
        labelMeasured();
    }
    batchesBeforeTriad_ = overlay_.list.batches.size();
    addTriad(overlay_.list);
    if (doc_.markersOpen) {
        addMarkerNumbers();
    }
}

/// Over a surface the captured point shows through, too; over wires it is never hidden.
void VelmoraView::buildPointed() {
    pointed_.clear();
    if (showsSurface()) {
        addCapturedPoint(pointed_, doc_);
    }
    if (candidate_ && candidateRevision_ == doc_.geometryRevision()) {
        addCandidate(pointed_, doc_, *candidate_);
    }
}

bool VelmoraView::isTooSlow() const {
    return surface().modelTime() > slowFrame;
}

/// So much of the model as can be drawn in time, by what the whole of it took.
void VelmoraView::bringCoarseListUpToDate() {
    if (coarseOf_ == listRevision_) {
        return;
    }
    const double share = movingFrame / surface().modelTime();
    const auto vertices = static_cast<std::size_t>(share * static_cast<double>(model_.list.vertices.size()));
    coarse_ = buildCoarseList(doc_, model_.list.number, std::max(vertices, fewestVertices));
    coarseOf_ = listRevision_;
    ++coarseRevision_;
}

void VelmoraView::addMarkerNumbers() {
    int number = 0;
    for (const zVec<double>& marker : doc_.markers) {
        ++number;
        auto window = projectPoint(marker, modelViewMatrix, projectionMatrix, viewport);
        if (!window) {
            continue;
        }
        // A small step towards the eye keeps the digits in front of the marker.
        window->z -= window->z / 100.0;
        if (const auto position = unprojectPoint(*window, modelViewMatrix, projectionMatrix, viewport)) {
            overlay_.texts.push_back({std::to_string(number), *position, {1.0F, 0.0F, 0.0F, 1.0F}});
        }
    }
}

void VelmoraView::bringListUpToDate() {
    const int number = listNumber();
    const bool coloursStay = !highlightDirty_ || captureColoursOf(doc_) == modelColours_;
    if (listDirty_ || model_.list.number != number || !coloursStay) {
        model_ = buildModelList(doc_, number, std::move(model_));
        coloured_ = showsSurface() ? colouredValues(doc_) : std::nullopt;
        if (coloured_) {
            colourByValue(model_.list, doc_, *coloured_);
        }
        modelColours_ = captureColoursOf(doc_);
        listDirty_ = false;
        highlightDirty_ = true;
        ++listRevision_;
    }
    if (highlightDirty_) {
        model_.list.accents = capturedCurves(doc_, model_);
        held_ = showsSurface() ? heldMarks(doc_) : DrawList();
        ++heldRevision_;
        highlightDirty_ = flat_ = false;
    }
}

/// The number of the list to show. Only of new geometry it is looked at whether it is a grid.
int VelmoraView::listNumber() {
    if (gridRevision_ != doc_.geometryRevision()) {
        isGrid_ = regularityOf(doc_.patches) != Regularity::Irregular;
        gridRevision_ = doc_.geometryRevision();
    }
    return listNumberFor(doc_, isGrid_);
}

const DrawList& VelmoraView::list() {
    bringListUpToDate();
    if (model_.list.accents.empty()) {
        return model_.list;
    }
    if (!flat_) {
        flatList_ = model_.list.flattened();
        flat_ = true;
    }
    return flatList_;
}

void VelmoraView::OnSize(int width, int height) {
    if (width < 1 || height < 1) {
        return;
    }
    ResizeViewport(width, height);
    aspectRatio = static_cast<double>(width) / height;
    UpdateProjection();
}

void VelmoraView::ResizeViewport(int width, int height) {
    if (viewport.width > 0) {
        viewCentreX *= static_cast<double>(width) / viewport.width;
    }
    if (viewport.height > 0) {
        viewCentreY *= static_cast<double>(height) / viewport.height;
    }
    viewport = {0, 0, width, height};
}

void VelmoraView::ResetViewCentre() {
    viewCentreX = (viewport.x + viewport.width) * 0.5;
    viewCentreY = (viewport.y + viewport.height) * 0.5;
    zoomFactor = 1.0;
    rubberStart = {viewport.x, viewport.y};
    rubberEnd = {viewport.width, viewport.height};
}

void VelmoraView::UpdateCameraLimits() {
    const double radius = doc_.modelRadius;
    const zVec<double>& centre = doc_.modelCenter;
    fieldOfView = 30.0;
    nearPlane = nearPlaneOfRadius * radius;
    farPlane = farPlaneOfRadius * radius;
    defaultOffset = {-centre.x, -centre.y, -centre.z - eyeDistance()};
}

/// From the eye to the model's middle in the default view.
double VelmoraView::eyeDistance() const {
    return eyeDistanceOfRadius * doc_.modelRadius;
}

void VelmoraView::UpdateProjection() {
    UpdateCameraLimits();
    const double halfHeight = doc_.modelRadius;
    const double halfWidth = halfHeight * aspectRatio;
    const auto centreOf = [](double pixel, int start, int extent, double half) {
        return start == extent ? 0.0 : (pixel - start) * 2.0 * half / (extent - start) - half;
    };
    const double cx = centreOf(viewCentreX, viewport.x, viewport.width, halfWidth);
    const double cy = centreOf(viewCentreY, viewport.y, viewport.height, halfHeight);
    const double left = cx - zoomFactor * halfWidth;
    const double right = cx + zoomFactor * halfWidth;
    const double bottom = cy - zoomFactor * halfHeight;
    const double top = cy + zoomFactor * halfHeight;
    if (projectionMode == 1) {
        projectionMatrix = orthographicMatrix(left, right, bottom, top, nearPlane, farPlane);
        return;
    }
    // The orthographic window, scaled from the model's centre in the default view, wherever that lies, to the near
    // plane.
    const double s = nearPlane / eyeDistance();
    projectionMatrix = frustumMatrix(s * left, s * right, s * bottom, s * top, nearPlane, farPlane);
}

void VelmoraView::ResetModelTransform() {
    modelScale = {1.0, 1.0, 1.0};
    modelOffset = defaultOffset;
    modelRotation = identityMatrix();
    modelViewMatrix = modelViewMatrix * translationMatrix(modelOffset);
}

// ---- What the document asks -----------------------------------------------------------------------------------------

void VelmoraView::onPictureChanged() {
    listDirty_ = true;
    repaint();
}

void VelmoraView::onHighlightChanged() {
    highlightDirty_ = true;
    repaint();
}

void VelmoraView::onBoundsChanged() {
    if (posesCentre_ == doc_.modelCenter && posesRadius_ == doc_.modelRadius) {
        notePose();
    } else {
        // Of another model, or another size of it: no pose before fits.
        poses_.clear();
        posesCentre_ = doc_.modelCenter;
        posesRadius_ = doc_.modelRadius;
    }
    resetMouseMode();
    ResetViewCentre();
    UpdateProjection();
    ResetModelTransform();
    onPictureChanged();
}

void VelmoraView::showCursor(MouseMode mode) {
    shownCursor_ = mode;
    surface().showCursor(mode);
}

void VelmoraView::stopSpin() {
    spinActive = false;
    surface().stopTimer();
}

void VelmoraView::setMouseMode(MouseMode mode) {
    stopSpin();
    const MouseMode shownBefore = shownCursor_;
    if (mode != mouseMode) {
        mouseMode = mode;
        showCursor(mode);
    } else if (doc_.capture->pointCaptureArmed || doc_.capture->pointCaptured) {
        mouseMode = ModePoint;
        showCursor(ModePoint);
    } else if (doc_.capture->sectionCaptureArmed || doc_.capture->sectionCaptured) {
        mouseMode = ModeSection;
        showCursor(ModeSection);
    } else if (doc_.capture->lineCaptureArmed || doc_.capture->lineCaptured) {
        mouseMode = ModeLine;
        showCursor(ModeLine);
    } else if (doc_.capture->patchCaptureArmed || doc_.capture->patchCaptured) {
        mouseMode = ModePatch;
        showCursor(ModePatch);
    } else {
        mouseMode = ModeNone;
        showCursor(previousCursor_);
    }
    previousCursor_ = shownBefore;
}

void VelmoraView::forceMouseMode(MouseMode mode) {
    // With another mode in between the call is never taken for a toggle.
    mouseMode = mode == ModeNone ? ModeRotate : ModeNone;
    setMouseMode(mode);
}

void VelmoraView::resetMouseMode() {
    surface().confineCursor(false);
    mouseMode = ModeNone;
    showCursor(ModeNone);
}

void VelmoraView::pointAt(const std::optional<zVec<double>>& place) {
    if (pointedAt_ != place) {
        pointedAt_ = place;
        repaint();
    }
}

// ---- Camera ---------------------------------------------------------------------------------------------------------

void VelmoraView::ApplyModelTransform(const zVec<double>& centre) {
    modelViewMatrix = modelTransform(centre);
}

/// What ApplyModelTransform would load.
Matrix4 VelmoraView::modelTransform(const zVec<double>& centre) const {
    return translationMatrix(modelOffset + centre) * scaleMatrix(modelScale) * modelRotation *
           translationMatrix(centre * -1.0);
}

void VelmoraView::SetAxisView(double angle, const zVec<double>& axis) {
    const Matrix4 pushed = modelViewMatrix;
    ResetModelTransform();
    modelRotation = rotationMatrix(angle, axis);
    modelViewMatrix = pushed;
}

void VelmoraView::SetEulerView(const zVec<double>& angles) {
    const Matrix4 pushed = modelViewMatrix;
    ResetModelTransform();
    modelRotation = rotationMatrix(angles.z, {0.0, 0.0, 1.0}) * rotationMatrix(angles.y, {0.0, 1.0, 0.0}) *
                    rotationMatrix(angles.x, {1.0, 0.0, 0.0});
    modelViewMatrix = pushed;
}

} // namespace velmora

#include <algorithm>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "ViewCommand.h"
#include "command_rules.h"
#include "dlgViewing.h"
#include "messages.h"

namespace velmora {

namespace {

const zVec<double> xAxis{1.0, 0.0, 0.0};
const zVec<double> yAxis{0.0, 1.0, 0.0};
const zVec<double> isoAngles{10.0, 20.0, 20.0};

const ViewCommand* findViewCommand(std::string_view id) {
    const auto commands = VelmoraView::commands();
    const auto found =
        std::find_if(commands.begin(), commands.end(), [id](const ViewCommand& c) { return id == c.row.id; });
    return found == commands.end() ? nullptr : &*found;
}

} // namespace

// Of the views along an axis the tool bar's forms repaint; the menu's wait for the next repaint.
std::span<const ViewCommand> VelmoraView::commands() {
    using namespace rules;
    using enum MenuId;
    static const ViewCommand all[] = {
        {.row = {.id = "point.dragAndCorrect",
                 .menuText = "Drag point && correct line",
                 .statusText = "Correct line by means of drag point procedure",
                 .off = [](Doc d) { return d.capture->freePointHeld || noPoint(d) || noCurve(d); },
                 .follows = "point.reverseSection",
                 .places = {{PointContext, 420}}},
         .run = [](VelmoraView& v) { v.doc_.prepareDragCorrection(); },
         .off = [](const VelmoraView& v) { return v.principalPlane() == 0; }},
        {.row = {.id = "view.perspective",
                 .menuText = "&Perspective Projection",
                 .statusText = "Set perspective projection",
                 .off = emptyModel,
                 .follows = "view.statusBar",
                 .places = {{ViewProjection, 110}}},
         .run = [](VelmoraView& v) { v.setProjection(0); },
         .checked = [](const VelmoraView& v) { return v.projectionMode == 0; }},
        {.row = {.id = "view.orthographic",
                 .menuText = "&Orthographic Projection",
                 .statusText = "Set orthographic projection",
                 .off = emptyModel,
                 .places = {{ViewProjection, 120}}},
         .run = [](VelmoraView& v) { v.setProjection(1); },
         .checked = [](const VelmoraView& v) { return v.projectionMode == 1; }},
        {.row = {.id = "view.otherProjection",
                 .menuText = "Oth&er Projection",
                 .statusText = "Set orthographic projection in place of perspective, or perspective again",
                 .accelerator = "P",
                 .off = emptyModel,
                 .places = {{ViewProjection, 130}}},
         .run = [](VelmoraView& v) { v.setProjection(1 - v.projectionMode); }},
        {.row = {.id = "view.top",
                 .menuText = "&Top",
                 .statusText = "Set top view",
                 .accelerator = "1",
                 .off = emptyModel,
                 .places = {{ViewProjection, 210}}},
         .run = [](VelmoraView& v) { v.SetAxisView(90.0, xAxis); }},
        {.row = {.id = "view.bottom",
                 .menuText = "&Bottom",
                 .statusText = "Set bottom view",
                 .accelerator = "2",
                 .off = emptyModel,
                 .places = {{ViewProjection, 220}}},
         .run = [](VelmoraView& v) { v.SetAxisView(-90.0, xAxis); }},
        {.row = {.id = "view.front",
                 .menuText = "&Front",
                 .statusText = "Set front view",
                 .accelerator = "3",
                 .off = emptyModel,
                 .places = {{ViewProjection, 230}}},
         .run = [](VelmoraView& v) { v.SetAxisView(90.0, yAxis); }},
        {.row = {.id = "view.back",
                 .menuText = "Bac&k",
                 .statusText = "Set back view",
                 .accelerator = "4",
                 .off = emptyModel,
                 .places = {{ViewProjection, 240}}},
         .run = [](VelmoraView& v) { v.SetAxisView(-90.0, yAxis); }},
        {.row = {.id = "view.right",
                 .menuText = "&Right",
                 .statusText = "Set right view",
                 .accelerator = "5",
                 .off = emptyModel,
                 .places = {{ViewProjection, 250}}},
         .run = [](VelmoraView& v) { v.SetAxisView(180.0, yAxis); }},
        {.row = {.id = "view.left",
                 .menuText = "&Left",
                 .statusText = "Set left view",
                 .accelerator = "6",
                 .off = emptyModel,
                 .places = {{ViewProjection, 260}}},
         .run = [](VelmoraView& v) { v.SetAxisView(0.0, yAxis); }},
        {.row = {.id = "view.iso",
                 .menuText = "&Iso",
                 .statusText = "Set iso view",
                 .accelerator = "7",
                 .off = emptyModel,
                 .places = {{ViewProjection, 270}}},
         .run = [](VelmoraView& v) { v.SetEulerView(isoAngles); }},
        {.row = {.id = "view.oblique",
                 .menuText = "Obli&que",
                 .statusText = "Set iso view and fit the model to both sides of the window",
                 .accelerator = "8",
                 .off = emptyModel,
                 .places = {{ViewProjection, 275}}},
         .run =
             [](VelmoraView& v) {
                 v.SetEulerView(isoAngles);
                 v.fitModel();
             }},
        {.row = {.id = "view.manual",
                 .menuText = "&Manual...",
                 .statusText = "Set manual view",
                 .toolTip = "Manual",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{ViewProjection, 280}, {GeneralBar, 910}}},
         .run = [](VelmoraView& v) { v.showViewingDialog(); }},
        {.row = {.id = "view.rotate",
                 .menuText = "&Rotate",
                 .statusText = "Rotate model",
                 .toolTip = "Rotate",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 310}, {GeneralBar, 710}}},
         .mode = ModeRotate},
        {.row = {.id = "view.rotateX",
                 .menuText = "Rotate about &X axis",
                 .statusText = "Rotate model about X axis",
                 .toolTip = "Rotate about X axis",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 320}, {GeneralBar, 720}}},
         .mode = ModeRotateX},
        {.row = {.id = "view.rotateY",
                 .menuText = "Rotate about &Y axis",
                 .statusText = "Rotate model about Y axis",
                 .toolTip = "Rotate about Y axis",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 330}, {GeneralBar, 730}}},
         .mode = ModeRotateY},
        {.row = {.id = "view.rotateZ",
                 .menuText = "Rotate about &Z axis",
                 .statusText = "Rotate model about Z axis",
                 .toolTip = "Rotate about Z axis",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 340}, {GeneralBar, 740}}},
         .mode = ModeRotateZ},
        {.row = {.id = "view.translateXY",
                 .menuText = "Translate in XY plan&e",
                 .statusText = "Translate model in XY plane",
                 .toolTip = "Translate in XY plane",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 350}, {GeneralBar, 750}}},
         .mode = ModeTranslateXY},
        {.row = {.id = "view.translateZ",
                 .menuText = "Translate in Z directio&n",
                 .statusText = "Translate model in Z direction",
                 .toolTip = "Translate in Z direction",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 360}, {GeneralBar, 760}}},
         .mode = ModeTranslateZ},
        {.row = {.id = "view.shift",
                 .menuText = "S&hift",
                 .statusText = "Move model in screen plane",
                 .toolTip = "Shift",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 370}, {GeneralBar, 770}}},
         .mode = ModeShift},
        {.row = {.id = "view.scale",
                 .menuText = "S&cale",
                 .statusText = "Change the scale of model image",
                 .toolTip = "Scale",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 410}, {GeneralBar, 810}}},
         .mode = ModeScale},
        {.row = {.id = "view.zoomIn",
                 .menuText = "Zoom &In",
                 .statusText = "Magnify the selected part of body surface",
                 .toolTip = "Zoom In",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 420}, {GeneralBar, 820}}},
         .mode = ModeZoomIn},
        {.row = {.id = "view.zoomOut",
                 .menuText = "Zoom &Out",
                 .statusText = "Restore zoom",
                 .toolTip = "Zoom out",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 430}, {GeneralBar, 830}}},
         .run = [](VelmoraView& v) { v.zoomOut(); }},
        {.row = {.id = "view.fitKeepRotation",
                 .menuText = "Fit and &Keep Rotation",
                 .statusText = "Fit image to the window and leave the model turned as it is",
                 .accelerator = "F",
                 .off = emptyModel,
                 .follows = "view.fit",
                 .places = {{View, 442}}},
         .run = [](VelmoraView& v) { v.fitKeepingRotation(); }},
        {.row = {.id = "view.fitCaptured",
                 .menuText = "Fit C&aptured",
                 .statusText = "Fit what is captured, else zBlock, else the model to the window",
                 .accelerator = "Shift+F",
                 .off = emptyModel,
                 .places = {{View, 444}}},
         .run = [](VelmoraView& v) { v.fitCaptured(); }},
        {.row = {.id = "view.previous",
                 .menuText = "Pre&vious",
                 .statusText = "Set previous view",
                 .off = [](Doc) { return true; },
                 .places = {{View, 450}}},
         .run = [](VelmoraView& v) { v.doc_.ui().showMessage(message::notAvailable); }},
        {.row = {.id = "view.before",
                 .menuText = "Vie&w Before",
                 .statusText = "Go back to where the view stood before it was moved",
                 .accelerator = "Backspace",
                 .off = emptyModel,
                 .places = {{View, 460}}},
         .run = [](VelmoraView& v) { v.goBack(); }},
        {.row = {.id = "view.measure",
                 .menuText = "&Measure",
                 .statusText = "Distance of two places that are clicked, and the angle of three",
                 .accelerator = "M",
                 .off = emptyModel,
                 .places = {{View, 470}}},
         .mode = ModeMeasure},
        {.row = {.id = "view.surface",
                 .menuText = "&Surface",
                 .statusText = "Draw picture of solid body",
                 .toolTip = "Surface",
                 .accelerator = "S",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{View, 510}, {GeneralBar, 850}}},
         .run = [](VelmoraView& v) { v.doc_.toggleSurface(); },
         .checked = [](const VelmoraView& v) { return v.doc_.surfaceMode; }},
        {.row = {.id = "view.edges",
                 .menuText = "Surface Ed&ges",
                 .statusText = "Draw the edges of cells and triangles over the surface",
                 .accelerator = "E",
                 .off = emptyModel,
                 .places = {{View, 520}}},
         .run =
             [](VelmoraView& v) {
                 v.edgesShown = !v.edgesShown;
                 v.repaint();
             },
         .checked = [](const VelmoraView& v) { return v.edgesShown; }},
        {.row = {.id = "view.fillBackFaces",
                 .menuText = "Fill &Back Faces",
                 .statusText = "Fill the back of the surface too, in a darker shade",
                 .accelerator = "B",
                 .off = emptyModel,
                 .places = {{View, 530}}},
         .run =
             [](VelmoraView& v) {
                 v.backFacesFilled = !v.backFacesFilled;
                 v.repaint();
             },
         .checked = [](const VelmoraView& v) { return v.backFacesFilled; }},
        {.row = {.id = "view.threeD",
                 .menuText = "3D view",
                 .statusText = "Set 3D view",
                 .toolTip = "3D view",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{GeneralBar, 920}}},
         .run =
             [](VelmoraView& v) {
                 v.SetEulerView(isoAngles);
                 v.repaint();
             }},
        {.row = {.id = "view.frontView",
                 .menuText = "Front view",
                 .statusText = "Set front view",
                 .toolTip = "Front view",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{GeneralBar, 930}}},
         .run =
             [](VelmoraView& v) {
                 v.SetAxisView(90.0, yAxis);
                 v.repaint();
             }},
        {.row = {.id = "view.upView",
                 .menuText = "Up view",
                 .statusText = "Set up view",
                 .toolTip = "Up view",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{GeneralBar, 940}}},
         .run =
             [](VelmoraView& v) {
                 v.SetAxisView(90.0, xAxis);
                 v.repaint();
             }},
        {.row = {.id = "view.sideView",
                 .menuText = "Side view",
                 .statusText = "Set side view",
                 .toolTip = "Side view",
                 .icon = true,
                 .off = emptyModel,
                 .places = {{GeneralBar, 950}}},
         .run =
             [](VelmoraView& v) {
                 v.SetAxisView(0.0, yAxis);
                 v.repaint();
             }},
    };
    return all;
}

bool VelmoraView::isViewCommandOff(std::string_view id) const {
    const ViewCommand* command = findViewCommand(id);
    return command != nullptr && ((command->off != nullptr && command->off(*this)) ||
                                  (command->row.off != nullptr && command->row.off(doc_)));
}

std::optional<bool> VelmoraView::checkedState(std::string_view id) const {
    const ViewCommand* command = findViewCommand(id);
    if (command != nullptr && command->mode != ModeNone) {
        return mouseMode == command->mode;
    }
    return command != nullptr && command->checked != nullptr ? std::optional(command->checked(*this)) : std::nullopt;
}

MouseMode VelmoraView::mouseModeOf(std::string_view id) {
    const ViewCommand* command = findViewCommand(id);
    return command != nullptr ? command->mode : ModeNone;
}

bool VelmoraView::runViewCommand(std::string_view id) {
    const ViewCommand* command = findViewCommand(id);
    if (command != nullptr) {
        if (!doc_.holdsNothing()) {
            notePose();
        }
        if (command->mode != ModeNone) {
            const bool measured = mouseMode == ModeMeasure;
            setMouseMode(command->mode);
            beginMeasuring(measured);
        } else {
            command->run(*this);
        }
    }
    return command != nullptr;
}

void VelmoraView::setProjection(int mode) {
    if (projectionMode != mode) {
        projectionMode = mode;
        UpdateProjection();
        repaint();
    }
}

void VelmoraView::zoomOut() {
    ResetViewCentre();
    UpdateProjection();
    modelScale = {1.0, 1.0, 1.0};
    modelOffset = defaultOffset;
    ApplyModelTransform(doc_.modelCenter);
    repaint();
}

void VelmoraView::showViewingDialog() {
    ApplyModelTransform(doc_.modelCenter);
    const zVec<double> angles = eulerAngles(modelViewMatrix).value_or(zVec<double>());
    dlgViewing values{angles.x, angles.y, angles.z, modelOffset.x, modelOffset.y, modelOffset.z, 1.0 / zoomFactor};
    if (!doc_.askViewing(values)) {
        return;
    }
    SetEulerView({values.angleX, values.angleY, values.angleZ});
    modelOffset = {values.distanceX, values.distanceY, values.distanceZ};
    zoomFactor = 1.0 / values.scale;
    UpdateProjection();
    repaint();
}

} // namespace velmora

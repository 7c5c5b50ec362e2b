#include <algorithm>
#include <iterator>

#include "VelmoraView.h"
#include "command_table.h"
#include "messages.h"

namespace velmora {

namespace {

struct AxisViewCommand {
    const char* id;
    double angle;
    zVec<double> axis;
    bool repaints;
};

/// The tool bar's forms repaint; the menu's wait for the next repaint.
const AxisViewCommand axisViews[] = {
    {"view.top", 90.0, {1.0, 0.0, 0.0}, false},      {"view.bottom", -90.0, {1.0, 0.0, 0.0}, false},
    {"view.front", 90.0, {0.0, 1.0, 0.0}, false},    {"view.back", -90.0, {0.0, 1.0, 0.0}, false},
    {"view.left", 0.0, {0.0, 1.0, 0.0}, false},      {"view.right", 180.0, {0.0, 1.0, 0.0}, false},
    {"view.frontView", 90.0, {0.0, 1.0, 0.0}, true}, {"view.upView", 90.0, {1.0, 0.0, 0.0}, true},
    {"view.sideView", 0.0, {0.0, 1.0, 0.0}, true},
};

struct ModeCommand {
    const char* id;
    MouseMode mode;
};

constexpr ModeCommand modeCommands[] = {
    {"view.rotate", ModeRotate},
    {"view.rotateX", ModeRotateX},
    {"view.rotateY", ModeRotateY},
    {"view.rotateZ", ModeRotateZ},
    {"view.translateXY", ModeTranslateXY},
    {"view.translateZ", ModeTranslateZ},
    {"view.shift", ModeShift},
    {"view.scale", ModeScale},
    {"view.zoomIn", ModeZoomIn},
};

const zVec<double> isoAngles{10.0, 20.0, 20.0};

} // namespace

bool VelmoraView::isViewCommandOff(std::string_view id) const {
    if (id == "point.dragAndCorrect" && !viewAlongX && !viewAlongY && !viewAlongZ) {
        return true;
    }
    return isCommandOff(doc_, id);
}

bool VelmoraView::runViewCommand(std::string_view id) {
    const auto named = [id](const auto& command) { return id == command.id; };
    if (const auto* axisView = std::find_if(std::begin(axisViews), std::end(axisViews), named);
        axisView != std::end(axisViews)) {
        SetAxisView(axisView->angle, axisView->axis);
        if (axisView->repaints) {
            repaint();
        }
    } else if (const auto* mode = std::find_if(std::begin(modeCommands), std::end(modeCommands), named);
               mode != std::end(modeCommands)) {
        setMouseMode(mode->mode);
    } else if (id == "view.perspective" || id == "view.orthographic") {
        setProjection(id == "view.perspective" ? 0 : 1);
    } else if (id == "view.iso") {
        SetEulerView(isoAngles);
    } else if (id == "view.threeD") {
        SetEulerView(isoAngles);
        repaint();
    } else if (id == "view.manual") {
        showViewingDialog();
    } else if (id == "view.zoomOut") {
        zoomOut();
    } else if (id == "view.surface") {
        doc_.toggleSurface();
    } else if (id == "point.dragAndCorrect") {
        doc_.prepareDragCorrection();
    } else if (id == "view.previous") {
        doc_.ui().showMessage(message::notAvailable);
    } else {
        return false;
    }
    return true;
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

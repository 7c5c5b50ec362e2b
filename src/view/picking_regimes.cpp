#include "VelmoraView.h"
#include "messages.h"
#include "status_texts.h"

namespace velmora {

namespace {

// How far from the line of sight the nearest point may lie, as a fraction of the model's diagonal.
constexpr double pointLimit = 0.01;
constexpr double sectionLimit = 0.05;
constexpr double lineLimit = 0.5;

} // namespace

PixelLine VelmoraView::PixelRay(double x, double y) {
    ApplyModelTransform(doc_.modelCenter);
    const double windowY = viewport.height - y - 1;
    const auto at = [&](double depth) {
        return unprojectPoint({x, windowY, depth}, modelViewMatrix, projectionMatrix, viewport)
            .value_or(zVec<double>());
    };
    return {at(0.0), at(1.0)};
}

double VelmoraView::modelDiagonal() const {
    return lengthOf(doc_.boxMax - doc_.boxMin);
}

PickFilter VelmoraView::blockFilter() const {
    PickFilter filter;
    if (doc_.patchCaptured && doc_.blockCount > 0) {
        filter.patches = doc_.blockMask();
    }
    return filter;
}

// ---- The left button in a regime ------------------------------------------------------------------------------------

void VelmoraView::pressRegime(PixelPoint position) {
    if (doc_.pointCaptureArmed || doc_.freePointArmed) {
        PickPoint(position);
        repaint();
    }
    if (doc_.pointDragging) {
        PickDragPoint(position);
        doc_.placeDraggedPoint(doc_.capturedPointPos);
    }
    if (doc_.patchCaptureArmed) {
        pressPatchCapture(position);
    }
    if (doc_.patchRemoving) {
        pressPatchRemoval(position);
    }
    if (doc_.sectionCaptureArmed) {
        PickSection(position);
        repaint();
    }
    if (doc_.lineCaptureArmed) {
        PickLine(position);
        repaint();
    }
    if (doc_.dragCorrectsLine) {
        PickPlanePoint(position);
        repaint();
    }
}

void VelmoraView::pressPatchCapture(PixelPoint position) {
    doc_.capturedPatch = PickPatch(position);
    doc_.redraw();
    repaint();
    if (doc_.capturedPatch < 0) {
        doc_.ui().showMessage(message::patchNotSelected);
        abandonPress();
        return;
    }
    doc_.patchStatus = capturedPatchText(doc_.capturedPatch);
    doc_.ShowStatus(doc_.patchStatus);
}

void VelmoraView::pressPatchRemoval(PixelPoint position) {
    doc_.patchToRemove = PickPatch(position);
    doc_.redraw();
    forceMouseMode(ModePatch);
    if (doc_.patchToRemove < 0) {
        doc_.ui().showMessage(message::patchNotRemoved);
        abandonPress();
    }
    doc_.ShowStatus(doc_.removeStatus);
    repaint();
}

/// The click hit nothing: its release moves no regime on, which stays as it was for the next try.
void VelmoraView::abandonPress() {
    leftButtonDown = false;
    surface().confineCursor(false);
}

void VelmoraView::dragRegime(PixelPoint position) {
    if (doc_.pointCaptureArmed || doc_.freePointArmed) {
        PickPoint(position);
        doc_.ShowStatus(doc_.pointStatus);
        repaint();
    }
    if (doc_.pointDragging) {
        PickDragPoint(position);
        doc_.placeDraggedPoint(doc_.capturedPointPos);
    }
    if (doc_.patchCaptureArmed) {
        doc_.ShowStatus(doc_.patchStatus);
    }
    if (doc_.sectionCaptureArmed) {
        PickSection(position);
    }
    if (doc_.lineCaptureArmed) {
        PickLine(position);
    }
    if (doc_.dragCorrectsLine) {
        PickPlanePoint(position);
        doc_.ShowStatus(doc_.pointStatus);
        CorrectLineByDrag(doc_.capturedPointPos);
        doc_.redraw();
    }
}

// ---- Picks ----------------------------------------------------------------------------------------------------------

bool VelmoraView::PickPoint(PixelPoint position) {
    doc_.pointPicked = false;
    if (doc_.structureKind == "uns") {
        return PickNode(position);
    }
    PickFilter filter = blockFilter();
    filter.patch = doc_.capturedPatch;
    if (!doc_.freePointArmed) {
        filter.section = doc_.sectionCaptured ? doc_.capturedSection : -1;
        filter.point = doc_.lineCaptured ? doc_.capturedLine : -1;
    }
    const auto nearest = index().nearest(doc_.patches, PixelRay(position.x, position.y), filter);
    if (!nearest) {
        return false;
    }
    doc_.capturedPointSection = nearest->section;
    doc_.capturedPoint = nearest->point;
    if (nearest->distance > pointLimit * modelDiagonal()) {
        return false;
    }
    takePick(*nearest);
    return true;
}

bool VelmoraView::PickNode(PixelPoint position) {
    const PickFilter filter = doc_.freePointArmed ? PickFilter() : blockFilter();
    const auto nearest = nearestNode(doc_.feRegion, PixelRay(position.x, position.y), filter);
    doc_.capturedPoint = nearest ? nearest->point : -1;
    if (!nearest || nearest->distance > pointLimit * modelDiagonal()) {
        return false;
    }
    takePick(*nearest);
    return true;
}

void VelmoraView::takePick(const NearestPoint& nearest) {
    doc_.capturedPatch = nearest.patch;
    doc_.pickedPoint = nearest.position;
    refillPickStatus();
    doc_.capturedPointPos = doc_.pickedPoint;
    doc_.pointPicked = true;
}

const PatchIndex& VelmoraView::index() {
    if (indexDirty_) {
        index_.refresh(doc_.patches);
        indexDirty_ = false;
    }
    return index_;
}

const ZoneIndex& VelmoraView::zoneIndex() {
    if (zoneIndexDirty_) {
        zoneIndex_.refresh(doc_.feRegion);
        zoneIndexDirty_ = false;
    }
    return zoneIndex_;
}

void VelmoraView::refillPickStatus() {
    const PointAddress address = doc_.lineCaptured
                                     ? PointAddress{doc_.capturedPatch, doc_.capturedPoint, doc_.capturedPointSection}
                                     : PointAddress{doc_.capturedPatch, doc_.capturedPointSection, doc_.capturedPoint};
    doc_.pointStatus = capturedPointText(doc_.lineCaptured, address, doc_.pickedPoint);
    doc_.pointContinueStatus = doc_.pointStatus + pointContinueClause;
}

std::int32_t VelmoraView::PickPatch(PixelPoint position) {
    const BusyScope busy(doc_.ui());
    const PixelLine ray = PixelRay(position.x, position.y);
    return doc_.structureKind == "uns" ? zoneIndex().pickZone(doc_.feRegion, ray)
                                       : index().pickPatch(doc_.patches, ray);
}

bool VelmoraView::PickDragPoint(PixelPoint position) {
    const auto nearest = nearestGridPoint(doc_.dragPatches, PixelRay(position.x, position.y), {});
    if (!nearest || nearest->distance > pointLimit * modelDiagonal()) {
        return false;
    }
    doc_.pickedPoint = nearest->position;
    doc_.dragStatus = "Drag point: X=" + fixedText(doc_.pickedPoint.x) + ", Y=" + fixedText(doc_.pickedPoint.y) +
                      ", Z=" + fixedText(doc_.pickedPoint.z) + " ";
    doc_.capturedPointPos = doc_.pickedPoint;
    return true;
}

std::optional<NearestPoint> VelmoraView::nearestCurvePoint(PixelPoint position) {
    auto nearest = index().nearest(doc_.patches, PixelRay(position.x, position.y), blockFilter());
    if (nearest) {
        doc_.capturedPatch = nearest->patch;
    }
    return nearest;
}

bool VelmoraView::PickSection(PixelPoint position) {
    doc_.capturedSection = -1;
    const auto nearest = nearestCurvePoint(position);
    const bool found = nearest && nearest->distance <= sectionLimit * modelDiagonal();
    if (found) {
        doc_.capturedSection = nearest->section;
        const PointList* section = doc_.sectionAt(nearest->patch, nearest->section);
        doc_.sectionStatus = capturedSectionText(nearest->patch, nearest->section, countOf(*section));
        doc_.sectionContinueStatus = doc_.sectionStatus + curveContinueClause;
    }
    showCurvePick(found, true);
    return found;
}

bool VelmoraView::PickLine(PixelPoint position) {
    doc_.capturedPointSection = -1;
    const auto nearest = nearestCurvePoint(position);
    const bool found = nearest && nearest->distance <= lineLimit * modelDiagonal();
    if (found) {
        doc_.capturedLine = nearest->point;
        const auto points = countOf(doc_.patches[static_cast<std::size_t>(nearest->patch)]);
        doc_.lineStatus = capturedLineText(nearest->patch, nearest->point, points);
        doc_.lineContinueStatus = doc_.lineStatus + pointContinueClause;
    }
    showCurvePick(found, false);
    return found;
}

void VelmoraView::showCurvePick(bool found, bool section) {
    doc_.redraw();
    setMouseMode(section ? ModeSection : ModeLine);
    doc_.ShowStatus(!found ? doc_.dragPrompt : section ? doc_.sectionStatus : doc_.lineStatus);
}

} // namespace velmora

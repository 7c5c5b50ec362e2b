#include <cmath>

#include "VelmoraView.h"
#include "drag_correction.h"
#include "status_texts.h"

namespace velmora {

// "Drag point && correct line": the captured point moves in the plane of the screen, which is a coordinate plane, and
// the captured curve bends with it.

void VelmoraView::PickPlanePoint(PixelPoint position) {
    const zVec<double>* point = doc_.pointAt(doc_.capturedPatch, doc_.capturedPointSection, doc_.capturedPoint);
    if (point == nullptr) {
        return;
    }
    const PixelLine ray = PixelRay(position.x, position.y);
    const auto meet = [&](double zVec<double>::*axis) {
        const double d = ray.farPoint.*axis - ray.nearPoint.*axis;
        if (std::abs(d) < 1e-6) {
            return ray.nearPoint;
        }
        const double t = (point->*axis - ray.nearPoint.*axis) / d;
        zVec<double> hit = ray.nearPoint + (ray.farPoint - ray.nearPoint) * t;
        hit.*axis = point->*axis;
        return hit;
    };
    if (viewAlongX) {
        doc_.pickedPoint = meet(&zVec<double>::x);
    } else if (viewAlongY) {
        doc_.pickedPoint = meet(&zVec<double>::y);
    } else if (viewAlongZ) {
        doc_.pickedPoint = meet(&zVec<double>::z);
    }
    doc_.capturedPointPos = doc_.pickedPoint;
    refillPickStatus();
}

void VelmoraView::CorrectLineByDrag(const zVec<double>& target) {
    const zVec<double>* captured = doc_.pointAt(doc_.capturedPatch, doc_.capturedPointSection, doc_.capturedPoint);
    if (captured == nullptr || (!viewAlongX && !viewAlongY && !viewAlongZ)) {
        return;
    }
    const DragPlane plane = viewAlongX   ? DragPlane{&zVec<double>::y, &zVec<double>::z}
                            : viewAlongY ? DragPlane{&zVec<double>::x, &zVec<double>::z}
                                         : DragPlane{&zVec<double>::x, &zVec<double>::y};
    const zVec<double> delta = target - *captured;
    if (doc_.sectionCaptured) {
        if (PointList* section = doc_.sectionAt(doc_.capturedPatch, doc_.capturedSection)) {
            bendCurve(*section, doc_.capturedPoint, delta, plane);
        }
        return;
    }
    if (!doc_.lineCaptured) {
        return;
    }
    Patch& patch = doc_.patches[static_cast<std::size_t>(doc_.capturedPatch)];
    PointList line;
    for (std::int32_t n = 0; n < countOf(patch); ++n) {
        const zVec<double>* point = doc_.pointAt(doc_.capturedPatch, n, doc_.capturedPoint);
        if (point == nullptr) {
            return;
        }
        line.push_back(*point);
    }
    bendCurve(line, doc_.capturedPointSection, delta, plane);
    for (std::int32_t n = 0; n < countOf(patch); ++n) {
        if (zVec<double>* point = doc_.pointAt(doc_.capturedPatch, n, doc_.capturedLine)) {
            *point = line[static_cast<std::size_t>(n)];
        }
    }
}

} // namespace velmora

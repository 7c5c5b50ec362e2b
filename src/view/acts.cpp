#include <cstddef>
#include <limits>
#include <utility>

#include "CommandGuard.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "vectors.h"

namespace velmora {

// What the mouse does in the regimes, by number: the pick is made of the numbers instead of a line of sight, and goes
// the same way.

namespace {

bool letsThrough(const PickFilter& filter, const Act& act) {
    const bool patch = filter.patches.empty() || filter.patches[static_cast<std::size_t>(act.patch)];
    return patch && (filter.patch < 0 || filter.patch == act.patch) &&
           (filter.section < 0 || filter.section == act.section) && (filter.point < 0 || filter.point == act.point);
}

Pick pickOf(const Act& act, Pick::Target target) {
    Pick pick;
    pick.target = target;
    pick.found = true;
    pick.patch = act.patch;
    pick.section = act.section;
    pick.point = act.point;
    return pick;
}

/// The button went down on it while it was let through, and comes up again.
bool isUnder(const CaptureState& held, const Act& act) {
    const bool same = act.kind == Act::Kind::Section ? held.capturedSection == act.section
                      : act.kind == Act::Kind::Line  ? held.capturedLine == act.point
                                                     : held.pointPicked && held.capturedPoint == act.point &&
                                                          (act.section < 0 || held.capturedPointSection == act.section);
    return same && held.capturedPatch == act.patch;
}

/// The node of the grid that is nearest to `place`; none without a grid.
std::optional<zVec<double>> nearestNode(const PatchList& grid, const zVec<double>& place) {
    std::optional<zVec<double>> nearest;
    double smallest = std::numeric_limits<double>::infinity();
    for (const Patch& patch : grid) {
        for (const PointList& section : patch) {
            for (const zVec<double>& node : section) {
                const double distance = lengthOf(node - place);
                if (!nearest || distance < smallest) { // of a place out of all measure any node is the nearest
                    smallest = distance;
                    nearest = node;
                }
            }
        }
    }
    return nearest;
}

} // namespace

VelmoraView::ActResult VelmoraView::perform(const Act& act) {
    const CommandGuard guard(doc_);
    switch (act.kind) {
    case Act::Kind::Point:
    case Act::Kind::Node:
    case Act::Kind::Under:
        return capturePoint(act);
    case Act::Kind::Section:
    case Act::Kind::Line:
    case Act::Kind::UnderSection:
    case Act::Kind::UnderLine:
        return captureCurve(act);
    case Act::Kind::WholePatch:
        return capturePatch(act);
    case Act::Kind::Beside:
        return clickBeside(act);
    case Act::Kind::Drag:
        return dragTo(act.place);
    case Act::Kind::Release:
        break;
    }
    return endDrag();
}

VelmoraView::ActResult VelmoraView::capturePoint(const Act& act) {
    const bool zones = doc_.structureKind == StructureKind::Unstructured;
    const bool armed = doc_.capture->pointCaptureArmed || doc_.capture->freePointArmed;
    const bool isNode = act.kind == Act::Kind::Under ? act.section < 0 : act.kind == Act::Kind::Node;
    if (!armed || zones != isNode) {
        return ActResult::NotArmed;
    }
    const auto position = doc_.positionAt(act.patch, act.section, act.point);
    if (!position) {
        return ActResult::NotThere;
    }
    if (!isUnder(*doc_.capture, act) && !letsThrough(captureFilter(doc_, false), act)) {
        return ActResult::NotLetThrough;
    }
    Pick pick = pickOf(act, zones ? Pick::Target::Node : Pick::Target::Point);
    pick.position = *position;
    take(pick);
    repaint();
    if (act.kind != Act::Kind::Under) {
        doc_.takeAtRelease();
    }
    return ActResult::Done;
}

VelmoraView::ActResult VelmoraView::captureCurve(const Act& act) {
    const bool section = act.kind == Act::Kind::Section || act.kind == Act::Kind::UnderSection;
    const bool staysDown = act.kind == Act::Kind::UnderSection || act.kind == Act::Kind::UnderLine;
    const bool found = act.kind != Act::Kind::UnderSection || act.section >= 0;
    if (section ? !doc_.capture->sectionCaptureArmed : !doc_.capture->lineCaptureArmed) {
        return ActResult::NotArmed;
    }
    const PointList* points = doc_.sectionAt(act.patch, section && found ? act.section : 0);
    const bool isThere =
        points != nullptr && (section ? !points->empty() : act.point >= 0 && act.point < countOf(*points));
    if (!isThere) {
        return ActResult::NotThere;
    }
    if (found && !isUnder(*doc_.capture, act) && !letsThrough(captureFilter(doc_, true), act)) {
        return ActResult::NotLetThrough;
    }
    Pick pick = pickOf(act, section ? Pick::Target::Section : Pick::Target::Line);
    pick.points = section ? countOf(*points) : countOf(doc_.patches[static_cast<std::size_t>(act.patch)]);
    pick.found = found;
    takeCurve(pick);
    repaint();
    if (!staysDown) {
        doc_.takeAtRelease();
    }
    return ActResult::Done;
}

VelmoraView::ActResult VelmoraView::capturePatch(const Act& act) {
    const bool removes = doc_.capture->patchRemoving;
    if (!removes && !doc_.capture->patchCaptureArmed) {
        return ActResult::NotArmed;
    }
    if (act.patch < 0 || act.patch >= doc_.partCount()) {
        return ActResult::NotThere;
    }
    if (removes) {
        pressPatchRemoval(pickOf(act, Pick::Target::Removal));
    } else {
        pressPatchCapture(pickOf(act, Pick::Target::WholePatch));
    }
    doc_.takeAtRelease();
    return ActResult::Done;
}

/// What is captured keeps its numbers, but for a point beside which a free one is waited for: a click that misses goes
/// to the nearest of its patch.
VelmoraView::ActResult VelmoraView::clickBeside(const Act& act) {
    const CaptureState& held = *doc_.capture;
    if (act.patch >= doc_.partCount()) {
        return ActResult::NotThere;
    }
    const bool movesCurve = held.curveHeld() && act.patch != held.capturedPatch;
    const bool isHeldPoint =
        held.freePointArmed || (act.section == held.capturedPointSection && act.point == held.capturedPoint);
    const bool movesPoint = held.pointHeld() && !(act.patch == held.capturedPatch && isHeldPoint);
    if (movesCurve || movesPoint) {
        return ActResult::NotLetThrough;
    }
    doc_.capture.passBy(act.patch, act.section, act.point);
    return ActResult::Done;
}

VelmoraView::ActResult VelmoraView::dragTo(const zVec<double>& place) {
    Pick pick;
    pick.found = true;
    if (doc_.capture->pointDragging) {
        const auto node = nearestNode(doc_.dragPatches, place);
        if (!node) {
            return ActResult::NotThere;
        }
        pick.target = Pick::Target::DragPlace;
        pick.position = *node;
        take(pick);
        doc_.placeDraggedPoint(doc_.capture->capturedPointPos);
        return ActResult::Done;
    }
    if (!doc_.capture->dragCorrectsLine) {
        return ActResult::NotArmed;
    }
    const int plane = principalPlane();
    if (plane == 0) {
        return ActResult::NoPlane;
    }
    const auto point =
        doc_.positionAt(doc_.capture->capturedPatch, doc_.capture->capturedPointSection, doc_.capture->capturedPoint);
    if (!point) {
        return ActResult::NotThere;
    }
    pick.target = Pick::Target::PlanePlace;
    pick.position = place;
    (plane == 1   ? pick.position.x
     : plane == 2 ? pick.position.y
                  : pick.position.z) = plane == 1   ? point->x
                                       : plane == 2 ? point->y
                                                    : point->z;
    take(pick);
    bendToPick();
    return ActResult::Done;
}

VelmoraView::ActResult VelmoraView::endDrag() {
    if (doc_.capture->pointDragging) {
        doc_.endDrag();
    } else if (doc_.capture->dragCorrectsLine) {
        doc_.endDragCorrection(principalPlane());
    } else {
        return ActResult::NotArmed;
    }
    return ActResult::Done;
}

} // namespace velmora

#include <array>
#include <cmath>
#include <cstddef>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "capture_address.h"
#include "command_rows.h"
#include "command_rules.h"
#include "messages.h"

namespace velmora {

// "Reflection to sft". The points of the zBlock are taken out into one list, moved there and put back in the same
// order, so that patches and zones go the same way.

namespace {

constexpr int planeCount = 3;

/// Calls the action with each point of the zBlock's patches.
template <class Action>
void forPatchPoints(VelmoraDoc& doc, Action action) {
    const std::vector<bool> inBlock = doc.blockMask();
    for (std::size_t k = 0; k < doc.patches.size(); ++k) {
        if (inBlock[k]) {
            for (PointList& section : doc.patches[k]) {
                for (zVec<double>& point : section) {
                    action(point);
                }
            }
        }
    }
}

/// Calls the action with zone, node and place of each node of the zBlock's zones; a zone without coordinates has none.
template <class Action>
void forZoneNodes(const VelmoraDoc& doc, Action action) {
    const std::vector<bool> inBlock = doc.blockMask();
    for (std::int32_t zone = 0; zone < countOf(doc.feRegion.blocks); ++zone) {
        zVec<double> at;
        for (std::int32_t node = 0;
             inBlock[static_cast<std::size_t>(zone)] && doc.feRegion.getNode(zone, node, at.x, at.y, at.z) == 0;
             ++node) {
            action(zone, node, at);
        }
    }
}

PointList pointsOfBlock(VelmoraDoc& doc) {
    PointList points;
    if (doc.structureKind == StructureKind::Structured) {
        forPatchPoints(doc, [&points](const zVec<double>& point) { points.push_back(point); });
    } else {
        forZoneNodes(doc, [&points](std::int32_t, std::int32_t, const zVec<double>& at) { points.push_back(at); });
    }
    return points;
}

void putPointsOfBlock(VelmoraDoc& doc, const PointList& points) {
    std::size_t next = 0;
    if (doc.structureKind == StructureKind::Structured) {
        forPatchPoints(doc, [&](zVec<double>& point) { point = points[next++]; });
        return;
    }
    forZoneNodes(doc, [&](std::int32_t zone, std::int32_t node, const zVec<double>&) {
        const zVec<double>& p = points[next++];
        doc.feRegion.setNode(zone, node, p.x, p.y, p.z);
    });
}

MessageText textOf(ShiftTrouble trouble) {
    switch (trouble) {
    case ShiftTrouble::CountsDiffer:
        return message::markerCountsDiffer;
    case ShiftTrouble::UnknownPlane:
        return message::unknownShiftPlane;
    case ShiftTrouble::MarkersIdentical:
        return message::markersIdentical;
    case ShiftTrouble::MatrixNotPositive:
        return message::shiftMatrixNotPositive;
    case ShiftTrouble::EquationsNotSolved:
        break;
    }
    return message::shiftEquationsNotSolved;
}

using Troubles = std::vector<ShiftTrouble>;

/// Where another plane moved the points all the same, the shift is done with a loss.
void tell(UserInterface& ui, const Troubles& troubles, bool moved) {
    for (const ShiftTrouble trouble : troubles) {
        const MessageText known = textOf(trouble);
        ui.showMessage({moved ? Severity::Warning : known.severity, known.text});
    }
}

/// Fits the maps of a plane and moves the points by them.
void shiftInPlane(VelmoraDoc& doc, PointList& points, int plane, int firstPlane, bool secondPass, Troubles& troubles) {
    doc.markerShift.PrepareShift(plane, doc.sftPoints, doc.sftTargets,
                                 [&troubles](ShiftTrouble trouble) { troubles.push_back(trouble); });
    // What is not fitted moves nothing.
    const BusyScope busy(doc.ui());
    doc.markerShift.ApplyShift(points, plane, firstPlane, secondPass, doc.sftTargets);
}

/// Both coordinates of the plane that is seen, then the third one by the maps of the next plane.
void shiftAsSeen(VelmoraDoc& doc, PointList& points, int plane, Troubles& troubles) {
    shiftInPlane(doc, points, plane, 0, false, troubles);
    shiftInPlane(doc, points, plane % planeCount + 1, plane, true, troubles);
}

/// The mean of two coordinates; where their sum leaves the range of numbers, the coordinate as it was.
double meanOr(double was, double a, double b) {
    const double mean = (a + b) * 0.5;
    return std::isfinite(mean) ? mean : was;
}

/// Each plane by itself; a coordinate becomes the mean of what the two planes that have it say.
void shiftInAllPlanes(VelmoraDoc& doc, PointList& points, Troubles& troubles) {
    std::array<PointList, planeCount> byPlane;
    for (int plane = 1; plane <= planeCount; ++plane) {
        PointList& moved = byPlane[static_cast<std::size_t>(plane - 1)];
        moved = points;
        shiftInPlane(doc, moved, plane, 0, false, troubles);
    }
    const auto& [yz, xz, xy] = byPlane;
    for (std::size_t i = 0; i < points.size(); ++i) {
        zVec<double>& p = points[i];
        p = {meanOr(p.x, xz[i].x, xy[i].x), meanOr(p.y, yz[i].y, xy[i].y), meanOr(p.z, yz[i].z, xz[i].z)};
    }
}

/// Moves the zBlock from the shifted markers towards the initial ones, in the planes that the view says.
void ReflectToSft(VelmoraDoc& doc) {
    doc.beginPatchCommand(Extent::Stays);
    if (doc.structureKind != StructureKind::Structured && doc.structureKind != StructureKind::Unstructured) {
        doc.redraw();
        doc.ui().showMessage(message::shiftOfNoKind);
        return;
    }
    const PointList before = pointsOfBlock(doc);
    PointList points = before;
    Troubles troubles;
    const int plane = doc.principalPlane();
    if (plane == 0) {
        shiftInAllPlanes(doc, points, troubles);
    } else {
        shiftAsSeen(doc, points, plane, troubles);
    }
    tell(doc.ui(), troubles, points != before);
    putPointsOfBlock(doc, points);
    followCapturedPoint(doc);
    doc.redraw();
}

} // namespace

std::span<const Command> markerShiftCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "model.reflectToSft",
         .menuText = "Reflection to sft",
         .statusText = "Shift zBlock from the shifted to the initial markers",
         .run = &ReflectToSft,
         .off = [](Doc d) { return nonOrField(d) || noBlock(d); },
         .checked = [](Doc) { return true; },
         .places = {{Transformations, 240}}},
    };
    return rows;
}

} // namespace velmora

#include "model_picks.h"

#include <array>
#include <cmath>

#include "DocumentState.h"
#include "camera.h"
#include "vectors.h"
#include "view_extent.h"

namespace velmora {

namespace {

// How far from the line of sight the nearest point may lie, as a fraction of the model's diagonal.
constexpr double pointLimit = 0.01;
constexpr double sectionLimit = 0.05;
constexpr double lineLimit = 0.5;
/// A box so much smaller than what the view shows is a single place.
constexpr double noDiagonal = 1e-9;

/// Where the box is too small or too large for its diagonal, that of the radius which the view was given.
double modelDiagonal(const DocumentState& document) {
    const double ofBox = lengthOf(document.boxMax - document.boxMin);
    const double ofView = diagonalOf(document.modelRadius);
    return std::isfinite(ofBox) && ofBox > noDiagonal * ofView ? ofBox : ofView;
}

PickFilter blockFilter(const DocumentState& document) {
    PickFilter filter;
    if (document.capture->patchCaptured && document.blockCount > 0) {
        filter.patches = document.blockMask();
    }
    return filter;
}

Pick pickOf(const DocumentState& document, Pick::Target target, const std::optional<NearestPoint>& nearest,
            double limit) {
    Pick pick;
    pick.target = target;
    if (nearest) {
        pick.found = nearest->distance <= limit * modelDiagonal(document);
        pick.patch = nearest->patch;
        pick.section = nearest->section;
        pick.point = nearest->point;
        pick.position = nearest->position;
    }
    return pick;
}

Pick pickNode(const DocumentState& document, ModelIndex& index, const PixelLine& ray) {
    return pickOf(document, Pick::Target::Node, index.nodes().nearest(ray, captureFilter(document, false)), pointLimit);
}

} // namespace

const PatchIndex& ModelIndex::patches() {
    return upToDate(patches_, patchRevision_, doc_.patches);
}

const ZoneIndex& ModelIndex::zones() {
    return upToDate(zones_, zoneRevision_, doc_.feRegion);
}

const NodeIndex& ModelIndex::nodes() {
    return upToDate(nodes_, nodeRevision_, doc_.feRegion);
}

template <class Index, class Model>
const Index& ModelIndex::upToDate(Index& index, std::optional<std::uint64_t>& revision, const Model& model) {
    if (revision != doc_.geometryRevision()) {
        index.takeIn(model);
        revision = doc_.geometryRevision();
    }
    return index;
}

PickFilter captureFilter(const DocumentState& document, bool curve) {
    const CaptureState& capture = *document.capture;
    if (document.structureKind == StructureKind::Unstructured) {
        return capture.freePointArmed ? PickFilter() : blockFilter(document);
    }
    PickFilter filter = blockFilter(document);
    if (curve) {
        return filter;
    }
    filter.patch = capture.capturedPatch;
    if (!capture.freePointArmed) {
        filter.section = capture.sectionCaptured ? capture.capturedSection : -1;
        filter.point = capture.lineCaptured ? capture.capturedLine : -1;
    }
    return filter;
}

Pick pickPoint(const DocumentState& document, ModelIndex& index, const PixelLine& ray) {
    if (document.structureKind == StructureKind::Unstructured) {
        return pickNode(document, index, ray);
    }
    const PickFilter filter = captureFilter(document, false);
    return pickOf(document, Pick::Target::Point, index.patches().nearest(document.patches, ray, filter), pointLimit);
}

Pick pickSection(const DocumentState& document, ModelIndex& index, const PixelLine& ray) {
    const auto nearest = index.patches().nearest(document.patches, ray, captureFilter(document, true));
    Pick pick = pickOf(document, Pick::Target::Section, nearest, sectionLimit);
    if (pick.found) {
        const Patch& patch = document.patches[static_cast<std::size_t>(pick.patch)];
        pick.points = countOf(patch[static_cast<std::size_t>(pick.section)]);
    }
    return pick;
}

Pick pickLine(const DocumentState& document, ModelIndex& index, const PixelLine& ray) {
    const auto nearest = index.patches().nearest(document.patches, ray, captureFilter(document, true));
    Pick pick = pickOf(document, Pick::Target::Line, nearest, lineLimit);
    if (pick.found) {
        pick.points = countOf(document.patches[static_cast<std::size_t>(pick.patch)]);
    }
    return pick;
}

Pick pickPatch(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Pick::Target target) {
    Pick pick;
    pick.target = target;
    pick.patch = document.structureKind == StructureKind::Unstructured
                     ? index.zones().pickZone(document.feRegion, ray)
                     : index.patches().pickPatch(document.patches, ray);
    pick.found = pick.patch >= 0;
    return pick;
}

Pick pickDragPlace(const DocumentState& document, const PixelLine& ray) {
    return pickOf(document, Pick::Target::DragPlace, nearestGridPoint(document.dragPatches, ray, {}), pointLimit);
}

Pick pickPlanePlace(const DocumentState& document, const PixelLine& ray, int plane) {
    const CaptureState& capture = *document.capture;
    Pick pick;
    pick.target = Pick::Target::PlanePlace;
    const auto point = document.positionAt(capture.capturedPatch, capture.capturedPointSection, capture.capturedPoint);
    if (document.structureKind == StructureKind::Unstructured || !point) {
        return pick;
    }
    pick.found = true;
    pick.position = capture.pickedPoint;
    if (plane == 0) {
        return pick;
    }
    constexpr std::array<double zVec<double>::*, 3> axes = {&zVec<double>::x, &zVec<double>::y, &zVec<double>::z};
    const auto axis = axes.at(static_cast<std::size_t>(plane) - 1);
    const double d = ray.farPoint.*axis - ray.nearPoint.*axis;
    if (std::abs(d) < 1e-6) {
        pick.position = ray.nearPoint;
        return pick;
    }
    const double t = (*point.*axis - ray.nearPoint.*axis) / d;
    pick.position = ray.nearPoint + (ray.farPoint - ray.nearPoint) * t;
    pick.position.*axis = *point.*axis;
    return pick;
}

} // namespace velmora

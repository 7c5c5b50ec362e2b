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

/// Nearer than this to each other, as a fraction of the model's diagonal, surfaces do not hide each other's points.
constexpr double hidingMargin = 1e-6;

/// Whether surfaces are drawn that hide what lies behind them.
bool showsSurface(const DocumentState& document) {
    return document.surfaceMode &&
           (document.structureKind == StructureKind::Unstructured || document.fileKind == FileKind::Apt);
}

bool passes(const PickFilter& filter, std::int32_t patch, std::int32_t section, std::int32_t point) {
    return (filter.patch < 0 || filter.patch == patch) && (filter.section < 0 || filter.section == section) &&
           (filter.point < 0 || filter.point == point) &&
           (filter.patches.empty() || filter.patches[static_cast<std::size_t>(patch)]);
}

/// The point that is meant; see Sight.
std::optional<NearestPoint> meantPoint(const DocumentState& document, ModelIndex& index, const PixelLine& ray,
                                       const PickFilter& filter, double limit, Sight sight) {
    const PatchList& patches = document.patches;
    auto nearest = index.patches().nearest(patches, ray, filter);
    if (sight == Sight::Through || !nearest || !showsSurface(document) ||
        !index.patches().hides(patches, ray, nearest->position, hidingMargin * modelDiagonal(document))) {
        return nearest;
    }
    const auto cell = index.patches().firstCell(patches, ray);
    if (!cell) {
        return nearest;
    }
    const LineDistance distanceTo(ray);
    NearestSearch corners(distanceTo);
    const Patch& patch = patches[static_cast<std::size_t>(cell->patch)];
    for (std::int32_t n = cell->section; n <= cell->section + 1; ++n) {
        for (std::int32_t m = cell->point; m <= cell->point + 1; ++m) {
            if (passes(filter, cell->patch, n, m)) {
                corners.look(cell->patch, n, m, patch[static_cast<std::size_t>(n)][static_cast<std::size_t>(m)]);
            }
        }
    }
    const auto corner = corners.result();
    return corner && corner->distance <= limit * modelDiagonal(document) ? corner : nearest;
}

/// The same for the nodes of zones.
std::optional<NearestPoint> meantNode(const DocumentState& document, ModelIndex& index, const PixelLine& ray,
                                      const PickFilter& filter, Sight sight) {
    const zRegion_fe& region = document.feRegion;
    auto nearest = index.nodes().nearest(ray, filter);
    if (sight == Sight::Through || !nearest || !showsSurface(document) ||
        !index.zones().hides(region, ray, nearest->position, hidingMargin * modelDiagonal(document))) {
        return nearest;
    }
    const auto triangle = index.zones().firstTriangle(region, ray);
    if (!triangle || !passes(filter, triangle->zone, -1, -1)) {
        return nearest;
    }
    const zBlock_fe& zone = *region.blocks[static_cast<std::size_t>(triangle->zone)];
    const ZoneCoordinates at = coordinatesOf(zone.variables);
    const LineDistance distanceTo(ray);
    NearestSearch corners(distanceTo);
    for (std::size_t i = 0; i < 3; ++i) {
        const std::int32_t node = zone.connectivity[4 * triangle->element + i];
        const auto place = static_cast<std::size_t>(node);
        corners.look(triangle->zone, -1, node, {at.x->data[place], at.y->data[place], at.z->data[place]});
    }
    const auto corner = corners.result();
    return corner && corner->distance <= pointLimit * modelDiagonal(document) ? corner : nearest;
}

/// The nearest point or node that the filter lets through.
Pick pickThrough(const PickFilter& filter, const DocumentState& document, ModelIndex& index, const PixelLine& ray,
                 Sight sight) {
    if (document.structureKind == StructureKind::Unstructured) {
        return pickOf(document, Pick::Target::Node, meantNode(document, index, ray, filter, sight), pointLimit);
    }
    const auto nearest = meantPoint(document, index, ray, filter, pointLimit, sight);
    return pickOf(document, Pick::Target::Point, nearest, pointLimit);
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

Pick pickPoint(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight) {
    return pickThrough(captureFilter(document, false), document, index, ray, sight);
}

Pick pickToMeasure(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight) {
    Pick pick = pickThrough(PickFilter(), document, index, ray, sight);
    if (pick.found) {
        return pick;
    }
    pick = Pick();
    pick.target = Pick::Target::PlanePlace;
    if (const auto place = firstPlace(document, index, ray)) {
        pick.found = true;
        pick.position = *place;
    }
    return pick;
}

Pick pickSection(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight) {
    const auto nearest = meantPoint(document, index, ray, captureFilter(document, true), sectionLimit, sight);
    Pick pick = pickOf(document, Pick::Target::Section, nearest, sectionLimit);
    if (pick.found) {
        const Patch& patch = document.patches[static_cast<std::size_t>(pick.patch)];
        pick.points = countOf(patch[static_cast<std::size_t>(pick.section)]);
    }
    return pick;
}

Pick pickLine(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight) {
    const auto nearest = meantPoint(document, index, ray, captureFilter(document, true), lineLimit, sight);
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

std::optional<Pick> pickCandidate(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight) {
    const CaptureState& capture = *document.capture;
    Pick pick;
    if (capture.pointCaptureArmed || capture.freePointArmed) {
        pick = pickPoint(document, index, ray, sight);
    } else if (capture.sectionCaptureArmed) {
        pick = pickSection(document, index, ray, sight);
    } else if (capture.lineCaptureArmed) {
        pick = pickLine(document, index, ray, sight);
    } else if (capture.patchRemoving) {
        pick = pickPatch(document, index, ray, Pick::Target::Removal);
    } else if (capture.patchCaptureArmed) {
        pick = pickPatch(document, index, ray, Pick::Target::WholePatch);
    }
    return pick.found ? std::optional(pick) : std::nullopt;
}

std::optional<zVec<double>> firstPlace(const DocumentState& document, ModelIndex& index, const PixelLine& ray) {
    if (document.structureKind == StructureKind::Unstructured) {
        const auto triangle = index.zones().firstTriangle(document.feRegion, ray);
        return triangle ? std::optional(triangle->place) : std::nullopt;
    }
    const auto cell = index.patches().firstCell(document.patches, ray);
    return cell ? std::optional(cell->place) : std::nullopt;
}

} // namespace velmora

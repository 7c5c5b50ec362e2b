#pragma once

#include <cstdint>
#include <optional>

#include "PatchIndex.h"
#include "Pick.h"
#include "ZoneIndex.h"

namespace velmora {

struct DocumentState;

/// The indices over a document's model, taken in anew when it is asked for one after the geometry changed.
class ModelIndex {
public:
    explicit ModelIndex(const DocumentState& document) : doc_(document) {}

    const PatchIndex& patches();
    const ZoneIndex& zones();
    const NodeIndex& nodes();

private:
    template <class Index, class Model>
    const Index& upToDate(Index& index, std::optional<std::uint64_t>& revision, const Model& model);

    const DocumentState& doc_;
    PatchIndex patches_;
    ZoneIndex zones_;
    NodeIndex nodes_;
    std::optional<std::uint64_t> patchRevision_; ///< of the geometry that was taken in
    std::optional<std::uint64_t> zoneRevision_;
    std::optional<std::uint64_t> nodeRevision_;
};

/// Whom a pick is for. By number and in scripts the nearest point counts, wherever it lies. A person who looks at a
/// surface means what is in sight: where the nearest point is hidden by it, the nearest corner of the cell under the
/// mouse is taken in its place. Only where none of these lies within the pick's limit, or none is let through, the
/// hidden one is taken after all. Distances, limits and the order among equals are the same for both.
enum class Sight { Through, SurfaceFirst };
/// What the click of a point regime, or with `curve` that of a section or a line, is let through to.
PickFilter captureFilter(const DocumentState& document, bool curve);

// What each regime finds under a line of sight. They write nothing but the index.

/// The nearest point or node, by the kind of the model, of what the capture lets through.
Pick pickPoint(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight = Sight::Through);
/// The section of the nearest point.
Pick pickSection(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight = Sight::Through);
/// The line of the nearest point.
Pick pickLine(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight = Sight::Through);
/// The first patch or zone with a hit that no other hides; `target` says what it is looked for.
Pick pickPatch(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Pick::Target target);
/// The nearest point of the drag grid.
Pick pickDragPlace(const DocumentState& document, const PixelLine& ray);
/// Where the ray meets the coordinate plane `plane` (see DocumentView::principalPlane) through the captured point; with
/// 0 the place of the pick before.
Pick pickPlanePlace(const DocumentState& document, const PixelLine& ray, int plane);
/// What a click would take in the regime that waits for one: none when no regime does, or nothing lies near enough.
std::optional<Pick> pickCandidate(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight);
/// What a click takes to measure from, whatever is captured: the nearest point or node, else where the ray meets the
/// surface first (PlanePlace, without numbers).
Pick pickToMeasure(const DocumentState& document, ModelIndex& index, const PixelLine& ray, Sight sight);
/// Where the line meets the model first; none where it meets nothing.
std::optional<zVec<double>> firstPlace(const DocumentState& document, ModelIndex& index, const PixelLine& ray);

} // namespace velmora

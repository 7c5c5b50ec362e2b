#include "draw_lists.h"

#include <algorithm>

#include "DocumentState.h"
#include "camera.h"
#include "same_point.h"
#include "vectors.h"

namespace velmora {

namespace {

constexpr Colour white{1.0F, 1.0F, 1.0F, 1.0F};
constexpr Colour red{1.0F, 0.0F, 0.0F, 1.0F};
constexpr Colour yellow{1.0F, 1.0F, 0.0F, 1.0F};
constexpr Colour green{0.0F, 1.0F, 0.0F, 1.0F};
constexpr Colour bufferBlue{0.2F, 0.2F, 1.0F, 1.0F};
constexpr Colour removedPatch{0.4F, 0.4F, 0.0F, 1.0F};
constexpr Colour blockPatch{1.0F, 1.0F, 0.1F, 1.0F};

constexpr std::array<Colour, 5> patchColours{{{0.5F, 0.5F, 1.0F, 1.0F},
                                              {0.5F, 1.0F, 0.5F, 1.0F},
                                              {1.0F, 0.5F, 0.5F, 1.0F},
                                              {0.7F, 0.7F, 0.7F, 1.0F},
                                              {1.0F, 0.5F, 1.0F, 1.0F}}};
constexpr std::array<Colour, 5> markerColours{{{0.0F, 0.0F, 1.0F, 1.0F},
                                               {0.0F, 1.0F, 0.0F, 1.0F},
                                               {1.0F, 0.0F, 0.0F, 1.0F},
                                               {0.7F, 0.7F, 0.7F, 1.0F},
                                               {1.0F, 0.5F, 1.0F, 1.0F}}};

constexpr float capturedPointSize = 6.0F;

/// Builds the lists of one document state.
class ListBuilder {
public:
    ListBuilder(const DocumentState& document, const PatchList& patches, ModelList memory)
        : doc_(document), patches_(patches), inBlock_(document.blockMask()), curves_(std::move(memory.curves)),
          list_(std::move(memory.list)) {
        list_.clear();
        curves_.assign(patches.size(), {});
    }

    ModelList build(int number);
    DrawList buildPatchesAlone(int number);

private:
    void wire();
    void surface();
    void zoneWire();
    void zoneSurface();
    bool shown(std::int32_t patch) const { return !doc_.showBlockOnly || inBlock_[static_cast<std::size_t>(patch)]; }
    template <class Action>
    void forShownPatches(Action action) const;

    void firstPoints();
    void doublePoints();
    void blockMarkers();
    void bufferPoints(bool withInterLine);
    void bufferLine(const PointList& points);
    void sections();
    void lines();
    void reference();
    void quadStrips();
    void zones(bool withNormals);
    void addTriangles(const zBlock_fe& zone, const ZoneCoordinates& at, bool withNormals);
    void addLine(const Patch& patch, std::size_t index);
    void pointsOf(const PointList& points, float size, const Colour& colour);

    const DocumentState& doc_;
    const PatchList& patches_; ///< what is drawn as the document's patches
    std::vector<bool> inBlock_;
    std::vector<CurveBatches> curves_;
    DrawList list_;
};

template <class Action>
void ListBuilder::forShownPatches(Action action) const {
    for (std::int32_t k = 0; k < countOf(patches_); ++k) {
        if (shown(k)) {
            action(k, patches_[static_cast<std::size_t>(k)]);
        }
    }
}

void ListBuilder::pointsOf(const PointList& points, float size, const Colour& colour) {
    if (points.empty()) {
        return;
    }
    list_.begin(Primitive::Points, colour).pointSize = size;
    list_.addVertices(points);
}

void ListBuilder::addLine(const Patch& patch, std::size_t index) {
    for (const PointList& section : patch) {
        if (index < section.size()) {
            list_.vertex(section[index]);
        }
    }
}

void ListBuilder::firstPoints() {
    forShownPatches([this](std::int32_t, const Patch& patch) {
        for (const PointList& section : patch) {
            if (!section.empty()) {
                list_.point(section.front(), 6.0F, red);
            }
        }
        if (!patch.empty()) {
            pointsOf(patch.front(), 6.0F, yellow);
        }
    });
}

void ListBuilder::doublePoints() {
    forShownPatches([this](std::int32_t, const Patch& patch) {
        for (const PointList& section : patch) {
            for (std::size_t m = 0; m + 1 < section.size(); ++m) {
                if (isDoublePoint(section[m], section[m + 1])) {
                    list_.point(section[m], 8.0F, green);
                }
            }
        }
    });
    if (doc_.fileKind != FileKind::Apt) {
        return;
    }
    for (const Patch& patch : doc_.patches) {
        for (std::size_t n = 0; n + 1 < patch.size(); ++n) {
            const std::size_t count = std::min(patch[n].size(), patch[n + 1].size());
            for (std::size_t m = 0; m < count; ++m) {
                if (isDoublePoint(patch[n][m], patch[n + 1][m])) {
                    list_.point(patch[n][m], 8.0F, green);
                }
            }
        }
    }
}

void ListBuilder::blockMarkers() {
    const auto marked = std::min<std::size_t>(static_cast<std::size_t>(doc_.blockCount), markerColours.size());
    for (std::size_t i = 0; i < marked; ++i) {
        const std::int32_t k = doc_.blockList[i];
        if (k < 0 || k >= countOf(doc_.patches)) {
            continue;
        }
        const Patch& patch = doc_.patches[static_cast<std::size_t>(k)];
        list_.begin(Primitive::Points, markerColours[i]).pointSize = 3.0F;
        for (std::int32_t n = 0; n < countOf(patch); ++n) {
            const PointList& section = patch[static_cast<std::size_t>(n)];
            for (std::int32_t m = 0; m < countOf(section); ++m) {
                if (n != doc_.capture->capturedSection && m != doc_.capture->capturedLine) {
                    list_.vertex(section[static_cast<std::size_t>(m)]);
                }
            }
        }
    }
}

void ListBuilder::bufferLine(const PointList& points) {
    std::size_t first = 0;
    if (doc_.showFirstPoints && !points.empty()) {
        list_.point(points.front(), 6.0F, red);
        first = 1;
    }
    for (std::size_t i = first; i < points.size(); ++i) {
        list_.framedPoint(points[i], 5.0F, white, 8.0F, bufferBlue);
    }
}

void ListBuilder::bufferPoints(bool withInterLine) {
    bufferLine(doc_.lineBuffer);
    pointsOf(doc_.sftPoints, 6.0F, red);
    pointsOf(doc_.sftTargets, 6.0F, yellow);
    if (withInterLine) {
        bufferLine(doc_.interLine);
    }
    if (doc_.pointClipboardFull) {
        list_.framedPoint(doc_.pointClipboard, 5.0F, white, 8.0F, green);
    }
}

void ListBuilder::sections() {
    PatchColours colours(doc_);
    forShownPatches([this, &colours](std::int32_t k, const Patch& patch) {
        const Colour colour = colours.next(k);
        curves_[static_cast<std::size_t>(k)].firstSection = list_.batches.size();
        for (const PointList& section : patch) {
            if (!section.empty()) {
                list_.begin(Primitive::LineStrip, colour);
                list_.addVertices(section);
            }
        }
    });
}

void ListBuilder::lines() {
    PatchColours colours(doc_);
    forShownPatches([this, &colours](std::int32_t k, const Patch& patch) {
        const Colour colour = colours.next(k);
        curves_[static_cast<std::size_t>(k)].firstLine = list_.batches.size();
        for (std::int32_t m = 0; m < lineCount(patch); ++m) {
            list_.begin(Primitive::LineStrip, colour);
            addLine(patch, static_cast<std::size_t>(m));
        }
    });
}

void ListBuilder::reference() {
    for (const auto& zone : doc_.referenceRegion.blocks) {
        if (doc_.secondKind != SecondKind::Wrl) {
            break;
        }
        if (const ZoneCoordinates at = coordinatesOf(zone->variables)) {
            list_.begin(Primitive::Triangles, red);
            addTriangles(*zone, at, false);
        }
    }
    if (doc_.secondKind != SecondKind::Dat) {
        return;
    }
    for (const Patch& patch : doc_.referencePatches) {
        for (const PointList& section : patch) {
            if (!section.empty()) {
                list_.begin(Primitive::LineStrip, red);
                list_.addVertices(section);
            }
        }
        for (std::int32_t m = 0; m < lineCount(patch); ++m) {
            list_.begin(Primitive::LineStrip, red);
            addLine(patch, static_cast<std::size_t>(m));
        }
    }
}

void ListBuilder::wire() {
    const std::size_t strips = doc_.fileKind == FileKind::Apt ? 2 : 1;
    list_.vertices.reserve(strips * static_cast<std::size_t>(pointTotal(doc_.patches)));
    if (doc_.showFirstPoints) {
        firstPoints();
    }
    if (doc_.showDoublePoints) {
        doublePoints();
    }
    if (doc_.blockCount >= 1 && doc_.showZBlockMarkers) {
        blockMarkers();
    }
    if (doc_.showBuffer) {
        bufferPoints(true);
    }
    if (doc_.markersOpen) {
        bufferLine(doc_.markers);
    }
    sections();
    if (doc_.fileKind == FileKind::Apt) {
        lines();
    }
    reference();
}

void ListBuilder::quadStrips() {
    PatchColours colours(doc_);
    forShownPatches([this, &colours](std::int32_t k, const Patch& patch) {
        const Colour colour = colours.next(k);
        // Each row of normals serves the strips on both its sides.
        std::vector<zVec<double>> lower;
        std::vector<zVec<double>> upper;
        const auto rowNormals = [&patch](std::size_t n, std::vector<zVec<double>>& normals) {
            normals.resize(patch[n].size());
            for (std::size_t m = 0; m < normals.size(); ++m) {
                normals[m] = gridNormal(patch, n, m);
            }
        };
        for (std::size_t n = 0; n + 1 < patch.size(); ++n) {
            if (n == 0) {
                rowNormals(0, lower);
            }
            rowNormals(n + 1, upper);
            list_.begin(Primitive::QuadStrip, colour).lit = true;
            for (std::size_t m = patch[n].size(); m-- > 0;) {
                list_.vertex(patch[n][m], lower[m]);
                list_.vertex(patch[n + 1][m], upper[m]);
            }
            lower.swap(upper);
        }
    });
}

void ListBuilder::surface() {
    const auto total = 2 * static_cast<std::size_t>(pointTotal(doc_.patches));
    list_.vertices.reserve(total);
    list_.normals.reserve(total);
    quadStrips();
    if (doc_.showFirstPoints) {
        firstPoints();
    }
    if (doc_.showBuffer) {
        bufferPoints(false);
    }
    if (doc_.showDoublePoints) {
        doublePoints();
    }
}

// ---- Zones ----------------------------------------------------------------------------------------------------------

/// The unit normal of the corner between `before` and `behind`.
zVec<double> cornerNormal(const zVec<double>& before, const zVec<double>& corner, const zVec<double>& behind) {
    return unitOf(cross(corner - before, behind - corner));
}

void ListBuilder::addTriangles(const zBlock_fe& zone, const ZoneCoordinates& at, bool withNormals) {
    const auto corner = [&](std::size_t entry) {
        const auto node = static_cast<std::size_t>(zone.connectivity[entry]);
        return zVec<double>(at.x->data[node], at.y->data[node], at.z->data[node]);
    };
    for (std::size_t entry = 0; entry + 3 < zone.connectivity.size(); entry += 4) {
        const std::array<zVec<double>, 3> v = {corner(entry), corner(entry + 1), corner(entry + 2)};
        for (std::size_t i = 0; i < 3; ++i) {
            if (withNormals) {
                list_.vertex(v[i], cornerNormal(v[(i + 2) % 3], v[i], v[(i + 1) % 3]));
            } else {
                list_.vertex(v[i]);
            }
        }
    }
}

void ListBuilder::zones(bool withNormals) {
    std::size_t corners = 0;
    for (const auto& zone : doc_.feRegion.blocks) {
        corners += zone->connectivity.size() / 4 * 3;
    }
    list_.vertices.reserve(corners);
    if (withNormals) {
        list_.normals.reserve(corners);
    }
    PatchColours colours(doc_);
    for (std::int32_t k = 0; k < doc_.partCount(); ++k) {
        const zBlock_fe& zone = *doc_.feRegion.blocks[static_cast<std::size_t>(k)];
        const ZoneCoordinates at = coordinatesOf(zone.variables);
        if (!shown(k)) {
            continue;
        }
        const Colour colour = colours.next(k);
        if (at) {
            list_.begin(Primitive::Triangles, colour).lit = withNormals;
            addTriangles(zone, at, withNormals);
        }
    }
}

void ListBuilder::zoneWire() {
    zones(false);
    if (doc_.showBuffer) {
        bufferPoints(false);
    }
}

void ListBuilder::zoneSurface() {
    zones(true);
}

ModelList ListBuilder::build(int number) {
    list_.number = number;
    switch (number) {
    case 1:
        wire();
        break;
    case 2:
        surface();
        break;
    case 3:
        zoneWire();
        break;
    case 4:
        zoneSurface();
        break;
    default:
        list_.number = 0;
        break;
    }
    return {std::move(list_), std::move(curves_)};
}

DrawList ListBuilder::buildPatchesAlone(int number) {
    list_.number = number;
    if (number == 2) {
        quadStrips();
    } else {
        sections();
        if (doc_.fileKind == FileKind::Apt) {
            lines();
        }
    }
    return std::move(list_);
}

} // namespace

PatchColours::PatchColours(const DocumentState& document)
    : document_(document), inBlock_(document.blockMask()), last_(patchColours[0]) {}

Colour PatchColours::next(std::int32_t patch) {
    if (patch - base_ > 4) {
        base_ += 5;
    }
    const std::int32_t place = patch - base_;
    const bool member = inBlock_[static_cast<std::size_t>(patch)];
    if (document_.capture->patchRemoving && patch == document_.capture->patchToRemove) {
        last_ = removedPatch;
    } else if (member || (document_.capture->patchCaptureArmed && patch == document_.capture->capturedPatch)) {
        // Whatever regime waits: commands work on the zBlock as long as it holds something.
        last_ = blockPatch;
    } else if (place < static_cast<std::int32_t>(patchColours.size())) {
        last_ = patchColours[static_cast<std::size_t>(place)];
    }
    return last_;
}

zVec<double> gridNormal(const Patch& patch, std::size_t n, std::size_t m) {
    const std::size_t before = n == 0 ? 0 : n - 1;
    const std::size_t behind = std::min(n + 1, patch.size() - 1);
    const std::size_t left = m == 0 ? 0 : m - 1;
    const std::size_t right = std::min(m + 1, patch[n].size() - 1);
    const zVec<double> first = patch[before][left] - patch[behind][right];
    const zVec<double> second = patch[behind][left] - patch[before][right];
    return unitOf(cross(first, second)) * -1.0;
}

int listNumberFor(const DocumentState& document) {
    return listNumberFor(document, regularityOf(document.patches) != Regularity::Irregular);
}

int listNumberFor(const DocumentState& document, bool isGrid) {
    if (document.holdsNothing()) {
        return 0;
    }
    if (document.structureKind == StructureKind::Unstructured) {
        return document.surfaceMode ? 4 : 3;
    }
    if (document.structureKind != StructureKind::Structured) {
        return 0;
    }
    // Strips and normals read neighbouring sections at the same index: only a regular grid has them.
    return document.surfaceMode && document.fileKind == FileKind::Apt && isGrid ? 2 : 1;
}

ModelList buildModelList(const DocumentState& document, int number, ModelList memory) {
    return ListBuilder(document, document.patches, std::move(memory)).build(number);
}

DrawList buildPatchPicture(const DocumentState& document, const PatchList& patches, int number) {
    return ListBuilder(document, patches, {}).buildPatchesAlone(number);
}

std::vector<Accent> capturedCurves(const DocumentState& document, const ModelList& model) {
    const CaptureState& capture = *document.capture;
    const auto k = static_cast<std::size_t>(capture.capturedPatch);
    if (model.list.number != 1 || capture.capturedPatch < 0 || k >= model.curves.size()) {
        return {};
    }
    const Patch& patch = document.patches[k];
    const CurveBatches& curves = model.curves[k];
    std::vector<Accent> accents;
    const auto section = static_cast<std::size_t>(capture.capturedSection);
    if ((capture.sectionCaptureArmed || capture.sectionCaptured) && curves.firstSection &&
        capture.capturedSection >= 0 && section < patch.size() && !patch[section].empty()) {
        // Sections without points have no strip.
        const auto before = std::count_if(patch.begin(), patch.begin() + capture.capturedSection,
                                          [](const PointList& points) { return !points.empty(); });
        accents.push_back({*curves.firstSection + static_cast<std::size_t>(before), capturedPointSize, white});
    }
    if ((capture.lineCaptureArmed || capture.lineCaptured) && curves.firstLine && capture.capturedLine >= 0 &&
        capture.capturedLine < lineCount(patch)) {
        accents.push_back(
            {*curves.firstLine + static_cast<std::size_t>(capture.capturedLine), capturedPointSize, white});
    }
    return accents;
}

CaptureColours captureColoursOf(const DocumentState& document) {
    const CaptureState& capture = *document.capture;
    CaptureColours colours;
    colours.removed = capture.patchRemoving ? capture.patchToRemove : -1;
    colours.patch = capture.patchCaptureArmed ? capture.capturedPatch : -1;
    colours.block.assign(document.blockList.begin(), document.blockList.begin() + document.blockCount);
    if (document.showZBlockMarkers && document.blockCount > 0) {
        colours.section = capture.capturedSection;
        colours.line = capture.capturedLine;
    }
    return colours;
}

DrawList buildDrawList(const DocumentState& document, int number, DrawList memory) {
    ModelList model = buildModelList(document, number, {std::move(memory), {}});
    model.list.accents = capturedCurves(document, model);
    return model.list.accents.empty() ? std::move(model.list) : model.list.flattened();
}

} // namespace velmora

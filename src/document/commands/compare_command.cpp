#include "compare.h"

#include <algorithm>
#include <utility>

#include "DialogValues.h"
#include "Digest.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "dat_geometry.h"
#include "file_types.h"
#include "load_files.h"
#include "messages.h"
#include "path_names.h"
#include "report_lines.h"
#include "show_dialog.h"

namespace velmora {

// The distance of the zBlock, or of all, from another surface.

namespace {

constexpr std::int32_t toSecondGeometry = 1;
constexpr std::int32_t toTheOtherPatches = 2;

/// The geometry of a file of any type that has a surface. None, with a message, when it could not be read whole.
std::optional<TriangleMesh> surfaceOfFile(VelmoraDoc& doc, const std::filesystem::path& path) {
    const std::string extension = extensionOf(path);
    PatchList patches;
    zRegion structured;
    zRegion_fe region;
    if (extension == "apt" || extension == "skl") {
        if (!readPatches(doc, path, extension, patches)) {
            return std::nullopt;
        }
    } else if (extension == "dat" || extension == "wrl" || extension == "stl") {
        if (!readZones(doc, path, structured, region)) {
            return std::nullopt;
        }
        patches = zonesToPatches(structured, ZoneDetail::Whole).patches;
    } else {
        doc.ui().showMessage(message::fileTypeNotSupported);
        return std::nullopt;
    }
    return surfaceTriangles(patches, region, std::vector<bool>(std::max(patches.size(), region.blocks.size())));
}

std::optional<TriangleMesh> surfaceOfChosenFile(VelmoraDoc& doc) {
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.types = fileTypesNamed({"apt", "skl", "dat", "wrl", "stl"});
    request.command = "model.compare";
    const std::vector<std::filesystem::path> paths = doc.ui().chooseFiles(request);
    return paths.empty() ? std::nullopt : surfaceOfFile(doc, fullPath(paths.front()));
}

/// None when the user cancelled, or was told why there is none.
std::optional<TriangleMesh> surfaceToCompareWith(VelmoraDoc& doc, std::int32_t target) {
    if (target == toSecondGeometry) {
        const std::size_t parts = std::max(doc.referencePatches.size(), doc.referenceRegion.blocks.size());
        return surfaceTriangles(doc.referencePatches, doc.referenceRegion, std::vector<bool>(parts));
    }
    return target == toTheOtherPatches ? surfaceTriangles(doc.patches, doc.feRegion, doc.blockMask())
                                       : surfaceOfChosenFile(doc);
}

std::string comparisonText(const Comparison& comparison) {
    std::string text = "Largest distance " + shortNumber(comparison.largest);
    if (const auto& at = comparison.at) {
        text += " at Patch K=" + std::to_string(at->part + 1);
        text += at->section < 0 ? "" : ", Section N=" + std::to_string(at->section + 1);
        text += ", Point M=" + std::to_string(at->point + 1);
    }
    return text + "; mean " + shortNumber(comparison.mean) + ", rms " + shortNumber(comparison.rms);
}

/// Measures how far the points of the zBlock, else of the model, are from another surface.
void CompareModel(VelmoraDoc& doc) {
    if (!showDialog(doc.ui(), doc.dialogs->compare)) {
        return;
    }
    const std::optional<TriangleMesh> mesh = surfaceToCompareWith(doc, doc.dialogs->compare.target);
    if (!mesh) {
        return;
    }
    {
        const BusyScope busy(doc.ui());
        const NearestTree surface(*mesh);
        if (!surface.empty()) {
            doc.foundComparison = doc.structureKind == StructureKind::Unstructured
                                      ? compareZones(doc.feRegion, doc.chosenMask(), surface, progressTo(doc.ui()))
                                      : comparePatches(doc.patches, doc.chosenMask(), surface, progressTo(doc.ui()));
            doc.comparedDigest = geometryDigest(doc.patches, doc.feRegion);
            if (doc.dialogs->colours.ofCompare()) {
                doc.redrawPicture();
            }
            doc.ShowStatus(comparisonText(*doc.foundComparison));
            return;
        }
    }
    doc.ui().showMessage(message::noSurfaceToCompare);
}

} // namespace

std::span<const Command> compareCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "model.compare",
         .menuText = "Compare...",
         .statusText = "Distance of zBlock from another surface. If no selections work with geometry",
         .run = &CompareModel,
         .off = emptyModel,
         .places = {{Transformations, 510}}},
    };
    return rows;
}

} // namespace velmora

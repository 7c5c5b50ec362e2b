#include "compare.h"

#include <algorithm>
#include <utility>

#include "DialogValues.h"
#include "Digest.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "dat_geometry.h"
#include "exchange_model.h"
#include "file_types.h"
#include "foreign_files.h"
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

bool readZonesWhole(VelmoraDoc& doc, const std::filesystem::path& path, ExchangeModel& model, LoadTally& tally) {
    zRegion structured;
    if (!readZones(doc, path, structured, model.region, tally)) {
        return false;
    }
    model.patches = zonesToPatches(structured, ZoneDetail::Whole).patches;
    return true;
}

/// All points of a file of any type that has a surface, however many. False, with a message, when it could not be read.
bool readWhole(VelmoraDoc& doc, const std::filesystem::path& path, ExchangeModel& model, LoadTally& tally) {
    const std::string extension = extensionOf(path);
    if (extension == "apt" || extension == "skl") {
        return readPatches(doc, path, extension, model.patches, tally);
    }
    if (extension == "stl" && isForeignFile(path)) {
        return readForeignFile(doc, path, model, tally);
    }
    if (extension == "dat" || extension == "wrl" || extension == "stl") {
        return readZonesWhole(doc, path, model, tally);
    }
    doc.ui().showMessage(message::fileTypeNotSupported);
    return false;
}

std::optional<TriangleMesh> surfaceOfFile(VelmoraDoc& doc, const std::filesystem::path& path, LoadTally& tally) {
    ExchangeModel model;
    if (!readWhole(doc, path, model, tally)) {
        showLosses(doc, tally);
        return std::nullopt;
    }
    const std::size_t parts = std::max(model.patches.size(), model.region.blocks.size());
    return surfaceTriangles(model.patches, model.region, std::vector<bool>(parts));
}

std::optional<TriangleMesh> surfaceOfChosenFile(VelmoraDoc& doc, LoadTally& tally) {
    FileRequest request;
    request.mode = ChooserMode::Open;
    request.types = fileTypesNamed({"apt", "skl", "dat", "wrl", "stl"});
    request.proposed = doc.openPlace().parent_path() / ""; // beside the model
    request.command = "model.compare";
    const std::vector<std::filesystem::path> paths = doc.ui().chooseFiles(request);
    return paths.empty() ? std::nullopt : surfaceOfFile(doc, fullPath(paths.front()), tally);
}

/// None when the user cancelled, or was told why there is none.
std::optional<TriangleMesh> surfaceToCompareWith(VelmoraDoc& doc, std::int32_t target, LoadTally& tally) {
    if (target == toSecondGeometry) {
        const std::size_t parts = std::max(doc.referencePatches.size(), doc.referenceRegion.blocks.size());
        return surfaceTriangles(doc.referencePatches, doc.referenceRegion, std::vector<bool>(parts));
    }
    return target == toTheOtherPatches ? surfaceTriangles(doc.patches, doc.feRegion, doc.chosenMask())
                                       : surfaceOfChosenFile(doc, tally);
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
    LoadTally tally;
    const std::optional<TriangleMesh> mesh = surfaceToCompareWith(doc, doc.dialogs->compare.target, tally);
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
            const std::string lost = lossText(tally.losses);
            doc.ShowStatus(comparisonText(*doc.foundComparison) + (lost.empty() ? "" : "; of the file: " + lost));
            return;
        }
    }
    doc.ui().showMessage(message::noSurfaceToCompare(lossText(tally.losses)));
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

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "file_types.h"
#include "interchange.h"
#include "messages.h"
#include "path_names.h"
#include "write_files.h"
#include "zone_conversion.h"

namespace velmora {

// ---- Save -----------------------------------------------------------------------------------------------------------

void VelmoraDoc::saveModel() {
    if (modelFile.imported) {
        saveModelAs(); // it has no file yet, and the one that it came from is not ours to write
        return;
    }
    // A save that failed, was refused or declined leaves the model as changed as it was.
    if (saveCurrent() == SaveResult::Saved) {
        documentModified = false;
    }
}

std::filesystem::path VelmoraDoc::saveTarget() const {
    std::filesystem::path target = modelFile.chosenPath;
    if (structureKind == StructureKind::None || holdsNothing()) {
        return {};
    }
    if (structureKind == StructureKind::Structured && extensionOf(target) != textOf(fileKind)) {
        target.replace_extension(textOf(fileKind));
    }
    return target;
}

std::string VelmoraDoc::saveTargetText() const {
    const std::filesystem::path target = saveTarget();
    // Triangles for which the file of a grid has no room are not written by Save.
    const bool saves = structureKind == StructureKind::Structured || fileKind == FileKind::None;
    const bool plain = target.empty() || !saves || modelFile.imported || target == modelFile.openedPath;
    return plain ? std::string() : "Save writes " + target.string();
}

namespace {

bool isZoneFormat(const std::string& extension) {
    return extension == "wrl" || extension == "stl";
}

std::int64_t triangleCount(const zRegion_fe& region) {
    return std::accumulate(
        region.blocks.begin(), region.blocks.end(), std::int64_t{0},
        [](std::int64_t count, const auto& zone) { return count + std::max(zone->elementCount, 0); });
}

/// A file of that type, which holds triangles alone, would be an empty one.
bool givesNoTriangle(const std::string& extension, const zRegion_fe& region) {
    return isZoneFormat(extension) && triangleCount(region) == 0;
}

} // namespace

VelmoraDoc::SaveResult VelmoraDoc::saveCurrent() {
    // Empty models are never written: what a file held would be gone.
    if (structureKind == StructureKind::None || holdsNothingToSave(*this)) {
        ui_.showMessage(message::nothingToSave);
        return SaveResult::Failed;
    }
    const bool zones = structureKind == StructureKind::Unstructured;
    if (zones && fileKind != FileKind::None) {
        ui_.showMessage(message::holdsTrianglesNow);
        return SaveResult::Failed;
    }
    const std::filesystem::path target = saveTarget();
    const std::int64_t leftOut = zones ? trianglesLeftOut(target, feRegion) : 0;
    if (zones && givesNoTriangle(extensionOf(target), feRegion)) {
        ui_.showMessage(message::cannotBeSavedAs(extensionOf(target)));
        return SaveResult::Failed;
    }
    if (!mayOverwrite(*this, target, TargetFrom::Model, FileContent::Model, leftOut)) {
        return SaveResult::Declined;
    }
    const WriteOutcome outcome =
        zones ? writeZones(*this, target, {}, feRegion) : writeStructured(*this, target, fileKind);
    if (!outcome) {
        return SaveResult::Failed;
    }
    if (zones) {
        ui_.showMessage(message::datWritten);
    } else {
        modelFile.titleWrong = false;
        modelFile.takeExtension(textOf(fileKind));
    }
    tellSaved(*this, outcome);
    return SaveResult::Saved;
}

// ---- Save As --------------------------------------------------------------------------------------------------------

namespace {

std::vector<FileType> saveTypes(const VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::Unstructured) {
        return fileTypesNamed({"dat", "wrl", "stl"});
    }
    if (doc.fileKind == FileKind::Skl) {
        return fileTypesNamed({"skl"});
    }
    return fileTypesNamed({"apt", "skl", "dat", "wrl", "stl"});
}

/// Whether the model, by its kind, can be written in the format that the extension names.
bool canBeSavedAs(const VelmoraDoc& doc, const std::string& extension) {
    const bool zoneFormat = extension == "dat" || isZoneFormat(extension);
    if (doc.structureKind == StructureKind::Unstructured) {
        return zoneFormat;
    }
    return extension == "skl" || extension == textOf(doc.fileKind) || (doc.fileKind == FileKind::Apt && zoneFormat);
}

/// The grid becomes triangles in the document too, once they are safely written; Undo brings the grid back.
void becomeSurface(VelmoraDoc& doc, zRegion_fe& surface) {
    doc.SavePatchUndo();
    doc.patchUndoReady = true;
    doc.leaveRegimes();
    doc.feRegion = std::move(surface);
    doc.patches.clear();
    doc.structureKind = StructureKind::Unstructured;
    doc.fileKind = FileKind::None;
    doc.updateBounds();
    doc.redraw();
}

/// The triangles of the grids; none of a grid of single sections or points.
zRegion_fe surfaceOf(const PatchList& patches) {
    zRegion zones;
    zRegion_fe surface;
    patchesToRegion(patches, zones);
    regionToSurface(zones, surface);
    return surface;
}

/// Writes the model, a grid also as zones or as its triangles `surface`, in the format that the extension of `path`
/// names.
WriteOutcome writeModelAs(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension,
                          const zRegion_fe& surface) {
    if (doc.structureKind == StructureKind::Unstructured) {
        return writeZones(doc, path, {}, doc.feRegion);
    }
    if (extension == "apt" || extension == "skl") {
        return writeStructured(doc, path, extension == "apt" ? FileKind::Apt : FileKind::Skl);
    }
    if (extension == "dat") {
        zRegion zones;
        patchesToZones(doc.patches, zones);
        return writeZones(doc, path, zones, {});
    }
    return writeZones(doc, path, {}, surface);
}

} // namespace

void VelmoraDoc::saveModelAs() {
    if (structureKind == StructureKind::None || holdsNothingToSave(*this)) {
        ui_.showMessage(message::nothingToSave);
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.types = saveTypes(*this);
    request.proposed = modelFile.chosenPath;
    request.command = "file.saveAs";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const std::string extension = extensionOf(path);
    if (!canBeSavedAs(*this, extension)) {
        ui_.showMessage(message::cannotBeSavedAs(extension));
        return;
    }
    const bool grid = structureKind == StructureKind::Structured;
    const bool asTriangles = grid && isZoneFormat(extension);
    zRegion_fe surface = asTriangles ? surfaceOf(patches) : zRegion_fe();
    const std::int64_t leftOut = trianglesLeftOut(path, asTriangles ? surface : feRegion);
    if ((asTriangles && leftOut >= triangleCount(surface)) || (!grid && givesNoTriangle(extension, feRegion))) {
        // There is no triangle to write: the file, and the model that becomes what was written, would be empty.
        ui_.showMessage(message::cannotBeSavedAs(extension));
        return;
    }
    if (!mayOverwrite(*this, path, TargetFrom::Chooser, FileContent::Model, leftOut)) {
        return;
    }
    const WriteOutcome outcome = writeModelAs(*this, path, extension, surface);
    if (!outcome) {
        return; // path and name stay, and the model is as changed as it was
    }
    modelFile.adopt(path);
    if (grid && extension == "dat") {
        // The model stays a grid, whose file has another type: its title stays too.
        ui_.showMessage(message::convertedToDat);
    } else {
        modelFile.titleWrong = false;
        modelFile.takeExtension(extension);
        if (asTriangles) {
            becomeSurface(*this, surface);
        } else {
            ui_.addRecentFile(path.parent_path());
            ui_.addRecentFile(path);
        }
    }
    documentModified = false;
    tellSaved(*this, outcome);
}

bool VelmoraDoc::saveModified() {
    if (structureKind == StructureKind::None || !documentModified) {
        return true;
    }
    const Answer answer = ui_.askOrNone(message::saveBeforeExit);
    if (answer != Answer::Yes) {
        return answer == Answer::No;
    }
    // Work that could not be written is not thrown away: the document stays open, and asks again.
    saveModel();
    return !documentModified;
}

std::span<const Command> saveCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "file.save",
         .menuText = "&Save",
         .statusText = "Save the model",
         .toolTip = "Save",
         .accelerator = "Ctrl+S",
         .icon = true,
         .run = &VelmoraDoc::saveModel,
         .off = nonOrField,
         .places = {{File, 610}, {GeneralBar, 130}}},
        {.id = "file.saveAs",
         .menuText = "Save &As...",
         .statusText = "Save the model under a new name",
         .run = &VelmoraDoc::saveModelAs,
         .off = nonOrField,
         .places = {{File, 620}}},
    };
    return rows;
}

} // namespace velmora

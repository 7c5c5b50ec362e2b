#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "VelmoraDoc.h"
#include "file_types.h"
#include "messages.h"
#include "path_names.h"
#include "write_files.h"
#include "zone_conversion.h"

namespace velmora {

// ---- Save -----------------------------------------------------------------------------------------------------------

void VelmoraDoc::saveModel() {
    if (saveCurrent() != SaveResult::Declined) {
        documentModified = false;
    }
}

VelmoraDoc::SaveResult VelmoraDoc::saveCurrent() {
    if (structureKind == StructureKind::Unstructured && fileKind == FileKind::None) {
        if (!mayOverwrite(*this, modelFile.chosenPath)) {
            return SaveResult::Declined;
        }
        if (!writeZones(*this, modelFile.chosenPath, {}, feRegion)) {
            return SaveResult::Failed;
        }
        ui_.showMessage(message::datWritten);
        return SaveResult::Saved;
    }
    if (structureKind != StructureKind::Structured) {
        return SaveResult::Failed;
    }
    const std::string extension = textOf(fileKind);
    if (extensionOf(modelFile.chosenPath) != extension) {
        modelFile.takeExtension(extension);
    }
    if (!mayOverwrite(*this, modelFile.chosenPath)) {
        return SaveResult::Declined;
    }
    if (!writeStructured(*this, modelFile.chosenPath, fileKind)) {
        return SaveResult::Failed;
    }
    modelFile.titleWrong = false;
    modelFile.takeExtension(extension);
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

bool writeGridAsZones(VelmoraDoc& doc, const std::filesystem::path& path) {
    if (doc.patches.empty()) {
        doc.ui().showMessage(message::structuredContainerEmpty);
        return false;
    }
    zRegion zones;
    patchesToZones(doc.patches, zones);
    if (!writeZones(doc, path, zones, {})) {
        return false;
    }
    doc.ui().showMessage(message::convertedToDat);
    return true;
}

/// The grid becomes triangles in the document too, once they are safely written; Undo brings the grid back.
bool writeGridAsSurface(VelmoraDoc& doc, const std::filesystem::path& path) {
    zRegion zones;
    zRegion_fe surface;
    patchesToRegion(doc.patches, zones);
    regionToSurface(zones, surface);
    if (!writeZones(doc, path, {}, surface)) {
        return false;
    }
    doc.SavePatchUndo();
    doc.patchUndoReady = true;
    doc.documentModified = false;
    doc.leaveRegimes();
    doc.feRegion = std::move(surface);
    doc.patches.clear();
    doc.structureKind = StructureKind::Unstructured;
    doc.fileKind = FileKind::None;
    doc.modelFile.titleWrong = false;
    doc.modelFile.takeExtension(doc.modelFile.fileExtension);
    doc.updateBounds();
    doc.redraw();
    return true;
}

/// Writes the model in the format that the extension names, as far as its kind allows; title, directory and recent
/// files follow.
bool writeUnderNewName(VelmoraDoc& doc, const std::string& extension) {
    const bool grid = doc.structureKind == StructureKind::Structured && doc.fileKind == FileKind::Apt;
    const bool zoneFormat = extension == "wrl" || extension == "stl";
    if (grid && extension == "dat") {
        return writeGridAsZones(doc, doc.modelFile.chosenPath);
    }
    if (grid && zoneFormat) {
        return writeGridAsSurface(doc, doc.modelFile.chosenPath);
    }
    bool written = false;
    if (doc.structureKind == StructureKind::Structured && (extension == "skl" || extension == textOf(doc.fileKind))) {
        written = writeStructured(doc, doc.modelFile.chosenPath, extension == "apt" ? FileKind::Apt : FileKind::Skl);
    } else if (doc.structureKind == StructureKind::Unstructured && (extension == "dat" || zoneFormat)) {
        written = writeZones(doc, doc.modelFile.chosenPath, {}, doc.feRegion);
    }
    if (written) {
        doc.modelFile.titleWrong = false;
        doc.modelFile.takeExtension(extension);
        doc.ui().addRecentFile(doc.modelFile.chosenPath.parent_path());
        doc.ui().addRecentFile(doc.modelFile.chosenPath);
    }
    return written;
}

} // namespace

void VelmoraDoc::saveModelAs() {
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.types = saveTypes(*this);
    request.proposed = modelFile.chosenPath;
    request.command = "file.saveAs";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty() || !mayOverwrite(*this, fullPath(paths.front()))) {
        return;
    }
    modelFile.adopt(paths.front());
    documentModified = false;
    writeUnderNewName(*this, modelFile.fileExtension);
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
    documentModified = saveCurrent() != SaveResult::Saved;
    return !documentModified;
}

} // namespace velmora

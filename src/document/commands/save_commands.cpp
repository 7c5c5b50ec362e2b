#include <algorithm>
#include <system_error>

#include "VelmoraDoc.h"
#include "apt.h"
#include "file_types.h"
#include "interchange.h"
#include "messages.h"
#include "path_names.h"
#include "skl.h"
#include "zone_conversion.h"

namespace velmora {

// ---- Save -----------------------------------------------------------------------------------------------------------

void VelmoraDoc::saveModel() {
    if (saveCurrent() != SaveResult::Declined) {
        documentModified = false;
    }
}

bool VelmoraDoc::mayOverwrite(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return true;
    }
    const auto same = [&path](const std::filesystem::path& other) { return sameFile(other, path); };
    return std::none_of(incompleteFiles_.begin(), incompleteFiles_.end(), same) || ui_.ask(message::holdsMorePoints);
}

VelmoraDoc::SaveResult VelmoraDoc::saveCurrent() {
    if (structureKind == "uns" && fileKind == "non") {
        if (!mayOverwrite(chosenPath)) {
            return SaveResult::Declined;
        }
        if (!writeZones(chosenPath, {}, feRegion)) {
            return SaveResult::Failed;
        }
        ui_.showMessage(message::datWritten);
        return SaveResult::Saved;
    }
    if (structureKind != "str") {
        return SaveResult::Failed;
    }
    if (extensionOf(chosenPath) != fileKind) {
        takeExtension(fileKind);
    }
    if (!mayOverwrite(chosenPath)) {
        return SaveResult::Declined;
    }
    if (!writeStructured(chosenPath, fileKind)) {
        return SaveResult::Failed;
    }
    titleWrong_ = false;
    takeExtension(fileKind);
    return SaveResult::Saved;
}

bool VelmoraDoc::writeStructured(const std::filesystem::path& path, const std::string& kind) {
    const BusyScope busy(ui_);
    const bool written = kind == "apt" ? writeApt(path, patches, outputPrecision, progressTo(ui_))
                                       : writeSkl(path, patches, outputPrecision, progressTo(ui_));
    if (!written) {
        ui_.showMessage(message::cannotSave);
        return false;
    }
    noteCompleteness(path, true);
    return true;
}

bool VelmoraDoc::writeZones(const std::filesystem::path& path, const zRegion& structured,
                            const zRegion_fe& unstructured) {
    std::vector<std::string> told;
    bool written = false;
    {
        const BusyScope busy(ui_);
        written = writeGeometry(
            path, outputPrecision, structured, unstructured, [&told](const std::string& text) { told.push_back(text); },
            progressTo(ui_));
    }
    for (const std::string& text : told) {
        ui_.showMessage({Severity::NotWritten, text});
    }
    if (written) {
        noteCompleteness(path, true);
    }
    return written;
}

// ---- Save As --------------------------------------------------------------------------------------------------------

std::vector<FileType> VelmoraDoc::saveTypes() const {
    if (structureKind == "uns") {
        return fileTypesNamed({"dat", "wrl", "stl"});
    }
    if (fileKind == "skl") {
        return fileTypesNamed({"skl"});
    }
    return fileTypesNamed({"apt", "skl", "dat", "wrl", "stl"});
}

void VelmoraDoc::saveModelAs() {
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.types = saveTypes();
    request.proposed = chosenPath;
    request.command = "file.saveAs";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty() || !mayOverwrite(fullPath(paths.front()))) {
        return;
    }
    adoptPath(paths.front());
    documentModified = false;
    writeUnderNewName(fileExtension);
}

/// Writes the model in the format that the extension names, as far as its kind allows; title, directory and recent
/// files follow.
bool VelmoraDoc::writeUnderNewName(const std::string& extension) {
    const bool grid = structureKind == "str" && fileKind == "apt";
    const bool zoneFormat = extension == "wrl" || extension == "stl";
    if (grid && extension == "dat") {
        return writeGridAsZones(chosenPath);
    }
    if (grid && zoneFormat) {
        return writeGridAsSurface(chosenPath);
    }
    bool written = false;
    if (structureKind == "str" && (extension == "skl" || extension == fileKind)) {
        written = writeStructured(chosenPath, extension);
    } else if (structureKind == "uns" && (extension == "dat" || zoneFormat)) {
        written = writeZones(chosenPath, {}, feRegion);
    }
    if (written) {
        titleWrong_ = false;
        takeExtension(extension);
        ui_.addRecentFile(chosenPath.parent_path());
    }
    return written;
}

bool VelmoraDoc::writeGridAsZones(const std::filesystem::path& path) {
    if (patches.empty()) {
        ui_.showMessage(message::structuredContainerEmpty);
        return false;
    }
    zRegion zones;
    patchesToZones(patches, zones);
    if (!writeZones(path, zones, {})) {
        return false;
    }
    ui_.showMessage(message::convertedToDat);
    return true;
}

/// The grid becomes triangles in the document too, once they are safely written; Undo brings the grid back.
bool VelmoraDoc::writeGridAsSurface(const std::filesystem::path& path) {
    zRegion zones;
    zRegion_fe surface;
    patchesToRegion(patches, zones);
    regionToSurface(zones, surface);
    if (!writeZones(path, {}, surface)) {
        return false;
    }
    SavePatchUndo();
    patchUndoReady = true;
    documentModified = false;
    leaveRegimes();
    feRegion = std::move(surface);
    patches.clear();
    structureKind = "uns";
    fileKind = "non";
    titleWrong_ = false;
    takeExtension(fileExtension);
    updateBounds();
    redraw();
    return true;
}

bool VelmoraDoc::saveModified() {
    if (structureKind == "non" || !documentModified || !ui_.ask(message::saveBeforeExit)) {
        return true;
    }
    // Work that could not be written is not thrown away: the document stays open, and asks again.
    documentModified = saveCurrent() != SaveResult::Saved;
    return !documentModified;
}

} // namespace velmora

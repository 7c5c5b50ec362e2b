#include <iterator>
#include <utility>

#include "VelmoraDoc.h"
#include "dat_geometry.h"
#include "file_types.h"
#include "load_files.h"
#include "messages.h"
#include "path_names.h"

namespace velmora {

// A second geometry beside the model, onto which parts of it can be projected.

namespace {

/// The file that the user chooses; empty for Cancel, and for a file of another type, which is told.
std::filesystem::path chooseReference(UserInterface& ui, const char* extension, const char* command) {
    FileRequest request;
    request.mode = ChooserMode::Append;
    request.types = fileTypesNamed({extension});
    request.command = command;
    const std::vector<std::filesystem::path> paths = ui.chooseFiles(request);
    if (paths.empty()) {
        return {};
    }
    if (extensionOf(paths.front()) != extension) {
        ui.showMessage(message::fileTypeNotSupported);
        return {};
    }
    return fullPath(paths.front());
}

} // namespace

/// Zones of a further file come behind those that are open already. A file that cannot be read changes nothing.
void VelmoraDoc::AppendWrl() {
    const std::filesystem::path path = chooseReference(ui_, "wrl", "file.appendWrl");
    zRegion structured;
    zRegion_fe incoming;
    if (path.empty() || !readZones(*this, path, structured, incoming)) {
        return;
    }
    if (incoming.blocks.empty()) {
        ui_.showMessage(message::openCancelled); // there is nothing to project on in it
        return;
    }
    beginPatchCommand(false);
    if (secondKind != SecondKind::Wrl) {
        referenceRegion.blocks.clear();
        referenceRegion.title = incoming.title;
    }
    std::move(incoming.blocks.begin(), incoming.blocks.end(), std::back_inserter(referenceRegion.blocks));
    secondKind = SecondKind::Wrl;
    redraw();
}

void VelmoraDoc::CloseWrl() {
    referenceRegion.blocks.clear();
    secondKind = SecondKind::None;
    redraw();
}

/// Reads a second grid and tells what is wrong with its file. No command works on a second grid, so it is not kept:
/// `secondKind` stays as it is, and "Close dat" and "Reflection to dat" stay off.
void VelmoraDoc::AppendDat() {
    const std::filesystem::path path = chooseReference(ui_, "dat", "file.appendDat");
    zRegion structured;
    zRegion_fe unstructured;
    if (path.empty() || !readZones(*this, path, structured, unstructured)) {
        return;
    }
    if (structured.blocks.empty()) {
        ui_.showMessage(message::openCancelled);
        return;
    }
    const ZoneRefusal refusal = zonesToPatches(structured, ZoneDetail::Whole).refusal;
    if (refusal != ZoneRefusal::None) {
        ui_.showMessage({Severity::NotRead, std::string(messageOf(refusal))});
    }
}

void VelmoraDoc::CloseDat() {
    referencePatches.clear();
    secondKind = SecondKind::None;
    redraw();
}

} // namespace velmora

#include <iterator>
#include <utility>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
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

/// Reads the zones of the file; the status line tells what is lost of it.
bool readReference(VelmoraDoc& doc, const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured) {
    LoadTally tally;
    const bool whole = readZones(doc, path, structured, unstructured, tally);
    showLosses(doc, tally);
    return whole;
}

/// Zones of a further file come behind those that are open already. A file that cannot be read changes nothing.
void AppendWrl(VelmoraDoc& doc) {
    const std::filesystem::path path = chooseReference(doc.ui(), "wrl", "file.appendWrl");
    zRegion structured;
    zRegion_fe incoming;
    if (path.empty() || !readReference(doc, path, structured, incoming)) {
        return;
    }
    if (incoming.blocks.empty()) {
        doc.ui().showMessage(message::openCancelled); // there is nothing to project on in it
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    if (doc.secondKind != SecondKind::Wrl) {
        doc.referenceRegion.blocks.clear();
        doc.referenceRegion.title = incoming.title;
    }
    std::move(incoming.blocks.begin(), incoming.blocks.end(), std::back_inserter(doc.referenceRegion.blocks));
    doc.secondKind = SecondKind::Wrl;
    doc.redraw();
}

void CloseWrl(VelmoraDoc& doc) {
    doc.referenceRegion.blocks.clear();
    doc.secondKind = SecondKind::None;
    doc.redraw();
}

/// Reads a second grid and tells what is wrong with its file. No command works on a second grid, so it is not kept:
/// `secondKind` stays as it is, and "Close dat" and "Reflection to dat" stay off.
void AppendDat(VelmoraDoc& doc) {
    const std::filesystem::path path = chooseReference(doc.ui(), "dat", "file.appendDat");
    zRegion structured;
    zRegion_fe unstructured;
    if (path.empty() || !readReference(doc, path, structured, unstructured)) {
        return;
    }
    if (structured.blocks.empty()) {
        doc.ui().showMessage(message::openCancelled);
        return;
    }
    const ZoneRefusal refusal = zonesToPatches(structured, ZoneDetail::Whole).refusal;
    if (refusal != ZoneRefusal::None) {
        doc.ui().showMessage({Severity::NotRead, std::string(messageOf(refusal))});
    }
}

void CloseDat(VelmoraDoc& doc) {
    doc.referencePatches.clear();
    doc.secondKind = SecondKind::None;
    doc.redraw();
}

} // namespace

std::span<const Command> referenceCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "file.appendWrl",
         .menuText = "Append wrl...",
         .statusText = "Open a second, unstructured geometry beside the model",
         .run = &AppendWrl,
         .off = notStrOrField,
         .places = {{File, 310}}},
        {.id = "file.closeWrl",
         .menuText = "Close wrl",
         .statusText = "Close the second, unstructured geometry",
         .run = &CloseWrl,
         .off = [](Doc d) { return d.secondKind == SecondKind::None; },
         .places = {{File, 320}}},
        {.id = "file.appendDat",
         .menuText = "Append dat...",
         .statusText = "Open a second, structured geometry beside the model",
         .run = &AppendDat,
         .off = notStrOrField,
         .places = {{File, 330}}},
        {.id = "file.closeDat",
         .menuText = "Close dat",
         .statusText = "Close the second, structured geometry",
         .run = &CloseDat,
         .off = [](Doc d) { return d.secondKind != SecondKind::Dat; },
         .places = {{File, 340}}},
    };
    return rows;
}

} // namespace velmora

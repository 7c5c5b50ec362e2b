#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "exchange_files.h"
#include "file_types.h"
#include "load_files.h"
#include "messages.h"
#include "open_commands.h"
#include "path_names.h"
#include "show_dialog.h"
#include "write_files.h"

namespace velmora {

// ---- Import ---------------------------------------------------------------------------------------------------------

namespace {

bool canImport(const std::string& extension) {
    const std::vector<std::string_view> known = importExtensions();
    return std::find(known.begin(), known.end(), extension) != known.end();
}

/// Those of the types that are among the extensions: a program may be built without some libraries.
std::vector<FileType> typesAmong(std::vector<FileType> types, const std::vector<std::string_view>& extensions) {
    std::erase_if(types, [&extensions](const FileType& type) {
        return std::find(extensions.begin(), extensions.end(), type.extension) == extensions.end();
    });
    return types;
}

/// Reads the file, tells of it and shows what is wrong with it.
ImportOutcome readForeign(VelmoraDoc& doc, const std::filesystem::path& path, ExchangeModel& model, LoadTally& tally) {
    FileRead record;
    ImportOutcome outcome = ImportOutcome::Failed;
    {
        const BusyScope busy(doc.ui());
        outcome = importFile(path, doc.dialogs->importing.options(), model, record, progressTo(doc.ui()));
    }
    if (outcome == ImportOutcome::CannotOpen) {
        doc.ui().showMessage(message::cannotOpen);
        return outcome;
    }
    doc.ui().tellFileRead(record);
    tally.losses = record.changed;
    tally.losses.insert(tally.losses.end(), record.reasons.begin(), record.reasons.end());
    if (model.libraryMoves > 0.0) {
        doc.ui().showMessage(message::libraryMovesPoints(shortLength(model.libraryMoves)));
    }
    return outcome;
}

/// The model is in no file of ours yet: Save asks where it goes and never hits the file that it came from.
void takeImported(VelmoraDoc& doc, ExchangeModel&& model) {
    doc.patches = std::move(model.patches);
    doc.feRegion = std::move(model.region);
    if (doc.patches.empty()) {
        doc.structureKind = StructureKind::Unstructured;
        doc.fileKind = FileKind::None;
    } else {
        doc.checkRegularity(doc.patches);
    }
    doc.modelFile.nameImported(doc.patches.empty() ? "dat" : textOf(doc.fileKind));
}

} // namespace

void VelmoraDoc::importFiles() {
    if (!holdsNothing() && !ui_.ask(message::removeGeometry)) {
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::Import;
    request.types = typesAmong(importFileTypes(), importExtensions());
    request.proposed = proposedFolder_.empty() ? modelFile.chosenPath : proposedFolder_;
    request.command = "file.import";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    if (!canImport(extensionOf(path))) {
        ui_.showMessage(message::cannotBeImported(extensionOf(path)));
        return;
    }
    if (!showDialog(ui_, dialogs->importing)) {
        return;
    }
    LoadTally tally;
    bool gaveModel = false;
    {
        ModelAside before(*this);
        ExchangeModel model;
        gaveModel = readForeign(*this, path, model, tally) == ImportOutcome::Done;
        if (gaveModel) {
            takeImported(*this, std::move(model));
            before.keepForUndo();
        }
    }
    if (!gaveModel) {
        cancelOpen(*this, tally);
        return;
    }
    finishOpen(*this, tally);
    documentModified = true;
}

// ---- Export ---------------------------------------------------------------------------------------------------------

namespace {

/// What of the model goes out: patches or zones, whichever it is.
ExchangeView viewOf(const VelmoraDoc& doc) {
    static const PatchList noPatches;
    static const zRegion_fe noZones;
    return doc.structureKind == StructureKind::Structured ? ExchangeView(doc.patches, noZones)
                                                          : ExchangeView(noPatches, doc.feRegion);
}

std::vector<FileType> exportTypes(const VelmoraDoc& doc) {
    const bool isGrid = doc.structureKind == StructureKind::Structured && doc.fileKind == FileKind::Apt;
    return typesAmong(isGrid ? exportFileTypes() : exportTriangleFileTypes(), exportExtensions());
}

void finishExport(VelmoraDoc& doc, const std::string& extension, ExportOutcome outcome, const WriteOutcome& written) {
    switch (outcome) {
    case ExportOutcome::Done:
    case ExportOutcome::CannotWrite:
        finishWriting(doc, written);
        break;
    case ExportOutcome::Empty:
        doc.ui().showMessage(message::nothingToSave);
        break;
    case ExportOutcome::UnknownType:
    case ExportOutcome::CannotTake:
        doc.ui().showMessage(message::cannotBeSavedAs(extension));
        break;
    case ExportOutcome::TooLarge:
        doc.ui().showMessage(message::noRoomInSinglePrecision);
        break;
    }
}

} // namespace

void VelmoraDoc::exportModel() {
    if (structureKind == StructureKind::None || holdsNothingToSave(*this)) {
        ui_.showMessage(message::nothingToSave);
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::Export;
    request.types = exportTypes(*this);
    request.proposed = modelFile.chosenPath;
    request.command = "file.export";
    const std::vector<std::filesystem::path> paths = ui_.chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const std::string extension = extensionOf(path);
    const ExchangeView model = viewOf(*this);
    const ExportOutcome possible = exportPossible(path, model);
    if (possible != ExportOutcome::Done) {
        finishExport(*this, extension, possible, {});
        return;
    }
    if (!showDialog(ui_, dialogs->exporting) || !mayOverwrite(*this, path, TargetFrom::Chooser)) {
        return;
    }
    const ExportOptions options = dialogs->exporting.options();
    tellMove(*this, digitsWritten(path, options), moveByDigits(path, model, options));
    WriteOutcome written;
    ExportOutcome outcome = ExportOutcome::CannotWrite;
    {
        const BusyScope busy(ui_);
        outcome = exportFile(path, model, options, written, progressTo(ui_));
    }
    finishExport(*this, extension, outcome, written);
}

} // namespace velmora

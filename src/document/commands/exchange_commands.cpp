#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "exchange_files.h"
#include "file_report.h"
#include "file_types.h"
#include "foreign_files.h"
#include "load_files.h"
#include "messages.h"
#include "open_commands.h"
#include "path_names.h"
#include "show_dialog.h"
#include "write_files.h"
#include "zSTLReader.h"

namespace velmora {

// ---- Import ---------------------------------------------------------------------------------------------------------

namespace {

bool isAmong(const std::vector<std::string_view>& extensions, const std::string& extension) {
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

bool canImport(const std::string& extension) {
    return isAmong(importExtensions(), extension);
}

/// An extension that is refused, with the reason where it is the build of the program.
std::string typeInWords(const std::string& extension) {
    return extension + (isAmong(absentExtensions(), extension) ? " (this build has no library for it)" : "");
}

/// Those of the types that are among the extensions: a program may be built without some libraries.
std::vector<FileType> typesAmong(std::vector<FileType> types, const std::vector<std::string_view>& extensions) {
    std::erase_if(types, [&extensions](const FileType& type) { return !isAmong(extensions, type.extension); });
    return types;
}

/// Reads the file, tells of it and shows what is wrong with it.
ImportOutcome readForeign(VelmoraDoc& doc, const std::filesystem::path& path, const ImportOptions& options,
                          ExchangeModel& model, FileRead& record, LoadTally& tally) {
    ImportOutcome outcome = ImportOutcome::Failed;
    {
        const BusyScope busy(doc.ui());
        outcome = importFile(path, options, model, record, progressTo(doc.ui()));
    }
    if (outcome == ImportOutcome::CannotOpen) {
        doc.ui().showMessage(message::cannotOpen);
        return outcome;
    }
    doc.ui().tellFileRead(record);
    tally.unit = unitText(record);
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

bool isForeignFile(const std::filesystem::path& path) {
    constexpr std::array<std::string_view, 3> opened = {"dat", "wrl", "stl"};
    const std::string extension = extensionOf(path);
    const bool opens = std::find(opened.begin(), opened.end(), extension) != opened.end();
    return canImport(extension) && (!opens || (extension == "stl" && zSTLReader::isBinary(path)));
}

bool readForeignFile(VelmoraDoc& doc, const std::filesystem::path& path, ExchangeModel& model, LoadTally& tally) {
    FileRead record;
    return readForeign(doc, path, ImportOptions{}, model, record, tally) != ImportOutcome::CannotOpen;
}

void importForeignFile(VelmoraDoc& doc, const std::filesystem::path& path) {
    if (!showDialog(doc.ui(), doc.dialogs->importing)) {
        return;
    }
    constexpr bool ownFile = false; // it is not the model's: whatever is written over it is asked about
    LoadTally tally;
    ImportOutcome outcome = ImportOutcome::Failed;
    {
        ModelAside before(doc);
        ExchangeModel model;
        FileRead record;
        outcome = readForeign(doc, path, doc.dialogs->importing.options(), model, record, tally);
        if (outcome == ImportOutcome::Done) {
            takeImported(doc, std::move(model));
            doc.modelFile.memory.noteRead(record, ownFile);
            before.keepForUndo();
        }
    }
    if (outcome == ImportOutcome::Done) {
        finishOpen(doc, tally);
        doc.documentModified = true;
    } else {
        cancelOpen(doc, tally);
    }
}

namespace {

/// A file of others in place of the model, which is untitled then.
void importFiles(VelmoraDoc& doc) {
    if (!doc.holdsNothing() && !doc.ui().ask(message::removeGeometry)) {
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::Import;
    request.types = typesAmong(importFileTypes(), importExtensions());
    request.proposed = doc.openPlace();
    request.command = "file.import";
    const std::vector<std::filesystem::path> paths = doc.ui().chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    if (!canImport(extensionOf(path))) {
        doc.ui().showMessage(message::cannotBeImported(typeInWords(extensionOf(path))));
        return;
    }
    importForeignFile(doc, path);
}

// ---- Export ---------------------------------------------------------------------------------------------------------

/// What of the model goes out: patches or zones, whichever it is.
ExchangeView viewOf(const VelmoraDoc& doc) {
    static const PatchList noPatches;
    static const zRegion_fe noZones;
    return doc.structureKind == StructureKind::Structured ? ExchangeView(doc.patches, noZones)
                                                          : ExchangeView(noPatches, doc.feRegion);
}

/// What the zBlock holds; of an empty one, all.
ExchangeModel chosenParts(const VelmoraDoc& doc) {
    ExchangeModel parts;
    parts.region.title = doc.feRegion.title;
    const std::vector<bool> chosen = doc.chosenMask();
    for (std::size_t k = 0; k < chosen.size(); ++k) {
        if (chosen[k] && doc.structureKind == StructureKind::Structured) {
            parts.patches.push_back(doc.patches[k]);
        } else if (chosen[k]) {
            parts.region.blocks.push_back(cloneZone(*doc.feRegion.blocks[k]));
        }
    }
    return parts;
}

std::vector<FileType> exportTypes(const VelmoraDoc& doc) {
    const bool isGrid = doc.structureKind == StructureKind::Structured && doc.fileKind == FileKind::Apt;
    return typesAmong(isGrid ? exportFileTypes() : exportTriangleFileTypes(), exportExtensions());
}

void finishExport(VelmoraDoc& doc, const std::string& extension, ExportOutcome outcome, const WriteOutcome& written) {
    switch (outcome) {
    case ExportOutcome::Done:
    case ExportOutcome::CannotWrite:
        finishWriting(doc, written, FileContent::Export);
        if (written && !written.notes.empty()) {
            doc.ShowStatus(lossText(written.notes));
        }
        break;
    case ExportOutcome::Empty:
        doc.ui().showMessage(message::nothingToSave);
        break;
    case ExportOutcome::UnknownType:
    case ExportOutcome::CannotTake:
        doc.ui().showMessage(
            message::cannotBeSavedAs(outcome == ExportOutcome::UnknownType ? typeInWords(extension) : extension));
        break;
    case ExportOutcome::TooLarge:
        doc.ui().showMessage(message::noRoomInSinglePrecision);
        break;
    }
}

void writeExport(VelmoraDoc& doc, const std::filesystem::path& path, const ExchangeView& model) {
    const ExportOptions options = doc.dialogs->exporting.options();
    tellMove(doc, digitsWritten(path, options), moveByDigits(path, model, options));
    WriteOutcome written;
    ExportOutcome outcome = ExportOutcome::CannotWrite;
    {
        const BusyScope busy(doc.ui());
        outcome = exportFile(path, model, options, written, progressTo(doc.ui()));
    }
    finishExport(doc, extensionOf(path), outcome, written);
}

/// The model as a file of others; its own file stays what it is.
void exportModel(VelmoraDoc& doc) {
    if (doc.structureKind == StructureKind::None || holdsNothingToSave(doc)) {
        doc.ui().showMessage(message::nothingToSave);
        return;
    }
    FileRequest request;
    request.mode = ChooserMode::Export;
    request.types = exportTypes(doc);
    request.proposed = doc.modelFile.chosenPath;
    request.command = "file.export";
    const std::vector<std::filesystem::path> paths = doc.ui().chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const ExchangeView model = viewOf(doc);
    const ExportOutcome possible = exportPossible(path, model);
    if (possible != ExportOutcome::Done) {
        finishExport(doc, extensionOf(path), possible, {});
        return;
    }
    if (!showDialog(doc.ui(), doc.dialogs->exporting)) {
        return;
    }
    if (doc.dialogs->exporting.onlyBlock && doc.blockCount == 0) {
        doc.ui().showMessage(message::noBlockToExport); // who meant a part can still keep the file
    }
    if (!mayOverwrite(doc, path, TargetFrom::Chooser, FileContent::Export)) {
        return;
    }
    if (doc.dialogs->exporting.onlyBlock) {
        writeExport(doc, path, chosenParts(doc));
    } else {
        writeExport(doc, path, model);
    }
}

} // namespace

std::span<const Command> exchangeCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "file.import",
         .menuText = "Import...",
         .statusText = "Read a file of another program in place of the model",
         .run = &importFiles,
         .places = {{File, 210}}},
        {.id = "file.export",
         .menuText = "Export...",
         .statusText = "Write the model as a file for other programs",
         .run = &exportModel,
         .places = {{File, 220}}},
    };
    return rows;
}

} // namespace velmora

#include "exchange_files.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <optional>
#include <system_error>

#include <unistd.h>

#include "FileBytes.h"
#include "FileIdentity.h"
#include "TextScan.h"
#include "cgns_export.h"
#include "export_zones.h"
#include "exporters.h"
#include "foreign_import.h"
#include "gltf_import.h"
#include "obj_import.h"
#include "off_import.h"
#include "plot3d_import.h"
#include "ply_import.h"
#include "stl_import.h"
#include "tecplot_import.h"
#include "tecplot_writer.h"
#include "written_names.h"
#include "zone_files.h"
#ifdef VELMORA_READS_3MF
#include "threemf_import.h"
#endif

namespace velmora {

namespace {

using Importer = void (*)(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                          const ReportProgress& report);
/// Of formats that name other files, which may stand in this folder.
using FolderImporter = void (*)(std::string_view text, const std::filesystem::path& folder,
                                const ImportOptions& options, ExchangeModel& model, FileRead& record,
                                const ReportProgress& report);
using GridExporter = bool (*)(const std::filesystem::path& path, const ExchangeView& model, const ExportZones& zones,
                              const ExportOptions& options, WriteOutcome& outcome, const ReportProgress& report);
using TriangleExporter = bool (*)(const std::filesystem::path& path, const ExportZones& zones,
                                  const ExportOptions& options, WriteOutcome& outcome, const ReportProgress& report);

/// What kind of file an exporter makes.
enum class Writes { Nothing, Triangles, Grids, Either };

/// A format: its extensions, what reads it and, where there is one, what writes it.
struct ExchangeFormat {
    std::vector<std::string_view> read{};
    Importer importer = nullptr;
    std::vector<std::string_view> written{};
    Writes writes = Writes::Nothing;
    TriangleExporter exporter = nullptr; ///< of formats that hold triangles alone
    bool hasBinary = false;
    bool singleBinary = false;               ///< binary numbers are of single precision, whatever is asked for
    FolderImporter folderImporter = nullptr; ///< in place of the importer
    const char* foreign = nullptr;           ///< in place of both, its name for a library of others
    GridExporter gridExporter = nullptr;     ///< of formats in which grids stay grids
    bool alwaysBinary = false;
};

const std::vector<ExchangeFormat>& formats() {
    static const std::vector<ExchangeFormat> all = {
        {{"stl"}, importStl, {"stl"}, Writes::Triangles, exportStl, true, true},
        {{"obj"}, importObj, {"obj"}, Writes::Triangles, exportObj},
        {{"ply"}, importPly, {"ply"}, Writes::Triangles, exportPly, true},
        {{"off"}, importOff, {}},
        {.read = {"gltf", "glb"}, .folderImporter = importGltf},
#ifdef VELMORA_READS_3MF
        {{"3mf"}, importThreemf, {}},
#endif
        {.written = {"wrl"}, .writes = Writes::Triangles, .exporter = exportVrml},
#ifdef VELMORA_READS_VRML
        {.read = {"wrl"}, .foreign = "vrml2"},
        {.read = {"iv"}, .foreign = "inventor"},
#endif
        {.read = {"dat", "plt", "tec"},
         .importer = importTecplot,
         .written = {"dat"},
         .writes = Writes::Either,
         .gridExporter = exportTecplot},
        {.read = {"x", "xyz", "p3d", "fmt"},
         .importer = importPlot3d,
         .written = {"p3d", "xyz"},
         .writes = Writes::Grids,
         .hasBinary = true,
         .gridExporter =
             [](const std::filesystem::path& path, const ExchangeView& model, const ExportZones&,
                const ExportOptions& options, WriteOutcome& outcome,
                const ReportProgress& report) { return exportPlot3d(path, model.patches, options, outcome, report); }},
#ifdef VELMORA_READS_CGNS
        {.read = {"cgns"},
         .written = {"cgns"},
         .writes = Writes::Either,
         .foreign = "cgns",
         .gridExporter = exportCgns,
         .alwaysBinary = true},
#endif
#ifdef VELMORA_READS_CAD
        {.read = {"stp", "step"}, .foreign = "step"},
        {.read = {"igs", "iges"}, .foreign = "iges"},
#endif
    };
    return all;
}

std::string extensionOf(const std::filesystem::path& path) {
    const std::string extension = smallLetters(path.extension().string());
    return extension.empty() ? extension : extension.substr(1);
}

const ExchangeFormat* formatOf(const std::filesystem::path& path, std::vector<std::string_view> ExchangeFormat::*list) {
    const std::string extension = extensionOf(path);
    const auto found = std::find_if(formats().begin(), formats().end(), [&](const ExchangeFormat& format) {
        const auto& extensions = format.*list;
        return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
    });
    return found == formats().end() ? nullptr : &*found;
}

std::vector<std::string_view> allOf(std::vector<std::string_view> ExchangeFormat::*list) {
    std::vector<std::string_view> result;
    for (const ExchangeFormat& format : formats()) {
        result.insert(result.end(), (format.*list).begin(), (format.*list).end());
    }
    return result;
}

std::string_view withoutMark(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    return text.substr(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
}

bool extensionIn(const ExchangeFormat& format, std::string_view extension) {
    return std::find(format.written.begin(), format.written.end(), extension) != format.written.end();
}

bool isGrid(const Patch& patch) {
    return !patch.empty() && !patch.front().empty() &&
           std::all_of(patch.begin(), patch.end(),
                       [&patch](const PointList& section) { return section.size() == patch.front().size(); });
}

bool isFinite(const ExchangeView& model) {
    const auto finite = [](double value) { return std::isfinite(value); };
    const auto finitePoint = [](const zVec<double>& p) {
        return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
    };
    return std::all_of(model.patches.begin(), model.patches.end(),
                       [&finitePoint](const Patch& patch) {
                           return std::all_of(patch.begin(), patch.end(), [&finitePoint](const PointList& section) {
                               return std::all_of(section.begin(), section.end(), finitePoint);
                           });
                       }) &&
           std::all_of(model.region.blocks.begin(), model.region.blocks.end(), [&finite](const auto& zone) {
               return std::all_of(zone->variables.begin(), zone->variables.end(), [&finite](const auto& variable) {
                   return std::all_of(variable->data.begin(), variable->data.end(), finite);
               });
           });
}

/// A record of a block has room for this many bytes.
bool fitsRecords(const PatchList& patches) {
    constexpr std::int64_t mostBytes = 2'147'483'647;
    return std::all_of(patches.begin(), patches.end(), [](const Patch& patch) {
        return std::int64_t{countOf(patch)} * countOf(patch.front()) * 24 <= mostBytes;
    });
}

/// A zone or a patch from which triangles come.
bool hasTriangles(const ExchangeView& model) {
    return std::any_of(
               model.patches.begin(), model.patches.end(),
               [](const Patch& patch) { return isGrid(patch) && patch.size() > 1 && patch.front().size() > 1; }) ||
           std::any_of(model.region.blocks.begin(), model.region.blocks.end(),
                       [](const auto& zone) { return zone->elementCount > 0; });
}

bool canTake(const ExchangeFormat& format, const ExchangeView& model) {
    if (model.patches.empty() || format.writes == Writes::Triangles) {
        return format.writes != Writes::Grids && hasTriangles(model);
    }
    return std::all_of(model.patches.begin(), model.patches.end(), isGrid) &&
           (format.writes != Writes::Grids || fitsRecords(model.patches));
}

bool isBinary(const ExchangeFormat& format, const ExportOptions& options) {
    return format.alwaysBinary || (format.hasBinary && options.binary);
}

bool isSingle(const ExchangeFormat& format, const ExportOptions& options) {
    return isBinary(format, options) && (format.singleBinary || !options.doublePrecision);
}

int digitsOf(const ExchangeFormat& format, const ExportOptions& options) {
    constexpr int digitsOfDouble = 17;
    constexpr int digitsOfSingle = 7;
    return isSingle(format, options) ? digitsOfSingle : isBinary(format, options) ? digitsOfDouble : options.digits;
}

/// A title as it stands in a file of the format; the title itself of one that has none.
std::string writtenTitle(const ExchangeFormat& format, const ExportOptions& options, const std::string& title) {
    if (extensionIn(format, "stl")) {
        return isBinary(format, options) ? title : solidName(onOneLine(title), 1);
    }
    return extensionIn(format, "obj")    ? onOneLine(title)
           : extensionIn(format, "wrl")  ? nodeName(title)
           : extensionIn(format, "cgns") ? cgnsName(title)
           : extensionIn(format, "dat")  ? quotedName(title)
                                         : title;
}

/// Names that the format has no letters or no room for.
void noteNames(const ExchangeFormat& format, const ExportZones& zones, const ExportOptions& options,
               std::vector<std::string>& notes) {
    const auto note = [&notes](const char* what, std::int64_t count) {
        if (count > 0) {
            notes.push_back(what + std::to_string(count));
        }
    };
    const auto& all = zones.zones();
    note("Titles that are written in other letters: ",
         std::count_if(all.begin(), all.end(), [&](const zBlock_fe* zone) {
             return !zone->title.empty() && writtenTitle(format, options, zone->title) != zone->title;
         }));
    if (extensionIn(format, "dat") && !all.empty()) {
        const auto& variables = all.front()->variables;
        note("Names of variables that are written in other letters: ",
             std::count_if(variables.begin(), variables.end(),
                           [](const auto& variable) { return writtenVariableName(variable->name) != variable->name; }));
    }
}

/// What of the model the format has no room for.
void noteLosses(const ExchangeFormat& format, const ExchangeView& model, const ExportZones& zones,
                const ExportOptions& options, std::vector<std::string>& notes) {
    constexpr std::size_t coordinates = 3;
    const auto hasValues = [](const zBlock_fe* zone) { return zone->variables.size() > coordinates; };
    if (!extensionIn(format, "dat") && std::any_of(zones.zones().begin(), zones.zones().end(), hasValues)) {
        notes.emplace_back("Values at points are not written");
    }
    const bool joins = extensionIn(format, "ply") || (extensionIn(format, "stl") && isBinary(format, options));
    if (joins && zones.zones().size() > 1) {
        notes.push_back("Zones that are one in the file: " + std::to_string(zones.zones().size()));
    }
    if (format.writes == Writes::Triangles && !model.patches.empty() && zones.zones().size() < model.patches.size()) {
        notes.push_back("Patches without a surface, left out: " +
                        std::to_string(model.patches.size() - zones.zones().size()));
    }
    noteNames(format, zones, options, notes);
}

ImportOutcome outcomeOf(const ExchangeModel& model, const ReportProgress& report) {
    if (model.empty()) {
        return ImportOutcome::Failed;
    }
    if (report) {
        report(1.0);
    }
    return ImportOutcome::Done;
}

ImportOutcome importByLibrary(const ExchangeFormat& format, const std::filesystem::path& path,
                              const ImportOptions& options, ExchangeModel& model, FileRead& record,
                              const ReportProgress& report) {
    const std::optional<FileIdentity> identity = FileIdentity::of(path);
    if (!identity || ::access(path.c_str(), R_OK) != 0) {
        return ImportOutcome::CannotOpen;
    }
    record.bytes = identity->bytes;
    record.identity = *identity;
    record.format = format.foreign;
    if (identity->bytes == 0) {
        countOf(record.found, "zones") += 0;
        countOf(record.kept, "zones") += 0;
        return ImportOutcome::Failed;
    }
    importForeign(format.foreign, path, options, model, record, report);
    return outcomeOf(model, report);
}

} // namespace

std::vector<std::string_view> importExtensions() {
    return allOf(&ExchangeFormat::read);
}

std::vector<std::string_view> exportExtensions() {
    return allOf(&ExchangeFormat::written);
}

std::vector<std::string_view> absentExtensions() {
    return {
#ifndef VELMORA_READS_3MF
        "3mf",
#endif
#ifndef VELMORA_READS_VRML
        "wrl",  "iv",
#endif
#ifndef VELMORA_READS_CGNS
        "cgns",
#endif
#ifndef VELMORA_READS_CAD
        "stp",  "step", "igs", "iges",
#endif
    };
}

ImportOutcome importFile(const std::filesystem::path& path, const ImportOptions& options, ExchangeModel& model,
                         FileRead& record, const ReportProgress& report) {
    const ExchangeFormat* const format = formatOf(path, &ExchangeFormat::read);
    if (format == nullptr) {
        return ImportOutcome::UnknownType;
    }
    record = {};
    record.path = path;
    try {
        if (format->foreign != nullptr) {
            return importByLibrary(*format, path, options, model, record, report);
        }
        const FileBytes file(path, report);
        if (!file.isOpen()) {
            return ImportOutcome::CannotOpen;
        }
        record.bytes = file.text().size();
        record.identity = file.identity();
        if (file.tooLarge()) {
            record.losesGeometry("The file is too large for the memory");
            return ImportOutcome::Failed;
        }
        if (file.readFailed()) {
            record.losesGeometry("The system could not read on behind byte " + std::to_string(file.text().size()));
            return ImportOutcome::Failed;
        }
        const std::string_view text = withoutMark(file.text());
        if (format->folderImporter != nullptr) {
            format->folderImporter(text, path.parent_path(), options, model, record, report);
        } else {
            format->importer(text, options, model, record, report);
        }
    } catch (const std::bad_alloc&) {
        record.losesGeometry("The memory does not suffice");
        model = {};
    }
    return outcomeOf(model, report);
}

int digitsWritten(const std::filesystem::path& path, const ExportOptions& options) {
    const ExchangeFormat* const format = formatOf(path, &ExchangeFormat::written);
    return format == nullptr ? options.digits : digitsOf(*format, options);
}

double moveByDigits(const std::filesystem::path& path, const ExchangeView& model, const ExportOptions& options) {
    const ExchangeFormat* const format = formatOf(path, &ExchangeFormat::written);
    return format == nullptr ? 0.0 : largestMove(model, digitsOf(*format, options), isSingle(*format, options));
}

ExportOutcome exportPossible(const std::filesystem::path& path, const ExchangeView& model) {
    const ExchangeFormat* const format = formatOf(path, &ExchangeFormat::written);
    return format == nullptr         ? ExportOutcome::UnknownType
           : model.empty()           ? ExportOutcome::Empty
           : canTake(*format, model) ? ExportOutcome::Done
                                     : ExportOutcome::CannotTake;
}

ExportOutcome exportFile(const std::filesystem::path& path, const ExchangeView& model, const ExportOptions& options,
                         WriteOutcome& outcome, const ReportProgress& report) {
    const ExportOutcome possible = exportPossible(path, model);
    if (possible != ExportOutcome::Done) {
        return possible;
    }
    const ExchangeFormat* const format = formatOf(path, &ExchangeFormat::written);
    const bool keepsGrids = format->writes != Writes::Triangles && !model.patches.empty();
    const ExchangeModel nothing;
    const ExportZones zones(keepsGrids ? ExchangeView(nothing) : model, options.merge);
    if (!isFinite(model)) {
        outcome = {};
        outcome.problem = "A coordinate of the model is not finite";
        return ExportOutcome::CannotWrite;
    }
    if (isSingle(*format, options) && !std::isfinite(largestMove(model, digitsOf(*format, options), true))) {
        return ExportOutcome::TooLarge;
    }
    outcome = {};
    outcome.record.path = path;
    const bool written = format->exporter != nullptr
                             ? format->exporter(path, zones, options, outcome, report)
                             : format->gridExporter(path, model, zones, options, outcome, report);
    if (!written) {
        return ExportOutcome::CannotWrite;
    }
    noteLosses(*format, model, zones, options, outcome.notes);
    std::error_code error;
    outcome.record.bytes = std::filesystem::file_size(path, error);
    if (error) {
        outcome.record.bytes = 0;
    }
    return ExportOutcome::Done;
}

} // namespace velmora

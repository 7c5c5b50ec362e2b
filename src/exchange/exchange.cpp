#include "exchange.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <system_error>

#include "FileBytes.h"
#include "TextScan.h"
#include "export_zones.h"
#include "exporters.h"
#include "obj_import.h"
#include "off_import.h"
#include "plot3d_import.h"
#include "ply_import.h"
#include "read_record.h"
#include "stl_import.h"
#include "tecplot_import.h"

namespace velmora {

namespace {

using Importer = void (*)(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                          const ReportProgress& report);
using TriangleExporter = bool (*)(const std::filesystem::path& path, const ExportZones& zones,
                                  const ExportOptions& options, FileWritten& record, const ReportProgress& report);

/// What kind of file an exporter makes.
enum class Writes { Nothing, Triangles, Grids, Either };

/// A format: its extensions, what reads it and, where there is one, what writes it.
struct ExchangeFormat {
    std::vector<std::string_view> read;
    Importer importer = nullptr;
    std::vector<std::string_view> written;
    Writes writes = Writes::Nothing;
    TriangleExporter exporter = nullptr; ///< of formats that hold triangles alone
    bool hasBinary = false;
    bool singleBinary = false; ///< binary numbers are of single precision, whatever is asked for
};

const std::vector<ExchangeFormat>& formats() {
    static const std::vector<ExchangeFormat> all = {
        {{"stl"}, importStl, {"stl"}, Writes::Triangles, exportStl, true, true},
        {{"obj"}, importObj, {"obj"}, Writes::Triangles, exportObj},
        {{"ply"}, importPly, {"ply"}, Writes::Triangles, exportPly, true},
        {{"off"}, importOff, {}},
        {{}, nullptr, {"wrl"}, Writes::Triangles, exportVrml},
        {{"dat", "plt", "tec"}, importTecplot, {"dat"}, Writes::Either},
        {{"x", "xyz", "p3d", "fmt"}, importPlot3d, {"p3d", "xyz"}, Writes::Grids, nullptr, true},
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

bool isGrid(const Patch& patch) {
    return !patch.empty() && !patch.front().empty() &&
           std::all_of(patch.begin(), patch.end(),
                       [&patch](const PointList& section) { return section.size() == patch.front().size(); });
}

/// A record of a block has room for this many bytes.
bool fitsRecords(const PatchList& patches) {
    constexpr std::int64_t mostBytes = 2'147'483'647;
    return std::all_of(patches.begin(), patches.end(), [](const Patch& patch) {
        return std::int64_t{countOf(patch)} * countOf(patch.front()) * 24 <= mostBytes;
    });
}

bool canTake(const ExchangeFormat& format, const ExchangeModel& model, const ExportZones& zones) {
    if (model.patches.empty()) {
        return format.writes != Writes::Grids && zones.triangles() > 0;
    }
    if (format.writes == Writes::Triangles) {
        return zones.triangles() > 0;
    }
    return std::all_of(model.patches.begin(), model.patches.end(), isGrid) &&
           (format.writes != Writes::Grids || fitsRecords(model.patches));
}

bool isSingle(const ExchangeFormat& format, const ExportOptions& options) {
    return format.hasBinary && options.binary && (format.singleBinary || !options.doublePrecision);
}

int digitsOf(const ExchangeFormat& format, const ExportOptions& options) {
    constexpr int digitsOfDouble = 17;
    constexpr int digitsOfSingle = 7;
    return isSingle(format, options)            ? digitsOfSingle
           : format.hasBinary && options.binary ? digitsOfDouble
                                                : options.digits;
}

} // namespace

std::vector<std::string_view> importExtensions() {
    return allOf(&ExchangeFormat::read);
}

std::vector<std::string_view> exportExtensions() {
    return allOf(&ExchangeFormat::written);
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
        const FileBytes file(path, report);
        if (!file.isOpen()) {
            return ImportOutcome::CannotOpen;
        }
        record.bytes = file.text().size();
        if (file.tooLarge()) {
            tellMissing(record, "The file is too large for the memory");
            return ImportOutcome::Failed;
        }
        format->importer(withoutMark(file.text()), options, model, record, report);
    } catch (const std::bad_alloc&) {
        tellMissing(record, "The memory does not suffice");
        model = {};
    }
    if (model.empty()) {
        return ImportOutcome::Failed;
    }
    if (report) {
        report(1.0);
    }
    return ImportOutcome::Done;
}

int digitsWritten(const std::filesystem::path& path, const ExportOptions& options) {
    const ExchangeFormat* const format = formatOf(path, &ExchangeFormat::written);
    return format == nullptr ? options.digits : digitsOf(*format, options);
}

double moveByDigits(const std::filesystem::path& path, const ExchangeModel& model, const ExportOptions& options) {
    const ExchangeFormat* const format = formatOf(path, &ExchangeFormat::written);
    return format == nullptr ? 0.0 : largestMove(model, digitsOf(*format, options), isSingle(*format, options));
}

ExportOutcome exportFile(const std::filesystem::path& path, const ExchangeModel& model, const ExportOptions& options,
                         FileWritten& record, const ReportProgress& report) {
    const ExchangeFormat* const format = formatOf(path, &ExchangeFormat::written);
    if (format == nullptr) {
        return ExportOutcome::UnknownType;
    }
    if (model.empty()) {
        return ExportOutcome::Empty;
    }
    const bool keepsGrids = format->writes != Writes::Triangles && !model.patches.empty();
    const ExchangeModel nothing;
    const ExportZones zones(keepsGrids ? nothing : model, options.merge);
    if (!canTake(*format, model, zones)) {
        return ExportOutcome::CannotTake;
    }
    if (isSingle(*format, options) && !std::isfinite(largestMove(model, digitsOf(*format, options), true))) {
        return ExportOutcome::TooLarge;
    }
    record = {};
    record.path = path;
    const bool written = format->exporter != nullptr       ? format->exporter(path, zones, options, record, report)
                         : format->writes == Writes::Grids ? exportPlot3d(path, model.patches, options, record, report)
                                                           : exportTecplot(path, model, zones, options, record, report);
    if (!written) {
        return ExportOutcome::CannotWrite;
    }
    std::error_code error;
    record.bytes = std::filesystem::file_size(path, error);
    if (error) {
        record.bytes = 0;
    }
    return ExportOutcome::Done;
}

} // namespace velmora

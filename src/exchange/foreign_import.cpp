#include "foreign_import.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <utility>
#include <variant>

#include "grid_builder.h"
#include "mesh_builder.h"
#include "reading_child.h"

namespace velmora {

namespace {

bool isGrid(const std::variant<ForeignGrid, FileMesh>& part) {
    return std::holds_alternative<ForeignGrid>(part);
}

std::string reasonOf(ChildEnd end, const std::string& format) {
    switch (end) {
    case ChildEnd::NoProgram:
        return missingReader(format);
    case ChildEnd::Refused:
        return "The file is damaged, or of another kind than its name says";
    case ChildEnd::Unreadable:
        return "The system could not read the file to its end";
    case ChildEnd::OutOfMemory:
        return "The memory does not suffice";
    case ChildEnd::TooLong:
        return "Reading took too long";
    default:
        return "The reader of such files failed at this one";
    }
}

void takeGrids(ForeignFile& file, const ImportOptions& options, ExchangeModel& model, FileRead& record) {
    GridTally tally;
    countOf(record.found, "zones") += countOf(file.parts);
    countOf(record.kept, "zones") += 0;
    std::int64_t kept = 0;
    bool titled = false;
    for (auto& part : file.parts) {
        const auto& grid = std::get<ForeignGrid>(part);
        countBlock(grid.block, record.found);
        PatchList patches = patchesOf(grid.block, options, tally);
        countPatches(patches, record.kept);
        kept += patches.empty() ? 0 : 1;
        titled = titled || (!patches.empty() && !grid.title.empty());
        std::move(patches.begin(), patches.end(), std::back_inserter(model.patches));
        part = ForeignGrid(); // its memory is free for the next one
    }
    countOf(record.kept, "zones") += kept;
    tellGrids(tally, options, record);
    if (titled) {
        record.losesDetail("Titles of grids are not kept");
    }
}

void append(FileMesh& whole, FileMesh&& part) {
    const auto point = static_cast<std::int64_t>(whole.pointCount());
    const auto count = static_cast<std::int64_t>(part.pointCount());
    const std::size_t corner = whole.corners.size();
    const auto zone = static_cast<std::int32_t>(whole.zones.size());
    whole.x.insert(whole.x.end(), part.x.begin(), part.x.end());
    whole.y.insert(whole.y.end(), part.y.begin(), part.y.end());
    whole.z.insert(whole.z.end(), part.z.begin(), part.z.end());
    if (part.zones.empty()) {
        part.zones.emplace_back();
    }
    part.zoneOfPolygon.resize(part.polygonEnds.size());
    std::move(part.zones.begin(), part.zones.end(), std::back_inserter(whole.zones));
    std::transform(part.corners.begin(), part.corners.end(), std::back_inserter(whole.corners),
                   [point, count](std::int64_t c) { return c >= 0 && c < count ? c + point : -1; });
    std::transform(part.polygonEnds.begin(), part.polygonEnds.end(), std::back_inserter(whole.polygonEnds),
                   [corner](std::size_t end) { return end + corner; });
    std::transform(part.zoneOfPolygon.begin(), part.zoneOfPolygon.end(), std::back_inserter(whole.zoneOfPolygon),
                   [zone](std::int32_t number) { return number + zone; });
}

void takeMesh(ForeignFile& file, const ImportOptions& options, ExchangeModel& model, FileRead& record,
              const ReportProgress& report) {
    FileMesh mesh;
    GridTally tally;
    std::int64_t lines = 0;
    ImportOptions unscaled = options;
    unscaled.scale = 1.0; // the mesh is scaled as a whole
    for (auto& part : file.parts) {
        if (auto* const grid = std::get_if<ForeignGrid>(&part)) {
            const PatchList patches = patchesOf(grid->block, unscaled, tally);
            mesh.zones.push_back(grid->title);
            const bool surface = addTriangles(patches, mesh);
            tally.triangles += surface ? 1 : 0;
            lines += !surface && !patches.empty() ? 1 : 0;
            mesh.zoneOfPolygon.resize(mesh.polygonEnds.size(), static_cast<std::int32_t>(mesh.zones.size()) - 1);
        } else {
            append(mesh, std::move(std::get<FileMesh>(part)));
        }
        part = ForeignGrid();
    }
    buildZones(std::move(mesh), options, model, record, report);
    tellGrids(tally, {}, record);
    if (lines > 0) {
        record.losesGeometry("Grids of one section, which have no surface: " + std::to_string(lines));
    }
}

/// How far single precision may have moved a point, when that is worth telling.
double moveOf(const ExchangeModel& model) {
    constexpr double halfOfLastBit = 0x1p-24;
    constexpr double smallPart = 1e-5;
    zVec<double> lower(1e300, 1e300, 1e300);
    zVec<double> upper(-1e300, -1e300, -1e300);
    zoneBounds(model.region, lower, upper);
    double largest = 0.0;
    for (const double value : {lower.x, lower.y, lower.z, upper.x, upper.y, upper.z}) {
        largest = std::max(largest, std::abs(value));
    }
    const zVec<double> across = upper - lower;
    const double radius = 0.5 * std::hypot(across.x, across.y, across.z);
    const double move = largest * halfOfLastBit;
    return move > smallPart * radius ? move : 0.0;
}

} // namespace

void takeForeign(ForeignFile&& file, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                 const ReportProgress& report) {
    record.format = file.format.empty() ? record.format : file.format;
    record.unit = file.unit;
    if (!file.parts.empty() && std::all_of(file.parts.begin(), file.parts.end(), isGrid)) {
        takeGrids(file, options, model, record);
    } else {
        takeMesh(file, options, model, record, report);
    }
    if (file.facesFound > 0) {
        countOf(record.found, "faces") += file.facesFound;
        countOf(record.kept, "faces") += file.facesKept;
    }
    for (std::string& reason : file.lost) {
        record.losesGeometry(std::move(reason));
    }
    for (std::string& reason : file.details) {
        record.losesDetail(std::move(reason));
    }
    for (std::string& what : file.changed) {
        record.alters(std::move(what));
    }
    if (record.complete && model.empty()) {
        record.losesGeometry("No surface was found");
    }
    if (file.singlePrecision && !model.region.blocks.empty()) {
        model.libraryMoves = moveOf(model);
        record.lossless = record.lossless && model.libraryMoves == 0.0;
    }
}

void importForeign(const std::string& format, const std::filesystem::path& path, const ImportOptions& options,
                   ExchangeModel& model, FileRead& record, const ReportProgress& report) {
    record.format = format;
    ForeignFile file;
    const ChildEnd end = readInChild(readerProgram(format), format, path, options, file, report);
    if (end == ChildEnd::Whole) {
        takeForeign(std::move(file), options, model, record, report);
        return;
    }
    record.losesGeometry(reasonOf(end, format));
    takeForeign({}, options, model, record);
}

} // namespace velmora

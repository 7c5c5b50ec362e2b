#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "FileRecord.h"
#include "exchange_files.h"
#include "fuzz_files.h"

namespace velmora::fuzz {

using ImportFunction = void (*)(std::string_view text, const ImportOptions& options, ExchangeModel& model,
                                FileRead& record, const ReportProgress& report);

inline bool isFinite(const zVec<double>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// Coordinates are finite, triangles name nodes that are there, and a model is grids or triangles.
inline void checkModel(const ExchangeModel& model) {
    require(model.patches.empty() || model.region.blocks.empty());
    for (const Patch& patch : model.patches) {
        require(!patch.empty());
        for (const PointList& section : patch) {
            require(section.size() == patch.front().size());
            for (const zVec<double>& point : section) {
                require(isFinite(point));
            }
        }
    }
    for (const auto& zone : model.region.blocks) {
        require(consistent(*zone) && zone->elementCount > 0);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            for (const double value : zone->variables[axis]->data) {
                require(std::isfinite(value));
            }
        }
    }
}

/// What is told agrees with itself: nothing is kept that was not found, and what is missing has a reason.
inline void checkRecord(const FileRead& record) {
    require(record.complete || !record.reasons.empty());
    require(record.complete || !record.lossless);
    require(record.found.size() == record.kept.size());
    for (std::size_t i = 0; i < record.found.size(); ++i) {
        require(record.found[i].first == record.kept[i].first && record.kept[i].second >= 0);
        require(record.kept[i].second <= record.found[i].second);
    }
}

/// The model can be written by a format that takes it, and comes back with as many points and triangles.
inline void checkExport(const ExchangeModel& model) {
    static const OutputFolder folder;
    const bool grids = !model.patches.empty();
    const std::filesystem::path path = folder / (grids ? "again.p3d" : "again.ply");
    WriteOutcome written;
    require(exportFile(path, model, {}, written) == ExportOutcome::Done);
    ExchangeModel again;
    FileRead record;
    require(importFile(path, {}, again, record) == ImportOutcome::Done && record.complete);
    require(pointTotal(again.patches) == pointTotal(model.patches));
}

/// Any bytes as a file of a format, with every choice of the options by the size.
inline void checkImport(const std::uint8_t* data, std::size_t size, ImportFunction import) {
    const std::string text(reinterpret_cast<const char*>(data), size); // a NUL stands behind it
    ImportOptions options;
    options.merge = size % 2 == 0;
    options.volumeFaces = size % 3 != 0;
    options.scale = size % 5 == 0 ? 1e300 : 1.0;
    ExchangeModel model;
    FileRead record;
    import(text, options, model, record, {});
    checkModel(model);
    checkRecord(record);
    if (!model.empty()) {
        checkExport(model);
    }
}

} // namespace velmora::fuzz

#include "skl.h"

#include <optional>
#include <utility>

#include "NumberReader.h"
#include "patch_text.h"

namespace velmora {

namespace {

// Reads points into `section`, which is cleared first.
bool readPoints(NumberReader& reader, std::int32_t count, PointList& section) {
    section.clear();
    zVec<double> point;
    for (std::int32_t j = 0; j < count; ++j) {
        if (!readPoint(reader, point)) {
            return false;
        }
        section.push_back(point);
    }
    return true;
}

// Reads the sections of one compartment; yields what is wrong with them, if anything is.
std::optional<FormatFaultKind> readSections(NumberReader& reader, std::int32_t count, Patch& patch) {
    PointList section; // a patch gets a copy of just its size
    for (std::int32_t i = 0; i < count; ++i) {
        std::int32_t points = 0;
        if (!reader.readInt(points)) {
            return FormatFaultKind::Header;
        }
        if (!readPoints(reader, points, section)) {
            return FormatFaultKind::Body;
        }
        patch.push_back(section);
    }
    return std::nullopt;
}

std::int64_t pointsOf(const Patch& patch) {
    std::int64_t points = 0;
    for (const PointList& section : patch) {
        points += static_cast<std::int64_t>(section.size());
    }
    return points;
}

void writeSklPatch(NumberWriter& writer, const Patch& patch) {
    writer.writeInt(countOf(patch));
    writer.writeChar('\n');
    for (const PointList& section : patch) {
        writer.writeInt(countOf(section));
        writer.writeChar('\n');
        for (const zVec<double>& point : section) {
            writePoint(writer, point);
        }
    }
}

} // namespace

SklReadResult readSkl(const std::filesystem::path& path, PatchList& patches, const ReportProgress& report) {
    SklReadResult result;
    NumberReader reader(path);
    reader.reportTo(report);
    result.opened = reader.isOpen();
    if (!result.opened) {
        result.faults.push_back({FormatFaultKind::CannotOpen, 0, 1});
        return result;
    }
    std::int32_t sections = 0;
    for (std::int64_t compartment = 1; reader.readInt(sections); ++compartment) {
        Patch patch;
        if (const auto fault = readSections(reader, sections, patch)) {
            result.faults.push_back({*fault, compartment, 1});
            return result;
        }
        result.pointsRead += pointsOf(patch);
        patches.push_back(std::move(patch));
    }
    result.endReached = true;
    result.textBehind = !reader.endedAtEndOfFile();
    return result;
}

bool writeSkl(const std::filesystem::path& path, const PatchList& patches, int precision,
              const ReportProgress& report) {
    return savePatches(path, selectAll(patches), precision, writeSklPatch, report);
}

bool writeSklBlock(const std::filesystem::path& path, const PatchList& patches, std::span<const std::int32_t> blockList,
                   int precision, const ReportProgress& report) {
    return savePatches(path, selectBlock(patches, blockList), precision, writeSklPatch, report);
}

// "SLK" is a misprint that is wanted: notes and scripts quote these texts.
std::string sklMessage(const FormatFault& fault) {
    return faultMessage(
        fault, "Line header of SLK file is wrong. Compartment N= ", "Body of SLK file is wrong. Compartment N= ");
}

} // namespace velmora

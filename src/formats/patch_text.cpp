#include "patch_text.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

bool isFinite(const zVec<double>& point) {
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

} // namespace

void writePoint(NumberWriter& writer, const zVec<double>& point) {
    writer.writeDouble(point.x);
    writer.writeChar(' ');
    writer.writeDouble(point.y);
    writer.writeChar(' ');
    writer.writeDouble(point.z);
    writer.writeChar('\n');
}

bool holdsGrid(const Patch& patch) {
    return std::all_of(patch.begin(), patch.end(),
                       [&patch](const PointList& section) { return section.size() >= patch.front().size(); });
}

PatchSelection selectAll(const PatchList& patches) {
    PatchSelection selection;
    selection.reserve(patches.size());
    for (const Patch& patch : patches) {
        selection.push_back(&patch);
    }
    return selection;
}

PatchSelection selectBlock(const PatchList& patches, std::span<const std::int32_t> blockList) {
    PatchSelection selection;
    for (const std::int32_t number : blockList) {
        if (number >= 0 && number < countOf(patches)) {
            selection.push_back(&patches[static_cast<std::size_t>(number)]);
        }
    }
    return selection;
}

std::int64_t pointCountOf(const PatchSelection& selection) {
    std::int64_t points = 0;
    for (const Patch* patch : selection) {
        for (const PointList& section : *patch) {
            points += static_cast<std::int64_t>(section.size());
        }
    }
    return points;
}

std::string placeNotFinite(const PatchList& patches, const PatchSelection& selection) {
    for (const Patch* patch : selection) {
        for (const PointList& section : *patch) {
            const auto point = std::find_if_not(section.begin(), section.end(), isFinite);
            if (point != section.end()) {
                return "Patch " + std::to_string(patch - patches.data() + 1) + ", section " +
                       std::to_string(&section - patch->data() + 1) + ", point " +
                       std::to_string(point - section.begin() + 1);
            }
        }
    }
    return {};
}

WriteOutcome refuseNotFinite(const std::string& place) {
    WriteOutcome outcome;
    outcome.problem = place + ": the number is not finite, and could not be read again";
    return outcome;
}

WriteOutcome saveText(const std::filesystem::path& path, int precision, const std::function<void(NumberWriter&)>& write,
                      const ReportProgress& report, std::int64_t numbers) {
    WriteOutcome outcome;
    SafeFile file(path);
    if (!file.isOpen()) {
        return outcome;
    }
    NumberWriter writer(file, precision);
    writer.reportTo(report, numbers);
    write(writer);
    outcome.written = writer.flush() && file.commit();
    outcome.notes = file.notes();
    outcome.record.path = path;
    outcome.record.bytes = file.size();
    return outcome;
}

WriteOutcome savePatches(const std::filesystem::path& path, const PatchList& patches, const PatchSelection& selection,
                         int precision, const std::function<void(NumberWriter&, const Patch&)>& writePatch,
                         const ReportProgress& report) {
    const std::string place = placeNotFinite(patches, selection);
    if (!place.empty()) {
        return refuseNotFinite(place);
    }
    const auto writeAll = [&](NumberWriter& writer) {
        for (const Patch* patch : selection) {
            writePatch(writer, *patch);
        }
    };
    return saveText(path, precision, writeAll, report, 3 * pointCountOf(selection));
}

} // namespace velmora

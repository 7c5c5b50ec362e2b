#include "patch_text.h"

#include <algorithm>

namespace velmora {

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

bool saveText(const std::filesystem::path& path, int precision, const std::function<void(NumberWriter&)>& write,
              const ReportProgress& report, std::int64_t numbers) {
    SafeFile file(path);
    if (!file.isOpen()) {
        return false;
    }
    NumberWriter writer(file, precision);
    writer.reportTo(report, numbers);
    write(writer);
    return writer.flush() && file.commit();
}

bool savePatches(const std::filesystem::path& path, const PatchSelection& selection, int precision,
                 const std::function<void(NumberWriter&, const Patch&)>& writePatch, const ReportProgress& report) {
    const auto writeAll = [&](NumberWriter& writer) {
        for (const Patch* patch : selection) {
            writePatch(writer, *patch);
        }
    };
    return saveText(path, precision, writeAll, report, 3 * pointCountOf(selection));
}

} // namespace velmora

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

bool saveText(const std::filesystem::path& path, int precision, const std::function<void(NumberWriter&)>& write) {
    SafeFile file(path);
    if (!file.isOpen()) {
        return false;
    }
    NumberWriter writer(file, precision);
    write(writer);
    return writer.flush() && file.commit();
}

bool savePatches(const std::filesystem::path& path, const PatchSelection& selection, int precision,
                 const std::function<void(NumberWriter&, const Patch&)>& writePatch) {
    return saveText(path, precision, [&](NumberWriter& writer) {
        for (const Patch* patch : selection) {
            writePatch(writer, *patch);
        }
    });
}

} // namespace velmora

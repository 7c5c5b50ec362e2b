#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "FileRecord.h"
#include "NumberWriter.h"
#include "PatchList.h"
#include "progress.h"

namespace velmora {

/// What the text formats of patches share: points, the choice of patches, saving.

/// Takes x, y, z. False, with `point` as it was, when one of them cannot be read.
template <class Reader>
bool readPoint(Reader& reader, zVec<double>& point) {
    std::array<double, 3> values{};
    const bool read = reader.readDoubles(values.data(), values.size());
    if (read) {
        point = {values[0], values[1], values[2]};
    }
    return read;
}

/// Writes x, blank, y, blank, z, line feed.
void writePoint(NumberWriter& writer, const zVec<double>& point);

/// Whether every section has at least as many points as the first one, so that the patch can be written as a grid.
bool holdsGrid(const Patch& patch);

/// Patches of a model to be written, in this order; they live in the model.
using PatchSelection = std::vector<const Patch*>;

/// All patches of the model.
PatchSelection selectAll(const PatchList& patches);

/// The patches whose numbers, from 0, stand in `blockList`, in its order and as often as they stand there. Numbers
/// that are negative or past the end are passed over.
PatchSelection selectBlock(const PatchList& patches, std::span<const std::int32_t> blockList);

/// The points of all its patches.
std::int64_t pointCountOf(const PatchSelection& selection);

/// Where the first number of the selection stands that is not finite: "Patch 2, section 1, point 7"; empty when there
/// is none. The numbers are those of the model, `patches`, counted from 1.
std::string placeNotFinite(const PatchList& patches, const PatchSelection& selection);

/// The outcome of a file that is not begun because the number at `place` is not finite.
WriteOutcome refuseNotFinite(const std::string& place);

/// Saves a file that consists of what `write` writes, numbers with `precision` digits behind the point. Written when
/// all of it is in place; otherwise an old file stands as it was. `report` is told how much of about `numbers` numbers
/// has been written. The record has the path and the bytes.
WriteOutcome saveText(const std::filesystem::path& path, int precision, const std::function<void(NumberWriter&)>& write,
                      const ReportProgress& report = {}, std::int64_t numbers = 0);

/// Saves a file that consists of what `writePatch` writes of each patch of the selection, see saveText. Nothing is
/// begun when one of their numbers is not finite.
WriteOutcome savePatches(const std::filesystem::path& path, const PatchList& patches, const PatchSelection& selection,
                         int precision, const std::function<void(NumberWriter&, const Patch&)>& writePatch,
                         const ReportProgress& report = {});

} // namespace velmora

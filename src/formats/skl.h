#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "FileRecord.h"
#include "PatchList.h"
#include "format_outcome.h"
#include "progress.h"

namespace velmora {

/// How the reading of an .skl file went.
struct SklReadResult {
    bool opened = false;
    bool endReached = false;         ///< the regular end of the file
    std::int64_t pointsRead = 0;     ///< in the patches that were pushed
    bool textBehind = false;         ///< the regular end came before the file's: what stands behind is unread
    std::vector<FormatFault> faults; ///< at most one, as the first fault ends the reading
    FileRead record;                 ///< what the file holds and what of it was kept, as far as it was read
};

/// Reads an .skl file: compartments, each the number of sections and then, for each section, the number of its
/// points and the points. Line breaks are free. The patches are pushed behind those in `patches`; after a fault the
/// compartment in hand is dropped and those before it stay. Where the number of sections should stand, anything else
/// is the regular end of the file. A count below zero counts as zero. A header fault is also one with which the file
/// has more than `bareSectionLimit` sections without points and patches without sections: no data pays for their
/// memory, which is many times that of their text. Time and memory go by what the file holds.
SklReadResult readSkl(const std::filesystem::path& path, PatchList& patches, const ReportProgress& report = {});

/// Saves `patches` as an .skl file with `precision` digits behind the point. Not written, and an old file stands as it
/// was, when it cannot be, or when a number is not finite.
WriteOutcome writeSkl(const std::filesystem::path& path, const PatchList& patches, int precision,
                      const ReportProgress& report = {});

/// The same for the patches whose numbers, from 0, stand in `blockList`, in its order; a number that is negative or
/// past the end is passed over.
WriteOutcome writeSklBlock(const std::filesystem::path& path, const PatchList& patches,
                           std::span<const std::int32_t> blockList, int precision, const ReportProgress& report = {});

/// The text for the user.
std::string sklMessage(const FormatFault& fault);

} // namespace velmora

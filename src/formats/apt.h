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

/// How the reading of an .apt file went.
struct AptReadResult {
    bool opened = false;             ///< the file could be opened for the first pass
    bool firstPassEnded = false;     ///< the first pass came to the regular end of the file
    bool endReached = false;         ///< the last pass that was made came to the regular end of the file
    std::int64_t pointsInFile = 0;   ///< as the headers count them, in 32 bits; decides on the thinning
    std::int64_t pointsKept = 0;     ///< in the patches that were pushed
    bool thinned = false;            ///< points or sections were left out to thin the model
    bool cutAtLimit = false;         ///< sections stayed unread because `keptPointLimit` was reached
    bool textBehind = false;         ///< the regular end came before the file's: what stands behind is unread
    std::vector<FormatFault> faults; ///< in the order in which they were met
    FileRead record;                 ///< what the file holds and what of it was kept, as far as it was read
};

/// How much of the file becomes patches.
enum class AptDetail {
    Thinned, ///< as a model that is opened: thinned by its size, cut at the limit
    Whole,   ///< every point
};

/// Reads an .apt file: compartments, each a header line with the number of sections and of points per section, and
/// a line for each point. The patches are pushed behind those in `patches`.
///
/// A first pass counts lines; a body fault in it leaves `patches` alone, a header fault is noted and the second pass
/// made all the same. The second pass thins the model by its size (see thinning.h), unless all of it
/// is wanted, and stops at the first fault; the patches pushed before it stay. A header that is not two integers is the
/// regular end of the file. In the second pass a header fault is also one that, with those before it, asks for more
/// than `bareSectionLimit` sections without points. Time and memory go by what the file holds, not by what its headers
/// say. A file whose headers and points have a line each, and that holds nothing else, is read once, to the same
/// result.
AptReadResult readApt(const std::filesystem::path& path, PatchList& patches, const ReportProgress& report = {},
                      AptDetail detail = AptDetail::Thinned);

/// Saves `patches` as an .apt file with `precision` digits behind the point. Not written, and an old file stands as it
/// was, when it cannot be, when a section has fewer points than the first one of its patch, or when a number is not
/// finite, which readApt would refuse; of a longer section the points past the first one's number are left out.
WriteOutcome writeApt(const std::filesystem::path& path, const PatchList& patches, int precision,
                      const ReportProgress& report = {});

/// The same for the patches whose numbers, from 0, stand in `blockList`, in its order; a number that is negative or
/// past the end is passed over.
WriteOutcome writeAptBlock(const std::filesystem::path& path, const PatchList& patches,
                           std::span<const std::int32_t> blockList, int precision, const ReportProgress& report = {});

/// The text for the user.
std::string aptMessage(const FormatFault& fault);

} // namespace velmora

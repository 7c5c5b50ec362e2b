#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "PatchList.h"
#include "format_outcome.h"
#include "progress.h"

namespace velmora {

/// A field file is a model with up to three function values at each point: a title line, a line that lists the quoted
/// names of the variables, and zones, each a header line with the counts behind "I=" and "J=" and its points.

/// The most function values of a point.
inline constexpr std::int32_t maxFieldCount = 3;
/// The most points in a direction that a header of a zone can tell.
inline constexpr std::int32_t maxZoneCount = 99999;

inline constexpr std::string_view wrongVariablesMessage = "Your 'dat' file contains wrong number of variables";

/// What a field file holds, and how its reading went.
struct FieldReadResult {
    bool opened = false;
    bool loaded = false;         ///< the regular end was reached; else there are no patches
    std::string titleLine;       ///< of either line what a buffer of 255 bytes holds: at most 254 characters, and none
    std::string variablesLine;   ///< from a NUL on
    std::int32_t fieldCount = 0; ///< function values of a point, 0 to maxFieldCount
    PatchList patches;
    PatchList fieldPatches;          ///< of the shape of `patches`: the function values as x, y, z, the missing ones 0
    bool textBehind = false;         ///< the regular end came before the file's: what stands behind is unread
    std::vector<FormatFault> faults; ///< at most one, as the first fault ends the reading
    FileRead record;                 ///< what the file holds and what of it was kept, as far as it was read
};

/// Reads a field file. The quotes of the variables line must be even in number and 6 to 12; they give the number of
/// function values. Of each zone, I is the number of points of a section and J that of sections: an integer within the
/// 5 characters behind the first "I=" or "J=" of the header line and before a comma, so at most 99999; a count below
/// zero counts as zero, but -1 is a header fault. Line breaks between the numbers of a zone are free; what stands
/// behind its last number in that line is left out. An empty line where a header should stand is the regular end of
/// the file, and so is, as a stream has it, all that comes behind a line of more than 254 characters.
///
/// More than `bareSectionLimit` sections without points are a header fault. Time and memory go by what the file holds,
/// not by what its headers say.
FieldReadResult readFieldFile(const std::filesystem::path& path, const ReportProgress& report = {});

/// Saves `patches` with the first `fieldCount` (0 to maxFieldCount; others are cut to it) values of `field` at the same
/// place, 0 where `field` has no such place; numbers have `precision` digits behind the point. Not written, and an old
/// file stands as it was, when it cannot be, when a section has fewer points than the first one of its patch, and when
/// it could not be read again: with a number that is not finite, or more than 99999 points in a direction. Of a longer
/// section the points past the first one's number are left out.
WriteOutcome writeFieldFile(const std::filesystem::path& path, const PatchList& patches, const PatchList& field,
                            std::int32_t fieldCount, std::string_view titleLine, std::string_view variablesLine,
                            int precision, const ReportProgress& report = {});

/// The text for the user.
std::string fieldMessage(const FormatFault& fault);

} // namespace velmora

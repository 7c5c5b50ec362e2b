#pragma once

#include <filesystem>
#include <string_view>

#include "FileRecord.h"
#include "PatchList.h"

namespace velmora {

/// The points of a file, in its order.
struct PointFileResult {
    bool opened = false; ///< a file that cannot be opened has no points; `cannotOpenMessage` is for the user
    PointList points;
    bool readFailed = false; ///< the system could not read on; `readFailedMessage` is for the user
    FileRead record;
};

/// Reads the points of a line buffer (.ext) or of markers (.apm): x, y, z, line breaks being free, up to the first
/// number that cannot be read. A point that is not complete is left out.
/// `format` is the name of the kind in the record.
PointFileResult readPointFile(const std::filesystem::path& path, std::string_view format = "ext");

/// Marker shifts of a file, in its order.
struct SftResult {
    bool opened = false; ///< as in PointFileResult
    PointList points;
    PointList targets; ///< where the points go; as many as `points`
    bool readFailed = false;
    FileRead record;
};

/// Reads marker shifts (.sft): seven lines of any text, then records of x, y, z, dx, dy, dz and a number without a
/// meaning, line breaks being free, up to the first number that cannot be read. A record that is not complete is left
/// out; the last one needs no line feed.
SftResult readSft(const std::filesystem::path& path);

/// Saves a line buffer as an .ext file, a line for each point, with `precision` digits behind the point. Not
/// written, and an old file stands as it was, when it cannot be, or when a number is not finite.
WriteOutcome writeLineBuffer(const std::filesystem::path& path, const PointList& line, int precision);

} // namespace velmora

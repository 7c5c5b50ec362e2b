#pragma once

#include <filesystem>

#include "PatchList.h"

namespace velmora {

/// The points of a file, in its order.
struct PointFileResult {
    bool opened = false; ///< a file that cannot be opened has no points; `cannotOpenMessage` is for the user
    PointList points;
};

/// Reads the points of a line buffer (.ext) or of markers (.apm): x, y, z, line breaks being free, up to the first
/// number that cannot be read. A point that is not complete is left out.
PointFileResult readPointFile(const std::filesystem::path& path);

/// Marker shifts of a file, in its order.
struct SftResult {
    bool opened = false; ///< as in PointFileResult
    PointList points;
    PointList targets; ///< where the points go; as many as `points`
};

/// Reads marker shifts (.sft): seven lines of any text, then records of x, y, z, dx, dy, dz and a number without a
/// meaning, line breaks being free, up to the first number that cannot be read. A record that is not complete is left
/// out; the last one needs no line feed.
SftResult readSft(const std::filesystem::path& path);

/// Saves a line buffer as an .ext file, a line for each point, with `precision` digits behind the point. False, and an
/// old file stands as it was, when it cannot be written.
bool writeLineBuffer(const std::filesystem::path& path, const PointList& line, int precision);

} // namespace velmora

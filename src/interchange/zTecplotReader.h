#pragma once

#include <cstdint>
#include <filesystem>

#include "FileRecord.h"
#include "progress.h"
#include "zRegion.h"

namespace velmora {

/// Reads ordered and triangle zones from a Tecplot text file, and writes them back.
///
/// The grammar is small on purpose. A scanner of characters cuts the file into header texts and numbers
/// (TecplotHeaderScan.h), a layer of regular expressions finds the keywords in a header text
/// (TecplotHeaderParser.h), and the numbers of a zone are then taken straight from the file (TecplotZoneData.h).
/// Every error is of the family of zExceptions.h and names "zTecplotReader" as its file; regular expressions may also
/// throw a std::runtime_error on a header made to be hard.
class zTecplotReader {
public:
    /// What `write` takes; the caller sets it. A null pointer is a region without zones.
    const zRegion* structuredTarget = nullptr;
    const zRegion_fe* unstructuredTarget = nullptr;

    /// Receives the progress of reading or writing; the caller sets it.
    ReportProgress report;
    /// What `read` found in the file and what of it became zones.
    FileRead record;

    /// Puts the zones of a file behind those of the two regions: ordered zones of at least 2 by 2 points and, as
    /// triangles, zones of triangles and of quadrilaterals. When both regions hold zones at the end, the structured
    /// ones become triangles too. The file's title goes to the region that has zones.
    ///
    /// A zone has the fields x, y, z and, unless `coordinatesOnly`, the others behind them. On an error the regions
    /// keep what was appended before.
    void read(const std::filesystem::path& fileName, zRegion& structured, zRegion_fe& unstructured,
              bool coordinatesOnly = true);

    /// Writes the zones of `structuredTarget`, or when it has none those of `unstructuredTarget`, with `precision`
    /// significant digits. Without any zone the file is empty. A number that is not finite raises a
    /// ValueError, a file that cannot be opened or written a FileError, and an old file then stands as it was.
    WriteOutcome write(const std::filesystem::path& fileName, std::int32_t precision) const;
};

} // namespace velmora

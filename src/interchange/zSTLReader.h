#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

#include "FileRecord.h"
#include "NumberWriter.h"
#include "TextStream.h"
#include "progress.h"
#include "zRegion.h"
#include "zTriangulator.h"

namespace velmora {

/// Reads and writes STL files in text form. Corners are not merged: each corner of each facet is a node of its own.
class zSTLReader {
public:
    /// Receives the progress of reading or writing; the caller sets it.
    ReportProgress report;
    /// What `read` found in the file and what of it became zones.
    FileRead record;

    /// `blockSize` is the reading block in bytes; it has no effect on what is read.
    explicit zSTLReader(std::size_t blockSize = TextStream::defaultBlockSize) : blockSize_(blockSize) {}

    /// Appends a zone for each solid that has facets, titled with the one word behind "solid". A facet that is damaged
    /// or has fewer than three corners is left out, one of more corners becomes a fan; stored normals are not used. A
    /// file without solids, a binary one mostly, gives nothing. Raises FileError when the file cannot be opened,
    /// IOError when the system cannot read it to its end, and SystemError when a zone cannot be made.
    void read(const std::filesystem::path& fileName, zRegion_fe& region);

    /// Writes every zone as a solid, its first three fields being the coordinates, with six significant digits.
    /// Triangles without a normal are left out, and so are elements that name nodes which are not there. Raises
    /// ValueError on a number that is not finite, and FileError when the file cannot be opened or written; an old file
    /// then stands as it was.
    WriteOutcome write(const std::filesystem::path& fileName, const zRegion_fe& region);

    /// Whether the file is one of bytes, which `read` does not take. False for one that cannot be read.
    static bool isBinary(const std::filesystem::path& fileName);

    /// Triangles without a normal that `write` left out; its outcome tells of them too.
    std::int64_t skippedFacets() const { return skippedFacets_; }
    /// How many triangles of the region `write` would leave out, as they have no normal.
    static std::int64_t facetsLeftOut(const zRegion_fe& region);

private:
    void readSolid(TextStream& input, zRegion_fe& region);
    bool readFacets(TextStream& input, bool lost);
    bool readFacet(TextStream& input);
    void takeFacet();
    void makeRoom(const TextStream& input);
    void trimRoom();
    bool countCapitals(std::string_view word);
    void noteBinary(TextStream& input);
    void countBinary(TextStream& input);
    void noteLosses(TextStream& input);
    void writeSolid(NumberWriter& output, const zBlock_fe& zone, const std::string& name);
    void writeFacet(NumberWriter& output, const std::array<zVec<double>, 3>& corners);

    std::size_t blockSize_;
    VertexList vertices_;                        // of the solid being read
    std::vector<std::int32_t> connectivity_;     // of the solid being read
    std::int64_t solidBegin_ = 0;                // where in the file it begins
    std::vector<Triangle> faces_;                // of the facet being read
    std::vector<std::array<double, 3>> corners_; // of the facet being read
    Polygon polygon_;

    // What the file read lost, and where it did first.
    struct Losses {
        std::int64_t namelessSolids = 0;
        std::int64_t outside = 0;  // facets behind no "solid"
        std::int64_t capitals = 0; // facets by words in capital letters
        std::int64_t damaged = 0;
        std::int64_t firstDamaged = 0; // byte
        std::int64_t narrow = 0;       // fewer than three corners
        std::int64_t swallowed = 0;    // taken for the end of the facet before
        std::int64_t fans = 0;
        std::int64_t degenerate = 0;
        std::int64_t longNames = 0;
        std::int64_t cutNames = 0;    // of words too long to be held
        std::int64_t innerSolids = 0; // begun before the end of the one before
        std::int64_t strayCorners = 0;
        std::int64_t firstStray = 0; // byte
        bool unended = false;        // the file ends before its last solid does
        bool binary = false;
    };
    Losses losses_;
    std::int64_t skippedFacets_ = 0;
};

} // namespace velmora

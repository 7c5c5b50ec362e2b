#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "FileRecord.h"
#include "TextStream.h"
#include "progress.h"
#include "zRegion.h"
#include "zTriangulator.h"

namespace velmora {

class VrmlParser;

/// Reads the IndexedFaceSet nodes of a VRML file and writes triangles as a VRML 2.0 file. It knows neither the scene
/// nor its transforms: it looks for that word, takes the coordinates and the faces behind it, and jumps over the rest.
class zVRMLReader {
public:
    /// Receives the progress of reading or writing; the caller sets it.
    ReportProgress report;
    /// What `read` found in the file and what of it became zones.
    FileRead record;

    /// `blockSize` is the reading block in bytes; it has no effect on what is read.
    explicit zVRMLReader(std::size_t blockSize = TextStream::defaultBlockSize) : blockSize_(blockSize) {}

    /// Appends a zone for each node that has points and faces, titled "Zone_" and the number of the node from 1; faces
    /// of more than three corners become fans. A node that cannot be understood is dropped, with a text on the standard
    /// error stream, and counts all the same. The title of a file that `write` wrote is that of the region, unless it
    /// has one.
    ///
    /// Raises FileError when the file cannot be opened or is of another version than 1 or 2, ParseError when its first
    /// line is not that of a VRML file, IOError when it ends within a field that is jumped over or the system cannot
    /// read it to its end, AlgoError and ValueError for faces of fewer than three corners and of vertices that are not
    /// there, SystemError when a zone cannot be made. What was appended before stays.
    void read(const std::filesystem::path& fileName, zRegion_fe& region);

    /// Writes every zone that has x, y and z as a shape, with six significant digits. Elements that name nodes which
    /// are not there are left out. Raises ValueError on a number that is not finite, and FileError when the file cannot
    /// be opened or written; an old file then stands as it was.
    WriteOutcome write(const std::filesystem::path& fileName, const zRegion_fe& region) const;

private:
    void readNodes(VrmlParser& parser, TextStream& input, zRegion_fe& region);
    void takeNode(int number, const VrmlParser& parser, zRegion_fe& region);
    void noteParseError(const VrmlParser& parser, TextStream& input);
    void noteBadFace(int number);
    void noteLosses();

    std::size_t blockSize_;
    VertexList points_;               // of the node being read
    PolygonList polygons_;            // of the node being read
    std::vector<Triangle> triangles_; // of the node being read
    std::int64_t wideFaces_ = 0;      // of more than three corners
    std::int64_t shifted_ = 0;        // nodes with numbers that make no whole point
    /// Why face sets gave no zone, and how many there are of each.
    std::map<std::string, std::int64_t> dropped_;
    std::string firstNotUnderstood_; // its line
};

} // namespace velmora

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "TextStream.h"
#include "progress.h"
#include "zRegion.h"
#include "zTriangulator.h"

namespace velmora {

/// Reads the IndexedFaceSet nodes of a VRML file and writes triangles as a VRML 2.0 file. It knows neither the scene
/// nor its transforms: it looks for that word, takes the coordinates and the faces behind it, and jumps over the rest.
class zVRMLReader {
public:
    /// Receives the progress of reading or writing; the caller sets it.
    ReportProgress report;

    /// `blockSize` is the reading block in bytes; it has no effect on what is read.
    explicit zVRMLReader(std::size_t blockSize = TextStream::defaultBlockSize) : blockSize_(blockSize) {}

    /// Appends a zone for each node that has points and faces, titled "Zone_" and the number of the node from 1; faces
    /// of more than three corners become fans. A node that cannot be understood is dropped, with a text on the standard
    /// error stream, and counts all the same.
    ///
    /// Raises FileError when the file cannot be opened or is of another version than 1 or 2, ParseError when its first
    /// line is not that of a VRML file, IOError when it ends within a field that is jumped over, AlgoError and
    /// ValueError for faces of fewer than three corners and of vertices that are not there, SystemError when a zone
    /// cannot be made. What was appended before stays.
    void read(const std::filesystem::path& fileName, zRegion_fe& region);

    /// Writes every zone that has x, y and z as a shape, with six significant digits. Elements that name nodes which
    /// are not there are left out. Raises FileError when the file cannot be opened or written; an old file then stands
    /// as it was.
    void write(const std::filesystem::path& fileName, const zRegion_fe& region) const;

private:
    void takeNode(int number, zRegion_fe& region);

    std::size_t blockSize_;
    VertexList points_;               // of the node being read
    PolygonList polygons_;            // of the node being read
    std::vector<Triangle> triangles_; // of the node being read
};

} // namespace velmora

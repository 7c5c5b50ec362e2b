#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace velmora {

/// How many of each kind: {"facets", 522}, in the order in which they are told. Every kind that a format can hold is
/// there, with 0 where there is none.
using Counts = std::vector<std::pair<std::string, std::int64_t>>;

/// What reading one file came to: what it holds, what became of it, and why the rest did not.
struct FileRead {
    std::filesystem::path path;
    std::uintmax_t bytes = 0;
    std::string format; ///< the extension in small letters; "field" for a field file
    /// All its geometry is in the model, in its place and size.
    bool complete = true;
    /// A save of the model over the file would lose nothing: geometry, values, colours, places and names. Comments,
    /// normals, layout and digits do not count.
    bool lossless = true;
    Counts found;
    Counts kept;
    std::vector<std::string> changed; ///< what was altered on the way: "Degenerate triangles: 3"
    std::vector<std::string> reasons; ///< what was lost and why: "Zones: 24, only the first layer of each is a surface"
};

/// One file that was written.
struct FileWritten {
    std::filesystem::path path;
    std::uintmax_t bytes = 0;
    std::string format;
    Counts counts; ///< the kinds of FileRead::kept
};

} // namespace velmora

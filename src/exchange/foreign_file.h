#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "grid_builder.h"
#include "mesh_builder.h"

namespace velmora {

/// A structured zone as its file has it.
struct ForeignGrid {
    std::string title;
    GridBlock block;
};

/// What a library of others found in a file, before anything of it is looked at.
struct ForeignFile {
    std::string format;
    std::string unit;             ///< of lengths, where the file has one
    bool singlePrecision = false; ///< the library has its numbers in single precision, whatever the file has
    std::vector<std::variant<ForeignGrid, FileMesh>> parts;
    std::int64_t facesFound = 0;      ///< of a file whose faces become grids
    std::int64_t facesKept = 0;       ///< the same
    std::vector<std::string> lost;    ///< geometry that it could not give
    std::vector<std::string> details; ///< other things that are lost
    std::vector<std::string> changed; ///< what was altered on the way
};

} // namespace velmora

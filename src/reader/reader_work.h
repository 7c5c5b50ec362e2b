#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "exchange_model.h"
#include "foreign_stream.h"

namespace velmora {

/// What the process is to do, as it was told.
struct ReaderWork {
    std::string format; ///< as the program names it
    std::filesystem::path path;
    ImportOptions options;
};

/// The library refuses the file.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Each reads a file by its library and hands on what is in there.
void readVrml(const ReaderWork& work, ForeignWriter& out);
void readCgns(const ReaderWork& work, ForeignWriter& out);
void readCad(const ReaderWork& work, ForeignWriter& out);

/// Writes zones of grids and of triangles.
void writeCgns(const ReaderWork& work, const ForeignFile& file);

} // namespace velmora

#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "exchange_model.h"
#include "foreign_stream.h"
#include "progress.h"

namespace velmora {

/// A program that others start: beside this program or module, or where it is when both are installed; empty when it is
/// nowhere.
std::filesystem::path helperProgram(const char* name);

/// The program that holds the library of others for a format; see helperProgram. CAD has one of its own, as its library
/// is many times as large as all the rest.
std::filesystem::path readerProgram(const std::string& format);

/// What is told when it is nowhere.
std::string missingReader(const std::string& format);

/// How the work in a process of its own ended.
enum class ChildEnd {
    Whole,
    NoProgram,
    Refused,     ///< it said that it cannot do it
    Unreadable,  ///< the system could not read the file on
    OutOfMemory, ///< it asked for more than it may have
    TooLong,     ///< it was at work for longer than it may be
    Died,        ///< it crashed, or what it gave is no answer
};

/// The exit statuses by which the program tells how it went; 0 is well.
constexpr int childRefused = 2;
constexpr int childOutOfMemory = 3;
constexpr int childUnreadable = 4;

/// Starts `program`, which reads `path` as `format` does by name, and collects what it finds. Whatever becomes of the
/// process, this one goes on; it ends with the call, also when `report` throws.
ChildEnd readInChild(const std::filesystem::path& program, const std::string& format, const std::filesystem::path& path,
                     const ImportOptions& options, ForeignFile& file, const ReportProgress& report);

/// Takes the next bytes that a child is to read; false when it reads no more.
using SendBytes = std::function<bool(const char* bytes, std::size_t size)>;
/// Starts a program by its arguments, the first of them its path; what `write` sends is its standard input.
ChildEnd feedChild(const std::vector<std::string>& arguments, const std::function<void(const SendBytes& send)>& write);

/// Starts `program` to write `path` as `format`; `write` gives it what shall be in there.
ChildEnd writeInChild(const std::filesystem::path& program, const std::string& format,
                      const std::filesystem::path& path, const std::function<void(ForeignWriter& writer)>& write);

} // namespace velmora

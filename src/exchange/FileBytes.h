#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

#include "FileIdentity.h"
#include "progress.h"

namespace velmora {

/// How many bytes an import may take: half of the machine's memory.
std::uint64_t memoryForImport();

/// A file that is held whole in memory while it is read: layouts that only the size or the last number tell need it.
///
/// Only regular files are taken, up to half of the machine's memory; of a file that grows meanwhile, what it had when
/// it was opened.
class FileBytes {
public:
    explicit FileBytes(const std::filesystem::path& path, const ReportProgress& report = {});

    /// False for what cannot be opened or is no regular file.
    bool isOpen() const { return open_; }
    /// Larger than can be held; there is no text then.
    bool tooLarge() const { return tooLarge_; }
    /// The system could not read on: the text ends there.
    bool readFailed() const { return readFailed_; }
    /// The file as it was when it was opened.
    const FileIdentity& identity() const { return identity_; }
    /// The bytes; a NUL stands behind the last one.
    std::string_view text() const { return {bytes_.get(), size_}; }

private:
    void load(int descriptor, std::size_t size, const ReportProgress& report);

    std::unique_ptr<char[]> bytes_;
    FileIdentity identity_;
    std::size_t size_ = 0;
    bool open_ = false;
    bool tooLarge_ = false;
    bool readFailed_ = false;
};

} // namespace velmora

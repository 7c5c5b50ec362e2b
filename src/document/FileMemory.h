#pragma once

#include <filesystem>
#include <vector>

#include "FileIdentity.h"
#include "FileRecord.h"

namespace velmora {

/// Why a file should not be written over without a question; the first that applies.
enum class OverwriteDoubt {
    None,
    HoldsMorePoints, ///< the model was thinned or cut at the limit as it was read
    HoldsMore,       ///< something else of it was lost as it was read
    Foreign,         ///< it was not read for this model alone, nor written
    Changed,         ///< somebody else changed it since
};

/// What the document knows of files on the disk: which of them it read, alone and without a loss, or wrote itself, and
/// in which state they were then. Only such a file, unchanged, is written over without a question.
class FileMemory {
public:
    /// A file gave the model its geometry. Not `alone`: it joined that of another file.
    void noteRead(const FileRead& record, bool alone);
    /// A file gave the line buffer its points, which stay when the model goes.
    void noteBufferRead(const FileRead& record);
    /// The file now holds what was written.
    void noteWritten(const std::filesystem::path& path);

    /// For a regular file at `path`; there is no doubt about one that is not there.
    OverwriteDoubt doubtAbout(const std::filesystem::path& path) const;

    /// The model goes: its files are as those of a stranger.
    void forgetModel();

private:
    struct Entry {
        std::filesystem::path path;
        FileIdentity identity;
        bool ofModel = true;
        bool alone = true;
        bool lossless = true;
        bool thinned = false;
    };

    const Entry* find(const std::filesystem::path& path, const FileIdentity& identity) const;
    void put(Entry entry);

    std::vector<Entry> entries_;
};

} // namespace velmora

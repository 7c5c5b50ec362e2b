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

/// What of the document a file holds, as its reader or its last writer left it.
enum class FileContent {
    Model,  ///< all of the model
    Part,   ///< a part of it: the zBlock, one side of the knife
    Export, ///< the model as others have it
    Buffer, ///< the points of the line buffer
};

/// What the document knows of files on the disk: which of them it read, alone and without a loss, or wrote itself, and
/// in which state they were then. Only such a file, unchanged, is written over without a question.
class FileMemory {
public:
    /// A file gave the model its geometry. Not `alone`: it joined that of another file.
    void noteRead(const FileRead& record, bool alone);
    /// A file gave the line buffer its points, which stay when the model goes.
    void noteBufferRead(const FileRead& record);
    /// The file now holds what was written, but for triangles that were `leftOut`.
    void noteWritten(const std::filesystem::path& path, FileContent content, std::int64_t leftOut = 0);

    /// Before `content` is written to a regular file at `path`, but for triangles that will be `leftOut`; there is no
    /// doubt about one that is not there.
    OverwriteDoubt doubtAbout(const std::filesystem::path& path, FileContent content, std::int64_t leftOut = 0) const;

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
        FileContent content = FileContent::Model;
        std::int64_t leftOut = 0; ///< triangles of the model that it does not hold

        /// Whether what takes its place at `target` may leave out something that it holds.
        bool holdsMoreThan(FileContent written, const std::filesystem::path& target) const;
    };

    const Entry* find(const std::filesystem::path& path, const FileIdentity& identity) const;
    void put(Entry entry);

    std::vector<Entry> entries_;
};

} // namespace velmora

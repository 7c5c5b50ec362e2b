#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

struct stat;

namespace velmora {

/// Which file stands on the disk, and in which state: what tells that it is still the one that was read or written.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::uint64_t bytes = 0;
    std::int64_t changedSeconds = 0;
    std::int64_t changedNanoseconds = 0;
    // What the system notes beside: when anything of the file was changed last, and what is no change of what it holds.
    std::int64_t touchedSeconds = 0;
    std::int64_t touchedNanoseconds = 0;
    std::uint64_t permissions = 0;
    std::uint64_t names = 0; ///< hard links
    std::uint64_t owner = 0;
    std::uint64_t group = 0;

    /// That of the regular file at `path`, through links; none where there is none.
    static std::optional<FileIdentity> of(const std::filesystem::path& path);
    static FileIdentity of(const struct stat& status);

    /// The same file, whatever it holds now.
    bool isSameFile(const FileIdentity& other) const { return device == other.device && number == other.number; }
    /// The same file, of the size and time that it had.
    bool isSameState(const FileIdentity& other) const;
    /// The same state, and nothing else tells that it holds something else now. Other permissions, names or owners are
    /// no change; a file that was touched for no such reason was written in place and its time put back.
    bool isUnchanged(const FileIdentity& other) const;
};

} // namespace velmora

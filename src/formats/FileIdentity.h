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

    /// That of the regular file at `path`, through links; none where there is none.
    static std::optional<FileIdentity> of(const std::filesystem::path& path);
    static FileIdentity of(const struct stat& status);

    /// The same file, whatever it holds now.
    bool isSameFile(const FileIdentity& other) const { return device == other.device && number == other.number; }
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

} // namespace velmora

#include "FileIdentity.h"

#include <sys/stat.h>

namespace velmora {

FileIdentity FileIdentity::of(const struct stat& status) {
    return {.device = static_cast<std::uint64_t>(status.st_dev),
            .number = static_cast<std::uint64_t>(status.st_ino),
            .bytes = static_cast<std::uint64_t>(status.st_size),
            .changedSeconds = status.st_mtim.tv_sec,
            .changedNanoseconds = status.st_mtim.tv_nsec,
            .touchedSeconds = status.st_ctim.tv_sec,
            .touchedNanoseconds = status.st_ctim.tv_nsec,
            .permissions = status.st_mode,
            .names = static_cast<std::uint64_t>(status.st_nlink),
            .owner = status.st_uid,
            .group = status.st_gid};
}

bool FileIdentity::isSameState(const FileIdentity& other) const {
    return isSameFile(other) && bytes == other.bytes && changedSeconds == other.changedSeconds &&
           changedNanoseconds == other.changedNanoseconds;
}

bool FileIdentity::isUnchanged(const FileIdentity& other) const {
    const bool untouched = touchedSeconds == other.touchedSeconds && touchedNanoseconds == other.touchedNanoseconds;
    const bool sameAccess =
        permissions == other.permissions && names == other.names && owner == other.owner && group == other.group;
    return isSameState(other) && (untouched || !sameAccess);
}

std::optional<FileIdentity> FileIdentity::of(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return of(status);
}

} // namespace velmora

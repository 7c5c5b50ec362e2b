#include "FileIdentity.h"

#include <sys/stat.h>

namespace velmora {

FileIdentity FileIdentity::of(const struct stat& status) {
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
            static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::optional<FileIdentity> FileIdentity::of(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return of(status);
}

} // namespace velmora

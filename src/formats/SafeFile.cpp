#include "SafeFile.h"

#include <cerrno>
#include <cstdio>
#include <random>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

namespace fs = std::filesystem;

// The file at the end of a chain of symbolic links, which need not exist; an empty path for a chain without end.
fs::path linkTarget(fs::path path) {
    constexpr int mostLinks = 40;
    for (int links = 0; links <= mostLinks; ++links) {
        std::error_code error;
        const fs::path next = fs::read_symlink(path, error);
        if (error) {
            return path;
        }
        path = path.parent_path() / next; // an absolute `next` replaces the folder
    }
    return {};
}

std::string randomName() {
    static constexpr char letters[] = "0123456789abcdefghijklmnopqrstuvwxyz";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> letter(0, sizeof letters - 2);
    std::string name = ".velmora-";
    for (int i = 0; i < 12; ++i) {
        name += letters[letter(random)];
    }
    return name + ".tmp";
}

// Owner and group follow where the system allows it. Where it does not, the file must not run as somebody else.
bool takeOver(int descriptor, const struct stat& old) {
    const bool sameOwner = ::fchown(descriptor, old.st_uid, old.st_gid) == 0;
    return ::fchmod(descriptor, old.st_mode & (sameOwner ? 07777 : 0777)) == 0;
}

void syncFolder(const fs::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

} // namespace

SafeFile::SafeFile(const fs::path& path) : target_(path) {
    struct stat status {};
    if (!path.has_filename()) {
        return;
    }
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        openInPlace();
    } else {
        target_ = linkTarget(path);
        openBeside();
    }
}

SafeFile::~SafeFile() {
    discard();
}

// An old file's data must not be readable for more people while it is written than before, hence the narrow
// permissions at first.
void SafeFile::openBeside() {
    struct stat old {};
    const bool exists = ::stat(target_.c_str(), &old) == 0;
    if (exists && ::faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) {
        return;
    }
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts && descriptor_ < 0; ++attempt) {
        temporary_ = folderOf(target_) / randomName();
        descriptor_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, exists ? 0600 : 0666);
        if (descriptor_ < 0 && errno != EEXIST) {
            return;
        }
    }
    if (descriptor_ >= 0 && exists && !takeOver(descriptor_, old)) {
        discard();
    }
}

// A pipe without a reader fails here instead of holding up the program.
void SafeFile::openInPlace() {
    descriptor_ = ::open(target_.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor_ >= 0) {
        ::fcntl(descriptor_, F_SETFL, ::fcntl(descriptor_, F_GETFL) & ~O_NONBLOCK);
    }
}

bool SafeFile::write(std::string_view bytes) {
    failed_ = failed_ || !isOpen();
    while (!failed_ && !bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else {
            failed_ = count == 0 || errno != EINTR;
        }
    }
    return !failed_;
}

bool SafeFile::close() {
    const int descriptor = descriptor_;
    descriptor_ = -1;
    return ::close(descriptor) == 0;
}

void SafeFile::discard() {
    if (!isOpen()) {
        return;
    }
    close();
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

bool SafeFile::commit() {
    if (failed_ || !isOpen()) {
        discard();
        return false;
    }
    if (temporary_.empty()) {
        return close();
    }
    const bool synced = ::fsync(descriptor_) == 0;
    const bool closed = close();
    if (!synced || !closed || std::rename(temporary_.c_str(), target_.c_str()) != 0) {
        ::unlink(temporary_.c_str());
        return false;
    }
    syncFolder(folderOf(target_));
    return true;
}

} // namespace velmora

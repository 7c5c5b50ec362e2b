#include "SafeFile.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
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

// A hidden name is the prefix, so many letters and digits, and the ending.
constexpr std::string_view hiddenPrefix = ".velmora-";
constexpr std::string_view hiddenEnding = ".tmp";
constexpr std::string_view hiddenLetters = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr std::size_t hiddenLetterCount = 12;

std::string hiddenName() {
    std::random_device random;
    std::uniform_int_distribution<std::size_t> letter(0, hiddenLetters.size() - 1);
    std::string name(hiddenPrefix);
    for (std::size_t i = 0; i < hiddenLetterCount; ++i) {
        name += hiddenLetters[letter(random)];
    }
    return name.append(hiddenEnding);
}

bool isHiddenName(std::string_view name) {
    if (name.size() != hiddenPrefix.size() + hiddenLetterCount + hiddenEnding.size() ||
        !name.starts_with(hiddenPrefix) || !name.ends_with(hiddenEnding)) {
        return false;
    }
    return name.substr(hiddenPrefix.size(), hiddenLetterCount).find_first_not_of(hiddenLetters) ==
           std::string_view::npos;
}

// A save that was killed may have left its file. One that is being written now is younger.
void removeLeftOvers(const fs::path& folder) {
    constexpr auto oldEnough = std::chrono::hours(1);
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        if (isHiddenName(entry->path().filename().string()) &&
            entry->symlink_status(ignored).type() == fs::file_type::regular &&
            fs::file_time_type::clock::now() - entry->last_write_time(ignored) > oldEnough && !ignored) {
            fs::remove(entry->path(), ignored);
        }
    }
}

// The names of the extended attributes of a file; none where it has none or there are none.
std::vector<std::string> attributesOf(const fs::path& path) {
    std::vector<std::string> names;
    const ssize_t size = ::listxattr(path.c_str(), nullptr, 0);
    if (size <= 0) {
        return names;
    }
    std::string list(static_cast<std::size_t>(size), '\0');
    const ssize_t taken = ::listxattr(path.c_str(), list.data(), list.size());
    list.resize(static_cast<std::size_t>(std::max<ssize_t>(taken, 0)));
    for (std::size_t begin = 0; begin < list.size(); begin = list.find('\0', begin) + 1) {
        names.emplace_back(list.c_str() + begin);
    }
    return names;
}

bool copyAttribute(const fs::path& from, int to, const std::string& name) {
    const ssize_t size = ::getxattr(from.c_str(), name.c_str(), nullptr, 0);
    if (size < 0) {
        return false;
    }
    std::string value(static_cast<std::size_t>(size), '\0');
    const ssize_t taken = ::getxattr(from.c_str(), name.c_str(), value.data(), value.size());
    return taken >= 0 && ::fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(taken), 0) == 0;
}

void syncFolder(const fs::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

// Where the system shows an open file.
std::string nameInSystem(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

} // namespace

SafeFile::SafeFile(const fs::path& path) {
    struct stat status {};
    if (!path.has_filename() || (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))) {
        return;
    }
    target_ = linkTarget(path);
    if (!target_.empty()) {
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
    removeLeftOvers(folderOf(target_));
    const unsigned mode = exists ? 0600 : 0666;
    descriptor_ = ::open(folderOf(target_).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
    if (descriptor_ >= 0 && ::access(nameInSystem(descriptor_).c_str(), F_OK) != 0) {
        ::close(descriptor_); // it could never be given a name
        descriptor_ = -1;
    }
    if ((descriptor_ >= 0 || openHidden(mode)) && exists && !takeOver(old)) {
        discard();
    }
}

bool SafeFile::openHidden(unsigned mode) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts && descriptor_ < 0; ++attempt) {
        temporary_ = folderOf(target_) / hiddenName();
        descriptor_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor_ < 0 && errno != EEXIST) {
            break;
        }
    }
    return isOpen();
}

// Owner and group follow where the system allows it. Where it does not, the file must not run as somebody else. An
// attribute can widen the permissions, and so comes last.
bool SafeFile::takeOver(const struct stat& old) {
    const bool sameOwner = ::fchown(descriptor_, old.st_uid, old.st_gid) == 0;
    if (::fchmod(descriptor_, old.st_mode & (sameOwner ? 07777 : 0777)) != 0) {
        return false;
    }
    if (!sameOwner) {
        notes_.emplace_back("The file belongs to another user or group than before");
    }
    if (old.st_nlink > 1) {
        notes_.push_back("The file has " + std::to_string(old.st_nlink - 1) +
                         " other name(s) by hard links: they keep what it held before");
    }
    for (const std::string& name : attributesOf(target_)) {
        if (!copyAttribute(target_, descriptor_, name)) {
            notes_.push_back("The extended attribute \"" + name + "\" of the file is lost");
        }
    }
    return true;
}

bool SafeFile::write(std::string_view bytes) {
    failed_ = failed_ || !isOpen();
    while (!failed_ && !bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
            size_ += static_cast<std::uintmax_t>(count);
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
    removeHidden();
}

void SafeFile::removeHidden() {
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

bool SafeFile::commit() {
    if (failed_ || !isOpen()) {
        discard();
        return false;
    }
    const bool complete = ::fsync(descriptor_) == 0 && takeName();
    const bool closed = close();
    if (!complete || !closed || std::rename(temporary_.c_str(), target_.c_str()) != 0) {
        removeHidden();
        return false;
    }
    syncFolder(folderOf(target_));
    return true;
}

// A file without a name cannot take the place of another at once: it gets a hidden one for the moment between.
bool SafeFile::takeName() {
    constexpr int attempts = 100;
    const std::string source = nameInSystem(descriptor_);
    for (int attempt = 0; attempt < attempts && temporary_.empty(); ++attempt) {
        const fs::path name = folderOf(target_) / hiddenName();
        if (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            temporary_ = name;
        } else if (errno != EEXIST) {
            break;
        }
    }
    return !temporary_.empty();
}

} // namespace velmora

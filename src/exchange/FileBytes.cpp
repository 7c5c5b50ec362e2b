#include "FileBytes.h"

#include <algorithm>
#include <cerrno>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

/// The part of the progress that reading the bytes takes.
constexpr double endOfLoading = 0.2;

} // namespace

std::uint64_t memoryForImport() {
    return static_cast<std::uint64_t>(::sysconf(_SC_PHYS_PAGES)) / 2 *
           static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

FileBytes::FileBytes(const std::filesystem::path& path, const ReportProgress& report) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return;
    }
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        open_ = true;
        identity_ = FileIdentity::of(status);
        load(descriptor, static_cast<std::size_t>(status.st_size), report);
    }
    ::close(descriptor);
}

void FileBytes::load(int descriptor, std::size_t size, const ReportProgress& report) {
    constexpr std::size_t blockSize = std::size_t{1} << 24;
    tooLarge_ = size > memoryForImport();
    bytes_.reset(new (std::nothrow) char[tooLarge_ ? 1 : size + 1]);
    tooLarge_ = tooLarge_ || bytes_ == nullptr;
    while (!tooLarge_ && size_ < size) {
        const ssize_t count = ::read(descriptor, bytes_.get() + size_, std::min(blockSize, size - size_));
        if (count > 0) {
            size_ += static_cast<std::size_t>(count);
            if (report) {
                report(endOfLoading * static_cast<double>(size_) / static_cast<double>(size));
            }
        } else if (count == 0 || errno != EINTR) {
            readFailed_ = count < 0;
            break;
        }
    }
    if (bytes_ != nullptr) {
        bytes_[size_] = '\0';
    }
}

} // namespace velmora

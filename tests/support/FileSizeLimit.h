#pragma once

#include <csignal>

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace velmora::test {

/// Lets no file of this process grow beyond `size` bytes, which is how a disk looks that is full there.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &old_), 0);
        const rlimit limit{size, old_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, oldHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit old_{};
    void (*oldHandler_)(int);
};

} // namespace velmora::test

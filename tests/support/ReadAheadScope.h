#pragma once

#include <cstddef>
#include <cstdlib>

#include "BlocksAhead.h"

namespace velmora::test {

/// While it lives, every file is read ahead by so many threads, in blocks of `block` bytes, from its first number on.
class ReadAheadScope {
public:
    ReadAheadScope(const char* threads, std::size_t block) : before_(aheadSizes()) {
        aheadSizes() = {0, block, 0};
        ::setenv("VELMORA_THREADS", threads, 1);
    }
    ~ReadAheadScope() {
        aheadSizes() = before_;
        ::unsetenv("VELMORA_THREADS");
    }
    ReadAheadScope(const ReadAheadScope&) = delete;
    ReadAheadScope& operator=(const ReadAheadScope&) = delete;

private:
    AheadSizes before_;
};

} // namespace velmora::test

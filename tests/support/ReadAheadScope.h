#pragma once

#include <cstddef>
#include <cstdlib>

#include "NumbersAhead.h"

namespace velmora::test {

/// While it lives, the numbers of every file are converted ahead by so many threads, in blocks of `block` bytes and
/// pieces of `piece`, from the first number of a block on.
class ReadAheadScope {
public:
    ReadAheadScope(const char* threads, std::size_t block, std::size_t piece) : before_(aheadSizes()) {
        aheadSizes() = {0, block, piece, 0};
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

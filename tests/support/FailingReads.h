#pragma once

#include <cstdint>

namespace velmora::test {

/// While it lives, files can be read up to so many bytes in all; what is read then fails as a broken disk fails.
class FailingReads {
public:
    explicit FailingReads(std::int64_t bytesBefore);
    FailingReads(const FailingReads&) = delete;
    FailingReads& operator=(const FailingReads&) = delete;
    ~FailingReads();
};

} // namespace velmora::test

#include "FailingReads.h"

#include <algorithm>
#include <cerrno>

#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

bool failing = false;
std::int64_t bytesLeft = 0;

} // namespace

// Takes the place of the system's function in a test program that is linked with it.
extern "C" ssize_t read(int descriptor, void* buffer, size_t count) {
    if (failing && bytesLeft <= 0) {
        errno = EIO;
        return -1;
    }
    const size_t most = failing ? std::min(count, static_cast<size_t>(bytesLeft)) : count;
    const ssize_t taken = ::syscall(SYS_read, descriptor, buffer, most);
    bytesLeft -= failing && taken > 0 ? taken : 0;
    return taken;
}

namespace velmora::test {

FailingReads::FailingReads(std::int64_t bytesBefore) {
    failing = true;
    bytesLeft = bytesBefore;
}

FailingReads::~FailingReads() {
    failing = false;
}

} // namespace velmora::test

// Loaded before the C library (LD_PRELOAD), it lets one call of a program fail: the VELMORA_FAILING_NUMBER-th call of
// VELMORA_FAILING_CALL that touches a file below VELMORA_FAILING_FOLDER. The file VELMORA_FAILING_MARK is made when
// that happens, so that a test knows whether there was such a call.

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

const char* setting(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

bool isBelowFolder(const char* path) {
    const char* const folder = setting("VELMORA_FAILING_FOLDER");
    return *folder != '\0' && std::strncmp(path, folder, std::strlen(folder)) == 0;
}

/// True when this call is the one that fails.
bool fails(const char* call, const char* path) {
    static long seen = 0;
    if (std::strcmp(call, setting("VELMORA_FAILING_CALL")) != 0 || !isBelowFolder(path)) {
        return false;
    }
    if (++seen != std::atol(setting("VELMORA_FAILING_NUMBER"))) {
        return false;
    }
    const long mark = syscall(SYS_openat, AT_FDCWD, setting("VELMORA_FAILING_MARK"), O_WRONLY | O_CREAT, 0600);
    syscall(SYS_close, mark);
    return true;
}

bool fails(const char* call, int descriptor) {
    char link[64] = "/proc/self/fd/";
    char digits[16];
    int length = 0;
    for (int rest = descriptor; length == 0 || rest > 0; rest /= 10) {
        digits[length++] = static_cast<char>('0' + rest % 10);
    }
    std::size_t end = std::strlen(link);
    while (length > 0) {
        link[end++] = digits[--length];
    }
    char path[4096];
    const ssize_t size = readlink(link, path, sizeof path - 1);
    if (descriptor < 0 || size <= 0) {
        return false;
    }
    path[size] = '\0';
    return fails(call, path);
}

template <class Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t write(int descriptor, const void* data, size_t size) {
    static const auto real = next<ssize_t (*)(int, const void*, size_t)>("write");
    if (fails("write", descriptor)) {
        errno = ENOSPC;
        return -1;
    }
    return real(descriptor, data, size);
}

ssize_t read(int descriptor, void* data, size_t size) {
    static const auto real = next<ssize_t (*)(int, void*, size_t)>("read");
    if (fails("read", descriptor)) {
        errno = EIO;
        return -1;
    }
    return real(descriptor, data, size);
}

int fsync(int descriptor) {
    static const auto real = next<int (*)(int)>("fsync");
    if (fails("fsync", descriptor)) {
        errno = EIO;
        return -1;
    }
    return real(descriptor);
}

int close(int descriptor) {
    static const auto real = next<int (*)(int)>("close");
    const bool failing = fails("close", descriptor);
    const int result = real(descriptor);
    if (failing) {
        errno = EIO;
        return -1;
    }
    return result;
}

int rename(const char* from, const char* to) {
    static const auto real = next<int (*)(const char*, const char*)>("rename");
    if (fails("rename", to)) {
        errno = EACCES;
        return -1;
    }
    return real(from, to);
}

int fchmod(int descriptor, mode_t mode) {
    static const auto real = next<int (*)(int, mode_t)>("fchmod");
    if (fails("fchmod", descriptor)) {
        errno = EPERM;
        return -1;
    }
    return real(descriptor, mode);
}

} // extern "C"

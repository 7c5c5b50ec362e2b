#include "script_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <string_view>

namespace velmora {

bool readScriptLine(std::istream& script, std::int64_t number, std::string& line) {
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    if (!std::getline(script, line)) {
        return false;
    }
    if (number == 1 && line.starts_with(byteOrderMark)) {
        line.erase(0, byteOrderMark.size());
    }
    return true;
}

bool readingFailed(const std::istream& script) {
    return script.bad() || (&script == &std::cin && std::ferror(stdin) != 0);
}

bool canHoldScript(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode) || S_ISBLK(status.st_mode)) {
        return false;
    }
    struct stat empty {};
    const bool isEmptyDevice = ::stat("/dev/null", &empty) == 0 && empty.st_rdev == status.st_rdev;
    return !S_ISCHR(status.st_mode) || isEmptyDevice || ::isatty(descriptor) != 0;
}

bool canHoldScript(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return false;
    }
    if (!S_ISCHR(status.st_mode)) {
        return !S_ISDIR(status.st_mode) && !S_ISBLK(status.st_mode);
    }
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    const bool can = descriptor >= 0 && canHoldScript(descriptor);
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    return can;
}

} // namespace velmora

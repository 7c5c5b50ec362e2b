#include "memory_state.h"

#include <charconv>
#include <fstream>
#include <limits>
#include <string>
#include <string_view>

namespace velmora {

namespace {

/// The number of kibibytes of a line such as "MemTotal:   16384 kB", in bytes; 0 when there is none.
std::uint64_t bytesOfLine(std::string_view line) {
    const std::size_t start = line.find_first_of("0123456789");
    if (start == std::string_view::npos) {
        return 0;
    }
    std::uint64_t kibibytes = 0;
    std::from_chars(line.data() + start, line.data() + line.size(), kibibytes);
    return kibibytes << 10U;
}

} // namespace

MemoryState memoryState() {
    MemoryState state;
    std::ifstream file("/proc/meminfo");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("MemTotal:")) {
            state.total = bytesOfLine(line);
        } else if (line.starts_with("MemAvailable:")) {
            state.available = bytesOfLine(line);
        }
    }
    return state;
}

std::uint64_t availableMemory() {
    const std::uint64_t available = memoryState().available;
    return available > 0 ? available : std::numeric_limits<std::uint64_t>::max();
}

} // namespace velmora

#include "about.h"

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace velmora {

namespace {

struct MemoryState {
    std::uint64_t total = 0; ///< bytes
    std::uint64_t available = 0;
};

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

std::uint64_t freeDiskSpace() {
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space("/", error);
    return error ? 0 : space.available;
}

std::string stateLine(const char* label, std::uint64_t bytes) {
    return std::string("\n") + label + " " + std::to_string(bytes >> 20U) + " MB";
}

} // namespace

const char* programVersion() {
    return VELMORA_VERSION;
}

std::string aboutText() {
    const MemoryState memory = memoryState();
    return std::string("Velmora ") + programVersion() + "\n" + stateLine("Physical memory:", memory.total) +
           stateLine("Available memory:", memory.available) + stateLine("Free disk space:", freeDiskSpace());
}

} // namespace velmora

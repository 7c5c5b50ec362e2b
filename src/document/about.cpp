#include "about.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "memory_state.h"

namespace velmora {

namespace {

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

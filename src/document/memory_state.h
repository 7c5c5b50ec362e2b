#pragma once

#include <cstdint>

namespace velmora {

/// The machine's memory in bytes; 0 where the system does not tell.
struct MemoryState {
    std::uint64_t total = 0;
    std::uint64_t available = 0; ///< what programs can still get without swapping
};

MemoryState memoryState();

/// `memoryState().available`; without bound where the system does not tell.
std::uint64_t availableMemory();

} // namespace velmora

#include "large_memory.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>

#include <sys/mman.h>

namespace velmora {

void preferLargePages(void* memory, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
    constexpr std::size_t page = std::size_t{1} << 21;
    constexpr std::size_t least = 2 * page;
    std::size_t left = bytes;
    if (bytes >= least && std::align(page, page, memory, left) != nullptr) {
        ::madvise(memory, left - left % page, MADV_HUGEPAGE); // where it is refused, small ones do
    }
#else
    static_cast<void>(memory);
    static_cast<void>(bytes);
#endif
}

namespace {

using Block = std::unique_ptr<std::byte[]>;

/// May be null: then there is no room to be had.
Block largeBlock(std::size_t bytes) {
    Block block(new (std::nothrow) std::byte[bytes]);
    if (block != nullptr) {
        preferLargePages(block.get(), bytes);
    }
    return block;
}

} // namespace

// What is given back stays with the allocator, which lays the small pieces there. It keeps no block that is larger than
// those it has met before, which is why one comes in advance, and altogether twice as much; both by the rules of glibc.
void makeRoomForPieces(std::size_t bytes) {
    constexpr std::size_t largest = std::size_t{30} << 20;
    constexpr std::size_t least = std::size_t{8} << 20;
    if (bytes < least) {
        return;
    }
    largeBlock(largest).reset();
    std::array<Block, 2> blocks;
    for (Block& block : blocks) {
        const std::size_t size = std::min(bytes, largest - (std::size_t{1} << 20));
        block = size >= least ? largeBlock(size) : nullptr;
        bytes -= size;
    }
}

} // namespace velmora

#include "large_memory.h"

#include <memory>

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

} // namespace velmora

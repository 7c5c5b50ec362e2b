#include "own_allocation.h"

#include <new>

void* operator new(std::size_t size) {
    return velmora::test::allocate(size);
}
void* operator new[](std::size_t size) {
    return velmora::test::allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return velmora::test::allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* memory) noexcept {
    velmora::test::release(memory);
}
void operator delete[](void* memory) noexcept {
    velmora::test::release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    velmora::test::release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    velmora::test::release(memory);
}

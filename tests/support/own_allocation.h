#pragma once

#include <cstddef>
#include <new>

// The memory of the whole program goes through `allocate`, which throws where there is none, and `release`: whoever
// includes this, one source of a program alone, says what they do.

namespace velmora::test {

void* allocate(std::size_t size);
void release(void* memory);

} // namespace velmora::test

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

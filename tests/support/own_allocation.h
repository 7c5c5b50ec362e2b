#pragma once

#include <cstddef>

namespace velmora::test {

// The memory of a program with own_allocation.cpp among its sources goes through these two, which one of its sources
// defines.

/// Throws where there is no memory.
void* allocate(std::size_t size);
void release(void* memory);

} // namespace velmora::test

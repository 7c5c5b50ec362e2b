#pragma once

#include <cstddef>
#include <vector>

namespace velmora {

/// Asks the system to lay memory that will be filled from end to end on large pages, where it has such: handing out
/// hundreds of small ones takes longer than filling them. Changes nothing but the time; short pieces are left alone.
void preferLargePages(void* memory, std::size_t bytes);

/// Room on large pages for small pieces of memory that are about to come one by one, `bytes` in all; of much it makes
/// room for the first part. Changes nothing but the time: none of the room is held before it is used.
void makeRoomForPieces(std::size_t bytes);

/// Room for `count` values, which are all about to come.
template <class Value>
void reserveLarge(std::vector<Value>& values, std::size_t count) {
    const std::size_t before = values.capacity();
    values.reserve(count);
    if (values.capacity() != before) {
        preferLargePages(values.data(), values.capacity() * sizeof(Value));
    }
}

} // namespace velmora

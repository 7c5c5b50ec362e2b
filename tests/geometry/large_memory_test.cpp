#include "large_memory.h"

#include <cstddef>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velmora {
namespace {

/// What of the process's memory lies on pages, in bytes.
std::size_t residentBytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0;
    std::size_t resident = 0;
    file >> all >> resident;
    constexpr std::size_t page = 4096;
    return resident * page;
}

TEST(LargeMemory, RoomForPiecesIsNotHeldBeforeItIsUsed) {
    constexpr std::size_t megabyte = std::size_t{1} << 20;
    constexpr std::size_t room = 60 * megabyte;
    const std::size_t before = residentBytes();
    makeRoomForPieces(room);
    EXPECT_LT(residentBytes(), before + room / 3); // a sanitizer keeps a book of an eighth of what is asked for
}

TEST(LargeMemory, MoreRoomThanThereIsCanBeAskedFor) {
    makeRoomForPieces(std::numeric_limits<std::size_t>::max());
    const std::vector<int> piece(1000, 7);
    EXPECT_EQ(piece.back(), 7);
}

TEST(LargeMemory, ReservedRoomIsWhatWasAskedFor) {
    std::vector<double> values{1.0, 2.0};
    reserveLarge(values, 1'000'000);
    EXPECT_GE(values.capacity(), 1'000'000U);
    EXPECT_EQ(values, (std::vector<double>{1.0, 2.0}));
}

} // namespace
} // namespace velmora

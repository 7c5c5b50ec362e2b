#include "SnapshotRow.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace velmora::test {
namespace {

/// A snapshot of blocks, of which others may hold some too; all that lives is counted once.
using Blocks = std::vector<std::shared_ptr<const int>>;

class SnapshotRowTest : public testing::Test {
protected:
    std::shared_ptr<const int> block(std::uint64_t bytes) {
        held += bytes;
        return {new int(0), [this, bytes](const int* gone) {
                    held -= bytes;
                    delete gone;
                }};
    }
    void fit(std::uint64_t free) {
        row.fitInto([free] { return free; }, [this] { return held; });
    }

    std::uint64_t held = 0;
    SnapshotRow<Blocks> row;
};

TEST_F(SnapshotRowTest, TheRoomIsAQuarterOfWhatWouldBeFreeWithoutThem) {
    EXPECT_EQ(snapshotRoom(4000, 0), 1000U);
    EXPECT_EQ(snapshotRoom(3000, 1000), 1000U) << "what they hold is free as soon as they go";
    EXPECT_EQ(snapshotRoom(~std::uint64_t{0}, 4), (~std::uint64_t{0} / 4) + 1) << "memory without bound";
}

TEST_F(SnapshotRowTest, EachStandsBehindItsLine) {
    for (const std::size_t line : {0U, 1U, 3U}) {
        row.keep(line, {block(line)});
    }
    EXPECT_NE(row.at(1), nullptr);
    EXPECT_EQ(row.at(2), nullptr);
    EXPECT_EQ(row.at(4), nullptr);
    EXPECT_EQ(row.before(0), nullptr);
    EXPECT_EQ(row.before(2), row.at(1));
    EXPECT_EQ(row.before(3), row.at(1));
    EXPECT_EQ(row.before(9), row.at(3));
}

TEST_F(SnapshotRowTest, ANewLineTakesThePlaceOfThoseFromItOn) {
    for (const std::size_t line : {1U, 2U, 3U, 4U}) {
        row.keep(line, {block(1)});
    }
    row.keep(3, {block(10)});
    EXPECT_EQ(row.size(), 3U);
    EXPECT_EQ(row.at(4), nullptr);
    EXPECT_EQ(held, 12U);
    row.dropFrom(2);
    EXPECT_EQ(row.size(), 1U);
    EXPECT_EQ(held, 1U);
}

TEST_F(SnapshotRowTest, ALineWithoutOneIsAPartOfTheNextThatHasOne) {
    EXPECT_EQ(row.nextFrom(0), std::nullopt);
    row.keep(2, {});
    row.keep(5, {});
    EXPECT_EQ(row.nextFrom(1), std::nullopt) << "what was kept of it is gone";
    EXPECT_EQ(row.nextFrom(2), 2U);
    EXPECT_EQ(row.nextFrom(3), 5U);
    EXPECT_EQ(row.nextFrom(5), 5U);
    EXPECT_EQ(row.nextFrom(6), std::nullopt) << "nothing comes behind it";
}

TEST_F(SnapshotRowTest, TheOldestGoUntilTheRestFits) {
    for (const std::size_t line : {1U, 2U, 3U, 4U}) {
        row.keep(line, {block(100)});
    }
    fit(1200); // 1200 free and 400 held: 400 of 1600
    EXPECT_EQ(row.size(), 4U);
    fit(1196); // the room is 399
    EXPECT_EQ(row.size(), 3U);
    EXPECT_EQ(row.at(1), nullptr);
    EXPECT_NE(row.at(2), nullptr);
    fit(0); // of 300 held a quarter
    EXPECT_EQ(row.size(), 0U) << "one alone is more than that too";
    EXPECT_EQ(held, 0U);
}

TEST_F(SnapshotRowTest, WhatTwoShareGoesWithTheLastOfThem) {
    auto shared = block(1000);
    const std::weak_ptr<const int> alive = shared;
    row.keep(1, {shared});
    row.keep(2, {shared, block(10)});
    row.keep(3, {block(10)});
    shared.reset();
    ASSERT_FALSE(alive.expired());
    fit(200); // the room is 305
    EXPECT_EQ(row.size(), 1U) << "the first alone gave back nothing";
    EXPECT_TRUE(alive.expired());
    EXPECT_EQ(held, 10U);
}

} // namespace
} // namespace velmora::test

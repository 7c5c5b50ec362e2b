#include "thinning.h"

#include <vector>

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(Thinning, TheFactorRisesBehind201000PointsAndEvery2010000More) {
    EXPECT_EQ(thinningFactor(0), 0);
    EXPECT_EQ(thinningFactor(201'000), 0);
    EXPECT_EQ(thinningFactor(201'001), 1);
    EXPECT_EQ(thinningFactor(2'010'000), 1);
    EXPECT_EQ(thinningFactor(2'211'000), 1);
    EXPECT_EQ(thinningFactor(2'211'001), 2);
    EXPECT_EQ(thinningFactor(4'221'000), 2);
    EXPECT_EQ(thinningFactor(4'221'001), 3);
    for (int step = 0; step < 1068; ++step) {
        EXPECT_EQ(thinningFactor(step * 2'010'000 + 201'000), step);
        EXPECT_EQ(thinningFactor(step * 2'010'000 + 201'001), step + 1);
    }
}

TEST(Thinning, ThePeriodIsTwoToFourByTheFactor) {
    const std::vector<std::int32_t> periods{1, 2, 2, 2, 2, 3, 3, 3, 3, 3, 4, 4, 4};
    for (std::size_t factor = 0; factor < periods.size(); ++factor) {
        EXPECT_EQ(thinningPeriod(static_cast<std::int32_t>(factor)), periods[factor]) << factor;
    }
    EXPECT_EQ(thinningPeriod(1068), 4);
}

TEST(Thinning, ATotalThatWrappedBelowZeroThinsNothing) {
    EXPECT_EQ(thinningPeriod(thinningFactor(-1)), 1);
    EXPECT_EQ(thinningPeriod(thinningFactor(-1'794'967'296)), 1);
    EXPECT_EQ(thinningPeriod(thinningFactor(-2'147'483'647 - 1)), 1);
}

std::vector<std::int32_t> keptOf(ThinningPhase& phase, std::int32_t count) {
    std::vector<std::int32_t> kept;
    for (std::int32_t i = 0; i < count; ++i) {
        if (phase.keeps(i, count)) {
            kept.push_back(i);
        }
    }
    return kept;
}

TEST(Thinning, PeriodThreeKeepsEveryThirdAndTheLast) {
    ThinningPhase phase(3);
    const std::vector<std::int32_t> kept = keptOf(phase, 68);
    // 0, 3, ... 66 are 23 elements; 67 is the last one.
    ASSERT_EQ(kept.size(), 24U);
    for (std::size_t i = 0; i < 23; ++i) {
        EXPECT_EQ(kept[i], static_cast<std::int32_t>(3 * i));
    }
    EXPECT_EQ(kept.back(), 67);
}

TEST(Thinning, ThePhaseRunsOnFromOneRowToTheNext) {
    ThinningPhase phase(4);
    EXPECT_EQ(keptOf(phase, 66).back(), 65);
    // 66 is 2 beyond a multiple of 4, so 2 more pass before the next one is kept.
    const std::vector<std::int32_t> second = keptOf(phase, 66);
    ASSERT_GE(second.size(), 2U);
    EXPECT_EQ(second[0], 2);
    EXPECT_EQ(second[1], 6);
    EXPECT_EQ(second.back(), 65);
}

TEST(Thinning, UpTo65ElementsAllStayAndStillMoveThePhase) {
    ThinningPhase phase(2);
    EXPECT_EQ(keptOf(phase, 65).size(), 65U);
    EXPECT_EQ(keptOf(phase, 66).front(), 1);
}

TEST(Thinning, PeriodOneKeepsAll) {
    ThinningPhase phase(1);
    EXPECT_EQ(keptOf(phase, 1000).size(), 1000U);
}

} // namespace
} // namespace velmora

#include "BatchSurface.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(BatchSurface, ClockStandsStillUntilItIsToldToGoOn) {
    BatchSurface surface;
    EXPECT_EQ(surface.clock(), 0);
    surface.advanceTo(70);
    EXPECT_EQ(surface.clock(), 70);
    surface.advanceTo(30);
    EXPECT_EQ(surface.clock(), 70);
}

TEST(BatchSurface, TimerTicksAtEachPeriodFromItsStart) {
    BatchSurface surface;
    surface.advanceTo(100);
    surface.startTimer(15);
    EXPECT_FALSE(surface.advanceToTick(114));
    EXPECT_EQ(surface.clock(), 100);
    EXPECT_TRUE(surface.advanceToTick(115));
    EXPECT_EQ(surface.clock(), 115);
    EXPECT_FALSE(surface.advanceToTick(129));
    EXPECT_TRUE(surface.advanceToTick(130));
}

TEST(BatchSurface, StoppedTimerTicksNoMore) {
    BatchSurface surface;
    surface.startTimer(15);
    surface.stopTimer();
    EXPECT_FALSE(surface.advanceToTick(1'000'000));
}

TEST(BatchSurface, RepaintRequestStandsUntilItIsCleared) {
    BatchSurface surface;
    EXPECT_FALSE(surface.repaintRequested());
    surface.requestRepaint();
    EXPECT_TRUE(surface.repaintRequested());
    surface.clearRepaintRequest();
    EXPECT_FALSE(surface.repaintRequested());
}

TEST(BatchSurface, CloseRequestIsTakenOnce) {
    BatchSurface surface;
    surface.requestClose();
    EXPECT_TRUE(surface.takeCloseRequest());
    EXPECT_FALSE(surface.takeCloseRequest());
}

} // namespace
} // namespace velmora

#pragma once

#include <utility>

#include "ViewSurface.h"

namespace velmora {

/// A surface without a picture: it keeps whether a repaint or the end of the program was asked for, and has a clock
/// that stands still until it is told to go on, with the timer that belongs to it.
class BatchSurface : public ViewSurface {
public:
    bool obtainDrawingArea() override { return true; }
    bool choosePixelFormat(const PixelFormat&) override { return true; }
    bool selectPixelFormat() override { return true; }
    bool createContext() override { return true; }
    bool makeCurrent() override { return true; }
    bool deleteContext() override { return true; }
    void releaseDrawingArea() override {}

    void prepareContext() override {}
    void clearFrame(const Colour&) override {}
    void drawScene(const SceneFrame&) override {}
    bool showsScenes() const override { return false; }
    void finishFrame() override {}
    bool swapBuffers() override { return true; }
    void invertRectangle(PixelPoint, PixelPoint) override {}

    void requestRepaint() override { repaintRequested_ = true; }
    void requestClose() override { closeRequested_ = true; }
    void showCursor(MouseMode) override {}
    void confineCursor(bool) override {}
    void startTimer(int milliseconds) override;
    void stopTimer() override { timerPeriod_ = 0; }
    std::int64_t clock() const override { return clock_; }

    bool repaintRequested() const { return repaintRequested_; }
    /// The paint that was asked for is done.
    void clearRepaintRequest() { repaintRequested_ = false; }
    /// True when the end of the program was asked for since the last call.
    bool takeCloseRequest() { return std::exchange(closeRequested_, false); }

    /// Lets the clock run on to the next tick of the timer; false, and the clock stays, when none comes up to `end`.
    bool advanceToTick(std::int64_t end);
    /// Lets the clock run on to `end`, without ticks.
    void advanceTo(std::int64_t end);

private:
    bool repaintRequested_ = false;
    bool closeRequested_ = false;
    std::int64_t clock_ = 0;
    std::int64_t nextTick_ = 0;
    int timerPeriod_ = 0; ///< 0: no timer runs
};

} // namespace velmora

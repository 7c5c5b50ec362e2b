#pragma once

#include <string>
#include <vector>

#include "ViewSurface.h"

namespace velmora::test {

/// A view's window that draws nothing and keeps what it was asked, as names in `calls`. `failing` names the context
/// call that fails; `now` is the clock, in milliseconds.
class FakeSurface : public ViewSurface {
public:
    std::vector<std::string> calls;
    std::string failing;
    std::int64_t now = 0;
    int repaints = 0;   ///< those of a frame that is the same, too
    int sameFrames = 0; ///< of them
    int scenes = 0;
    bool closeRequested = false;
    bool confined = false;
    bool timerRuns = false;
    bool watched = false;   ///< by a person
    double modelTook = 0.0; ///< milliseconds of the last drawing of the model
    int restsAwaited = 0;
    std::string hint;
    double scale = 1.0; ///< pixels of the surface for one that the user sees
    int timerPeriod = 0;
    MouseMode cursor = ModeNone;
    SceneFrame lastFrame;
    PixelFormat askedFormat;

    bool obtainDrawingArea() override { return note("obtainDrawingArea"); }
    bool choosePixelFormat(const PixelFormat& format) override {
        askedFormat = format;
        return note("choosePixelFormat");
    }
    bool selectPixelFormat() override { return note("selectPixelFormat"); }
    bool createContext() override { return note("createContext"); }
    bool makeCurrent() override { return note("makeCurrent"); }
    bool deleteContext() override { return note("deleteContext"); }
    void releaseDrawingArea() override { note("releaseDrawingArea"); }
    void prepareContext() override { note("prepareContext"); }
    void clearFrame(const Colour&) override { note("clearFrame"); }
    void drawScene(const SceneFrame& frame) override {
        lastFrame = frame;
        ++scenes;
        note("drawScene");
    }
    void finishFrame() override { note("finishFrame"); }
    bool swapBuffers() override { return note("swapBuffers"); }
    void invertRectangle(PixelPoint, PixelPoint) override { note("invertRectangle"); }
    void requestRepaint() override { ++repaints; }
    void requestSameFrame() override {
        ++sameFrames;
        ViewSurface::requestSameFrame();
    }
    void requestClose() override { closeRequested = true; }
    void showCursor(MouseMode mode) override { cursor = mode; }
    void confineCursor(bool confine) override { confined = confine; }
    void startTimer(int milliseconds) override {
        timerRuns = true;
        timerPeriod = milliseconds;
    }
    void stopTimer() override { timerRuns = false; }
    std::int64_t clock() const override { return now; }
    double pixelScale() const override { return scale; }
    bool isWatched() const override { return watched; }
    double modelTime() const override { return modelTook; }
    void awaitRest() override { ++restsAwaited; }
    void showHint(const std::string& text) override { hint = text; }

private:
    bool note(const char* call) {
        calls.emplace_back(call);
        return failing != call;
    }
};

} // namespace velmora::test

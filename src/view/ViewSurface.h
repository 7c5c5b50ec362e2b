#pragma once

#include <cstdint>
#include <string>

#include "DrawList.h"
#include "MouseMode.h"
#include "camera.h"

namespace velmora {

/// A position in the view, in pixels from its upper left corner.
struct PixelPoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

/// What the view asks of a pixel format.
struct PixelFormat {
    bool doubleBuffered = true;
    int colourBits = 24;
    int depthBits = 32;
    int alphaBits = 0;
    int accumulationBits = 0;
    int stencilBits = 0;
};

/// Everything that one frame shows.
struct SceneFrame {
    const DrawList* list = nullptr; ///< the model, and a number that changes whenever the list was built anew
    std::uint64_t listRevision = 0;
    /// What is drawn in place of the list while the camera moves and the list takes too long; null: the list itself.
    const DrawList* coarse = nullptr;
    std::uint64_t coarseRevision = 0;
    bool filled = false;     ///< front faces filled, back faces as lines, lit; else both as lines, unlit
    bool edges = false;      ///< filled faces with their edges, darker
    bool backFilled = false; ///< back faces filled too, darker
    /// Drawn over the model without changing its depth, what of them is hidden by it dimmed: what is held, with a
    /// number that changes whenever it was built anew, and what the mouse points at.
    const DrawList* held = nullptr;
    std::uint64_t heldRevision = 0;
    const DrawList* pointed = nullptr;
    const Overlay* overlay = nullptr;
    Matrix4 modelView{};
    Matrix4 projection{};
    Viewport viewport;
    double pixelScale = 1.0; ///< points and lines are this many times as thick
};

/// The window that a view draws on. The one in the frame draws with OpenGL; the one of scripts and tests only keeps
/// what it was asked.
class ViewSurface {
public:
    ViewSurface() = default;
    ViewSurface(const ViewSurface&) = delete;
    ViewSurface& operator=(const ViewSurface&) = delete;
    virtual ~ViewSurface() = default;

    // Context: each answers false on failure.
    virtual bool obtainDrawingArea() = 0;
    virtual bool choosePixelFormat(const PixelFormat& format) = 0;
    virtual bool selectPixelFormat() = 0;
    virtual bool createContext() = 0;
    virtual bool makeCurrent() = 0;
    virtual bool deleteContext() = 0;
    virtual void releaseDrawingArea() = 0;

    // Drawing, between two buffer swaps. Drawing outside a paint is ignored.
    virtual void prepareContext() = 0; ///< clear colour and depth, depth test
    virtual void clearFrame(const Colour& colour) = 0;
    virtual void drawScene(const SceneFrame& frame) = 0;
    /// False where no scene is ever shown: then none is made to be drawn, but for whoever asks the view for its list.
    virtual bool showsScenes() const { return true; }
    virtual void finishFrame() = 0;
    virtual bool swapBuffers() = 0;
    /// Inverts the outline of a rectangle on the finished frame.
    virtual void invertRectangle(PixelPoint from, PixelPoint to) = 0;

    /// Milliseconds that the last drawing of a whole model took; 0 where nothing is drawn.
    virtual double modelTime() const { return 0.0; }

    // Window.
    /// True when a person looks at it, who means what is in sight: scripts name what they mean.
    virtual bool isWatched() const { return false; }
    /// A word on what the mouse points at, until an empty one comes.
    virtual void showHint(const std::string&) {}
    /// The camera moves: OnRest is to come when it has not moved for a while.
    virtual void awaitRest() {}
    /// Pixels of the screen for one of an ordinary screen: what has its size in pixels grows by it.
    virtual double pixelScale() const { return 1.0; }
    virtual void requestRepaint() = 0;
    /// A repaint that shows what is shown already: whoever keeps the picture may leave it as it stands.
    virtual void requestSameFrame() { requestRepaint(); }
    virtual void requestClose() = 0;
    virtual void showCursor(MouseMode mode) = 0;
    /// Keeps the cursor inside the view until it is freed.
    virtual void confineCursor(bool confined) = 0;
    virtual void startTimer(int milliseconds) = 0;
    virtual void stopTimer() = 0;
    /// Milliseconds of a clock that only goes forward.
    virtual std::int64_t clock() const = 0;
};

} // namespace velmora

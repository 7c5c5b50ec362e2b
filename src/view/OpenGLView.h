#pragma once

#include <string>

#include "ViewSurface.h"

namespace velmora {

/// A key that the view listens to.
enum class ViewKey { Escape, Other };

/// A window with an OpenGL context and a frame loop; what a frame shows is up to the class derived from it.
class OpenGLView {
public:
    /// `surface` must outlive the view.
    explicit OpenGLView(ViewSurface& surface) : surface_(surface) {}
    OpenGLView(const OpenGLView&) = delete;
    OpenGLView& operator=(const OpenGLView&) = delete;
    virtual ~OpenGLView() = default;

    /// The first failure of a window or context call; a later one never overwrites it.
    std::string lastErrorText = "No Error";

    /// Paints one frame: clear, stock scene, scene, finish, swap, and what comes behind the swap.
    virtual void OnDraw();
    virtual void OnCreate();
    virtual void OnDestroy();
    /// True: the background counts as erased.
    virtual bool OnEraseBkgnd() { return true; }
    virtual void OnSize(int width, int height);
    virtual void OnKeyDown(ViewKey key);
    virtual bool SetupPixelFormat();
    virtual bool PreRenderScene() { return true; }
    virtual void RenderStockScene() {}
    virtual bool RenderScene() { return true; }
    virtual void PostRenderScene() {}

protected:
    ViewSurface& surface() { return surface_; }
    const ViewSurface& surface() const { return surface_; }
    /// Keeps `text` if it is the first failure.
    void recordFailure(const char* text);

private:
    ViewSurface& surface_;
};

} // namespace velmora

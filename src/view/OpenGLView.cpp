#include "OpenGLView.h"

namespace velmora {

void OpenGLView::recordFailure(const char* text) {
    if (lastErrorText == "No Error") {
        lastErrorText = text;
    }
}

void OpenGLView::OnCreate() {
    if (!surface_.obtainDrawingArea()) {
        recordFailure("Unable to get a DC");
        return;
    }
    if (!SetupPixelFormat()) {
        return;
    }
    if (!surface_.createContext()) {
        recordFailure("wglCreateContext failed");
        return;
    }
    if (!surface_.makeCurrent()) {
        recordFailure("wglMakeCurrent failed");
        return;
    }
    surface_.prepareContext();
}

bool OpenGLView::SetupPixelFormat() {
    if (!surface_.choosePixelFormat(PixelFormat{})) {
        recordFailure("ChoosePixelFormat failed");
        return false;
    }
    if (!surface_.selectPixelFormat()) {
        recordFailure("SelectPixelFormat failed");
        return false;
    }
    return true;
}

void OpenGLView::OnDestroy() {
    if (!surface_.deleteContext()) {
        recordFailure("wglDeleteContext failed");
    }
    surface_.releaseDrawingArea();
}

void OpenGLView::OnSize(int, int) {}

void OpenGLView::OnKeyDown(ViewKey key) {
    if (key == ViewKey::Escape) {
        surface_.requestClose();
    }
}

void OpenGLView::OnDraw() {
    surface_.clearFrame({0.0F, 0.0F, 0.0F, 0.0F});
    PreRenderScene();
    RenderStockScene();
    RenderScene();
    surface_.finishFrame();
    if (!surface_.swapBuffers()) {
        recordFailure("SwapBuffers failed");
    }
    PostRenderScene();
}

} // namespace velmora

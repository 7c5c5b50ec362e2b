#define EGL_NO_X11
#define GL_GLEXT_PROTOTYPES 1
#include "OffscreenPicture.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <array>

namespace velmora {

namespace {

/// A frame buffer of that size, bound for as long as it lives.
class PixelBuffer {
public:
    PixelBuffer(int width, int height) {
        glGenFramebuffers(1, &frame_);
        glBindFramebuffer(GL_FRAMEBUFFER, frame_);
        glGenRenderbuffers(2, buffers_.data());
        attach(buffers_[0], GL_RGBA8, GL_COLOR_ATTACHMENT0, width, height);
        attach(buffers_[1], GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL_ATTACHMENT, width, height);
    }
    PixelBuffer(const PixelBuffer&) = delete;
    PixelBuffer& operator=(const PixelBuffer&) = delete;
    ~PixelBuffer() {
        glDeleteRenderbuffers(2, buffers_.data());
        glDeleteFramebuffers(1, &frame_);
    }

    static bool isWhole() { return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE; }

private:
    static void attach(unsigned buffer, GLenum format, GLenum place, int width, int height) {
        glBindRenderbuffer(GL_RENDERBUFFER, buffer);
        glRenderbufferStorage(GL_RENDERBUFFER, format, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer);
    }

    unsigned frame_ = 0;
    std::array<unsigned, 2> buffers_{};
};

} // namespace

OffscreenContext::OffscreenContext() {
    display_ = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    const std::array<EGLint, 5> wanted = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                                          EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    if (display_ == EGL_NO_DISPLAY || eglInitialize(display_, nullptr, nullptr) == EGL_FALSE ||
        eglBindAPI(EGL_OPENGL_API) == EGL_FALSE ||
        eglChooseConfig(display_, wanted.data(), &config, 1, &found) == EGL_FALSE || found < 1) {
        return;
    }
    context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, nullptr);
    if (context_ != EGL_NO_CONTEXT && eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_) == EGL_FALSE) {
        eglDestroyContext(display_, context_);
        context_ = nullptr;
    }
}

OffscreenContext::~OffscreenContext() {
    if (context_ != nullptr) {
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display_, context_);
    }
}

std::vector<std::uint8_t> drawnPixels(const SceneFrame& frame, const PictureSettings& settings,
                                      const TextRasterizer& rasterizer) {
    const PixelBuffer buffer(settings.width, settings.height);
    if (!PixelBuffer::isWhole()) {
        return {};
    }
    const DrawList list = onGround(*frame.list, settings.ground);
    const DrawList held = frame.held != nullptr ? onGround(*frame.held, settings.ground) : DrawList();
    const Overlay overlay = onGround(*frame.overlay, settings.ground);
    SceneFrame shown = frame;
    shown.list = &list;
    shown.listRevision = 1;
    shown.held = &held;
    shown.heldRevision = 1;
    shown.overlay = &overlay;
    GlRenderer renderer(rasterizer);
    renderer.prepare();
    renderer.clear(colourOf(settings.ground));
    renderer.draw(shown);
    renderer.finish();
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(settings.width) *
                                     static_cast<std::size_t>(settings.height) * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, settings.width, settings.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    renderer.release();
    return glGetError() == GL_NO_ERROR ? pixels : std::vector<std::uint8_t>();
}

} // namespace velmora

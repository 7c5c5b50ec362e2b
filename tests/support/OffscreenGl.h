#pragma once

#define EGL_NO_X11
#define GL_GLEXT_PROTOTYPES 1
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "FakeSurface.h"
#include "GlRenderer.h"

namespace velmora::test {

/// A software OpenGL without a window or a display, current for as long as this lives.
class OffscreenGl {
public:
    OffscreenGl() {
        display_ = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        const std::array<EGLint, 5> wanted = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                                              EGL_NONE};
        EGLConfig config = nullptr;
        EGLint found = 0;
        if (eglInitialize(display_, nullptr, nullptr) == EGL_FALSE || eglBindAPI(EGL_OPENGL_API) == EGL_FALSE ||
            eglChooseConfig(display_, wanted.data(), &config, 1, &found) == EGL_FALSE || found < 1) {
            throw std::runtime_error("no OpenGL without a display");
        }
        context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, nullptr);
        if (context_ == EGL_NO_CONTEXT ||
            eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_) == EGL_FALSE) {
            throw std::runtime_error("no OpenGL context");
        }
    }
    OffscreenGl(const OffscreenGl&) = delete;
    OffscreenGl& operator=(const OffscreenGl&) = delete;
    ~OffscreenGl() {
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display_, context_);
    }

private:
    EGLDisplay display_ = EGL_NO_DISPLAY;
    EGLContext context_ = EGL_NO_CONTEXT;
};

/// A view's window of fixed size that draws into memory.
class OffscreenSurface : public FakeSurface {
public:
    OffscreenSurface(int width, int height) : width_(width), height_(height) {
        glGenFramebuffers(1, &frame_);
        glBindFramebuffer(GL_FRAMEBUFFER, frame_);
        glGenRenderbuffers(2, buffers_.data());
        glBindRenderbuffer(GL_RENDERBUFFER, buffers_[0]);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, buffers_[0]);
        glBindRenderbuffer(GL_RENDERBUFFER, buffers_[1]);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, buffers_[1]);
        if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
            throw std::runtime_error("no frame buffer");
        }
        renderer.prepare();
    }
    ~OffscreenSurface() override {
        renderer.release();
        glDeleteRenderbuffers(2, buffers_.data());
        glDeleteFramebuffers(1, &frame_);
    }

    /// Texts are blocks of 8 by 8 pixels for each letter, times their scale.
    GlRenderer renderer{[](const std::string& text, double size) {
        const int height = static_cast<int>(8.0 * size);
        const int width = height * static_cast<int>(text.size());
        return TextBitmap{width, height,
                          std::vector<std::uint8_t>(static_cast<std::size_t>((width + 7) / 8 * height), 0xFF)};
    }};

    void clearFrame(const Colour& colour) override { renderer.clear(colour); }
    void drawScene(const SceneFrame& frame) override {
        ++scenes;
        renderer.draw(frame);
    }
    void finishFrame() override { renderer.finish(); }
    double modelTime() const override { return renderer.modelTime(); }
    void invertRectangle(PixelPoint from, PixelPoint to) override {
        renderer.invertRectangle(from, to, {0, 0, width_, height_});
    }

    /// The frame as red, green, blue, alpha, rows from the bottom up.
    std::vector<std::uint8_t> pixels() const {
        std::vector<std::uint8_t> all(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * 4);
        glReadPixels(0, 0, width_, height_, GL_RGBA, GL_UNSIGNED_BYTE, all.data());
        return all;
    }
    /// One of them, counted from the upper left.
    std::array<int, 3> pixel(PixelPoint at) const {
        std::array<std::uint8_t, 4> one{};
        glReadPixels(at.x, height_ - 1 - at.y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, one.data());
        return {one[0], one[1], one[2]};
    }

private:
    int width_;
    int height_;
    unsigned frame_ = 0;
    std::array<unsigned, 2> buffers_{};
};

} // namespace velmora::test

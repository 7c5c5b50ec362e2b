#include "GlPicture.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GL/gl.h>
#include <GL/glext.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace velmora {

namespace {

/// Frame buffers of one's own belong to the core since version 3.0, and to some older contexts by an extension.
bool hasFrameBuffers() {
    const auto text = [](GLenum name) {
        const GLubyte* words = glGetString(name);
        return words == nullptr ? "" : reinterpret_cast<const char*>(words);
    };
    return std::atoi(text(GL_VERSION)) >= 3 || std::strstr(text(GL_EXTENSIONS), "GL_ARB_framebuffer_object") != nullptr;
}

void forgetErrors() {
    while (glGetError() != GL_NO_ERROR) {
    }
}

} // namespace

bool GlPicture::prepare(int width, int height, int samples) {
    if (refused_ || width < 1 || height < 1) {
        return false;
    }
    if (frame_ != 0 && width == width_ && height == height_ && samples == samples_) {
        return true;
    }
    release();
    refused_ = !hasFrameBuffers() || !make(width, height, samples);
    return !refused_;
}

bool GlPicture::make(int width, int height, int samples) {
    GLint target = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &target);
    glGenFramebuffers(1, &frame_);
    glGenRenderbuffers(2, buffers_);
    glBindFramebuffer(GL_FRAMEBUFFER, frame_);
    // The depth has the form that the toolkit's own surfaces have: only the same form is copied.
    constexpr GLenum forms[2] = {GL_RGBA8, GL_DEPTH24_STENCIL8};
    constexpr GLenum places[2] = {GL_COLOR_ATTACHMENT0, GL_DEPTH_STENCIL_ATTACHMENT};
    for (int i = 0; i < 2; ++i) {
        glBindRenderbuffer(GL_RENDERBUFFER, buffers_[i]);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, forms[i], width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, places[i], GL_RENDERBUFFER, buffers_[i]);
    }
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    const bool complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(target));
    width_ = width;
    height_ = height;
    samples_ = samples;
    if (!complete) {
        forgetErrors();
        release();
    }
    return complete;
}

void GlPicture::begin() const {
    glBindFramebuffer(GL_FRAMEBUFFER, frame_);
}

bool GlPicture::showOn(unsigned target) {
    forgetErrors();
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame_);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, target);
    for (const GLbitfield part : {GL_COLOR_BUFFER_BIT, GL_DEPTH_BUFFER_BIT}) {
        glBlitFramebuffer(0, 0, width_, height_, 0, 0, width_, height_, part, GL_NEAREST);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, target);
    refused_ = glGetError() != GL_NO_ERROR;
    return !refused_;
}

void GlPicture::release() {
    if (frame_ != 0) {
        glDeleteFramebuffers(1, &frame_);
        glDeleteRenderbuffers(2, buffers_);
    }
    frame_ = buffers_[0] = buffers_[1] = 0;
}

} // namespace velmora

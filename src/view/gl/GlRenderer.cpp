#include "GlRenderer.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>

namespace velmora {

namespace {

constexpr const char* softwareRenderers[] = {"llvmpipe", "softpipe", "swrast", "Software"};
constexpr int fineSamples = 4;

void setFaces(GLenum front, GLenum back) {
    glPolygonMode(GL_FRONT, front);
    glPolygonMode(GL_BACK, back);
}

void setFaces(const DrawBatch& look, bool filled) {
    if (look.outlineFront) {
        setFaces(GL_LINE, GL_FILL);
    } else {
        setFaces(filled ? GL_FILL : GL_LINE, GL_LINE);
    }
}

/// The back of a surface, and its edges, have the colour of the front times this.
constexpr float backShade = 0.5F;
constexpr float edgeShade = 0.3F;
/// What is hidden of a mark is dimmed by this.
constexpr float hiddenShade = 0.4F;
/// Marks stand in front of the surface that they lie on by so much of the whole depth.
constexpr double markNearer = 2e-6;

Colour shaded(const Colour& colour, float factor) {
    return {colour[0] * factor, colour[1] * factor, colour[2] * factor, colour[3]};
}

/// Whether the processor draws: more samples would cost it as much again each.
bool drawsInSoftware() {
    const GLubyte* words = glGetString(GL_RENDERER);
    const std::string name = words == nullptr ? "" : reinterpret_cast<const char*>(words);
    return std::any_of(std::begin(softwareRenderers), std::end(softwareRenderers),
                       [&name](const char* known) { return name.find(known) != std::string::npos; });
}

/// A point shows over the points drawn before it at the same place, and over the surface it lies on. A strip leaves
/// the points on it, and a frame the point inside it.
GLenum depthRule(const DrawBatch& look) {
    return look.primitive == Primitive::Points && !look.framing ? GL_LEQUAL : GL_LESS;
}

/// Light 0, fixed to the eye: set while the model view matrix is the identity.
void setLight() {
    const std::array<float, 4> full{1.0F, 1.0F, 1.0F, 1.0F};
    const std::array<float, 4> position{0.0F, 0.0F, 1.0F, 1.0F};
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glLightfv(GL_LIGHT0, GL_AMBIENT, full.data());
    glLightfv(GL_LIGHT0, GL_DIFFUSE, full.data());
    glLightfv(GL_LIGHT0, GL_SPECULAR, full.data());
    glLightfv(GL_LIGHT0, GL_POSITION, position.data());
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glEnable(GL_LIGHT0);
}

void setMatrices(const SceneFrame& frame) {
    glViewport(frame.viewport.x, frame.viewport.y, frame.viewport.width, frame.viewport.height);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(frame.projection.data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(frame.modelView.data());
}

void setEnabled(GLenum capability, bool on) {
    if (on) {
        glEnable(capability);
    } else {
        glDisable(capability);
    }
}

void setLook(const DrawBatch& look, const SceneFrame& frame, bool lightsOn) {
    const auto scale = static_cast<float>(frame.pixelScale);
    setEnabled(GL_LIGHTING, lightsOn && look.lit);
    setFaces(look, frame.filled);
    glDepthFunc(depthRule(look));
    glPointSize(look.pointSize * scale);
    glLineWidth(look.lineWidth * scale);
    glColor4fv(look.colour.data());
}

} // namespace

void GlRenderer::prepare() {
    glClearColor(0.0F, 0.0F, 0.0F, 0.0F);
    glClearDepth(1.0);
    glEnable(GL_DEPTH_TEST);
}

void GlRenderer::clear(const Colour& colour) {
    ground_ = colour;
    glClearColor(colour[0], colour[1], colour[2], colour[3]);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

int GlRenderer::samples() {
    if (!samples_) {
        GLint most = 0;
        glGetIntegerv(GL_MAX_SAMPLES, &most);
        samples_ = drawsInSoftware() || most < fineSamples ? 0 : fineSamples;
    }
    return *samples_;
}

void GlRenderer::draw(const SceneFrame& frame) {
    glEnable(GL_DEPTH_TEST);
    glShadeModel(GL_SMOOTH);
    setLight();
    setMatrices(frame);
    if (frame.list != nullptr) {
        drawKeptModel(frame);
    }
    if (frame.held != nullptr) {
        if (uploadedHeld_ != frame.heldRevision) {
            held_.upload(*frame.held, false);
            uploadedHeld_ = frame.heldRevision;
        }
        drawMarks(held_, frame);
    }
    if (frame.pointed != nullptr && !frame.pointed->batches.empty()) {
        overlay_.upload(*frame.pointed, true);
        drawMarks(overlay_, frame);
    }
    if (frame.overlay != nullptr) {
        overlay_.upload(frame.overlay->list, true);
        drawRuns(overlay_, frame.overlay->list, frame, false);
        drawTexts(frame.overlay->texts);
    }
}

GlRenderer::ModelLook GlRenderer::lookOf(const SceneFrame& frame) {
    const bool coarse = frame.coarse != nullptr;
    return {coarse ? frame.coarseRevision : frame.listRevision,
            coarse,
            frame.list->accents,
            frame.filled,
            frame.edges,
            frame.backFilled,
            frame.modelView,
            frame.projection,
            frame.viewport.width,
            frame.viewport.height,
            frame.pixelScale};
}

/// Draws the model where it stands in a picture of its own, and shows that; where the context has no such pictures,
/// straight into the frame.
void GlRenderer::drawKeptModel(const SceneFrame& frame) {
    ModelLook look = lookOf(frame);
    const bool same = kept_ == look;
    if (!picture_.prepare(frame.viewport.width, frame.viewport.height, samples())) {
        kept_.reset();
        drawModel(frame);
        return;
    }
    GLint target = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &target);
    if (!same) {
        picture_.begin();
        clear(ground_);
        drawModel(frame);
        kept_ = std::move(look);
    }
    if (!picture_.showOn(static_cast<unsigned>(target))) {
        kept_.reset();
        drawModel(frame);
    }
}

void GlRenderer::drawModel(const SceneFrame& frame) {
    glFinish(); // what came before is not this drawing's
    const auto begin = std::chrono::steady_clock::now();
    glColorMaterial(GL_FRONT_AND_BACK, GL_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    if (frame.coarse != nullptr) {
        if (uploadedCoarse_ != frame.coarseRevision) {
            coarse_.upload(*frame.coarse, false);
            uploadedCoarse_ = frame.coarseRevision;
        }
        drawRuns(coarse_, *frame.coarse, frame, frame.filled);
    } else {
        if (uploadedRevision_ != frame.listRevision) {
            list_.upload(*frame.list, false);
            uploadedRevision_ = frame.listRevision;
        }
        drawRuns(list_, *frame.list, frame, frame.filled);
    }
    glDisable(GL_COLOR_MATERIAL);
    glFinish();
    ++modelDraws_;
    if (frame.coarse == nullptr) {
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - begin;
        modelTime_ = taken.count();
    }
}

/// Over the model: what of a mark lies behind it is dimmed. The model's depth stays as it is.
void GlRenderer::drawMarks(const GlBuffer& buffer, const SceneFrame& frame) {
    buffer.bind();
    glDepthMask(GL_FALSE);
    glDepthRange(0.0, 1.0 - markNearer);
    for (const bool hidden : {true, false}) {
        for (const GlRun& run : buffer.runs()) {
            setLook(run.look, frame, false);
            const Colour colour = hidden ? shaded(run.look.colour, hiddenShade) : run.look.colour;
            glColor4fv(colour.data());
            glDepthFunc(hidden ? GL_GREATER : GL_LEQUAL);
            buffer.draw(run, 0, run.first.size());
        }
    }
    glDepthRange(0.0, 1.0);
    glDepthMask(GL_TRUE);
    glDepthFunc(GL_LESS);
    GlBuffer::unbind();
}

/// The faces of a lit surface: its front filled, then its back. Each side by itself goes the shorter way through the
/// context than both at once.
void GlRenderer::drawSurfaceRun(const GlBuffer& buffer, const GlRun& run, const SceneFrame& frame) {
    const auto drawSide = [&](GLenum culled, GLenum faces) {
        glCullFace(culled);
        setFaces(faces, faces);
        buffer.draw(run, 0, run.first.size());
    };
    glEnable(GL_CULL_FACE);
    if (frame.edges) {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0F, 1.0F);
    }
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 0);
    drawSide(GL_BACK, GL_FILL);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    if (frame.backFilled) {
        glColor4fv(shaded(run.look.colour, backShade).data());
    }
    drawSide(GL_FRONT, frame.backFilled ? GL_FILL : GL_LINE);
    glDisable(GL_POLYGON_OFFSET_FILL);
    if (frame.edges) {
        glDisable(GL_LIGHTING);
        glColor4fv(shaded(run.look.colour, edgeShade).data());
        drawSide(GL_BACK, GL_LINE);
        if (frame.backFilled) {
            drawSide(GL_FRONT, GL_LINE);
        }
    }
    glDisable(GL_CULL_FACE);
}

void GlRenderer::drawRuns(const GlBuffer& buffer, const DrawList& list, const SceneFrame& frame, bool lightsOn) {
    buffer.bind();
    for (const GlRun& run : buffer.runs()) {
        drawRun(buffer, run, list, frame, lightsOn);
    }
    GlBuffer::unbind();
    glDepthFunc(GL_LESS);
    glDisable(GL_LIGHTING);
}

/// A strip with an accent is drawn in its place among the others, with its points before it.
void GlRenderer::drawRun(const GlBuffer& buffer, const GlRun& run, const DrawList& list, const SceneFrame& frame,
                         bool lightsOn) {
    setLook(run.look, frame, lightsOn);
    if (lightsOn && run.look.lit) {
        drawSurfaceRun(buffer, run, frame);
        return;
    }
    std::size_t drawn = 0;
    for (const Accent& accent : list.accents) {
        const DrawBatch& strip = list.batches[accent.batch];
        const auto place = stripIn(run, strip.firstVertex);
        if (!place || strip.vertexCount == 0) {
            continue;
        }
        buffer.draw(run, drawn, *place);
        DrawBatch look = strip;
        look.colour = accent.colour;
        look.pointSize = accent.pointSize;
        for (const Primitive primitive : {Primitive::Points, strip.primitive}) {
            look.primitive = primitive;
            setLook(look, frame, lightsOn);
            buffer.draw(strip, primitive);
        }
        setLook(run.look, frame, lightsOn);
        drawn = *place + 1;
    }
    buffer.draw(run, drawn, run.first.size());
}

void GlRenderer::drawTexts(const std::vector<DrawText>& texts) {
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (const DrawText& text : texts) {
        const TextBitmap bitmap = rasterizer_(text.text);
        // The raster position takes the colour in force.
        glColor4fv(text.colour.data());
        glRasterPos3d(text.position.x, text.position.y, text.position.z);
        glBitmap(bitmap.width, bitmap.height, 0.0F, 0.0F, 0.0F, 0.0F, bitmap.rows.data());
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
}

void GlRenderer::finish() {
    glFinish();
}

void GlRenderer::invertRectangle(PixelPoint from, PixelPoint to, const Viewport& viewport) {
    const int left = std::min(from.x, to.x);
    const int right = std::max(from.x, to.x) + 1;
    const int bottom = viewport.height - 1 - std::max(from.y, to.y);
    const int top = viewport.height - std::min(from.y, to.y);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glViewport(viewport.x, viewport.y, viewport.width, viewport.height);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0.0, viewport.width, 0.0, viewport.height, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_DEPTH_TEST);
    setFaces(GL_FILL, GL_FILL);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(GL_INVERT);
    // Four strips that share no pixel: one inverted twice would stand out.
    glRecti(left, top - 1, right, top);
    if (top - bottom > 1) {
        glRecti(left, bottom, right, bottom + 1);
    }
    if (top - bottom > 2) {
        glRecti(left, bottom + 1, left + 1, top - 1);
        if (right - left > 1) {
            glRecti(right - 1, bottom + 1, right, top - 1);
        }
    }
    glPopAttrib();
}

void GlRenderer::release() {
    for (GlBuffer* buffer : {&list_, &coarse_, &held_, &overlay_}) {
        buffer->release();
    }
    picture_.release();
    for (auto* revision : {&uploadedRevision_, &uploadedCoarse_, &uploadedHeld_}) {
        revision->reset();
    }
    kept_.reset();
}

} // namespace velmora

#include "GlRenderer.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <array>

namespace velmora {

namespace {

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
    glClearColor(colour[0], colour[1], colour[2], colour[3]);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void GlRenderer::draw(const SceneFrame& frame) {
    glEnable(GL_DEPTH_TEST);
    glShadeModel(GL_SMOOTH);
    setLight();
    glColorMaterial(GL_FRONT_AND_BACK, GL_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    setMatrices(frame);
    if (frame.list != nullptr) {
        if (uploadedRevision_ != frame.listRevision) {
            list_.upload(*frame.list, false);
            uploadedRevision_ = frame.listRevision;
        }
        drawRuns(list_, *frame.list, frame, frame.filled);
    }
    glDisable(GL_COLOR_MATERIAL);
    if (frame.overlay != nullptr) {
        overlay_.upload(frame.overlay->list, true);
        drawRuns(overlay_, frame.overlay->list, frame, false);
        drawTexts(frame.overlay->texts);
    }
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
    list_.release();
    overlay_.release();
    uploadedRevision_.reset();
}

} // namespace velmora

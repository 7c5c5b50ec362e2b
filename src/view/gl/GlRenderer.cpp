#include "GlRenderer.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
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
/// Marks stand in front of the surface that they lie on by so much of the whole depth, a few of its steps: more would
/// show what lies on the other side of a thin wing.
constexpr double markNearer = 4e-7;
/// Surfaces stand behind their edges by so many of these steps.
constexpr float stepsBehindEdges = 4.0F;

/// Edges that stand so many pixels apart are drawn as they are; where they are nearer to each other they fade, and none
/// is left where they would hide the surface.
constexpr double clearEdges = 5.0;
constexpr double denseEdges = 1.5;

/// How far the middle of a run stands from the eye; 1 where all is seen from one side.
double awayOf(const GlRun& run, const SceneFrame& frame) {
    const Matrix4& m = frame.modelView;
    const zVec<double>& at = run.middle;
    const bool parallel = frame.projection[15] == 1.0;
    return parallel ? 1.0 : -(m[2] * at.x + m[6] * at.y + m[10] * at.z + m[14]);
}

/// Pixels that one unit of length across the line of sight takes.
double pixelsOfUnit(double away, const SceneFrame& frame) {
    return frame.projection[5] * frame.viewport.height * 0.5 / away;
}

/// A thick line of a face that is hidden reaches past the face that hides it where both stand near to each other. So
/// lines of the back that are thicker than a pixel stand back by what the depth changes over the rest of them, on faces
/// that are no steeper than this.
constexpr double steepest = 3.0;
constexpr double mostBehind = 0.01;

double behindFronts(const GlRun& run, const SceneFrame& frame) {
    const double away = awayOf(run, frame);
    if (frame.pixelScale <= 1.0 || !(away > 0.0)) {
        return 0.0;
    }
    const bool parallel = frame.projection[15] == 1.0;
    const double depthOfUnit = 0.5 * std::abs(parallel ? frame.projection[10] : frame.projection[14] / (away * away));
    const double rest = (frame.pixelScale - 1.0) * 0.5 / pixelsOfUnit(away, frame);
    return std::min(mostBehind, steepest * rest * depthOfUnit);
}

/// How much of the edges of a run shows, 0 to 1.
float edgeStrength(const GlRun& run, const SceneFrame& frame) {
    const double away = awayOf(run, frame);
    if (!(away > 0.0)) {
        return 1.0F; // the eye is in the middle of it
    }
    const double pixels = run.edge * pixelsOfUnit(away, frame) / frame.pixelScale;
    return static_cast<float>(std::clamp((pixels - denseEdges) / (clearEdges - denseEdges), 0.0, 1.0));
}

Colour shaded(const Colour& colour, float factor) {
    return {colour[0] * factor, colour[1] * factor, colour[2] * factor, colour[3]};
}

/// A colour that stands for something keeps so much of itself wherever its face looks; the light adds the rest.
constexpr float readableShare = 0.8F;
/// Ambient light that the scene has beside that of light 0, and the share of it that other surfaces show, in grey.
constexpr float ambientOfScene = 0.2F;
constexpr float ambientOfSurface = 0.2F;

/// How the light falls on what is drawn next: the colour of a surface that is to be read is hardly shaded, others turn
/// dark where they turn away.
void setShading(bool readable) {
    const float ambient = readable ? readableShare - ambientOfScene : 1.0F;
    const float diffuse = readable ? 1.0F - readableShare : 1.0F;
    glLightfv(GL_LIGHT0, GL_AMBIENT, std::array{ambient, ambient, ambient, 1.0F}.data());
    glLightfv(GL_LIGHT0, GL_DIFFUSE, std::array{diffuse, diffuse, diffuse, 1.0F}.data());
    glColorMaterial(GL_FRONT_AND_BACK, readable ? GL_AMBIENT_AND_DIFFUSE : GL_DIFFUSE);
    if (!readable) {
        glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT,
                     std::array{ambientOfSurface, ambientOfSurface, ambientOfSurface, 1.0F}.data());
    }
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
    const std::array<float, 4> ofScene{ambientOfScene, ambientOfScene, ambientOfScene, 1.0F};
    const std::array<float, 4> position{0.0F, 0.0F, 1.0F, 1.0F};
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    setShading(false);
    glLightfv(GL_LIGHT0, GL_SPECULAR, full.data());
    glLightfv(GL_LIGHT0, GL_POSITION, position.data());
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ofScene.data());
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glEnable(GL_LIGHT0);
}

/// All of a rectangle that stands out beyond the text by the border.
TextBitmap plateFor(const TextBitmap& text, int border) {
    TextBitmap plate{text.width + 2 * border, text.height + 2 * border, {}};
    plate.rows.assign(static_cast<std::size_t>((plate.width + 7) / 8) * static_cast<std::size_t>(plate.height), 0xFF);
    return plate;
}

/// The lower left of the bitmap stands so far to the right of the place and above it.
void drawBitmap(const TextBitmap& bitmap, const zVec<double>& place, const Colour& colour, float right, float up) {
    // The raster position takes the colour in force.
    glColor4fv(colour.data());
    glRasterPos3d(place.x, place.y, place.z);
    glBitmap(bitmap.width, bitmap.height, -right, -up, 0.0F, 0.0F, bitmap.rows.data());
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
    clearWanted_ = true;
}

void GlRenderer::clearNow() {
    glClearColor(ground_[0], ground_[1], ground_[2], ground_[3]);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    clearWanted_ = false;
}

void GlRenderer::clearIfWanted() {
    if (clearWanted_) {
        clearNow();
    }
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
    clearIfWanted();
    if (frame.held != nullptr) {
        if (uploadedHeld_ != frame.heldRevision) {
            held_.upload(*frame.held);
            uploadedHeld_ = frame.heldRevision;
        }
        drawMarks(held_, frame);
    }
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    if (frame.pointed != nullptr && !frame.pointed->batches.empty()) {
        overlay_.uploadSeen(*frame.pointed, frame.modelView);
        drawMarks(overlay_, frame);
    }
    if (frame.overlay != nullptr) {
        overlay_.uploadSeen(frame.overlay->list, frame.modelView);
        drawRuns(overlay_, frame.overlay->list, frame, false);
        glLoadMatrixd(frame.modelView.data());
        drawTexts(frame.overlay->texts, frame.pixelScale);
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
        clearIfWanted();
        drawModel(frame);
        return;
    }
    GLint target = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &target);
    if (!same) {
        picture_.begin();
        clearNow();
        drawModel(frame);
        kept_ = std::move(look);
    }
    // The picture covers all of the frame: a clear before it would be for nothing.
    clearWanted_ = !picture_.showOn(static_cast<unsigned>(target));
    if (clearWanted_) {
        kept_.reset();
        clearNow();
        drawModel(frame);
    }
}

void GlRenderer::drawModel(const SceneFrame& frame) {
    glFinish(); // what came before is not this drawing's
    const auto begin = std::chrono::steady_clock::now();
    glEnable(GL_COLOR_MATERIAL);
    if (frame.coarse != nullptr) {
        if (uploadedCoarse_ != frame.coarseRevision) {
            coarse_.upload(*frame.coarse);
            uploadedCoarse_ = frame.coarseRevision;
        }
        drawRuns(coarse_, *frame.coarse, frame, frame.filled);
    } else {
        if (uploadedRevision_ != frame.listRevision) {
            list_.upload(*frame.list);
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

/// The faces of all lit surfaces: their fronts filled, then their backs. Each side by itself goes a shorter way through
/// the context than both at once, and what shows the other side alone is left out of it.
void GlRenderer::drawSurfaces(GlBuffer& buffer, const SceneFrame& frame) {
    const Eye eye = eyeOf(frame.modelView, frame.projection);
    bool readable = false;
    const auto shadeFor = [&readable](bool wanted) {
        if (wanted != readable) {
            setShading(wanted);
            readable = wanted;
        }
    };
    const auto forLitRuns = [&](const auto& draw) {
        for (const GlRun& run : buffer.runs()) {
            if (run.look.lit) {
                shadeFor(run.look.readable);
                setLook(run.look, frame, true);
                draw(run);
            }
        }
    };
    const auto drawSide = [&](const GlRun& run, Facing side, GLenum faces) {
        glCullFace(side == Facing::Front ? GL_BACK : GL_FRONT);
        setFaces(faces, faces);
        buffer.draw(run, facingRanges(run, eye, side));
    };
    glEnable(GL_CULL_FACE);
    if (frame.edges) {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(static_cast<float>(frame.pixelScale), stepsBehindEdges);
    }
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 0);
    forLitRuns([&](const GlRun& run) { drawSide(run, Facing::Front, GL_FILL); });
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    forLitRuns([&](const GlRun& run) {
        if (frame.backFilled) {
            glColor4fv(shaded(run.look.colour, run.look.readable ? 1.0F : backShade).data());
            drawSide(run, Facing::Back, GL_FILL);
        } else {
            glDepthRange(behindFronts(run, frame), 1.0);
            drawSideEdges(buffer, run, eye, Facing::Back);
            glDepthRange(0.0, 1.0);
        }
    });
    glDisable(GL_POLYGON_OFFSET_FILL);
    if (frame.edges) {
        glEnable(GL_BLEND);
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ZERO, GL_ONE);
        forLitRuns([&](const GlRun& run) {
            const float strength = edgeStrength(run, frame);
            if (strength == 0.0F) {
                return;
            }
            glDisable(GL_LIGHTING);
            Colour colour = shaded(run.look.colour, edgeShade);
            colour[3] = strength;
            glColor4fv(colour.data());
            drawSideEdges(buffer, run, eye, Facing::Front);
            if (frame.backFilled) {
                drawSideEdges(buffer, run, eye, Facing::Back);
            }
        });
        glDisable(GL_BLEND);
    }
    shadeFor(false);
    glDisable(GL_CULL_FACE);
}

/// Edges of faces that are certain to show that side are drawn as lines, each of them once and lit as the side is: a
/// shorter way through the context than faces whose outlines it has to find.
void GlRenderer::drawSideEdges(GlBuffer& buffer, const GlRun& run, const Eye& eye, Facing side) {
    const GlSide edges = edgesOf(run, eye, side);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 0);
    buffer.drawEdges(run, edges.certain, side);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glCullFace(side == Facing::Front ? GL_BACK : GL_FRONT);
    setFaces(GL_LINE, GL_LINE);
    buffer.draw(run, edges.doubtful);
}

void GlRenderer::drawRuns(GlBuffer& buffer, const DrawList& list, const SceneFrame& frame, bool lightsOn) {
    buffer.bind();
    if (lightsOn) {
        drawSurfaces(buffer, frame);
    }
    for (const GlRun& run : buffer.runs()) {
        if (!lightsOn || !run.look.lit) {
            drawRun(buffer, run, list, frame, lightsOn);
        }
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

void GlRenderer::drawTexts(const std::vector<DrawText>& texts, double scale) {
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glDepthFunc(GL_LEQUAL); // a text shows on its plate
    const auto right = static_cast<float>(TextPlate::right * scale);
    const auto off = static_cast<float>(TextPlate::off * scale);
    for (const DrawText& text : texts) {
        const TextBitmap bitmap = rasterizer_(text.text, scale);
        if (text.plate == TextPlate::Side::None) {
            drawBitmap(bitmap, text.position, text.colour, 0.0F, 0.0F);
            continue;
        }
        const float up = text.plate == TextPlate::Side::Above ? off : -off - static_cast<float>(bitmap.height);
        const auto border = static_cast<float>(static_cast<int>(TextPlate::border * scale));
        drawBitmap(plateFor(bitmap, static_cast<int>(border)), text.position, TextPlate::colour, right - border,
                   up - border);
        drawBitmap(bitmap, text.position, text.colour, right, up);
    }
    glDepthFunc(GL_LESS);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
}

void GlRenderer::finish() {
    clearIfWanted();
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

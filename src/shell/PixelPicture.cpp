#include "PixelPicture.h"

#include <QApplication>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <algorithm>

#include "GlCanvas.h"
#include "qt_text.h"
#include "text_bitmap.h"

namespace velmora {

namespace {

constexpr float opaque = 1.0F;

Colour groundColour(PictureGround ground) {
    switch (ground) {
    case PictureGround::Black:
        return {0.0F, 0.0F, 0.0F, opaque};
    case PictureGround::White:
        return {1.0F, 1.0F, 1.0F, opaque};
    case PictureGround::Clear:
        break;
    }
    return {0.0F, 0.0F, 0.0F, 0.0F};
}

void putOnGround(DrawList& list, PictureGround ground) {
    for (DrawBatch& batch : list.batches) {
        batch.colour = onGround(batch.colour, ground);
    }
}

/// The pixels that OpenGL makes of the frame; a null image when it does not.
QImage imageOf(const SceneFrame& frame, const PictureSettings& settings) {
    DrawList list = *frame.list;
    Overlay overlay = *frame.overlay;
    putOnGround(list, settings.ground);
    putOnGround(overlay.list, settings.ground);
    for (DrawText& text : overlay.texts) {
        text.colour = onGround(text.colour, settings.ground);
    }
    SceneFrame shown = frame;
    shown.list = &list;
    shown.listRevision = 1;
    shown.overlay = &overlay;
    const QSize size(settings.width, settings.height);
    QOpenGLFramebufferObject buffer(size, QOpenGLFramebufferObject::Depth);
    if (!buffer.isValid() || !buffer.bind()) {
        return {};
    }
    GlRenderer renderer([](const std::string& text) { return textBitmap(text, QApplication::font()); });
    renderer.prepare();
    renderer.clear(groundColour(settings.ground));
    renderer.draw(shown);
    renderer.finish();
    QImage image = buffer.toImage();
    renderer.release();
    buffer.release();
    return image;
}

bool drawPixels(const SceneFrame& frame, const PictureSettings& settings, const std::filesystem::path& file) {
    QOpenGLContext context;
    context.setFormat(GlCanvas::surfaceFormat(PixelFormat{}));
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface)) {
        return false;
    }
    const QImage image = imageOf(frame, settings);
    context.doneCurrent();
    return !image.isNull() && image.save(qtPath(file), "PNG");
}

} // namespace

DrawPixels pixelDrawer() {
    return GlCanvas::possible() ? DrawPixels(drawPixels) : DrawPixels();
}

} // namespace velmora

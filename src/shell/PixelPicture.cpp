#include "PixelPicture.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>

#include "GlCanvas.h"
#include "Session.h"
#include "pixel_image.h"
#include "qt_text.h"

namespace velmora {

namespace {

/// The frame as an image, by a context of its own.
QImage drawnImage(const SceneFrame& frame, const PictureSettings& settings) {
    QOpenGLContext context;
    context.setFormat(GlCanvas::surfaceFormat(PixelFormat{}));
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface)) {
        return {};
    }
    QImage image = pixelImage(frame, settings);
    context.doneCurrent();
    return image;
}

bool drawPixels(const SceneFrame& frame, const PictureSettings& settings, const std::filesystem::path& file) {
    const QImage image = drawnImage(frame, settings);
    return !image.isNull() && image.save(qtPath(file), "PNG");
}

} // namespace

DrawPixels pixelDrawer() {
    return GlCanvas::possible() ? DrawPixels(drawPixels) : DrawPixels();
}

QImage viewImage(Session& session) {
    PictureSettings settings;
    settings.width = session.view().viewport.width;
    settings.height = session.view().viewport.height;
    QImage image;
    withPicture(session.view(), session.state(), settings,
                [&](const SceneFrame& frame) { image = drawnImage(frame, settings); });
    return image;
}

} // namespace velmora

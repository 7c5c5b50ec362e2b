#include "pixel_image.h"

#include <QFont>
#include <QGuiApplication>
#include <cstdint>
#include <vector>

#include "OffscreenPicture.h"
#include "text_bitmap.h"

namespace velmora {

QImage pixelImage(const SceneFrame& frame, const PictureSettings& settings) {
    const std::vector<std::uint8_t> pixels = drawnPixels(frame, settings, [](const std::string& text, double scale) {
        return textBitmap(text, QGuiApplication::font(), scale);
    });
    if (pixels.empty()) {
        return {};
    }
    const QImage upsideDown(pixels.data(), settings.width, settings.height, QImage::Format_RGBA8888_Premultiplied);
    return upsideDown.mirrored();
}

} // namespace velmora

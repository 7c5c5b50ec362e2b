#include "text_bitmap.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <cmath>

#include "qt_text.h"

namespace velmora {

namespace {

QFont scaled(const QFont& font, double scale) {
    QFont larger(font);
    if (font.pixelSize() > 0) {
        larger.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * scale)));
    } else {
        larger.setPointSizeF(font.pointSizeF() * scale);
    }
    return larger;
}

} // namespace

TextBitmap textBitmap(const std::string& text, const QFont& font, double scale) {
    QFont plain = scaled(font, scale);
    plain.setStyleStrategy(QFont::NoAntialias);
    const QFontMetrics metrics(plain);
    QImage image(std::max(1, metrics.horizontalAdvance(qtText(text))), std::max(1, metrics.height()),
                 QImage::Format_Grayscale8);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setFont(plain);
    painter.setPen(Qt::white);
    painter.drawText(0, metrics.ascent(), qtText(text));
    painter.end();

    TextBitmap bitmap;
    bitmap.width = image.width();
    bitmap.height = image.height();
    const auto rowBytes = static_cast<std::size_t>((bitmap.width + 7) / 8);
    bitmap.rows.assign(rowBytes * static_cast<std::size_t>(bitmap.height), 0);
    for (int y = 0; y < bitmap.height; ++y) {
        const auto row = static_cast<std::size_t>(bitmap.height - 1 - y) * rowBytes;
        for (int x = 0; x < bitmap.width; ++x) {
            if (qGray(image.pixel(x, y)) > 127) {
                std::uint8_t& byte = bitmap.rows[row + static_cast<std::size_t>(x / 8)];
                byte = static_cast<std::uint8_t>(byte | (0x80U >> static_cast<unsigned>(x % 8)));
            }
        }
    }
    return bitmap;
}

} // namespace velmora

#include "theme_icon.h"

#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleOption>
#include <QSvgRenderer>
#include <algorithm>
#include <utility>

namespace velmora {

namespace {

/// The colours of the pictures that go with the theme.
constexpr const char* lineInPictures = "#6f7883";
constexpr const char* paperInPictures = "#ffffff";

struct ThemeColours {
    QColor line;
    QColor paper;
};

/// Lines stand between text and ground, nearer to the text.
ThemeColours themeColours() {
    constexpr double textPart = 0.68;
    const QPalette palette = QApplication::palette();
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor ground = palette.color(QPalette::Active, QPalette::Window);
    const auto mix = [](int a, int b) { return static_cast<int>(textPart * a + (1.0 - textPart) * b); };
    return {QColor(mix(text.red(), ground.red()), mix(text.green(), ground.green()), mix(text.blue(), ground.blue())),
            palette.color(QPalette::Active, QPalette::Base)};
}

class ThemeIconEngine : public QIconEngine {
public:
    explicit ThemeIconEngine(QString picture) : picture_(std::move(picture)) {}

    QIconEngine* clone() const override { return new ThemeIconEngine(*this); }
    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
    QString key() const override { return QStringLiteral("ThemeIconEngine"); }

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State state) override {
        const double ratio = painter->device()->devicePixelRatioF();
        QPixmap picture = pixmap((QSizeF(place.size()) * ratio).toSize(), mode, state);
        picture.setDevicePixelRatio(ratio);
        painter->drawPixmap(place, picture);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        if (size.isEmpty()) {
            return {}; // a bar without room asks for that
        }
        const ThemeColours colours = themeColours();
        const QString key = QStringLiteral("%1 %2x%3 %4 %5 %6")
                                .arg(picture_)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(mode)
                                .arg(colours.line.rgba())
                                .arg(colours.paper.rgba());
        QPixmap drawn;
        if (!QPixmapCache::find(key, &drawn)) {
            drawn = draw(size, colours);
            if (mode == QIcon::Disabled) {
                QStyleOption option;
                option.palette = QApplication::palette();
                drawn = QApplication::style()->generatedIconPixmap(mode, drawn, &option);
            }
            QPixmapCache::insert(key, drawn);
        }
        return drawn;
    }

private:
    QPixmap draw(const QSize& size, const ThemeColours& colours) const {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QFile file(picture_);
        if (file.open(QIODevice::ReadOnly)) {
            QByteArray text = file.readAll();
            text.replace(lineInPictures, colours.line.name().toLatin1());
            text.replace(paperInPictures, colours.paper.name().toLatin1());
            QPainter painter(&drawn);
            // The pictures are square; they stand in the middle of any other place.
            const double side = std::min(size.width(), size.height());
            QSvgRenderer(text).render(&painter,
                                      QRectF((size.width() - side) / 2.0, (size.height() - side) / 2.0, side, side));
        }
        return drawn;
    }

    QString picture_;
};

} // namespace

QIcon themeIcon(const QString& picture) {
    return QFile::exists(picture) ? QIcon(new ThemeIconEngine(picture)) : QIcon();
}

} // namespace velmora

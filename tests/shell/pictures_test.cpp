#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QPalette>
#include <QPixmap>
#include <cstdlib>
#include <set>
#include <string>

#include "command_table.h"
#include "mode_cursors.h"
#include "theme_icon.h"

namespace velmora::test {
namespace {

/// The picture of a command at the size of a tool button.
QImage pictureOf(const std::string& id) {
    return themeIcon(QStringLiteral(":/icons/%1.svg").arg(QString::fromStdString(id))).pixmap(16, 16).toImage();
}

TEST(Pictures, EveryToolButtonHasOneOfItsOwn) {
    std::set<std::string> seen;
    for (const Menu& bar : toolBars()) {
        for (const MenuEntry& entry : bar.entries) {
            if (entry.kind != MenuEntry::Kind::Item) {
                continue;
            }
            const QImage picture = pictureOf(entry.command).convertToFormat(QImage::Format_ARGB32);
            ASSERT_EQ(picture.size(), QSize(16, 16)) << entry.command;
            const std::string pixels(reinterpret_cast<const char*>(picture.constBits()),
                                     static_cast<std::size_t>(picture.sizeInBytes()));
            EXPECT_TRUE(seen.insert(pixels).second) << entry.command << " looks like another";
        }
    }
}

/// The theme of the program for the life of the object.
class Theme {
public:
    Theme(const QColor& ground, const QColor& text) : before_(QApplication::palette()) {
        QPalette palette = before_;
        for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
            palette.setColor(role, ground);
        }
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(role, text);
        }
        QApplication::setPalette(palette);
    }
    Theme(const Theme&) = delete;
    Theme& operator=(const Theme&) = delete;
    ~Theme() { QApplication::setPalette(before_); }

private:
    QPalette before_;
};

/// How far the picture stands out from its ground, 0 to 255: the mean of its opaque pixels' distance in brightness, by
/// how much of them is opaque.
double contrast(const QImage& picture, const QColor& ground) {
    double sum = 0.0;
    double weight = 0.0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor colour = picture.pixelColor(x, y);
            sum += colour.alphaF() * std::abs(qGray(colour.rgb()) - qGray(ground.rgb()));
            weight += colour.alphaF();
        }
    }
    return weight > 0.0 ? sum / weight : 0.0;
}

TEST(Pictures, StandOutFromLightAndDarkThemes) {
    for (const auto& [ground, text] : {std::pair{QColor(0xef, 0xef, 0xef), QColor(0, 0, 0)},
                                       std::pair{QColor(0x2a, 0x2a, 0x2a), QColor(0xff, 0xff, 0xff)}}) {
        const Theme theme(ground, text);
        for (const Command& command : commandTable()) {
            const QString path = QStringLiteral(":/icons/%1.svg").arg(QString::fromLatin1(command.id));
            if (QFile::exists(path)) {
                EXPECT_GT(contrast(pictureOf(command.id), ground), 60.0) << command.id << ground.name().toStdString();
            }
        }
    }
}

TEST(Pictures, FollowTheTheme) {
    const QIcon icon = themeIcon(QStringLiteral(":/icons/file.new.svg"));
    QImage light;
    {
        const Theme theme(Qt::white, Qt::black);
        light = icon.pixmap(16, 16).toImage();
    }
    const Theme theme(Qt::black, Qt::white);
    EXPECT_NE(icon.pixmap(16, 16).toImage(), light);
}

TEST(Pictures, AreDrawnAnewForDenseScreens) {
    const QIcon icon = themeIcon(QStringLiteral(":/icons/file.save.svg"));
    const QPixmap dense = icon.pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(dense.size(), QSize(32, 32));
    EXPECT_EQ(dense.devicePixelRatio(), 2.0);
    // Not the small one enlarged.
    const QImage enlarged = icon.pixmap(QSize(16, 16), 1.0).toImage().scaled(32, 32);
    EXPECT_NE(dense.toImage().convertToFormat(QImage::Format_ARGB32), enlarged.convertToFormat(QImage::Format_ARGB32));
}

TEST(Pictures, OfWhatIsOffArePaler) {
    const QIcon icon = themeIcon(QStringLiteral(":/icons/file.save.svg"));
    EXPECT_NE(icon.pixmap(16, 16, QIcon::Disabled).toImage(), icon.pixmap(16, 16, QIcon::Normal).toImage());
}

TEST(Pictures, ThatAreNotThereGiveNoIcon) {
    EXPECT_TRUE(themeIcon(QStringLiteral(":/icons/no.such.svg")).isNull());
}

TEST(Pictures, TheProgramHasOne) {
    EXPECT_EQ(pictureOf("velmora").size(), QSize(16, 16));
}

TEST(Cursors, EveryModeButTheIdleOneHasOneOfItsOwn) {
    std::set<std::string> seen;
    for (int mode = ModeRotate; mode <= ModeLine; ++mode) {
        const QCursor cursor = cursorOf(static_cast<MouseMode>(mode));
        if (mode == ModeNone) {
            EXPECT_EQ(cursor.shape(), Qt::ArrowCursor);
            continue;
        }
        ASSERT_EQ(cursor.shape(), Qt::BitmapCursor) << mode;
        const QImage picture = cursor.pixmap().toImage().convertToFormat(QImage::Format_ARGB32);
        const std::string pixels(reinterpret_cast<const char*>(picture.constBits()),
                                 static_cast<std::size_t>(picture.sizeInBytes()));
        EXPECT_TRUE(seen.insert(pixels).second) << mode;
        EXPECT_TRUE(QRect(QPoint(0, 0), picture.size()).contains(cursor.hotSpot())) << mode;
    }
}

} // namespace
} // namespace velmora::test

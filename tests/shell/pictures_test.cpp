#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <algorithm>
#include <cstdlib>
#include <map>
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

/// Where two pictures differ as the eye sees it, in pixels of a tool button.
int differingPixels(const std::string& one, const std::string& other) {
    constexpr int visible = 48;
    const auto drawn = [](const std::string& id) {
        QImage page(16, 16, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter(&page).drawImage(0, 0, pictureOf(id));
        return page;
    };
    const QImage first = drawn(one);
    const QImage second = drawn(other);
    int count = 0;
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const QColor a = first.pixelColor(x, y);
            const QColor b = second.pixelColor(x, y);
            const int distance =
                std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
            count += distance > visible ? 1 : 0;
        }
    }
    return count;
}

TEST(Pictures, OfCommandsThatStandSideBySideAreToldApart) {
    EXPECT_EQ(differingPixels("model.flip", "model.flip"), 0);
    // A quarter of what a button has.
    EXPECT_GT(differingPixels("model.reflectToApt", "model.reflectToWrl"), 64);
    EXPECT_GT(differingPixels("model.flip", "model.symmetric"), 64);
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

TEST(Pictures, StandInTheMiddleOfAPlaceThatIsNotSquare) {
    const QIcon icon = themeIcon(QStringLiteral(":/icons/file.save.svg"));
    const QImage square = icon.pixmap(16, 16).toImage();
    const QImage wide = icon.pixmap(32, 16).toImage();
    ASSERT_EQ(wide.size(), QSize(32, 16));
    EXPECT_EQ(wide.copy(8, 0, 16, 16), square);
    EXPECT_EQ(contrast(wide.copy(0, 0, 8, 16), Qt::white), 0.0);
    EXPECT_EQ(contrast(wide.copy(24, 0, 8, 16), Qt::white), 0.0);
    const QImage high = icon.pixmap(16, 32).toImage();
    EXPECT_EQ(high.copy(0, 8, 16, 16), square);
}

TEST(Pictures, AreNoneWhereThereIsNoRoom) {
    const QIcon icon = themeIcon(QStringLiteral(":/icons/file.save.svg"));
    EXPECT_TRUE(icon.pixmap(0, 16).isNull());
}

TEST(Pictures, AreDrawnWhereTheyBelong) {
    const QIcon icon = themeIcon(QStringLiteral(":/icons/file.save.svg"));
    QImage page(40, 40, QImage::Format_ARGB32_Premultiplied);
    page.fill(Qt::transparent);
    QPainter painter(&page);
    icon.paint(&painter, 10, 20, 16, 16);
    painter.end();
    const QImage drawn = icon.pixmap(16, 16).toImage().convertToFormat(page.format());
    EXPECT_EQ(page.copy(10, 20, 16, 16), drawn);
}

/// Lines are drawn between text and ground, nearer to the text; papers as the ground of fields.
TEST(Pictures, TakeTheirColoursFromTheTheme) {
    const auto coloursOf = [](const QColor& ground, const QColor& text) {
        const Theme theme(ground, text);
        const QImage picture = themeIcon(QStringLiteral(":/icons/line.copy.svg")).pixmap(64, 64).toImage();
        std::map<QRgb, int> counts;
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x) {
                if (picture.pixelColor(x, y).alpha() == 255) {
                    ++counts[picture.pixelColor(x, y).rgb()];
                }
            }
        }
        return counts;
    };
    // 0.68 of 200 and 0.32 of 100 is 168.
    const auto counts = coloursOf(QColor(100, 100, 100), QColor(200, 200, 200));
    EXPECT_GT(counts.count(qRgb(168, 168, 168)), 0U);
    EXPECT_GT(counts.count(qRgb(100, 100, 100)), 0U);
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

TEST(Cursors, PointWithWhatTheirPicturePointsWith) {
    struct Case {
        MouseMode mode;
        QPoint hotSpot;
    };
    // The tip of an arrow, the middle of the lens, the centre of all others.
    const Case cases[] = {
        {.mode = ModeRotate, .hotSpot = {12, 12}},      {.mode = ModeRotateX, .hotSpot = {12, 12}},
        {.mode = ModeRotateY, .hotSpot = {12, 12}},     {.mode = ModeRotateZ, .hotSpot = {12, 12}},
        {.mode = ModeTranslateXY, .hotSpot = {12, 12}}, {.mode = ModeTranslateZ, .hotSpot = {12, 12}},
        {.mode = ModeShift, .hotSpot = {12, 12}},       {.mode = ModeScale, .hotSpot = {12, 12}},
        {.mode = ModeZoomIn, .hotSpot = {10, 10}},      {.mode = ModePoint, .hotSpot = {12, 12}},
        {.mode = ModePatch, .hotSpot = {4, 4}},         {.mode = ModeSection, .hotSpot = {4, 4}},
        {.mode = ModeLine, .hotSpot = {4, 4}},
    };
    for (const Case& c : cases) {
        const QCursor cursor = cursorOf(c.mode);
        EXPECT_EQ(cursor.hotSpot(), c.hotSpot) << c.mode;
        EXPECT_EQ(cursor.pixmap().size(), QSize(24, 24)) << c.mode;
    }
}

} // namespace
} // namespace velmora::test

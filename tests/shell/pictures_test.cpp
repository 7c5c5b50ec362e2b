#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <set>
#include <string>

#include "command_table.h"
#include "mode_cursors.h"

namespace velmora::test {
namespace {

/// The picture of a command at the size of a tool button.
QImage pictureOf(const std::string& id) {
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(QString::fromStdString(id))).pixmap(16, 16).toImage();
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

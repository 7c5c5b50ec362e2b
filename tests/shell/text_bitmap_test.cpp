#include "text_bitmap.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QFontMetrics>
#include <algorithm>
#include <utility>

namespace velmora::test {
namespace {

bool bitAt(const TextBitmap& bitmap, int x, int yFromBottom) {
    const auto rowBytes = static_cast<std::size_t>((bitmap.width + 7) / 8);
    return (bitmap.rows[static_cast<std::size_t>(yFromBottom) * rowBytes + static_cast<std::size_t>(x / 8)] &
            (0x80 >> (x % 8))) != 0;
}

TEST(TextBitmap, HasTheSizeOfTheTextInItsFont) {
    const QFont font(QStringLiteral("DejaVu Sans"), 12);
    const QFontMetrics metrics(font);
    const TextBitmap bitmap = textBitmap("128", font);
    EXPECT_EQ(bitmap.width, metrics.horizontalAdvance(QStringLiteral("128")));
    EXPECT_EQ(bitmap.height, metrics.height());
    EXPECT_EQ(bitmap.rows.size(), static_cast<std::size_t>((bitmap.width + 7) / 8 * bitmap.height));
}

TEST(TextBitmap, OfALargeTextHasTheSizeOfALargeFont) {
    QFont ofPixels;
    ofPixels.setPixelSize(13);
    for (const QFont& font : {QFont(QStringLiteral("DejaVu Sans"), 9), ofPixels}) {
        QFont larger(font);
        font.pixelSize() > 0 ? larger.setPixelSize(39) : larger.setPointSize(27);
        const QFontMetrics metrics(larger);
        const TextBitmap bitmap = textBitmap("128", font, 3.0);
        EXPECT_EQ(bitmap.width, metrics.horizontalAdvance(QStringLiteral("128")));
        EXPECT_EQ(bitmap.height, metrics.height());
    }
}

TEST(TextBitmap, RowsRunFromTheBottomUp) {
    // The mark sits at the foot of its line: nothing of it stands in the upper half.
    const TextBitmap bitmap = textBitmap("_", QFont(QStringLiteral("DejaVu Sans"), 24));
    int lower = 0;
    int upper = 0;
    for (int y = 0; y < bitmap.height; ++y) {
        for (int x = 0; x < bitmap.width; ++x) {
            (y < bitmap.height / 2 ? lower : upper) += bitAt(bitmap, x, y) ? 1 : 0;
        }
    }
    EXPECT_GT(lower, 0);
    EXPECT_EQ(upper, 0);
}

TEST(TextBitmap, ColumnsRunFromTheLeftAndHoldTheWholeText) {
    const QFont font(QStringLiteral("DejaVu Sans"), 12);
    const int blank = QFontMetrics(font).horizontalAdvance(QStringLiteral("  "));
    const auto inked = [&font](const char* text) {
        const TextBitmap bitmap = textBitmap(text, font);
        int first = bitmap.width;
        int last = -1;
        for (int x = 0; x < bitmap.width; ++x) {
            for (int y = 0; y < bitmap.height; ++y) {
                if (bitAt(bitmap, x, y)) {
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
            }
        }
        return std::pair(first, last);
    };
    const auto [first, last] = inked("1234567890");
    const auto [firstBehind, lastBehind] = inked("  1234567890");
    EXPECT_EQ(firstBehind - first, blank);
    EXPECT_EQ(lastBehind - last, blank);
    EXPECT_EQ(inked("1234567890  "), std::pair(first, last));
    EXPECT_GT(last, 60) << "beyond the first bytes of a row";
}

TEST(TextBitmap, ADigitIsInkOnEmptyGround) {
    const TextBitmap bitmap = textBitmap("8", QFont(QStringLiteral("DejaVu Sans"), 24));
    int inked = 0;
    for (int y = 0; y < bitmap.height; ++y) {
        for (int x = 0; x < bitmap.width; ++x) {
            inked += bitAt(bitmap, x, y) ? 1 : 0;
        }
    }
    EXPECT_GT(inked, bitmap.width * bitmap.height / 20);
    EXPECT_LT(inked, bitmap.width * bitmap.height / 2);
}

TEST(TextBitmap, NothingIsOneEmptyColumn) {
    const TextBitmap bitmap = textBitmap("", QFont());
    EXPECT_EQ(bitmap.width, 1);
    for (const std::uint8_t byte : bitmap.rows) {
        EXPECT_EQ(byte, 0);
    }
}

} // namespace
} // namespace velmora::test

#include "Command.h"

#include <gtest/gtest.h>

namespace velmora::test {

TEST(PlainText, LosesAccessMarksDotsAndClosingBlanks) {
    EXPECT_EQ(plainText("&Append..."), "Append");
    EXPECT_EQ(plainText("&Input && Add to zBlock..."), "Input & Add to zBlock");
    EXPECT_EQ(plainText("Block Sa&ve As ..."), "Block Save As");
    EXPECT_EQ(plainText("E&xit "), "Exit");
    EXPECT_EQ(plainText("Add to \"line\" buffer"), "Add to \"line\" buffer");
    EXPECT_EQ(plainText(""), "");
    EXPECT_EQ(plainText("&"), "");
}

} // namespace velmora::test
